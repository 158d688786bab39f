#include "embedded/session/recordset.h"

#include <atomic>

#include "embedded/error.h"
#include "embedded/types/stored_conversions.h"
#include "foundation/error.h"
#include "foundation/in_memory_recordset.h"

namespace tavcc::sql {
namespace {

// Beyond this many values memory is not kept.
constexpr size_t kMostKept = 1024;

}  // namespace

class RowsRecordset final : public InMemoryRecordset<Rows> {
 public:
  using InMemoryRecordset::Become;
  using InMemoryRecordset::InMemoryRecordset;

  std::vector<StoredValue> TakeCells() { return std::move(rows().cells); }
};

Value Rows::ValueAt(size_t row, size_t field) const {
  try {
    return ToValue(cells[row * shape->types.size() + field], shape->types[field]);
  } catch (const SqlError& error) {
    throw AutomationError(error.number, "embedded database", error.message);
  }
}

RecordsetMaker::RecordsetMaker() = default;
RecordsetMaker::~RecordsetMaker() = default;

// What another thread did with the recordset before it let go of it is seen from here on. g++'s
// thread sanitizer does not know fences: under it no recordset is used again.
bool RecordsetMaker::IsFree() const {
#ifdef __SANITIZE_THREAD__
  return false;
#else
  if (last_.use_count() != 1) return false;
  std::atomic_thread_fence(std::memory_order_acquire);
  return true;
#endif
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
