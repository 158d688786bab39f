#include "host/answer_rows.h"

#include <utility>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc {
namespace {

class GivenRows final : public Recordset {
 public:
  explicit GivenRows(AnswerRowsPtr rows) : rows_(std::move(rows)) {}

  bool IsOpen() const override { return rows_ != nullptr; }
  bool AtEnd() const override { return at_ >= Open().rows.size(); }
  bool AtStart() const override { return Open().rows.empty(); }
  void MoveNext() override {
    RequireRow();
    ++at_;
  }
  void MoveFirst() override {
    if (Open().rows.empty()) throw AutomationError(RuntimeError::kNoCurrentRow);
    at_ = 0;
  }
  int RecordCount() const override { return static_cast<int>(Open().rows.size()); }
  int FieldCount() const override { return static_cast<int>(Open().columns.size()); }
  std::string FieldName(int index) const override { return Open().columns[Column(index)]; }
  Value Field(int index) const override {
    const size_t column = Column(index);
    RequireRow();
    return rows_->rows[at_][column];
  }
  Value Field(std::string_view name) const override {
    for (int i = 0; i < FieldCount(); ++i) {
      if (EqualsIgnoringCase(rows_->columns[static_cast<size_t>(i)], name)) return Field(i);
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override {}
  void Close() override { rows_ = nullptr; }

 private:
  const AnswerRows& Open() const {
    if (rows_ == nullptr) throw AutomationError(RuntimeError::kObjectClosed);
    return *rows_;
  }
  size_t Column(int index) const {
    if (index < 0 || index >= FieldCount()) {
      throw AutomationError(RuntimeError::kItemNotInCollection);
    }
    return static_cast<size_t>(index);
  }
  void RequireRow() const {
    if (AtEnd()) throw AutomationError(RuntimeError::kNoCurrentRow);
  }

  AnswerRowsPtr rows_;
  size_t at_ = 0;
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
  return std::make_shared<GivenRows>(std::move(rows));
}

}  // namespace tavcc
