// Where the rows of queries go: the first result of a batch is the client's, or all of them are
// told to a reader.
#pragma once

#include <span>
#include <utility>
#include <vector>

#include "embedded/error.h"
#include "embedded/session/recordset.h"
#include "foundation/batch_session.h"

namespace tavcc::sql {

class Results {
 public:
  void Clear() {
    if (any_) first_ = Rows{};
    any_ = false;
  }
  void Add(Rows&& rows) {
    if (captured_ != nullptr) {
      captured_->push_back(std::move(rows));
    } else if (reader_ != nullptr) {
      Report(rows);
    } else if (!any_) {
      any_ = true;
      first_ = std::move(rows);
    }
  }
  // The client's result; a closed recordset when there is none.
  RecordsetPtr Take() {
    if (!any_) return closed_;
    any_ = false;
    return recordsets_.Make(std::move(first_));
  }
  // Until it is called with null, all results go to `captured` instead of to the client.
  void Capture(std::vector<Rows>* captured) { captured_ = captured; }
  bool capturing() const { return captured_ != nullptr; }

  // Until it is called with null, the reader is told of all that is not captured.
  void ReportTo(BatchReader* reader) { reader_ = reader; }
  // Whom to tell of a row as it comes; null where results are added whole.
  BatchReader* reader() const { return capturing() ? nullptr : reader_; }

  RecordsetMaker& recordsets() { return recordsets_; }

 private:
  void Report(const Rows& rows);

  bool any_ = false;
  Rows first_;
  std::vector<Rows>* captured_ = nullptr;
  BatchReader* reader_ = nullptr;
  RecordsetMaker recordsets_;
  const RecordsetPtr closed_ = ClosedRecordset();
};

// Tells a reader of one result, row by row. End is to be called, also after an error.
class RowReport {
 public:
  RowReport(BatchReader& reader, const ResultShape& shape);
  // Errors: SqlError of a value that no automation value can be.
  void Send(std::span<const StoredValue> cells);

 private:
  BatchReader& reader_;
  const ResultShape& shape_;
  std::vector<Value> values_;
};

// Tells the reader of a result, whose rows `send_all` sends; also of the end of one that an error
// cuts short.
template <class SendAll>
void ReportResult(BatchReader& reader, const ResultShape& shape, const SendAll& send_all) {
  RowReport report(reader, shape);
  try {
    send_all(report);
  } catch (const SqlError&) {
    reader.EndRows();
    throw;
  }
  reader.EndRows();
}

}  // namespace tavcc::sql
