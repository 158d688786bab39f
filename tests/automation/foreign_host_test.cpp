// A host whose members are named otherwise, or whose component makes no object: a clear error that
// names what is missing, never a crash.

#include "TavM_CC_PlugIns.h"
#include "automation/border/class_factory.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::ToUtf8;
using host_automation::Arguments;
using host_automation::Member;
using host_automation::NewDispatchObject;
using host_automation::OwnedObject;

std::vector<Member> global_members;

HRESULT MakeGlobal(REFIID wanted, void** object) {
  ComPtr<IDispatch> made;
  made.Attach(NewDispatchObject(global_members, nullptr));
  return made->QueryInterface(wanted, object);
}

struct CreationError {
  HRESULT result;
  std::string description;
};

// What making a component comes to where the host's global object has these members.
CreationError Create(std::vector<Member> members) {
  const Apartment apartment;
  global_members = std::move(members);
  ComPtr<IUnknown> factory;
  automation::MakeClassFactory(MakeGlobal, IID_IUnknown,
                               reinterpret_cast<void**>(factory.GetAddressOf()));
  CLSID id;
  EXPECT_EQ(CLSIDFromProgID(L"TavGlobal.Application", &id), S_OK);
  DWORD cookie = 0;
  EXPECT_EQ(
      CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
      S_OK);
  ComPtr<IUnknown> object;
  CreationError error{CoCreateInstance(CLSID_cls_CX, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                       reinterpret_cast<void**>(object.GetAddressOf())),
                      {}};
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.GetAddressOf()) == S_OK) {
    BSTR text = nullptr;
    info->GetDescription(&text);
    error.description = ToUtf8(text);
    SysFreeString(text);
  }
  CoRevokeClassObject(cookie);
  EXPECT_TRUE(ServerIsIdle());
  return error;
}

constexpr auto Error(int number) {
  return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number));
}

TEST(ForeignHost, AMissingMemberIsNamed) {
  const CreationError error = Create({});
  EXPECT_EQ(error.result, Error(438));
  EXPECT_EQ(error.description, "Object doesn't support this property or method: DbContext");
}

TEST(ForeignHost, SoIsOneOfAnObjectThatItHandsOut) {
  const CreationError error = Create({{"DbContext", [](const Arguments&) {
                                         return OwnedObject(NewDispatchObject({}, nullptr));
                                       }}});
  EXPECT_EQ(error.result, Error(438));
  EXPECT_EQ(error.description, "Object doesn't support this property or method: UserContext");
}

TEST(ForeignHost, AContextThatIsNoObjectIsNotSet) {
  const CreationError nothing =
      Create({{"DbContext", [](const Arguments&) -> Value { return ObjectPtr(); }}});
  EXPECT_EQ(nothing.result, Error(91));
  const CreationError number =
      Create({{"DbContext", [](const Arguments&) -> Value { return int32_t{7}; }}});
  EXPECT_EQ(number.result, Error(91));
}

}  // namespace
}  // namespace tavcc
