// An automation value: what a VARIANT is to the host, without its platform.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/date_time.h"
#include "foundation/decimal.h"

namespace tavcc {

// Whatever a value can refer to: a dictionary, a vector, a recordset, a connection, or an object of
// the host that the library only hands on. Shared, as automation objects are.
class Object {
 public:
  virtual ~Object() = default;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

using ObjectPtr = std::shared_ptr<Object>;

struct Empty {
  friend bool operator==(Empty, Empty) { return true; }
};
struct Null {
  friend bool operator==(Null, Null) { return true; }
};
// An optional argument that the caller left out.
struct Missing {
  friend bool operator==(Missing, Missing) { return true; }
};

class Value {
 public:
  // The order is that of the alternatives of Storage.
  enum class Kind {
    kEmpty,
    kNull,
    kMissing,
    kBoolean,
    kInteger,  // 16 bits
    kLong,     // 32 bits
    kDouble,
    kDecimal,
    kDate,
    kText,    // UTF-8
    kObject,  // may be a null reference ("Nothing")
  };

  Value() = default;  // Empty
  Value(Empty) {}
  Value(Null value) : storage_(value) {}
  Value(Missing value) : storage_(value) {}
  Value(bool value) : storage_(value) {}
  Value(int16_t value) : storage_(value) {}
  Value(int32_t value) : storage_(value) {}
  Value(double value) : storage_(value) {}
  Value(Decimal value) : storage_(value) {}
  Value(DateTime value) : storage_(value) {}
  Value(std::string value) : storage_(std::move(value)) {}
  Value(std::string_view value) : storage_(std::string(value)) {}
  Value(const char* value) : storage_(std::string(value)) {}
  Value(ObjectPtr value) : storage_(std::move(value)) {}
  template <class T>
  requires std::is_base_of_v<Object, T> Value(std::shared_ptr<T> value)
      : storage_(ObjectPtr(std::move(value))) {}

  Kind kind() const { return static_cast<Kind>(storage_.index()); }
  bool IsEmpty() const { return kind() == Kind::kEmpty; }
  bool IsNull() const { return kind() == Kind::kNull; }
  bool IsMissing() const { return kind() == Kind::kMissing; }
  bool IsText() const { return kind() == Kind::kText; }
  bool IsObject() const { return kind() == Kind::kObject; }

  // The alternative itself; the kind must be the right one. Conversions are in conversions.h.
  bool boolean() const { return std::get<bool>(storage_); }
  int16_t integer() const { return std::get<int16_t>(storage_); }
  int32_t long_integer() const { return std::get<int32_t>(storage_); }
  double number() const { return std::get<double>(storage_); }
  const Decimal& decimal() const { return std::get<Decimal>(storage_); }
  DateTime date() const { return std::get<DateTime>(storage_); }
  const std::string& text() const { return std::get<std::string>(storage_); }
  const ObjectPtr& object() const { return std::get<ObjectPtr>(storage_); }

  // Same kind and same content; objects are compared by identity. Not automation's "=", which is
  // VariantEquals.
  friend bool operator==(const Value&, const Value&) = default;

 private:
  using Storage = std::variant<Empty, Null, Missing, bool, int16_t, int32_t, double, Decimal,
                               DateTime, std::string, ObjectPtr>;
  Storage storage_;
};

}  // namespace tavcc
