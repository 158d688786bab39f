#include "host/seen_rows.h"

#include <optional>
#include <utility>

#include "foundation/text.h"
#include "host/recordset_wrapper.h"

namespace tavcc {

// Nothing that goes wrong in watching reaches the rule.
class RowWatch::WatchedRows final : public RecordsetWrapper {
 public:
  WatchedRows(RecordsetPtr rows, int most, SeenRowsPtr seen, std::function<void()> done)
      : RecordsetWrapper(std::move(rows)),
        most_(most),
        seen_(std::move(seen)),
        done_(std::move(done)) {}
  ~WatchedRows() override { Finish(); }

  bool AtEnd() const override {
    const bool end = RecordsetWrapper::AtEnd();
    if (seen_ == nullptr) return end;
    if (end) seen_->to_the_end = true;
    stands_ = stands_ || !end;
    return end;
  }
  bool AtStart() const override {
    const bool start = RecordsetWrapper::AtStart();
    stands_ = stands_ || !start;
    return start;
  }
  void MoveNext() override {
    Leave();
    RecordsetWrapper::MoveNext();
    ++position_;
  }
  void MoveFirst() override {
    Leave();
    RecordsetWrapper::MoveFirst();
    position_ = 0;
  }
  Value Field(int index) const override {
    Value value = RecordsetWrapper::Field(index);
    Note(static_cast<size_t>(index), value);
    return value;
  }
  Value Field(std::string_view name) const override {
    Value value = RecordsetWrapper::Field(name);
    Note(ColumnOf(name), value);
    return value;
  }
  void Close() override {
    Finish();
    RecordsetWrapper::Close();
  }

  void Finish() {
    if (seen_ == nullptr) return;
    Leave();
    seen_ = nullptr;
    if (done_ == nullptr) return;
    try {
      done_();
    } catch (...) {
    }
  }

 private:
  const std::vector<std::string>& Columns() const {
    if (seen_->columns.empty()) {
      const int count = FieldCount();
      for (int i = 0; i < count; ++i) seen_->columns.push_back(FieldName(i));
    }
    return seen_->columns;
  }

  size_t ColumnOf(std::string_view name) const {
    if (seen_ == nullptr) return 0;
    try {
      const auto& columns = Columns();
      for (size_t i = 0; i < columns.size(); ++i) {
        if (EqualsIgnoringCase(columns[i], name)) return i;
      }
    } catch (...) {
    }
    return std::string_view::npos;
  }

  bool IsNew() const { return position_ > furthest_; }
  bool IsKept() const { return IsNew() && seen_->rows.size() < static_cast<size_t>(most_); }

  // What a rule has read is taken from there: some fields can be read only once.
  void Note(size_t column, const Value& value) const {
    if (seen_ == nullptr) return;
    stands_ = true;
    if (!IsKept() || column == std::string_view::npos) return;
    if (row_.size() <= column) row_.resize(column + 1);
    row_[column] = value;
  }

  // Takes down the row that is about to be left, where it is a new one.
  void Leave() {
    if (seen_ == nullptr || !std::exchange(stands_, false) || !IsNew()) return;
    if (IsKept()) seen_->rows.push_back(WholeRow());
    furthest_ = position_;
    ++seen_->count;
    row_.clear();
  }

  // With Empty for what can be read no more, behind a connection that was closed.
  std::vector<Value> WholeRow() const {
    std::vector<Value> row;
    try {
      row_.resize(Columns().size());
      for (auto& field : row_) row.push_back(std::move(field).value_or(Empty{}));
      for (size_t i = 0; i < row_.size(); ++i) {
        if (!row_[i]) row[i] = RecordsetWrapper::Field(static_cast<int>(i));
      }
    } catch (...) {
    }
    return row;
  }

  const int most_;
  SeenRowsPtr seen_;  // null when it is watched no more
  std::function<void()> done_;
  int position_ = 0;                               // of the row that it stands on
  int furthest_ = -1;                              // of those taken down
  mutable bool stands_ = false;                    // on a row that was seen
  mutable std::vector<std::optional<Value>> row_;  // what was read of it
};

RecordsetPtr RowWatch::Watch(RecordsetPtr rows, int most, SeenRowsPtr seen,
                             std::function<void()> done) {
  std::erase_if(watched_, [](const auto& watched) { return watched.expired(); });
  auto watched =
      std::make_shared<WatchedRows>(std::move(rows), most, std::move(seen), std::move(done));
  watched_.push_back(watched);
  return watched;
}

void RowWatch::Settle() {
  for (const auto& watched : std::exchange(watched_, {})) {
    if (const auto rows = watched.lock()) rows->Finish();
  }
}

}  // namespace tavcc
