// A host that writes down, in one list, everything the bill classes do with a context and its
// connection: for the orders that no database shows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/error.h"
#include "support/counted_rows.h"
#include "support/scripted_host.h"

namespace tavcc::testing {

using Timeline = std::vector<std::string>;

class TimelineHost : public ScriptedHost {
 public:
  TimelineHost();

  Timeline timeline;
  // The answer to a statement; no rows when there is none. A statement that is sent while rows are
  // still read fails the test.
  std::function<RecordsetPtr(std::string_view sql)> answer;
  int fail_ready_first_at = 0;  // which call of the first readying member raises, from 1
  bool fail_ready_second = false;
  bool connection_is_closed = false;  // as seen by its State

  std::shared_ptr<DbContext> NewDbContext() override;
  // Fills in "%1".
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override;

  ConnectionPtr NewConnection();
  RecordsetPtr Answer(std::string_view sql);

  int ready_first_calls = 0;
};

// One row of values under names.
inline RecordsetPtr OneRow(CountedRows::Columns columns) {
  return std::make_shared<CountedRows>(std::move(columns));
}
inline RecordsetPtr NoRows() {
  return OneRow({});
}

}  // namespace tavcc::testing
