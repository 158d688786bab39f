#include "host/answer_rows.h"

#include <utility>

#include "foundation/in_memory_recordset.h"

namespace tavcc {
namespace {

// Rows that others hold too. None: no result.
struct SharedRows {
  AnswerRowsPtr shared;

  bool IsResult() const { return shared != nullptr; }
  size_t RowCount() const { return shared->rows.size(); }
  const std::vector<std::string>& FieldNames() const { return shared->columns; }
  const Value& ValueAt(size_t row, size_t field) const { return shared->rows[row][field]; }
};

}  // namespace

AnswerRows ReadWhole(Recordset& recordset) {
  AnswerRows whole;
  const int columns = recordset.FieldCount();
  for (int i = 0; i < columns; ++i) whole.columns.push_back(recordset.FieldName(i));
  if (recordset.AtEnd()) return whole;
  for (; !recordset.AtEnd(); recordset.MoveNext()) {
    std::vector<Value>& row = whole.rows.emplace_back();
    for (int i = 0; i < columns; ++i) row.push_back(recordset.Field(i));
  }
  recordset.MoveFirst();
  return whole;
}

RecordsetPtr MakeRecordset(AnswerRowsPtr rows) {
  return std::make_shared<InMemoryRecordset<SharedRows>>(SharedRows{std::move(rows)});
}

}  // namespace tavcc
