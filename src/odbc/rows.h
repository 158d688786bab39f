// The one result of a batch that a Connection hands out, read whole, behind the port.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/batch_session.h"
#include "foundation/recordset.h"

namespace tavcc::odbc {

struct Rows {
  std::vector<std::string> names;  // of the columns; no result has none
  std::vector<Value> cells;        // row by row

  bool IsResult() const { return !names.empty(); }
  size_t RowCount() const { return IsResult() ? cells.size() / names.size() : 0; }
  const std::vector<std::string>& FieldNames() const { return names; }
  const Value& ValueAt(size_t row, size_t field) const { return cells[row * names.size() + field]; }
};

// Keeps the rows of the last result that it is told of.
class KeptRows final : public BatchReader {
 public:
  Rows& rows() { return rows_; }

  void BeginRows(const std::vector<std::string>& columns) override { rows_ = {columns, {}}; }
  void Row(std::span<Value> values) override {
    for (Value& value : values) rows_.cells.push_back(std::move(value));
  }
  void EndRows() override {}
  void RowCount(int64_t) override {}
  void Message(const BatchMessage&) override {}

 private:
  Rows rows_;
};

// The rows as a recordset; a closed one where there is no result.
RecordsetPtr MakeRecordset(Rows rows);

}  // namespace tavcc::odbc
