// Calls through the generated header and the vtable, as a C++ client makes them.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::NewBstr;
using automation::ToUtf8;
using automation::UnwrapObject;

template <class Interface>
ComPtr<Interface> CreateEarly(const CLSID& id, const IID& interface_id) {
  ComPtr<Interface> object;
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, interface_id,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  return object;
}

TEST_F(AutomationTest, TheVtableAuditsUnAuditsAndReportsTheFailingDelete) {
  HostedErp erp;
  const auto object = CreateEarly<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
  BSTR message = NewBstr("earlier");
  VARIANT_BOOL done = VARIANT_FALSE;
  ASSERT_EQ(object->AuditBill(1, 2, erp.dsn(), &message, &done), S_OK);
  EXPECT_EQ(done, VARIANT_TRUE);
  EXPECT_EQ(ToUtf8(message), "");
  ASSERT_EQ(object->AuditBill(1, 2, erp.dsn(), &message, &done), S_OK);
  EXPECT_EQ(done, VARIANT_FALSE);
  EXPECT_EQ(ToUtf8(message), "该单据已被审核，不能再审核！");
  ASSERT_EQ(object->UnAuditBill(1, erp.dsn(), &message, &done), S_OK);
  EXPECT_EQ(done, VARIANT_TRUE);
  ASSERT_EQ(object->DeleteBill(1, erp.dsn(), &message, &done), S_OK);
  EXPECT_EQ(done, VARIANT_FALSE);
  EXPECT_EQ(ToUtf8(message), "Invalid object name 'FromT_CC_ZZCX'.");
  SysFreeString(message);

  TransactionMode mode{};
  EXPECT_EQ(object->get_TransMode(&mode), S_OK);
  EXPECT_EQ(mode, UsesTransaction);
}

TEST_F(AutomationTest, AGateTakesTheHostsOwnConnection) {
  HostedErp erp;
  const auto object = CreateEarly<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
  ComPtr<IDispatch> connection;
  connection.Attach(UnwrapObject(erp.erp().connection()));
  BSTR message = nullptr;
  VARIANT_BOOL allowed = VARIANT_FALSE;
  ASSERT_EQ(object->VerifyDataBeforeUnAudit(1, connection.Get(), &message, &allowed), S_OK);
  EXPECT_EQ(allowed, VARIANT_FALSE);
  EXPECT_EQ(ToUtf8(message), "该单据未审核，不能反审核！");
  SysFreeString(message);
  // No connection at all: the gate's own trap reports it.
  message = nullptr;
  ASSERT_EQ(object->VerifyDataBeforeUnAudit(1, nullptr, &message, &allowed), S_OK);
  EXPECT_EQ(ToUtf8(message), "Object variable or With block variable not set");
  SysFreeString(message);
}

TEST_F(AutomationTest, NullPointersAreRefusedAndHarmless) {
  HostedErp erp;
  const auto object = CreateEarly<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
  BSTR message = nullptr;
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(object->AuditBill(1, 2, erp.dsn(), nullptr, &done), E_POINTER);
  EXPECT_EQ(object->AuditBill(1, 2, erp.dsn(), &message, nullptr), E_POINTER);
  EXPECT_EQ(object->get_TransMode(nullptr), E_POINTER);
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);
  // A null text is the empty text.
  EXPECT_EQ(object->AuditBill(77, 2, erp.dsn(), &message, &done), S_OK);
  EXPECT_EQ(ToUtf8(message), "该单据不存在，不能审核！");
  SysFreeString(message);

  const auto info = CreateEarly<_PublicSysInfo>(CLSID_PublicSysInfo, IID__PublicSysInfo);
  SHORT answer = 0;
  VARIANT_BOOL supplier = VARIANT_FALSE;
  IDispatch* recordset = nullptr;
  EXPECT_EQ(info->CheckLimitPrice(nullptr, 1, erp.dsn(), nullptr, &recordset, &supplier, &answer),
            E_POINTER);
  EXPECT_EQ(info->CheckLimitPrice(nullptr, 1, erp.dsn(), &message, nullptr, &supplier, &answer),
            E_POINTER);
  EXPECT_EQ(info->CheckLimitPrice(nullptr, 1, erp.dsn(), &message, &recordset, nullptr, &answer),
            E_POINTER);
}

TEST_F(AutomationTest, ARaisedErrorIsAnHresultWithErrorInformation) {
  HostedErp erp;
  erp.erp().connection()->Execute("drop table t_PeriodDate");
  const auto info = CreateEarly<_PublicSysInfo>(CLSID_PublicSysInfo, IID__PublicSysInfo);
  VARIANT_BOOL inside = VARIANT_FALSE;
  EXPECT_EQ(info->DateInCurrentPeriod(erp.dsn(), 46096, &inside),
            static_cast<HRESULT>(0x800A0000 + 208));
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, error.GetAddressOf()), S_OK);
  BSTR description = nullptr;
  error->GetDescription(&description);
  EXPECT_EQ(ToUtf8(description), "Invalid object name 't_PeriodDate'.");
  SysFreeString(description);
}

TEST_F(AutomationTest, AClassAnswersItsOwnInterfaceOnly) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.CheckProfit");
  ComPtr<IUnknown> other;
  EXPECT_EQ(object->QueryInterface(IID__CheckLoss, reinterpret_cast<void**>(other.GetAddressOf())),
            E_NOINTERFACE);
  EXPECT_EQ(
      object->QueryInterface(IID__CheckProfit, reinterpret_cast<void**>(other.GetAddressOf())),
      S_OK);
}

}  // namespace
}  // namespace tavcc
