// A recordset over rows that are in memory: the one cursor that the databases and tapes share.
#pragma once

#include <concepts>
#include <string>
#include <utility>
#include <vector>

#include "foundation/error.h"
#include "foundation/recordset.h"
#include "foundation/text.h"

namespace tavcc {

// What holds the rows. Rows and fields are counted from 0, and asked for within their counts alone.
template <typename T>
concept RowSource = requires(const T rows, size_t row, size_t field) {
  { rows.IsResult() } -> std::same_as<bool>;  // false: the recordset is closed
  { rows.RowCount() } -> std::same_as<size_t>;
  { rows.FieldNames() } -> std::same_as<const std::vector<std::string>&>;
  { rows.ValueAt(row, field) } -> std::convertible_to<Value>;  // may raise an AutomationError
};

// Stands on the first row when it is made. `Rows()` holds no result.
template <RowSource Rows>
class InMemoryRecordset : public Recordset {
 public:
  explicit InMemoryRecordset(Rows rows) : rows_(std::move(rows)) {}

  bool IsOpen() const final { return rows_.IsResult(); }
  bool AtEnd() const final { return row_ >= Open().RowCount(); }
  bool AtStart() const final { return Open().RowCount() == 0; }
  void MoveNext() final {
    RequireRow();
    ++row_;
  }
  void MoveFirst() final {
    if (AtStart()) throw AutomationError(RuntimeError::kNoCurrentRow);
    row_ = 0;
  }
  int RecordCount() const final { return static_cast<int>(Open().RowCount()); }
  int FieldCount() const final { return static_cast<int>(Open().FieldNames().size()); }
  std::string FieldName(int index) const final { return rows_.FieldNames()[CheckedField(index)]; }
  Value Field(int index) const final {
    const size_t field = CheckedField(index);
    RequireRow();
    return rows_.ValueAt(row_, field);
  }
  Value Field(std::string_view name) const final {
    for (int i = 0; i < FieldCount(); ++i) {
      if (EqualsIgnoringCase(rows_.FieldNames()[static_cast<size_t>(i)], name)) return Field(i);
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() final {}
  void Close() final { rows_ = Rows(); }

 protected:
  Rows& rows() { return rows_; }

  // Stands on the first of other rows.
  void Become(Rows&& rows) {
    rows_ = std::move(rows);
    row_ = 0;
  }

 private:
  const Rows& Open() const {
    if (!IsOpen()) throw AutomationError(RuntimeError::kObjectClosed);
    return rows_;
  }
  size_t CheckedField(int index) const {
    if (index < 0 || index >= FieldCount()) {
      throw AutomationError(RuntimeError::kItemNotInCollection);
    }
    return static_cast<size_t>(index);
  }
  void RequireRow() const {
    if (AtEnd()) throw AutomationError(RuntimeError::kNoCurrentRow);
  }

  Rows rows_;
  size_t row_ = 0;
};

}  // namespace tavcc
