// Late-bound calls as scripts and Visual Basic make them.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/late_call.h"
#include "host/automation/dispatch_object.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::NewBstr;
using automation::ToUtf8;
using automation::UniqueVariant;

TEST_F(AutomationTest, ATextByReferenceGetsTheMessageBack) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  BSTR message = NewBstr("earlier");
  LateCall call{{Long(77), Long(2), Text(erp.dsn()), TextReference(&message)}, {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(call.result.get()->vt, VT_BOOL);
  EXPECT_EQ(call.result.get()->boolVal, VARIANT_FALSE);
  EXPECT_EQ(ToUtf8(message), "该单据不存在，不能审核！");
  SysFreeString(message);
}

// What a script passes: a VARIANT by reference, whatever it holds.
TEST_F(AutomationTest, AVariableByReferenceGetsTheMessageBack) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  UniqueVariant message;  // empty, as an uninitialised variable is
  LateCall call{{Long(77), Long(2), Text(erp.dsn()), VariantReference(message.get())}, {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  ASSERT_EQ(message.get()->vt, VT_BSTR);
  EXPECT_EQ(ToUtf8(message.get()->bstrVal), "该单据不存在，不能审核！");
}

TEST_F(AutomationTest, ATextByValueIsAcceptedAndItsMessageLost) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  BSTR message = NewBstr("earlier");
  LateCall call{{Long(1), Long(2), Text(erp.dsn()), Text(message)}, {}};
  ASSERT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(call.result.get()->boolVal, VARIANT_TRUE);
  EXPECT_EQ(ToUtf8(message), "earlier");
  SysFreeString(message);
}

TEST_F(AutomationTest, NamesOfMembersAndArgumentsIgnoreLetterCase) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  BSTR message = nullptr;
  LateCall call{{Long(77), TextReference(&message), Text(erp.dsn()), Long(2)},
                {L"strreturnmsg", L"SDSN", L"lngUserID"}};
  ASSERT_EQ(call.On(*object.Get(), L"auditbill"), S_OK);
  EXPECT_EQ(ToUtf8(message), "该单据不存在，不能审核！");
  SysFreeString(message);
}

TEST_F(AutomationTest, AnUnknownNameIsToldAsSuch) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  LateCall call;
  EXPECT_EQ(call.On(*object.Get(), L"AfterSave"), DISP_E_UNKNOWNNAME);
  call.names = {L"lngFID", L"nothing"};
  EXPECT_EQ(call.On(*object.Get(), L"AuditBill"), DISP_E_UNKNOWNNAME);
}

TEST_F(AutomationTest, OptionalArgumentsMayBeLeftOutAndOthersMayNot) {
  HostedErp erp;
  const auto profit = CreateByProgID(L"TavM_CC_PlugIns.CheckProfit");
  LateCall call{{Text(erp.dsn()), Long(77)}, {}};
  ASSERT_EQ(call.On(*profit.Get(), L"CheckBill"), S_OK);
  EXPECT_EQ(call.result.get()->lVal, 0);
  LateCall too_few{{Text(erp.dsn())}, {}};
  EXPECT_EQ(too_few.On(*profit.Get(), L"CheckBill"), DISP_E_PARAMNOTOPTIONAL);
  LateCall too_many{std::vector<VARIANT>(7, Long(1)), {}};
  EXPECT_EQ(too_many.On(*profit.Get(), L"CheckBill"), DISP_E_BADPARAMCOUNT);
}

TEST_F(AutomationTest, AWrongTypeNamesTheArgumentByItsPlace) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  BSTR word = NewBstr("seven");
  LateCall call{{Text(word), Long(2), Text(erp.dsn()), Text(word)}, {}};
  EXPECT_EQ(call.On(*object.Get(), L"AuditBill"), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(call.bad_argument, 3u);  // the first of four, counted from the last
  SysFreeString(word);
  const auto info = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  VARIANT nothing;
  VariantInit(&nothing);
  LateCall overflow{{Long(70000), nothing}, {}};
  EXPECT_EQ(overflow.On(*info.Get(), L"WhetherNeedUpdateStockNum"), DISP_E_OVERFLOW);
  EXPECT_EQ(overflow.bad_argument, 1u);
}

// A refusal by error arrives with its number, source and description.
TEST_F(AutomationTest, AnErrorOfARuleArrivesWhole) {
  HostedErp erp;
  erp.erp().connection()->Execute(
      "insert into T_CC_StockBill(FID,FClassTypeID,FStatus,FDate) values(5,1040001,1,'2026-03-10')");
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.clsOtherIn");
  VARIANT nothing;
  VariantInit(&nothing);
  LateCall call{{Text(erp.dsn()), Long(1040001), nothing, Long(5)}, {}};
  EXPECT_EQ(call.On(*object.Get(), L"BeforeDel"), DISP_E_EXCEPTION);
  EXPECT_EQ(call.info.scode, -5);
  EXPECT_EQ(ToUtf8(call.info.bstrSource), "TavM_CC_PlugIns.clsOtherIn.BeforeDel");
  EXPECT_EQ(ToUtf8(call.info.bstrDescription), "单据已经审核，不能删除。");
}

TEST_F(AutomationTest, AnErrorOfTheDatabaseArrivesWithTheServersNumber) {
  HostedErp erp;
  erp.erp().connection()->Execute("drop table t_PeriodDate");
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  VARIANT date;
  VariantInit(&date);
  date.vt = VT_DATE;
  LateCall call{{Text(erp.dsn()), date}, {}};
  EXPECT_EQ(call.On(*object.Get(), L"DateInCurrentPeriod"), DISP_E_EXCEPTION);
  EXPECT_EQ(call.info.scode, static_cast<SCODE>(0x800A0000 + 208));
  EXPECT_EQ(ToUtf8(call.info.bstrDescription), "Invalid object name 't_PeriodDate'.");
  EXPECT_EQ(ToUtf8(call.info.bstrSource), "embedded database");
  // Where nobody says a source, it is the class.
  host_automation::OrderFault(2, host_automation::Fault::kError);
  LateCall anonymous{{Text(erp.dsn()), date}, {}};
  EXPECT_EQ(anonymous.On(*object.Get(), L"DateInCurrentPeriod"), DISP_E_EXCEPTION);
  EXPECT_EQ(ToUtf8(anonymous.info.bstrDescription), "host failed");
  EXPECT_EQ(ToUtf8(anonymous.info.bstrSource), "TavM_CC_PlugIns.PublicSysInfo");
}

TEST_F(AutomationTest, TransModeIsReadAsAProperty) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  DISPPARAMS none{};
  UniqueVariant result;
  EXPECT_EQ(object->Invoke(0x68030000, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, result.get(),
                           nullptr, nullptr),
            S_OK);
  EXPECT_EQ(result.get()->vt, VT_I4);
  EXPECT_EQ(result.get()->lVal, 3);
  EXPECT_EQ(object->Invoke(0x68030000, IID_NULL, 0, DISPATCH_PROPERTYPUT, &none, nullptr, nullptr,
                           nullptr),
            DISP_E_MEMBERNOTFOUND);
}

TEST_F(AutomationTest, WithoutAHostCreationFailsWithItsError) {
  CLSID id;
  ASSERT_EQ(CLSIDFromProgID(L"TavM_CC_PlugIns.cls_CX", &id), S_OK);
  ComPtr<IDispatch> object;
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            static_cast<HRESULT>(0x800A0000 + 429));
  EXPECT_EQ(object.Get(), nullptr);
  ComPtr<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, info.GetAddressOf()), S_OK);
  BSTR source = nullptr;
  info->GetSource(&source);
  EXPECT_EQ(ToUtf8(source), "TavM_CC_PlugIns.cls_CX");
  SysFreeString(source);
}

}  // namespace
}  // namespace tavcc
