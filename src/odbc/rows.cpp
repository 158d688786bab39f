#include "odbc/rows.h"

#include <utility>

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc::odbc {
namespace {

class RowsRecordset final : public Recordset {
 public:
  explicit RowsRecordset(Rows rows) : rows_(std::move(rows)) {}

  bool IsOpen() const override { return rows_.IsResult(); }
  bool AtEnd() const override {
    RequireOpen();
    return row_ >= rows_.count();
  }
  bool AtStart() const override {
    RequireOpen();
    return rows_.count() == 0;
  }
  void MoveNext() override {
    RequireRow();
    ++row_;
  }
  void MoveFirst() override {
    RequireOpen();
    if (rows_.count() == 0) throw AutomationError(RuntimeError::kNoCurrentRow);
    row_ = 0;
  }
  int RecordCount() const override {
    RequireOpen();
    return static_cast<int>(rows_.count());
  }
  int FieldCount() const override {
    RequireOpen();
    return static_cast<int>(rows_.names.size());
  }
  std::string FieldName(int index) const override {
    RequireField(index);
    return rows_.names[static_cast<size_t>(index)];
  }
  Value Field(int index) const override {
    RequireField(index);
    RequireRow();
    return rows_.cells[row_ * rows_.names.size() + static_cast<size_t>(index)];
  }
  Value Field(std::string_view name) const override {
    RequireOpen();
    for (size_t i = 0; i < rows_.names.size(); ++i) {
      if (EqualsIgnoringCase(rows_.names[i], name)) return Field(static_cast<int>(i));
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override {}
  void Close() override { rows_ = Rows(); }

 private:
  void RequireOpen() const {
    if (!IsOpen()) throw AutomationError(RuntimeError::kObjectClosed);
  }
  void RequireRow() const {
    RequireOpen();
    if (row_ >= rows_.count()) throw AutomationError(RuntimeError::kNoCurrentRow);
  }
  void RequireField(int index) const {
    RequireOpen();
    if (index < 0 || static_cast<size_t>(index) >= rows_.names.size()) {
      throw AutomationError(RuntimeError::kItemNotInCollection);
    }
  }

  Rows rows_;
  size_t row_ = 0;
};

}  // namespace

RecordsetPtr MakeRecordset(Rows rows) {
  return std::make_shared<RowsRecordset>(std::move(rows));
}

}  // namespace tavcc::odbc
