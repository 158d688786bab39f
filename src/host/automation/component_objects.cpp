#include "host/automation/component_objects.h"

#include <string>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/text.h"
#include "host/automation/ado_objects.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc::host_automation {

namespace {

thread_local Host* thread_host = nullptr;

constexpr std::string_view kDataServiceProgId = "TavClassTpl.DataSrv";

Value UserFace(const std::shared_ptr<UserContext>& user) {
  return OwnedObject(NewDispatchObject(
      {{"UserID", [=](const Arguments&) -> Value { return user->UserID(); }}}, nullptr));
}

Value ContextFace(const std::shared_ptr<DbContext>& context) {
  return OwnedObject(NewDispatchObject(
      {
          {"UserContext", [=](const Arguments&) { return UserFace(context->GetUserContext()); }},
          {"Bind",
           [=](const Arguments& a) -> Value { return context->Bind(ToText(a[0])), Empty{}; }},
          {"Connection", [=](const Arguments&) -> Value { return context->GetConnection(); }},
          {"ReadyFirst", [=](const Arguments&) -> Value { return context->ReadyFirst(), Empty{}; }},
          {"ReadySecond",
           [=](const Arguments&) -> Value { return context->ReadySecond(), Empty{}; }},
      },
      nullptr));
}

Value ProfileReaderFace(const std::shared_ptr<ProfileReader>& reader) {
  return OwnedObject(NewDispatchObject({{"GetSystemProfile",
                                         [=](const Arguments& a) {
                                           return reader->GetSystemProfile(ToText(a[0]),
                                                                           ToText(a[1]), a[2]);
                                         }}},
                                       nullptr));
}

}  // namespace

void SetThreadHost(Host* host) {
  thread_host = host;
}

Host& ThreadHost() {
  if (thread_host == nullptr) throw AutomationError(RuntimeError::kCannotCreateObject);
  return *thread_host;
}

void Publish(const DictionaryPtr& dictionary) {
  static IDispatch* published = nullptr;
  const std::string name = std::to_string(GetCurrentProcessId());
  if (published != nullptr) {
    RemovePropA(GetDesktopWindow(), name.c_str());
    published->Release();
  }
  published = dictionary == nullptr ? nullptr : FaceOf(dictionary);
  if (published != nullptr) SetPropA(GetDesktopWindow(), name.c_str(), published);
}

IDispatch* NewGlobal() {
  ThreadHost();  // without one there is none
  return NewDispatchObject(
      {{"DbContext", [](const Arguments&) { return ContextFace(ThreadHost().NewDbContext()); }},
       {"CreateObject",
        [](const Arguments& a) -> Value {
          if (!EqualsIgnoringCase(ToText(a[0]), kDataServiceProgId)) {
            throw AutomationError(RuntimeError::kCannotCreateObject);
          }
          return OwnedObject(NewDataServiceObject());
        }}},
      nullptr);
}

IDispatch* NewApplicationConnectionObject() {
  const std::shared_ptr<ApplicationConnection> runner = ThreadHost().NewApplicationConnection();
  return NewDispatchObject(
      {{"Execute",
        [=](const Arguments& a) -> Value { return runner->Execute(ToText(a[0]), ToText(a[1])); }}},
      nullptr);
}

IDispatch* NewClassInfoObject() {
  const std::shared_ptr<ClassInfo> info = ThreadHost().NewClassInfo();
  return NewDispatchObject(
      {{"GetData",
        [=](const Arguments& a) -> Value { return info->GetData(ToText(a[0]), ToText(a[1])); }}},
      nullptr);
}

IDispatch* NewSystemProfileObject() {
  const std::shared_ptr<SystemProfile> profile = ThreadHost().NewSystemProfile();
  return NewDispatchObject({{"GetProfile",
                             [=](const Arguments& a) {
                               return profile->GetProfile(ToText(a[0]), ToText(a[1]), ToText(a[2]));
                             }}},
                           nullptr);
}

IDispatch* NewErrorCheckerObject() {
  const std::shared_ptr<ErrorChecker> checker = ThreadHost().NewErrorChecker();
  return NewDispatchObject({{"IsError",
                             [=](const Arguments& a) -> Value {
                               return checker->IsError(ToObject<ErrorEntry>(a[0])->error);
                             }}},
                           nullptr);
}

IDispatch* NewDataServiceObject() {
  const std::shared_ptr<DataService> service = ThreadHost().NewDataService();
  return NewDispatchObject(
      {{"ClassTypeID", nullptr,
        [=](const Arguments& a) -> Value {
          return service->SetClassTypeID(ToLong(a.last())), Empty{};
        }},
       {"CheckBillHaveRight",
        [=](const Arguments& a) { return service->CheckBillHaveRight(a[0]); }}},
      nullptr);
}

IDispatch* NewGLDataObject() {
  const std::shared_ptr<GLData> data = ThreadHost().NewGLData();
  return NewDispatchObject(
      {{"SystemProfile",
        [=](const Arguments&) { return ProfileReaderFace(data->SystemProfile()); }}},
      nullptr);
}

IDispatch* NewResourceLoaderObject() {
  const std::shared_ptr<ResourceLoader> loader = ThreadHost().NewResourceLoader();
  return NewDispatchObject(
      {
          {"LanguageID", [=](const Arguments&) -> Value { return loader->LanguageID(); },
           [=](const Arguments& a) -> Value {
             return loader->SetLanguageID(ToText(a.last())), Empty{};
           }},
          {"ResFileBaseName", nullptr,
           [=](const Arguments& a) -> Value {
             return loader->SetResFileBaseName(ToText(a.last())), Empty{};
           }},
          {"Unload", [=](const Arguments&) -> Value { return loader->Unload(), Empty{}; }},
          {"LoadString",
           [=](const Arguments& a) -> Value { return loader->LoadString(ToText(a[0])); }},
      },
      nullptr);
}

IDispatch* NewDictionaryObject() {
  return FaceOf(ThreadHost().NewDictionary());
}
IDispatch* NewVectorObject() {
  return FaceOf(ThreadHost().NewVector());
}

IDispatch* NewFunctionsObject() {
  Host& host = ThreadHost();
  return NewDispatchObject(
      {{"FieldText", [&host](const Arguments& a) -> Value { return host.FieldText(a[0]); }},
       {"Format",
        [&host](const Arguments& a) -> Value {
          const auto list = ToObject<Vector>(a[1]);
          std::vector<Value> values;
          for (int i = list->LBound(); i <= list->UBound(); ++i) values.push_back(list->Item(i));
          return host.FormatPlaceholders(ToText(a[0]), values);
        }}},
      nullptr);
}

}  // namespace tavcc::host_automation
