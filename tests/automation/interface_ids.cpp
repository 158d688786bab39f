#include "automation/interface_ids.h"

#include "TavM_CC_PlugIns.h"

namespace tavcc {

std::span<const InterfaceId> InterfaceIds() {
  static const InterfaceId ids[] = {
      {"PublicSysInfo", IID__PublicSysInfo, CLSID_PublicSysInfo},
      {"cls_CX", IID__cls_CX, CLSID_cls_CX},
      {"cls_DB", IID__cls_DB, CLSID_cls_DB},
      {"cls_ZZ", IID__cls_ZZ, CLSID_cls_ZZ},
      {"CheckProfit", IID__CheckProfit, CLSID_CheckProfit},
      {"CheckLoss", IID__CheckLoss, CLSID_CheckLoss},
      {"AdjustPrice", IID__AdjustPrice, CLSID_AdjustPrice},
      {"cls_Template", IID__cls_Template, CLSID_cls_Template},
      {"clsOtherIn", IID__clsOtherIn, CLSID_clsOtherIn},
      {"clsOtherOut", IID__clsOtherOut, CLSID_clsOtherOut},
  };
  return ids;
}

}  // namespace tavcc
