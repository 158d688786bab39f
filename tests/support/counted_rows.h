// Recordsets that know how many of them are alive: for rules that must let go of their rows.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "foundation/error.h"
#include "foundation/recordset.h"

namespace tavcc::testing {

// One row of values, or none when there are no values. Columns are named F0, F1 …, unless named.
class CountedRows final : public Recordset {
 public:
  static inline int alive = 0;

  using Columns = std::vector<std::pair<std::string, Value>>;
  explicit CountedRows(Columns columns) : columns_(std::move(columns)), at_end_(columns_.empty()) {
    ++alive;
  }
  ~CountedRows() override { --alive; }

  bool IsOpen() const override { return true; }
  bool AtEnd() const override { return at_end_; }
  bool AtStart() const override { return columns_.empty(); }
  void MoveNext() override { at_end_ = true; }
  void MoveFirst() override { at_end_ = columns_.empty(); }
  int RecordCount() const override { return columns_.empty() ? 0 : 1; }
  int FieldCount() const override { return static_cast<int>(columns_.size()); }
  std::string FieldName(int index) const override {
    return columns_.at(static_cast<size_t>(index)).first;
  }
  Value Field(int index) const override {
    if (at_end_) throw AutomationError(RuntimeError::kNoCurrentRow);
    return columns_.at(static_cast<size_t>(index)).second;
  }
  Value Field(std::string_view name) const override {
    for (const auto& [column, value] : columns_) {
      if (column == name) return value;
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override { detached_ = true; }
  bool detached() const { return detached_; }
  void Close() override {}

 private:
  Columns columns_;
  bool at_end_;
  bool detached_ = false;
};

}  // namespace tavcc::testing
