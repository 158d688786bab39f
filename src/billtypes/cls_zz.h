// cls_ZZ: the plug-in of the assembly bill, kept in the tables of cls_CX.
//
// It is the plain bill of standard_bill.h with these differences: the audit takes the bill from the
// host's dictionary ("BillInterID") and writes the current user as its auditor; the audit and
// un-audit gates read by connection string and also ask for the accounting period, the audit gate
// also for an auditor who is not the maker. And it has a save and a delete hook.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc::cls_zz {

bool AuditBill(PlugIn& self, Dictionary& oDict, std::string_view sDsn, std::string& strReturnMsg);
bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);
bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);

// Ties the object to the database of `sDsn` first: the maker is held against its current user.
bool VerifyDataBeforeAudit(PlugIn& self, Dictionary& oDict, std::string_view sDsn,
                           std::string& strReturnMsg);

bool VerifyDataBeforeDelete(PlugIn& self, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg);
bool VerifyDataBeforeUnAudit(PlugIn& self, int32_t lngFID, std::string_view sDsn,
                             std::string& strReturnMsg);

// The gates before an audit (1) or an un-audit (-1), each to be asked on its own. `self`, tied to
// the database of `sDsn` when they are asked, must outlive them.
Ladder GatesOf(PlugIn& self, int32_t lngFID, std::string_view sDsn, int32_t direction);

// See RunBeforeDel.
Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary& dctClassType,
                int32_t nInterID);

// Records the serial numbers of the bill, whatever its class type. The result is Empty.
// Errors: see save_hook.h.
Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType,
                Vector& vctClassTypeEntry, Dictionary& dctTableInfo, Dictionary& dctData,
                Dictionary& dctLink);

}  // namespace tavcc::cls_zz
