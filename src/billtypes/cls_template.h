// cls_Template: the plug-in of the stock template, kept in T_CC_Templet and T_CC_TempletEntry.
//
// Both methods: true when done or allowed; `strReturnMsg` gets the reason of a refusal or the
// description of an error. No error reaches the host.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc::cls_template {

bool DeleteBill(PlugIn& self, int32_t FID, std::string_view sDsn, std::string& strReturnMsg);

// A template can be deleted as long as it is there. Empties the message when it is.
bool VerifyDataBeforeDelete(PlugIn& self, int32_t lngFID, Connection& cn,
                            std::string& strReturnMsg);

}  // namespace tavcc::cls_template
