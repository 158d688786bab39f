// A cursor: a query that is read row by row. Its rows are those that were there when it was opened.
#pragma once

#include <memory>
#include <vector>

#include "embedded/run/frame.h"
#include "embedded/run/recordset.h"

namespace tavcc::sql {

class Engine;
class Program;

// Runs the cursor's query with the variables that it was declared with.
class CursorQuery {
 public:
  virtual ~CursorQuery() = default;
  virtual Rows Open(Engine& engine, Frame& frame) = 0;
};

struct Cursor {
  std::shared_ptr<Program> program;  // owns the query
  CursorQuery* query = nullptr;
  std::vector<TypedValue> literals;
  Frame frame;
  bool open = false;
  Rows rows;
  size_t next = 0;
};

}  // namespace tavcc::sql
