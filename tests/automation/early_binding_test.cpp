// Calls through the generated header and the vtable, as a C++ client makes them.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/interface_ids.h"
#include "host/automation/dispatch_object.h"

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

// An error as an early-bound client reads it: from the error information, and only of an object
// that says that its interface supports it.
struct ClientError {
  std::string source;
  std::string description;
};
ClientError ReadError(IUnknown& object, const IID& interface_id) {
  ComPtr<ISupportErrorInfo> support;
  if (FAILED(object.QueryInterface(IID_ISupportErrorInfo,
                                   reinterpret_cast<void**>(support.GetAddressOf()))) ||
      support->InterfaceSupportsErrorInfo(interface_id) != S_OK) {
    return {};
  }
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.GetAddressOf()) != S_OK) return {};
  BSTR source = nullptr, description = nullptr;
  info->GetSource(&source);
  info->GetDescription(&description);
  ClientError error{ToUtf8(source), ToUtf8(description)};
  SysFreeString(source);
  SysFreeString(description);
  return error;
}

TEST_F(AutomationTest, ARaisedErrorIsAnHresultWithErrorInformation) {
  HostedErp erp;
  erp.erp().connection()->Execute("drop table t_PeriodDate");
  const auto info = CreateEarly<_PublicSysInfo>(CLSID_PublicSysInfo, IID__PublicSysInfo);
  VARIANT_BOOL inside = VARIANT_FALSE;
  EXPECT_EQ(info->DateInCurrentPeriod(erp.dsn(), 46096, &inside),
            static_cast<HRESULT>(0x800A0000 + 208));
  const ClientError error = ReadError(*info.Get(), IID__PublicSysInfo);
  EXPECT_EQ(error.description, "Invalid object name 't_PeriodDate'.");
  EXPECT_EQ(error.source, "embedded database");
  // Where nobody says a source, it is the class.
  host_automation::OrderFault(2, host_automation::Fault::kError);
  EXPECT_EQ(info->DateInCurrentPeriod(erp.dsn(), 46096, &inside),
            static_cast<HRESULT>(0x800A0000 + 50000));
  const ClientError anonymous = ReadError(*info.Get(), IID__PublicSysInfo);
  EXPECT_EQ(anonymous.description, "host failed");
  EXPECT_EQ(anonymous.source, "TavM_CC_PlugIns.PublicSysInfo");
}

TEST_F(AutomationTest, ARefusalKeepsItsOwnSource) {
  HostedErp erp;
  erp.erp().connection()->Execute(
      "insert into T_CC_StockBill(FID,FClassTypeID,FStatus,FDate) values(5,1040001,1,'2026-03-10')");
  const auto object = CreateEarly<_clsOtherIn>(CLSID_clsOtherIn, IID__clsOtherIn);
  VARIANT answer;
  VariantInit(&answer);
  EXPECT_EQ(object->BeforeDel(erp.dsn(), 1040001, nullptr, 5, &answer), -5);
  const ClientError error = ReadError(*object.Get(), IID__clsOtherIn);
  EXPECT_EQ(error.description, "单据已经审核，不能删除。");
  EXPECT_EQ(error.source, "TavM_CC_PlugIns.clsOtherIn.BeforeDel");
}

// Every class supports error information for its own interface, and for no other.
TEST_F(AutomationTest, EveryClassSupportsErrorInformationOfItsInterface) {
  HostedErp erp;
  for (const InterfaceId& entry : InterfaceIds()) {
    const auto object = CreateEarly<IUnknown>(entry.class_id, entry.id);
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(object->QueryInterface(IID_ISupportErrorInfo,
                                     reinterpret_cast<void**>(support.GetAddressOf())),
              S_OK)
        << entry.class_name;
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(entry.id), S_OK) << entry.class_name;
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IUnknown), S_FALSE) << entry.class_name;
    // It is one object, whichever of its interfaces one asks.
    ComPtr<IUnknown> same, again;
    support->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(same.GetAddressOf()));
    object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(again.GetAddressOf()));
    EXPECT_EQ(same.Get(), again.Get());
  }
}

// An error of an earlier call is no error of this one.
TEST_F(AutomationTest, AGoodCallTakesOldErrorInformationAway) {
  HostedErp erp;
  const auto object = CreateEarly<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(object->AuditBill(1, 2, erp.dsn(), nullptr, &done), E_POINTER);
  EXPECT_EQ(ReadError(*object.Get(), IID__cls_CX).source, "TavM_CC_PlugIns.cls_CX");
  EXPECT_EQ(object->AuditBill(1, 2, erp.dsn(), nullptr, &done), E_POINTER);
  TransactionMode mode{};
  EXPECT_EQ(object->get_TransMode(&mode), S_OK);
  EXPECT_EQ(ReadError(*object.Get(), IID__cls_CX).source, "");
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
