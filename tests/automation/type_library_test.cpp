// The registered type library against the class registry: every function, slot, id, parameter, flag
// and default.

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/interface_ids.h"
#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::FromVariant;
using automation::ToUtf8;

// The vtable side of a class's dual interface.
ComPtr<ITypeInfo> Interface(ITypeLib& library, const IID& id) {
  ComPtr<ITypeInfo> dispatch;
  if (FAILED(library.GetTypeInfoOfGuid(id, dispatch.GetAddressOf()))) return nullptr;
  HREFTYPE reference;
  ComPtr<ITypeInfo> info;
  if (FAILED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) return dispatch;
  dispatch->GetRefTypeInfo(reference, info.GetAddressOf());
  return info;
}

std::string Type(ITypeInfo& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_BOOL:
      return "BOOL";
    case VT_I2:
      return "I2";
    case VT_I4:
      return "I4";
    case VT_R8:
      return "R8";
    case VT_DATE:
      return "DATE";
    case VT_BSTR:
      return "BSTR";
    case VT_VARIANT:
      return "VARIANT";
    case VT_DISPATCH:
      return "object";
    case VT_PTR: {
      const std::string target = Type(info, *type.lptdesc);
      return target == "IDispatch" ? "object" : target + "*";
    }
    case VT_USERDEFINED: {
      ComPtr<ITypeInfo> named;
      BSTR name = nullptr;
      info.GetRefTypeInfo(type.hreftype, named.GetAddressOf());
      named->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
      const std::string text = ToUtf8(name);
      SysFreeString(name);
      return text;
    }
    default:
      return "type " + std::to_string(type.vt);
  }
}

// What the registry's type is in a type library; `pointer` for results and in/out parameters.
std::string Expected(ArgumentType type, bool pointer) {
  std::string text(TypeText(type));
  if (type >= ArgumentType::kDictionary && type <= ArgumentType::kObject) text = "object";
  if (type == ArgumentType::kTransactionMode) text = "TransactionMode";
  return pointer ? text + "*" : text;
}

void CompareParameter(ITypeInfo& info, const ELEMDESC& element, const Parameter& parameter) {
  const USHORT flags = element.paramdesc.wParamFlags;
  EXPECT_EQ(Type(info, element.tdesc), Expected(parameter.type, parameter.in_out));
  EXPECT_TRUE((flags & PARAMFLAG_FIN) != 0);
  EXPECT_EQ((flags & PARAMFLAG_FOUT) != 0, parameter.in_out);
  EXPECT_EQ((flags & PARAMFLAG_FOPT) != 0, parameter.optional);
  // An in parameter that may be left out needs a value for it in an early-bound call.
  EXPECT_EQ((flags & PARAMFLAG_FHASDEFAULT) != 0, parameter.optional && !parameter.in_out);
  if ((flags & PARAMFLAG_FHASDEFAULT) == 0) return;
  const VARIANT& value = element.paramdesc.pparamdescex->varDefaultValue;
  switch (parameter.type) {
    case ArgumentType::kText:
      EXPECT_EQ(ToUtf8(value.bstrVal), "");
      return;
    case ArgumentType::kBoolean:
    case ArgumentType::kLong:
      EXPECT_EQ(ToLong(FromVariant(value)), parameter.default_value.value_or(0));
      return;
    default:
      EXPECT_EQ(NumberOrZero(value.vt == VT_DISPATCH ? Value(0) : FromVariant(value)), 0);
  }
}

void CompareMethod(ITypeInfo& info, const FUNCDESC& function, const Method& method) {
  constexpr int kDispatchSlots = 7;
  EXPECT_EQ(static_cast<uint32_t>(function.memid), method.dispatch_id);
  const int slot = kDispatchSlots + method.slot;
  EXPECT_EQ(function.oVft, slot * static_cast<int>(sizeof(void*)));
  EXPECT_EQ(function.invkind, method.is_property ? INVOKE_PROPERTYGET : INVOKE_FUNC);
  const size_t count = method.parameters.size();
  ASSERT_EQ(static_cast<size_t>(function.cParams), count + 1);

  std::vector<BSTR> names(count + 1);
  UINT found = 0;
  info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &found);
  EXPECT_EQ(ToUtf8(names[0]), method.name);
  for (size_t i = 0; i < count; ++i) {
    SCOPED_TRACE(std::string(method.parameters[i].name));
    if (i + 1 < found) {
      EXPECT_EQ(ToUtf8(names[i + 1]), method.parameters[i].name);
    }
    CompareParameter(info, function.lprgelemdescParam[i], method.parameters[i]);
  }
  EXPECT_GE(found, count + 1);
  for (UINT i = 0; i < found; ++i) SysFreeString(names[i]);

  const ELEMDESC& result = function.lprgelemdescParam[count];
  EXPECT_TRUE((result.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0);
  EXPECT_EQ(Type(info, result.tdesc), Expected(method.result, true));
}

TEST_F(AutomationTest, TheRegisteredTypeLibraryIsTheClassRegistry) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadRegTypeLib(LIBID_TavM_CC_PlugIns, 1, 0, 0, library.GetAddressOf()), S_OK);
  for (const InterfaceId& entry : InterfaceIds()) {
    SCOPED_TRACE(std::string(entry.class_name));
    const ClassDescription& cls = *FindClass(entry.class_name);
    const ComPtr<ITypeInfo> info = Interface(*library.Get(), entry.id);
    ASSERT_NE(info.Get(), nullptr);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    ASSERT_EQ(attributes->cFuncs, cls.methods.size());
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
      FUNCDESC* function = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &function), S_OK);
      SCOPED_TRACE(std::string(cls.methods[i].name));
      CompareMethod(*info.Get(), *function, cls.methods[i]);
      info->ReleaseFuncDesc(function);
    }
    info->ReleaseTypeAttr(attributes);
  }
}

TEST_F(AutomationTest, TheTypeLibraryHasItsNameHelpTextAndHelpFile) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadRegTypeLib(LIBID_TavM_CC_PlugIns, 1, 0, 0, library.GetAddressOf()), S_OK);
  BSTR name = nullptr, help = nullptr, file = nullptr;
  ASSERT_EQ(library->GetDocumentation(-1, &name, &help, nullptr, &file), S_OK);
  EXPECT_EQ(ToUtf8(name), "TavM_CC_PlugIns");
  EXPECT_EQ(ToUtf8(help), "TavM_CC_PlugIns");
  const std::string path = ToUtf8(file);
  EXPECT_EQ(path.substr(path.find_last_of("\\/") + 1), "m8indCG.chm");
  SysFreeString(name);
  SysFreeString(help);
  SysFreeString(file);
}

TEST_F(AutomationTest, AnObjectTellsItsOwnTypeInformation) {
  HostedErp erp;
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  UINT count = 0;
  EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.GetAddressOf()), S_OK);
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  EXPECT_TRUE(attributes->guid == IID__cls_CX);
  info->ReleaseTypeAttr(attributes);
  EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.ReleaseAndGetAddressOf()),
            DISP_E_BADINDEX);
}

}  // namespace
}  // namespace tavcc
