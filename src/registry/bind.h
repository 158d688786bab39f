// Makes an Invoker of a rule: `Bind<&VerifyDataBeforeAudit>` is a function that unpacks the
// arguments, calls the rule and writes its in/out arguments back.
//
// A rule's first parameter is the object (PlugIn&); the others follow the method's parameters:
//
//   in       bool, int16_t, int32_t, double, DateTime, std::string_view, const Value&,
//            Dictionary&, Vector&, Connection& (a null reference becomes one whose every use is
//            error 91), Dictionary*, Vector* (null where the caller passed nothing), ConnectionPtr,
//            ObjectPtr
//   in/out   bool&, std::string&, DictionaryPtr&, VectorPtr&, RecordsetPtr&, ObjectPtr&
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "foundation/nothing.h"
#include "registry/class_registry.h"

namespace tavcc {

namespace internal {

template <class T>
std::shared_ptr<T> ReferenceOrNull(const Value& value) {
  if (!value.IsObject() || value.object() == nullptr) return nullptr;
  return ToObject<T>(value);
}

// One argument on its way into a rule and, if it is in/out, back out. `kInOut` is checked against
// the method's table by a test.
template <class T>
struct Argument;

template <>
struct Argument<bool> {
  explicit Argument(Value& value) : value_(value.boolean()) {}
  bool Get() { return value_; }
  bool value_;
};

template <>
struct Argument<int16_t> {
  explicit Argument(Value& value) : value_(value.integer()) {}
  int16_t Get() { return value_; }
  int16_t value_;
};

template <>
struct Argument<int32_t> {
  explicit Argument(Value& value) : value_(value.long_integer()) {}
  int32_t Get() { return value_; }
  int32_t value_;
};

template <>
struct Argument<double> {
  explicit Argument(Value& value) : value_(value.number()) {}
  double Get() { return value_; }
  double value_;
};

template <>
struct Argument<DateTime> {
  explicit Argument(Value& value) : value_(value.date()) {}
  DateTime Get() { return value_; }
  DateTime value_;
};

template <>
struct Argument<std::string_view> {
  explicit Argument(Value& value) : value_(value.text()) {}
  std::string_view Get() { return value_; }
  std::string value_;
};

template <>
struct Argument<const Value&> {
  explicit Argument(Value& value) : value_(value) {}
  const Value& Get() { return value_; }
  const Value& value_;
};

// Held by the argument, so that the object lives for the length of the call.
template <class T, T& (*Nothing)()>
struct ReferenceArgument {
  explicit ReferenceArgument(Value& value) : object_(ReferenceOrNull<T>(value)) {}
  T& Get() { return object_ == nullptr ? Nothing() : *object_; }
  std::shared_ptr<T> object_;
};
template <>
struct Argument<Dictionary&> : ReferenceArgument<Dictionary, NoDictionary> {
  using ReferenceArgument::ReferenceArgument;
};
template <>
struct Argument<Vector&> : ReferenceArgument<Vector, NoVector> {
  using ReferenceArgument::ReferenceArgument;
};
template <>
struct Argument<Connection&> : ReferenceArgument<Connection, NoConnection> {
  using ReferenceArgument::ReferenceArgument;
};

template <class T>
struct PointerArgument {
  explicit PointerArgument(Value& value) : object_(ReferenceOrNull<T>(value)) {}
  T* Get() { return object_.get(); }
  std::shared_ptr<T> object_;
};
template <>
struct Argument<Dictionary*> : PointerArgument<Dictionary> {
  using PointerArgument::PointerArgument;
};
template <>
struct Argument<Vector*> : PointerArgument<Vector> {
  using PointerArgument::PointerArgument;
};

template <class T>
struct SharedArgument {
  explicit SharedArgument(Value& value) : object_(ReferenceOrNull<T>(value)) {}
  const std::shared_ptr<T>& Get() { return object_; }
  std::shared_ptr<T> object_;
};
template <>
struct Argument<ConnectionPtr> : SharedArgument<Connection> {
  using SharedArgument::SharedArgument;
};
template <>
struct Argument<ObjectPtr> : SharedArgument<Object> {
  using SharedArgument::SharedArgument;
};

// In/out arguments go back also when the rule raises, as a by-reference argument would.
template <class T>
struct InOutValue {
  InOutValue(Value& value, T initial) : target_(value), value_(std::move(initial)) {}
  ~InOutValue() { target_ = Value(std::move(value_)); }
  InOutValue(const InOutValue&) = delete;
  InOutValue& operator=(const InOutValue&) = delete;
  T& Get() { return value_; }
  Value& target_;
  T value_;
};
template <>
struct Argument<bool&> : InOutValue<bool> {
  explicit Argument(Value& value) : InOutValue(value, value.boolean()) {}
};
template <>
struct Argument<std::string&> : InOutValue<std::string> {
  explicit Argument(Value& value) : InOutValue(value, value.text()) {}
};
template <class T>
struct InOutReference : InOutValue<std::shared_ptr<T>> {
  explicit InOutReference(Value& value)
      : InOutValue<std::shared_ptr<T>>(value, ReferenceOrNull<T>(value)) {}
};
template <>
struct Argument<DictionaryPtr&> : InOutReference<Dictionary> {
  using InOutReference::InOutReference;
};
template <>
struct Argument<VectorPtr&> : InOutReference<Vector> {
  using InOutReference::InOutReference;
};
template <>
struct Argument<RecordsetPtr&> : InOutReference<Recordset> {
  using InOutReference::InOutReference;
};
template <>
struct Argument<ObjectPtr&> : InOutReference<Object> {
  using InOutReference::InOutReference;
};

template <auto Rule, class Result, class... Arguments, size_t... Index>
Value Call(PlugIn& object, std::span<Value> values, Result (*)(PlugIn&, Arguments...),
           std::index_sequence<Index...>) {
  std::tuple<Argument<Arguments>...> unpacked(values[Index]...);
  return Value(Rule(object, std::get<Index>(unpacked).Get()...));
}

template <auto Rule, class Result, class... Arguments>
Value CallRule(PlugIn& object, std::span<Value> values, Result (*rule)(PlugIn&, Arguments...)) {
  return Call<Rule>(object, values, rule, std::index_sequence_for<Arguments...>());
}

}  // namespace internal

template <auto Rule>
Value Bind(PlugIn& object, std::span<Value> values) {
  return internal::CallRule<Rule>(object, values, Rule);
}

}  // namespace tavcc
