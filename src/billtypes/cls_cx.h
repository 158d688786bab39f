// cls_CX: the plug-in of the assembly/disassembly bill: the plain bill of standard_bill.h, kept in
// T_CC_ZZCX and its two tables of rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ladder.h"
#include "foundation/plug_in.h"

namespace tavcc::cls_cx {

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

}  // namespace tavcc::cls_cx
