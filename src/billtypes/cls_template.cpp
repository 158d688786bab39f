#include "billtypes/cls_template.h"

#include "billtypes/bill_actions.h"
#include "billtypes/bill_gates.h"
#include "foundation/text.h"

namespace tavcc::cls_template {

bool DeleteBill(PlugIn& self, int32_t FID, std::string_view sDsn, std::string& strReturnMsg) {
  const BillAction action{
      .gate = [&](Connection& cn) { return VerifyDataBeforeDelete(self, FID, cn, strReturnMsg); },
      .write =
          [&](Connection& cn) {
            cn.Execute(Cat("Delete From T_CC_Templet where FID=", FID));
            cn.Execute(Cat("Delete From T_CC_TempletEntry where FID=", FID));
          },
  };
  return RunBillAction(self, sDsn, strReturnMsg, action);
}

bool VerifyDataBeforeDelete(PlugIn&, int32_t lngFID, Connection& cn, std::string& strReturnMsg) {
  return AnswerGate(strReturnMsg, [&] {
    const RecordsetPtr found =
        cn.Execute(Cat("Select 1 From T_CC_Templet  where FID=", lngFID));  // two blanks: as stored
    return found->AtEnd() ? Refuse("该清单已被删除！") : Pass();
  });
}

}  // namespace tavcc::cls_template
