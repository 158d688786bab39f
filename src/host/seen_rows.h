// The rows of an answer that a rule saw, taken down while it reads them.
//
// A rule sees a row when it asks whether there is one, or reads a field of it. The rows are those
// of its own recordset, read when it reads them: nothing is fetched sooner, later or twice, and no
// row behind the last one seen is fetched at all.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/recordset.h"

namespace tavcc {

struct SeenRows {
  std::vector<std::string> columns;      // none where no row was seen
  std::vector<std::vector<Value>> rows;  // in order, as many as are kept
  int count = 0;                         // of the rows seen, kept or not
  bool to_the_end = false;               // whether it was seen that there are no more
};

using SeenRowsPtr = std::shared_ptr<SeenRows>;

// The recordsets that are watched. Those that outlive it are watched no more.
class RowWatch {
 public:
  RowWatch() = default;
  ~RowWatch() { Settle(); }
  RowWatch(const RowWatch&) = delete;
  RowWatch& operator=(const RowWatch&) = delete;

  // The same recordset, watched: at most `most` rows are kept in `seen`. `done`, which may be null,
  // is called once, when it is closed, released or settled.
  RecordsetPtr Watch(RecordsetPtr rows, int most, SeenRowsPtr seen, std::function<void()> done);

  // Takes down the rows that the recordsets stand on, and watches none of them any longer.
  void Settle();

 private:
  class WatchedRows;
  std::vector<std::weak_ptr<WatchedRows>> watched_;
};

}  // namespace tavcc
