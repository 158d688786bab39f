#include "foundation/nothing.h"

#include "foundation/error.h"

namespace tavcc {

namespace {

[[noreturn]] void RaiseNotSet() {
  throw AutomationError(RuntimeError::kObjectNotSet);
}

class NothingDictionary final : public Dictionary {
 public:
  Value Item(std::string_view) const override { RaiseNotSet(); }
  void SetItem(std::string_view, Value) override { RaiseNotSet(); }
  Value ItemOr(std::string_view, Value) const override { RaiseNotSet(); }
  bool Lookup(std::string_view) const override { RaiseNotSet(); }
};

class NothingVector final : public Vector {
 public:
  int Size() const override { RaiseNotSet(); }
  int LBound() const override { RaiseNotSet(); }
  int UBound() const override { RaiseNotSet(); }
  Value Item(int) const override { RaiseNotSet(); }
  void Add(Value) override { RaiseNotSet(); }
};

class NothingConnection final : public Connection {
 public:
  RecordsetPtr Execute(const SqlText&) override { RaiseNotSet(); }
  RecordsetPtr OpenClientRecordset(const SqlText&) override { RaiseNotSet(); }
  void CallProcedure(const SqlText&, std::span<ProcedureParameter>) override { RaiseNotSet(); }
  std::vector<ConnectionError> Errors() const override { RaiseNotSet(); }
  int State() const override { RaiseNotSet(); }
  void Close() override { RaiseNotSet(); }
};

}  // namespace

Dictionary& NoDictionary() {
  static NothingDictionary nothing;
  return nothing;
}

Vector& NoVector() {
  static NothingVector nothing;
  return nothing;
}

Connection& NoConnection() {
  static NothingConnection nothing;
  return nothing;
}

void RaiseNotAnObject(const Value& value) {
  if (value.IsObject() && value.object() == nullptr) RaiseNotSet();
  throw AutomationError(value.IsNull() ? RuntimeError::kInvalidUseOfNull
                                       : RuntimeError::kTypeMismatch);
}

}  // namespace tavcc
