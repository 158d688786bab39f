// Port: the host's keyed dictionary: a bill's header values, an entry line, a page, a result.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/value.h"

namespace tavcc {

class Dictionary : public Object {
 public:
  // The value under the key; Empty when there is none. How keys are compared is the host's.
  virtual Value Item(std::string_view key) const = 0;
  // Stores the value, adding the key when it is new.
  virtual void SetItem(std::string_view key, Value value) = 0;
  // The value under the key, or `fallback` when there is none.
  virtual Value ItemOr(std::string_view key, Value fallback) const = 0;
  // Whether the key is present, whatever its value.
  virtual bool Lookup(std::string_view key) const = 0;
};

using DictionaryPtr = std::shared_ptr<Dictionary>;

// The dictionary or vector (T) that a value refers to. Errors: 13 when it is no such object, 91 for
// a null reference, 94 for Null; Empty and an omitted argument are 13.
template <class T>
std::shared_ptr<T> ToObject(const Value& value);

// The nested item of a dictionary, e.g. NestedItem(data, "Page1", key, "FFLD"). Errors: those of
// ToObject where an inner one is missing or no dictionary.
template <class... Keys>
Value NestedItem(const Dictionary& dictionary, std::string_view key, const Keys&... keys) {
  Value item = dictionary.Item(key);
  if constexpr (sizeof...(keys) == 0) {
    return item;
  } else {
    return NestedItem(*ToObject<Dictionary>(item), keys...);
  }
}

[[noreturn]] void RaiseNotAnObject(const Value& value);

template <class T>
std::shared_ptr<T> ToObject(const Value& value) {
  if (value.IsObject() && value.object() != nullptr) {
    if (auto object = std::dynamic_pointer_cast<T>(value.object())) return object;
  }
  RaiseNotAnObject(value);
}

}  // namespace tavcc
