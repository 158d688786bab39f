// cls_CX: the plug-in of the assembly/disassembly bill.
//
// Three gates that only read, and three actions that run the matching gate and then write; what
// they do is told in bill_gates.h and bill_actions.h. Common to all six: `lngFID` is the bill's
// internal id; the result is true when allowed or done; `strReturnMsg` gets the reason of a refusal
// or the description of an error. No error reaches the host.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc::cls_cx {

bool AuditBill(PlugIn& self, int32_t lngFID, int32_t lngUserID, std::string_view sDsn,
               std::string& strReturnMsg);
bool DeleteBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);
bool UnAuditBill(PlugIn& self, int32_t lngFID, std::string_view sDsn, std::string& strReturnMsg);

// A gate that passes leaves the message empty, whatever it held.
bool VerifyDataBeforeAudit(PlugIn& self, int32_t lngFID, Connection& cn, std::string& strReturnMsg);
bool VerifyDataBeforeDelete(PlugIn& self, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg);
bool VerifyDataBeforeUnAudit(PlugIn& self, int32_t lngFID, Connection& cn,
                             std::string& strReturnMsg);

}  // namespace tavcc::cls_cx
