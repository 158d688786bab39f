// Late-bound calls that are refused before anything runs: variables that cannot take a result, null
// references, objects of another kind, malformed argument lists. None of them sends a statement.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/late_call.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::NewBstr;
using automation::ToUtf8;

VARIANT Reference(VARTYPE type, void* variable) {
  VARIANT out;
  VariantInit(&out);
  out.vt = static_cast<VARTYPE>(type | VT_BYREF);
  out.byref = variable;
  return out;
}

VARIANT Unknown(IUnknown* object) {  // borrowed
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_UNKNOWN;
  out.punkVal = object;
  return out;
}

// An object that has nothing but references.
class BareUnknown final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    *object = id == IID_IUnknown ? this : nullptr;
    return *object != nullptr ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 1; }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
};

class RefusedCall : public AutomationTest {
 protected:
  RefusedCall() { erp_.erp().log().Clear(); }
  void TearDown() override {
    object_.Reset();
    AutomationTest::TearDown();
  }

  // Audits the assembly bill 1 with this as the message argument: refused, and nothing was sent.
  void ExpectRefused(const VARIANT& message, HRESULT result) {
    erp_.erp().log().Clear();
    LateCall call{{Long(1), Long(2), Text(erp_.dsn()), message}, {}};
    EXPECT_EQ(call.On(*object_.Get(), L"AuditBill"), result);
    EXPECT_EQ(call.bad_argument, 0u);
    EXPECT_TRUE(erp_.erp().log().statements().empty());
  }

  HostedErp erp_;
  ComPtr<IDispatch> object_ = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
};

TEST_F(RefusedCall, AVariableThatCannotTakeAText) {
  LONG number = 5;
  ExpectRefused(Reference(VT_I4, &number), DISP_E_TYPEMISMATCH);
  VARIANT_BOOL truth = VARIANT_TRUE;
  ExpectRefused(Reference(VT_BOOL, &truth), DISP_E_TYPEMISMATCH);
  double real = 5;
  ExpectRefused(Reference(VT_R8, &real), DISP_E_TYPEMISMATCH);
  IDispatch* nothing = nullptr;
  ExpectRefused(Reference(VT_DISPATCH, &nothing), DISP_E_TYPEMISMATCH);
  SAFEARRAY* array = nullptr;
  ExpectRefused(Reference(VT_ARRAY | VT_BSTR, &array), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(number, 5);
}

TEST_F(RefusedCall, ANullReference) {
  ExpectRefused(TextReference(nullptr), E_POINTER);
  ExpectRefused(VariantReference(nullptr), E_POINTER);
}

TEST_F(RefusedCall, ANullReferenceInside) {
  VARIANT inner = TextReference(nullptr);
  ExpectRefused(VariantReference(&inner), DISP_E_TYPEMISMATCH);
  VARIANT deeper = VariantReference(nullptr);
  ExpectRefused(VariantReference(&deeper), DISP_E_TYPEMISMATCH);
  VARIANT round;
  round = VariantReference(&round);
  ExpectRefused(VariantReference(&round), DISP_E_TYPEMISMATCH);
}

TEST_F(RefusedCall, AnObjectOfAnotherKind) {
  const auto info = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  BareUnknown bare;
  ComPtr<IDispatch> stranger;
  stranger.Attach(host_automation::NewDispatchObject({}, nullptr));
  for (const VARIANT& dictionary : {Unknown(&bare), Dispatch(stranger.Get()), Long(7)}) {
    BSTR message = nullptr;
    erp_.erp().log().Clear();
    LateCall call{{dictionary, Long(1), Text(erp_.dsn()), TextReference(&message)}, {}};
    EXPECT_EQ(call.On(*info.Get(), L"CheckCredit"), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.bad_argument, 3u);
    EXPECT_TRUE(erp_.erp().log().statements().empty());
  }
}

// An in/out dictionary: the variable must be one for objects, and what is in it a dictionary.
TEST_F(RefusedCall, AVariableForAnotherKindOfObject) {
  const auto info = CreateByProgID(L"TavM_CC_PlugIns.PublicSysInfo");
  ComPtr<IDispatch> bills;
  bills.Attach(host_automation::FaceOf(erp_.erp().host().NewVector()));
  IUnknown* unknown = nullptr;
  BSTR text = nullptr;
  IDispatch* vector = bills.Get();
  for (const VARIANT& dct : {Reference(VT_UNKNOWN, &unknown), Reference(VT_BSTR, &text),
                             Reference(VT_DISPATCH, &vector)}) {
    VARIANT batch;
    VariantInit(&batch);
    batch.vt = VT_BOOL;
    erp_.erp().log().Clear();
    LateCall call{{Dispatch(bills.Get()), Long(1), Text(erp_.dsn()), batch, dct}, {}};
    EXPECT_EQ(call.On(*info.Get(), L"AuditBill"), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.bad_argument, 0u);
    EXPECT_TRUE(erp_.erp().log().statements().empty());
  }
}

// A VARIANT by reference may refer to one that is by reference itself: the innermost variable is
// read and written.
TEST_F(RefusedCall, NestedReferencesAreFollowedInReadingAndWriting) {
  BSTR message = NewBstr("earlier");
  VARIANT inner = TextReference(&message);
  VARIANT middle = VariantReference(&inner);
  LateCall call{{Long(77), Long(2), Text(erp_.dsn()), VariantReference(&middle)}, {}};
  ASSERT_EQ(call.On(*object_.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(inner.vt, VT_BSTR | VT_BYREF);
  EXPECT_EQ(ToUtf8(message), "该单据不存在，不能审核！");
  SysFreeString(message);
  LONG id = 77;
  VARIANT inner_id = Reference(VT_I4, &id);
  UniqueVariant told;
  LateCall reading{
      {VariantReference(&inner_id), Long(2), Text(erp_.dsn()), VariantReference(told.get())}, {}};
  ASSERT_EQ(reading.On(*object_.Get(), L"AuditBill"), S_OK);
  EXPECT_EQ(ToUtf8(told.get()->bstrVal), "该单据不存在，不能审核！");
}

// ---- Argument lists ----------------------------------------------------------------------------

constexpr DISPID kAuditBill = 0x60030003;

class MalformedCall : public RefusedCall {
 protected:
  HRESULT Invoke(const DISPPARAMS& parameters, REFIID interface_id = IID_NULL) {
    DISPPARAMS copy = parameters;
    bad_ = 99;
    const HRESULT result = object_->Invoke(kAuditBill, interface_id, 0, DISPATCH_METHOD, &copy,
                                           nullptr, nullptr, &bad_);
    EXPECT_TRUE(erp_.erp().log().statements().empty());
    return result;
  }

  UINT bad_ = 0;
};

TEST_F(MalformedCall, MoreNamesThanArguments) {
  VARIANT one = Long(1);
  DISPID names[] = {0, 1};
  EXPECT_EQ(Invoke({&one, names, 1, 2}), DISP_E_BADPARAMCOUNT);
}

TEST_F(MalformedCall, NoListWhereThereMustBeOne) {
  VARIANT one = Long(1);
  EXPECT_EQ(Invoke({nullptr, nullptr, 1, 0}), E_INVALIDARG);
  EXPECT_EQ(Invoke({&one, nullptr, 1, 1}), E_INVALIDARG);
  EXPECT_EQ(
      object_->Invoke(kAuditBill, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
      E_POINTER);
}

TEST_F(MalformedCall, ANameThatIsNoParameterOrIsThereAlready) {
  BSTR message = nullptr;
  VARIANT reversed[] = {Long(9), TextReference(&message), Text(erp_.dsn()), Long(1)};
  for (const DISPID unknown : {DISPID(4), DISPID(-3), DISPID(100), DISPID(0), DISPID(1)}) {
    DISPID name = unknown;
    // Positions 0 to 2 are taken by position.
    EXPECT_EQ(Invoke({reversed, &name, 4, 1}), DISP_E_PARAMNOTFOUND) << unknown;
    EXPECT_EQ(bad_, 0u);
  }
  VARIANT two[] = {Long(9), Long(9)};
  DISPID twice[] = {1, 1};
  EXPECT_EQ(Invoke({two, twice, 2, 2}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(bad_, 1u);
}

TEST_F(MalformedCall, AnotherInterface) {
  EXPECT_EQ(Invoke({nullptr, nullptr, 0, 0}, IID_IDispatch), DISP_E_UNKNOWNINTERFACE);
  LPOLESTR name = const_cast<LPOLESTR>(L"AuditBill");
  DISPID id = 0;
  EXPECT_EQ(object_->GetIDsOfNames(IID_IDispatch, &name, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
}

}  // namespace
}  // namespace tavcc
