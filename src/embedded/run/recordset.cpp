#include "embedded/run/recordset.h"

#include "embedded/catalog/names.h"
#include "embedded/error.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

class RowsRecordset final : public Recordset {
 public:
  explicit RowsRecordset(Rows rows) : rows_(std::move(rows)) {}

  bool IsOpen() const override { return rows_.shape != nullptr; }
  bool AtEnd() const override {
    RequireOpen();
    return row_ >= rows_.count;
  }
  bool AtStart() const override {
    RequireOpen();
    return rows_.count == 0;
  }
  void MoveNext() override {
    RequireRow();
    ++row_;
  }
  void MoveFirst() override {
    RequireOpen();
    if (rows_.count == 0) throw AutomationError(RuntimeError::kNoCurrentRow);
    row_ = 0;
  }
  int RecordCount() const override {
    RequireOpen();
    return static_cast<int>(rows_.count);
  }
  int FieldCount() const override {
    RequireOpen();
    return static_cast<int>(rows_.shape->names.size());
  }
  std::string FieldName(int index) const override {
    RequireField(index);
    return rows_.shape->names[static_cast<size_t>(index)];
  }
  Value Field(int index) const override {
    RequireField(index);
    RequireRow();
    const size_t column = static_cast<size_t>(index);
    try {
      return ToValue(rows_.cells[row_ * rows_.shape->types.size() + column],
                     rows_.shape->types[column]);
    } catch (const SqlError& error) {
      throw AutomationError(error.number, "embedded database", error.message);
    }
  }
  Value Field(std::string_view name) const override {
    RequireOpen();
    for (size_t i = 0; i < rows_.shape->names.size(); ++i) {
      if (SameName(rows_.shape->names[i], name)) return Field(static_cast<int>(i));
    }
    throw AutomationError(RuntimeError::kItemNotInCollection);
  }
  void Detach() override {}
  void Close() override { rows_ = Rows{}; }

 private:
  void RequireOpen() const {
    if (!IsOpen()) throw AutomationError(RuntimeError::kObjectClosed);
  }
  void RequireRow() const {
    RequireOpen();
    if (row_ >= rows_.count) throw AutomationError(RuntimeError::kNoCurrentRow);
  }
  void RequireField(int index) const {
    RequireOpen();
    if (index < 0 || static_cast<size_t>(index) >= rows_.shape->names.size()) {
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

RecordsetPtr ClosedRecordset() {
  return std::make_shared<RowsRecordset>(Rows{});
}

}  // namespace tavcc::sql
