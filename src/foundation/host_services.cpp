#include "foundation/host_services.h"

#include <optional>
#include <utility>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/rule_watch.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// The references that a thread keeps.
struct HostCache {
  std::shared_ptr<GLData> gl_data;
  std::shared_ptr<ProfileReader> system_profile;
  std::shared_ptr<ResourceLoader> resource_loader;
};

// A bare pointer: a thread's end runs no destructor that could still find its storage (see
// trap.cpp). Who ends a thread releases the host objects before.
thread_local HostCache* thread_cache = nullptr;

HostCache& ThreadCache() {
  if (thread_cache == nullptr) thread_cache = new HostCache;
  return *thread_cache;
}

}  // namespace

RecordsetPtr ExecuteSQL(Host& host, std::string_view sDsn, const SqlText& strSQL) {
  return host.NewApplicationConnection()->Execute(sDsn, strSQL);
}

std::string GetFirstValue(Host& host, std::string_view sDsn, const SqlText& strSQL) {
  try {
    const RecordsetPtr rows = host.NewClassInfo()->GetData(sDsn, strSQL);
    return rows->AtEnd() ? "" : host.FieldText(rows->Field(0));
  } catch (const AutomationError&) {
    return "";
  }
}

Value GetProfile(Host& host, std::string_view sDsn, std::string_view key,
                 std::string_view category) {
  return host.NewSystemProfile()->GetProfile(sDsn, category, key);
}

bool CheckADOError(Host& host, const Connection& cn, bool bRaise) {
  const std::vector<ConnectionError> errors = cn.Errors();
  if (errors.empty()) return false;

  std::optional<int32_t> number;  // of the first that is a real one
  std::string text;
  std::unique_ptr<ErrorChecker> checker;
  try {
    checker = host.NewErrorChecker();
  } catch (const AutomationError& error) {
    // Without a checker every list of errors counts as a real one, under the creation's number.
    number = error.number();
    text = Cat("Number:", *number, "\r\nDescription:", error.description(), "\r\n");
  }
  for (const ConnectionError& error : errors) {
    if (!number && checker->IsError(error)) number = error.number;
    CatTo(text, error.description, "\r\n");
  }
  if (bRaise && number) throw AutomationError(*number, "", text);
  return number.has_value();
}

bool IsInArray(const Value& value, const VariantArray& array) {
  const int upper_bound = array.lower_bound + static_cast<int>(array.elements.size()) - 1;
  for (int i = array.lower_bound; i <= upper_bound; ++i) {
    if (VariantEquals(array.elements[static_cast<size_t>(i - array.lower_bound)], value)) {
      return true;
    }
  }
  return false;
}

bool CheckBillRight(Host& host, int32_t class_type_id, const Value& argument) {
  try {
    const auto service = host.NewDataService();
    service->SetClassTypeID(class_type_id);
    const bool right = ToBoolean(service->CheckBillHaveRight(argument));
    if (RuleWatch* const watch = RuleWatch::OfThread()) {
      watch->HostAnswered(HostQuestion::kRight, "", Cat(class_type_id), right);
    }
    return right;
  } catch (const AutomationError&) {
    return false;
  }
}

std::shared_ptr<GLData> GetGLData(Host& host) {
  HostCache& cache = ThreadCache();
  if (cache.gl_data == nullptr) cache.gl_data = host.NewGLData();
  return cache.gl_data;
}

std::shared_ptr<ProfileReader> GetSysProfile(Host& host) {
  HostCache& cache = ThreadCache();
  if (cache.system_profile == nullptr) cache.system_profile = GetGLData(host)->SystemProfile();
  return cache.system_profile;
}

Value GetICProfile(Host& host, std::string_view key, const Value& fallback) {
  return GetSysProfile(host)->GetSystemProfile("IC", key, fallback);
}

Value GetHostValue(Host& host, std::string_view key, const Value& fallback) {
  try {
    const Dictionary* published = host.PublishedValues();
    const bool is_published = published != nullptr && published->Lookup(key);
    const Value value = is_published ? published->Item(key) : Value();
    RuleWatch::TellHostAnswer(HostQuestion::kPublished, "", key, value);
    return is_published ? value : fallback;
  } catch (const AutomationError&) {
    return Empty{};
  }
}

int32_t GetIndustryType(Host& host) {
  return ToLong(GetHostValue(host, "IndustryType", int32_t{0}));
}

std::shared_ptr<ResourceLoader>& CachedResourceLoader() {
  return ThreadCache().resource_loader;
}

void ReleaseHostObjects() {
  if (thread_cache == nullptr) return;
  HostCache& cache = *thread_cache;
  cache.gl_data.reset();
  cache.system_profile.reset();
  cache.resource_loader.reset();
  delete std::exchange(thread_cache, nullptr);
}

}  // namespace tavcc
