// Where the rows of queries go: the first result of a batch is the client's.
#pragma once

#include <utility>
#include <vector>

#include "embedded/session/recordset.h"

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

  RecordsetMaker& recordsets() { return recordsets_; }

 private:
  bool any_ = false;
  Rows first_;
  std::vector<Rows>* captured_ = nullptr;
  RecordsetMaker recordsets_;
  const RecordsetPtr closed_ = ClosedRecordset();
};

}  // namespace tavcc::sql
