// Objects where a text, number, date or boolean is declared: a script passes rs("FID"), a field
// object, and means its value.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/late_call.h"
#include "host/automation/dispatch_object.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::ToUtf8;
using host_automation::Arguments;
using host_automation::NewDispatchObject;

// An object whose default member answers the value.
ComPtr<IDispatch> Field(const Value& value) {
  ComPtr<IDispatch> field;
  field.Attach(NewDispatchObject(
      {{"Value", [value](const Arguments&) { return value; }, nullptr, true}}, nullptr));
  return field;
}

TEST_F(AutomationTest, AFieldObjectStandsForItsValue) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  const auto id = Field(int32_t{1});
  const auto user = Field("2");
  const auto dsn = Field(erp.erp().dsn());
  UniqueVariant message;
  LateCall call{{Dispatch(id.Get()), Dispatch(user.Get()), Dispatch(dsn.Get()),
                 VariantReference(message.get())},
                {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(call.result.get()->boolVal, VARIANT_TRUE);
}

// In and out: the object is read, and the variable that held it gets the result.
TEST_F(AutomationTest, AnInOutArgumentMayHoldAFieldObject) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  const auto earlier = Field("earlier");
  UniqueVariant message;
  *message.get() = Dispatch(earlier.Get());
  earlier->AddRef();  // the variable's own
  LateCall call{{Long(77), Long(2), Text(erp.dsn()), VariantReference(message.get())}, {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  ASSERT_EQ(message.get()->vt, VT_BSTR);
  EXPECT_EQ(ToUtf8(message.get()->bstrVal), "该单据不存在，不能审核！");
  LateCall by_value{{Long(77), Long(2), Text(erp.dsn()), Dispatch(earlier.Get())}, {}};
  EXPECT_EQ(by_value.On(*object.Get(), L"AuditBill"), S_OK);
}

TEST_F(AutomationTest, DatesAndBooleansMayBeFieldObjectsToo) {
  HostedErp erp;
  const auto info = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  const auto date = Field(*DateTime::FromAutomation(46096));  // in March 2026
  LateCall call{{Text(erp.dsn()), Dispatch(date.Get())}, {}};
  ASSERT_EQ(call.On(*info.Get(), L"DateInCurrentPeriod"), S_OK);
  EXPECT_EQ(call.result.get()->boolVal, VARIANT_TRUE);
}

TEST_F(AutomationTest, AFieldOfAFieldStandsForItsInnermostValue) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  const auto inner = Field(int32_t{77});
  const auto outer = Field(automation::WrapObject(inner.Get()));
  UniqueVariant message;
  LateCall call{{Dispatch(outer.Get()), Long(2), Text(erp.dsn()), VariantReference(message.get())},
                {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(ToUtf8(message.get()->bstrVal), "该单据不存在，不能审核！");
}

TEST_F(AutomationTest, AnObjectWithoutAValueIsAWrongType) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  ComPtr<IDispatch> none;
  none.Attach(NewDispatchObject({}, nullptr));
  const auto failing = [] {
    ComPtr<IDispatch> made;
    made.Attach(NewDispatchObject(
        {{"Value",
          [](const Arguments&) -> Value { throw AutomationError(3021, "", "no current record"); },
          nullptr, true}},
        nullptr));
    return made;
  }();
  const auto word = Field("seven");
  erp.erp().log().Clear();
  for (const auto& id : {none, failing, word, ComPtr<IDispatch>()}) {
    UniqueVariant message;
    LateCall call{{Dispatch(id.Get()), Long(2), Text(erp.dsn()), VariantReference(message.get())},
                  {}};
    EXPECT_EQ(call.On(*object.Get(), L"AuditBill"), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.bad_argument, 3u);
  }
  EXPECT_TRUE(erp.erp().log().statements().empty());
}

}  // namespace
}  // namespace tavcc
