// A cursor: a query that is read row by row.
//
// What it shows of later changes is its sight. A static cursor has the rows as they were when it
// was opened. A keyset cursor has kept which rows they were, and reads each when it is fetched. A
// dynamic one has kept nothing but its place: over one table it looks for the next row from there;
// over several it goes through the rows that there were, and leaves out those that have gone.
#pragma once

#include <memory>
#include <vector>

#include "embedded/catalog/table.h"
#include "embedded/session/frame.h"
#include "embedded/session/recordset.h"

namespace tavcc::sql {

struct SessionContext;
class Program;

// The numbers of the rows that a row of the query is made of, one for each table.
using CursorKey = std::vector<StoredValue>;

enum class CursorSight : uint8_t { kStatic, kKeyset, kDynamic };

// The cursor's query, with the variables that it was declared with.
class CursorQuery {
 public:
  virtual ~CursorQuery() = default;
  // What the query allows of what was asked for.
  virtual CursorSight SightOf(SessionContext& session, Frame& frame) = 0;
  virtual std::vector<TablePtr> Tables(SessionContext& session, Frame& frame) = 0;
  virtual std::shared_ptr<const ResultShape> Shape(SessionContext& session, Frame& frame) = 0;
  virtual Rows All(SessionContext& session, Frame& frame) = 0;
  virtual std::vector<CursorKey> Keys(SessionContext& session, Frame& frame) = 0;
  // The row, as it is now; no row when it has gone or, for a cursor of this sight, when the query
  // no longer takes it.
  virtual Rows Read(SessionContext& session, Frame& frame, CursorSight sight,
                    const CursorKey& key) = 0;
  // Of one table: the first row behind the one with this number, or the last before it; its own
  // number becomes `number`. No row when there is none.
  virtual Rows Step(SessionContext& session, Frame& frame, bool forward, int64_t& number) = 0;
};

struct Cursor {
  std::shared_ptr<Program> program;  // owns the query
  CursorQuery* query = nullptr;
  std::vector<TypedValue> literals;
  Frame frame;
  const Frame* owner = nullptr;  // of a local cursor: it ends with this
  bool scroll = false, read_only = false;

  bool open = false;
  CursorSight sight = CursorSight::kStatic;
  std::vector<TablePtr> tables;
  Rows rows;                    // of a static cursor; of the others only the shape
  std::vector<CursorKey> keys;  // of the others, where it steps through several tables or a keyset
  int64_t count = 0;            // of rows or keys
  // The place: 0 before the first row, count + 1 behind the last. Of a dynamic cursor over one
  // table the number of the row itself.
  int64_t place = 0;
  CursorKey current;  // of the row that was fetched last; empty when none was

  bool IsStepping() const { return sight == CursorSight::kDynamic && tables.size() == 1; }
};

}  // namespace tavcc::sql
