// The host's objects as the ports that the rules know: adapters over late-bound references.
//
// An adapter holds one reference and gives it back when the last rule lets go of it. What is handed
// back to the host is the host's own object, never an adapter. An object's port is chosen by the
// members that it publishes: "Lookup" is a dictionary's, "UBound" a vector's, "EOF" a recordset's,
// "Execute" with "Errors" a connection's; any other is only handed on.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/late_bound.h"
#include "foundation/connection.h"
#include "foundation/dictionary.h"
#include "foundation/recordset.h"
#include "foundation/vector.h"

namespace tavcc::automation {

// What every adapter can tell: the object it stands for.
class Adapter {
 public:
  explicit Adapter(IDispatch* object) : late_(object) {}
  virtual ~Adapter() = default;
  IDispatch* object() const { return late_.object(); }

 protected:
  LateBound late_;
};

// Any other object of the host, only handed on.
class OpaqueObject final : public Object, public Adapter {
 public:
  using Adapter::Adapter;
};

// A dictionary through its Lookup and its default member, which reads and writes an item.
class LateBoundDictionary : public Dictionary {
 public:
  Value Item(std::string_view key) const override;
  void SetItem(std::string_view key, Value value) override;
  Value ItemOr(std::string_view key, Value fallback) const override;
  bool Lookup(std::string_view key) const override;

 private:
  virtual const LateBound& late() const = 0;
};

class HostDictionaryAdapter final : public LateBoundDictionary, public Adapter {
 public:
  using Adapter::Adapter;

 private:
  const LateBound& late() const override { return late_; }
};

class HostVectorAdapter final : public Vector, public Adapter {
 public:
  using Adapter::Adapter;
  int Size() const override;
  int LBound() const override;
  int UBound() const override;
  Value Item(int index) const override;
  void Add(Value value) override;
};

class AdoRecordset final : public Recordset, public Adapter {
 public:
  using Adapter::Adapter;
  bool IsOpen() const override;
  bool AtEnd() const override;
  bool AtStart() const override;
  void MoveNext() override;
  void MoveFirst() override;
  int RecordCount() const override;
  int FieldCount() const override;
  std::string FieldName(int index) const override;
  Value Field(int index) const override;
  Value Field(std::string_view name) const override;
  void Detach() override;
  void Close() override;

 private:
  Value FieldValue(const Value& index) const;
};

class AdoConnection final : public Connection, public Adapter {
 public:
  using Adapter::Adapter;
  RecordsetPtr Execute(const SqlText& sql) override;
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override;
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override;
  std::vector<ConnectionError> Errors() const override;
  int State() const override;
  void Close() override;
};

}  // namespace tavcc::automation
