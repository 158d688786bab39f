// How the rows of a result are written as text.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/value.h"
#include "tavcc/sql/outlet.h"

namespace tavcc {

enum class OutputMode { kTable, kBox, kCsv, kLine, kJson };

// "table", "box", "csv", "line", "json", in the order of OutputMode.
const std::vector<std::string>& OutputModeNames();

class RowFormat {
 public:
  explicit RowFormat(Outlet& outlet) : outlet_(outlet) {}
  RowFormat(const RowFormat&) = delete;
  RowFormat& operator=(const RowFormat&) = delete;
  virtual ~RowFormat() = default;

  virtual void Begin(const std::vector<std::string>& columns) = 0;
  virtual void Row(std::span<const Value> values) = 0;
  virtual void End() = 0;

 protected:
  Outlet& outlet_;
};

// Of each mode but JSON.
std::unique_ptr<RowFormat> MakeRowFormat(OutputMode mode, Outlet& outlet);

}  // namespace tavcc
