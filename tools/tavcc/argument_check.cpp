#include "tavcc/argument_check.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "foundation/bill_kinds.h"
#include "foundation/text.h"
#include "language/language.h"
#include "registry/dictionary_keys.h"
#include "scenario/scenario.h"
#include "tavcc/command.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

constexpr const char* kUnlessMeant = Translatable(" (--unchecked sends it as it is)");

// The names that the methods have for the direction of an audit.
constexpr std::string_view kDirections[] = {"intCheckType", "CheckType", "lCheckType", "Check",
                                            "CheckDir"};

const Json* FindIgnoringCase(const Json& dictionary, std::string_view key) {
  for (const Json::Member& member : dictionary.items()) {
    if (EqualsIgnoringCase(member.key, key)) return &member.value;
  }
  return nullptr;
}

// One dictionary of an argument; `place` says which.
class DictionaryCheck {
 public:
  DictionaryCheck(const Method& method, std::span<const DictionaryKey> keys, std::string place)
      : method_(method), keys_(keys), place_(std::move(place)) {}

  void Check(const Json& dictionary) const {
    for (const Json::Member& member : dictionary.items()) CheckMember(member);
    for (const DictionaryKey& key : keys_) {
      if (IsNeeded(key, dictionary) && FindIgnoringCase(dictionary, key.name) == nullptr) {
        throw CommandError(Say("argument {}: {} needs \"{}\" ({}){}", place_, method_.name,
                               key.name, InLanguage(key.meaning), Translated(kUnlessMeant)));
      }
    }
  }

 private:
  void CheckMember(const Json::Member& member) const {
    const DictionaryKey* const key = FindKey(keys_, member.key);
    if (key != nullptr && key->use == KeyUse::kWritten) return;
    if (key != nullptr) return CheckInner(*key, member);
    if (const DictionaryKey* const any = AnyKey(keys_)) return CheckInner(*any, member);
    if (IsKeyOfBills(member.key)) return;
    std::vector<std::string> known;
    for (const DictionaryKey& other : keys_) known.emplace_back(other.name);
    throw CommandError(Say("argument {}: {} reads no key \"{}\"{}{}", place_, method_.name,
                           member.key, DidYouMean(member.key, known), Translated(kUnlessMeant)));
  }

  void CheckInner(const DictionaryKey& key, const Json::Member& member) const {
    if (key.keys.empty()) return;
    const std::string place = place_ + "." + member.key;
    if (key.type == KeyType::kDictionary && member.value.is_object()) {
      DictionaryCheck(method_, key.keys, place).Check(member.value);
    }
    if (key.type != KeyType::kVector || !member.value.is_array()) return;
    for (size_t i = 0; i < member.value.size(); ++i) {
      DictionaryCheck(method_, key.keys, fmt::format("{}[{}]", place, i + 1))
          .Check(member.value[i]);
    }
  }

  static bool IsNeeded(const DictionaryKey& key, const Json& dictionary) {
    if (key.use != KeyUse::kNeeded) return false;
    if (key.needed_by.empty()) return true;
    const Json* const cls = FindIgnoringCase(dictionary, "ClassTypeID");
    if (cls == nullptr || !cls->is_number_integer()) return false;
    return std::ranges::find(key.needed_by, cls->get<int64_t>()) != key.needed_by.end();
  }

  const Method& method_;
  const std::span<const DictionaryKey> keys_;
  const std::string place_;
};

void CheckDirection(const Parameter& parameter, const Json& value) {
  if (std::ranges::find(kDirections, parameter.name) == std::end(kDirections)) return;
  if (value == Json(kAudit) || value == Json(kUnAudit)) return;
  throw CommandError(Say("argument {}: {} is no direction: 1 audits, -1 un-audits{}",
                         parameter.name, Show(value), Translated(kUnlessMeant)));
}

}  // namespace

void CheckMeaning(const ClassDescription& cls, const Method& method, const Json& arguments) {
  for (const Parameter& parameter : method.parameters) {
    const std::string name(parameter.name);
    const Json* const given = arguments.find(name);
    if (given != nullptr) CheckDirection(parameter, *given);
    const auto keys = KeysOf(cls, method, parameter);
    if (keys.empty()) continue;
    if (parameter.type == ArgumentType::kDictionary && (given == nullptr || given->is_object())) {
      if (given == nullptr && (parameter.optional || parameter.in_out)) continue;
      DictionaryCheck(method, keys, name).Check(given == nullptr ? Json::object() : *given);
    } else if (given != nullptr && given->is_array()) {
      for (size_t i = 0; i < given->size(); ++i) {
        if (!(*given)[i].is_object()) continue;
        DictionaryCheck(method, keys, fmt::format("{}[{}]", name, i + 1)).Check((*given)[i]);
      }
    }
  }
}

}  // namespace tavcc
