// OPEN, FETCH, CLOSE, DEALLOCATE, and the place of a cursor.
#include <algorithm>
#include <limits>

#include "embedded/catalog/names.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {
namespace {

using Direction = FetchStatement::Direction;

constexpr int64_t kBeforeAll = std::numeric_limits<int64_t>::min();
constexpr int64_t kBehindAll = std::numeric_limits<int64_t>::max();

// @@FETCH_STATUS
constexpr int kFetched = 0, kNoRow = -1, kGone = -2;

Cursor& RequireCursor(SessionContext& session, const std::string& name) {
  const auto found = session.cursors.find(FoldName(name));
  if (found == session.cursors.end()) Raise(errors::kUnknownCursor, name);
  return found->second;
}

void Open(SessionContext& session, Cursor& cursor) {
  if (cursor.open) Raise(errors::kCursorIsOpen);
  cursor.sight = cursor.query->SightOf(session, cursor.frame);
  cursor.place = 0;
  cursor.current.clear();
  const bool is_static = cursor.sight == CursorSight::kStatic;
  cursor.tables = is_static ? std::vector<TablePtr>() : cursor.query->Tables(session, cursor.frame);
  if (is_static) {
    cursor.rows = cursor.query->All(session, cursor.frame);
    cursor.count = static_cast<int64_t>(cursor.rows.count);
  } else if (cursor.IsStepping()) {
    cursor.place = kBeforeAll;
  } else {
    cursor.keys = cursor.query->Keys(session, cursor.frame);
    cursor.count = std::ssize(cursor.keys);
  }
  cursor.open = true;
}

void Close(Cursor& cursor) {
  if (!cursor.open) Raise(errors::kCursorIsNotOpen);
  cursor.open = false;
  cursor.rows = Rows{};
  cursor.keys.clear();
  cursor.current.clear();
}

class CursorInstruction final : public Instruction {
 public:
  explicit CursorInstruction(const CursorStatement& statement)
      : Instruction(statement.line), statement_(statement) {}
  Flow Execute(SessionContext& session, Frame&) override {
    Cursor& cursor = RequireCursor(session, statement_.name);
    switch (statement_.what) {
      case CursorStatement::What::kOpen:
        Open(session, cursor);
        break;
      case CursorStatement::What::kClose:
        Close(cursor);
        break;
      case CursorStatement::What::kDeallocate:
        session.cursors.erase(FoldName(statement_.name));
    }
    session.state.row_count = 0;
    return Flow::kNext;
  }

 private:
  const CursorStatement& statement_;
};

void CheckDirection(const Cursor& cursor, Direction direction) {
  static constexpr std::string_view kWords[] = {"next", "prior",    "first",
                                                "last", "absolute", "relative"};
  if (direction == Direction::kAbsolute && cursor.sight == CursorSight::kDynamic) {
    Raise(errors::kDynamicCursor, "Absolute");
  }
  if (direction == Direction::kNext || cursor.scroll) return;
  Raise(errors::kForwardOnlyCursor, "fetch", kWords[static_cast<size_t>(direction)]);
}

// The place that a FETCH leads to among rows that can be counted.
int64_t PlaceOf(const Cursor& cursor, Direction direction, int64_t offset) {
  switch (direction) {
    case Direction::kNext:
      return cursor.place + 1;
    case Direction::kPrior:
      return cursor.place - 1;
    case Direction::kFirst:
      return 1;
    case Direction::kLast:
      return cursor.count;
    case Direction::kRelative:
      return cursor.place + offset;
    case Direction::kAbsolute:
      break;
  }
  return offset >= 0 ? offset : cursor.count + 1 + offset;
}

Rows RowAt(const Cursor& cursor, int64_t place) {
  const size_t columns = cursor.rows.shape->types.size();
  const StoredValue* first = cursor.rows.cells.data() + static_cast<size_t>(place - 1) * columns;
  return Rows{cursor.rows.shape, {first, first + columns}, 1};
}

// The row that a FETCH leads to, none where there is none, and @@FETCH_STATUS.
Rows FetchCounted(SessionContext& session, Cursor& cursor, Direction direction, int64_t offset,
                  int& status) {
  int64_t place = PlaceOf(cursor, direction, offset);
  const bool back = place < cursor.place || direction == Direction::kLast;
  for (;; place += back ? -1 : 1) {
    cursor.place = std::clamp<int64_t>(place, 0, cursor.count + 1);
    cursor.current.clear();
    status = kNoRow;
    if (place < 1 || place > cursor.count) return {};
    status = kFetched;
    if (cursor.sight == CursorSight::kStatic) return RowAt(cursor, place);
    const CursorKey& key = cursor.keys[static_cast<size_t>(place - 1)];
    Rows row = cursor.query->Read(session, cursor.frame, cursor.sight, key);
    if (row.count > 0) cursor.current = key;
    if (row.count > 0 || cursor.sight == CursorSight::kKeyset) {
      if (row.count == 0) status = kGone;
      return row;
    }
  }
}

Rows FetchStepping(SessionContext& session, Cursor& cursor, Direction direction, int64_t offset,
                   int& status) {
  if (direction == Direction::kFirst) cursor.place = kBeforeAll;
  if (direction == Direction::kLast) cursor.place = kBehindAll;
  int64_t steps = direction == Direction::kRelative ? offset : 1;
  if (direction == Direction::kPrior || direction == Direction::kLast) steps = -1;
  Rows row;
  if (steps == 0 && !cursor.current.empty()) {
    row = cursor.query->Read(session, cursor.frame, cursor.sight, cursor.current);
  }
  for (; steps != 0; steps += steps > 0 ? -1 : 1) {
    row = cursor.query->Step(session, cursor.frame, steps > 0, cursor.place);
    if (row.count > 0) continue;
    cursor.place = steps > 0 ? kBehindAll : kBeforeAll;
    break;
  }
  status = row.count > 0 ? kFetched : kNoRow;
  cursor.current.clear();
  if (row.count > 0) cursor.current.emplace_back(cursor.place);
  return row;
}

class FetchInstruction final : public Instruction {
 public:
  FetchInstruction(const FetchStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line), statement_(statement) {
    if (statement.offset) offset_.emplace(visible, *statement.offset, kIntType);
    const auto variables = visible.span();
    for (const std::string& name : statement.variables) {
      const size_t at = visible.IndexOf(name);
      targets_.push_back(at);
      types_.push_back(variables[at].type);
    }
  }

  bool CountsRows() const override { return targets_.empty(); }
  Flow Execute(SessionContext& session, Frame& frame) override {
    Cursor& cursor = RequireCursor(session, statement_.cursor);
    if (!cursor.open) Raise(errors::kCursorIsNotOpen);
    CheckDirection(cursor, statement_.direction);
    const auto shape = Shape(session, cursor);
    if (!targets_.empty() && targets_.size() != shape->types.size())
      Raise(errors::kFetchCountMismatch);
    const StoredValue offset = offset_ ? offset_->Value(session, frame).value : StoredValue();
    const int64_t by = offset.IsNull() ? 0 : offset.integer();
    Rows row =
        cursor.IsStepping()
            ? FetchStepping(session, cursor, statement_.direction, by, session.state.fetch_status)
            : FetchCounted(session, cursor, statement_.direction, by, session.state.fetch_status);
    session.state.row_count = static_cast<int64_t>(row.count);
    if (targets_.empty()) {
      row.shape = shape;
      session.results.Add(std::move(row));
      return Flow::kNext;
    }
    for (size_t i = 0; i < row.cells.size(); ++i) {
      CheckImplicit(shape->types[i], types_[i]);
      frame.variables[targets_[i]] = ConvertStored(row.cells[i], shape->types[i], types_[i]);
    }
    return Flow::kNext;
  }

 private:
  static std::shared_ptr<const ResultShape> Shape(SessionContext& session, Cursor& cursor) {
    if (!cursor.rows.shape) cursor.rows.shape = cursor.query->Shape(session, cursor.frame);
    return cursor.rows.shape;
  }

  const FetchStatement& statement_;
  std::optional<Evaluation> offset_;
  std::vector<size_t> targets_;
  std::vector<SqlType> types_;
};

}  // namespace

StoredValue CurrentRow(SessionContext& session, const std::string& name, const TablePtr& table) {
  const Cursor& cursor = RequireCursor(session, name);
  if (!cursor.open) Raise(errors::kCursorIsNotOpen);
  if (cursor.read_only || cursor.sight == CursorSight::kStatic) Raise(errors::kReadOnlyCursor);
  if (cursor.current.empty()) Raise(errors::kNoFetchedRow);
  for (size_t i = 0; i < cursor.tables.size(); ++i) {
    if (cursor.tables[i] == table) return cursor.current[i];
  }
  Raise(errors::kCursorWithoutTable);
}

InstructionPtr MakeInstruction(const CursorStatement& statement, DeclaredVariables) {
  return std::make_unique<CursorInstruction>(statement);
}

InstructionPtr MakeInstruction(const FetchStatement& statement, DeclaredVariables visible) {
  return std::make_unique<FetchInstruction>(statement, visible);
}

}  // namespace tavcc::sql
