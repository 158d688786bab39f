// cls_DB: the plug-in of the stock bills kept in T_CC_StockBill and T_CC_StockBillEntry, the
// transfer bill among them: the plain bill of standard_bill.h, with a save and a delete hook.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc::cls_db {

bool AuditBill(PlugIn& self, int32_t lngFID, int32_t lngUserID, std::string_view sDsn,
               std::string& strReturnMsg);
bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);
bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);

bool VerifyDataBeforeAudit(PlugIn& self, int32_t lngFID, Connection& cn, std::string& strReturnMsg);
bool VerifyDataBeforeDelete(PlugIn& self, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg);
bool VerifyDataBeforeUnAudit(PlugIn& self, int32_t lngFID, Connection& cn,
                             std::string& strReturnMsg);

// The gates before an audit (1) or an un-audit (-1), each to be asked on its own. `self`, whose
// context is tied to a database when they are asked, must outlive them.
Ladder GatesOf(PlugIn& self, int32_t lngFID, int32_t direction);

// What follows depends on the class type, `dctClassType`("FTemplateID"): a price adjustment gets
// the shelf life of its batches; a transfer or stock-check bill gets its cost prices as prices and
// its serial numbers recorded (serial_numbers.h); any other bill nothing. The result is Empty.
// Errors: see save_hook.h.
Value AfterSave(PlugIn& self, std::string_view sDsn, Dictionary& dctClassType,
                Vector& vctClassTypeEntry, Dictionary& dctTableInfo, Dictionary& dctData,
                Dictionary& dctLink);

// See RunBeforeDel.
Value BeforeDel(PlugIn& self, std::string_view sDsn, int32_t nClassID, Dictionary& dctClassType,
                int32_t nInterID);

}  // namespace tavcc::cls_db
