#include "embedded/session/recordset.h"

#include <atomic>

#include "embedded/catalog/names.h"
#include "embedded/error.h"
#include "embedded/types/stored_conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

// Beyond this many values memory is not kept.
constexpr size_t kMostKept = 1024;

}  // namespace

class RowsRecordset final : public Recordset {
 public:
  explicit RowsRecordset(Rows rows) : rows_(std::move(rows)) {}

  void Become(Rows&& rows) {
    rows_ = std::move(rows);
    row_ = 0;
  }
  std::vector<StoredValue> TakeCells() { return std::move(rows_.cells); }

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
  void Close() override {
    if (IsOpen()) rows_ = Rows{};
  }

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

RecordsetMaker::RecordsetMaker() = default;
RecordsetMaker::~RecordsetMaker() = default;

// What another thread did with the recordset before it let go of it is seen from here on.
bool RecordsetMaker::IsFree() const {
  if (last_.use_count() != 1) return false;
  std::atomic_thread_fence(std::memory_order_acquire);
  return true;
}

RecordsetPtr RecordsetMaker::Make(Rows&& rows) {
  if (IsFree()) {
    last_->Become(std::move(rows));
  } else {
    last_ = std::make_shared<RowsRecordset>(std::move(rows));
  }
  return last_;
}

std::vector<StoredValue> RecordsetMaker::TakeCells() {
  if (!IsFree()) return {};
  std::vector<StoredValue> cells = last_->TakeCells();
  if (cells.capacity() > kMostKept) return {};
  cells.clear();
  return cells;
}

void RecordsetMaker::Forget() {
  last_.reset();
}

RecordsetPtr ClosedRecordset() {
  return std::make_shared<RowsRecordset>(Rows{});
}

}  // namespace tavcc::sql
