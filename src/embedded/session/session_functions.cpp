#include "embedded/session/session_functions.h"

#include <sqlite3.h>

#include <cmath>

#include "embedded/catalog/names.h"
#include "embedded/functions/support.h"
#include "embedded/session/session_context.h"
#include "embedded/types/sqlite_value.h"
#include "embedded/types/stored_conversions.h"
#include "embedded/types/text_units.h"

namespace tavcc::sql {
namespace {

SessionContext& SessionOf(sqlite3_context* context) {
  return *static_cast<SessionContext*>(sqlite3_user_data(context));
}

void Fail(sqlite3_context* context, SqlError error) {
  SessionOf(context).store.functions().pending = std::move(error);
  sqlite3_result_error(context, "statement failed", -1);
}

void Fail(sqlite3_context* context, errors::Number number,
          std::initializer_list<ErrorArgument> arguments = {}) {
  Fail(context, MakeError(number, arguments));
}

std::string TextOf(sqlite3_value* value) {
  return std::string(internal::TextOf(value));
}

bool HasType(const Catalog& catalog, const std::string& name, std::string_view type) {
  const auto object = catalog.Find(ObjectName{SplitName(name)});
  if (!object) return EqualsIgnoringCase(type, "U");
  return EqualsIgnoringCase(type, object->table ? "U" : object->view ? "V" : "P");
}

void ObjectId(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return;
  const Catalog& catalog = SessionOf(context).catalog;
  const std::string name = TextOf(arguments[0]);
  const int64_t id = catalog.ObjectId(name);
  if (id == 0) return;
  if (count > 1) {
    if (!HasType(catalog, name, TrimTrailingBlanks(internal::TextOf(arguments[1])))) return;
  }
  sqlite3_result_int64(context, id);
}

// s_cursor_status(scope, name)
void CursorStatus(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto& cursors = SessionOf(context).cursors;
  const auto found = cursors.find(FoldName(TextOf(arguments[1])));
  if (found == cursors.end()) return sqlite3_result_int(context, -3);
  const Cursor& cursor = found->second;
  if (!cursor.open) return sqlite3_result_int(context, -1);
  const bool any = cursor.sight == CursorSight::kDynamic || cursor.count > 0;
  sqlite3_result_int(context, any ? 1 : 0);
}

void Variable(sqlite3_context* context, int, sqlite3_value** arguments) {
  const Frame& frame = *SessionOf(context).state.live_frame;
  const auto index = static_cast<size_t>(sqlite3_value_int64(arguments[0]));
  internal::Return(context, FromStored(frame.variables[index]));
}

// s_assign(variable, value, type of the value, type of the variable): the value as it came.
void Assign(sqlite3_context* context, int, sqlite3_value** arguments) {
  Frame& frame = *SessionOf(context).state.live_frame;
  const auto index = static_cast<size_t>(sqlite3_value_int64(arguments[0]));
  const SqlType from = TypeFromCode(sqlite3_value_int64(arguments[2]));
  const SqlType to = TypeFromCode(sqlite3_value_int64(arguments[3]));
  try {
    const StoredValue value = FromSqlite(arguments[1]);
    frame.variables[index] = value.IsNull() ? value : ConvertStored(value, from, to);
  } catch (SqlError& error) {
    return Fail(context, std::move(error));
  }
  sqlite3_result_value(context, arguments[1]);
}

void Next(sqlite3_context* context, int, sqlite3_value**) {
  SessionContext& session = SessionOf(context);
  int64_t number = 0;
  try {
    if (__builtin_add_overflow(session.state.next_identity.last, session.state.next_identity.step,
                               &number))
      Raise(errors::kArithmeticOverflow);
    ConvertStored(StoredValue(number), Type(TypeKind::kBigInt), session.state.next_identity.type);
  } catch (const SqlError&) {
    return Fail(context, errors::kArithmeticOverflow,
                {"IDENTITY", KindText(session.state.next_identity.type.kind)});
  }
  session.state.next_identity.last = number;
  sqlite3_result_int64(context, number);
}

void NotNull(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) != SQLITE_NULL) {
    sqlite3_result_value(context, arguments[0]);
    return;
  }
  Fail(context, errors::kNullIntoColumn, {TextOf(arguments[1]), TextOf(arguments[2]), "INSERT"});
}

void Top(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return Fail(context, errors::kInvalidTop);
  const int64_t count = sqlite3_value_int64(arguments[0]);
  if (count < 0) return Fail(context, errors::kNegativeTop);
  sqlite3_result_int64(context, count);
}

// s_percent(rows, percent): how many rows that is, rounded up.
void Percent(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[1]) == SQLITE_NULL) return Fail(context, errors::kInvalidTop);
  const double percent = sqlite3_value_double(arguments[1]);
  if (percent < 0 || percent > 100) return Fail(context, errors::kPercentOutOfRange);
  const double rows = sqlite3_value_double(arguments[0]);
  sqlite3_result_int64(context, static_cast<int64_t>(std::ceil(rows * percent / 100)));
}

void Recursion(sqlite3_context* context, int, sqlite3_value** arguments) {
  const int64_t level = sqlite3_value_int64(arguments[0]) + 1;
  const int64_t most = sqlite3_value_int64(arguments[1]);
  if (level > most) return Fail(context, errors::kRecursionExhausted, {most});
  sqlite3_result_int64(context, level);
}

void Tiles(sqlite3_context* context, int, sqlite3_value** arguments) {
  const int64_t tiles = sqlite3_value_int64(arguments[0]);  // 0 for NULL
  if (tiles < 1) return Fail(context, errors::kNtileNotPositive);
  sqlite3_result_int64(context, tiles);
}

void Offset(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_int64(arguments[0]) < 0) return Fail(context, errors::kNegativeOffset);
  sqlite3_result_value(context, arguments[0]);
}

struct ScalarState {
  sqlite3_value* value;
};

void ScalarStep(sqlite3_context* context, int, sqlite3_value** arguments) {
  auto* state = static_cast<ScalarState*>(sqlite3_aggregate_context(context, sizeof(ScalarState)));
  if (state == nullptr) return sqlite3_result_error_nomem(context);
  if (state->value != nullptr) return Fail(context, errors::kSubqueryWithSeveralRows);
  state->value = sqlite3_value_dup(arguments[0]);
}

void ScalarFinal(sqlite3_context* context) {
  auto* state = static_cast<ScalarState*>(sqlite3_aggregate_context(context, 0));
  if (state == nullptr || state->value == nullptr) return;
  sqlite3_result_value(context, state->value);
  sqlite3_value_free(state->value);
}

}  // namespace

void RegisterSessionFunctions(SessionContext& session) {
  sqlite3* const database = session.store.handle();
  const auto add = [&](const char* name, int arguments, auto* function) {
    sqlite3_create_function_v2(database, name, arguments, SQLITE_UTF8, &session, function, nullptr,
                               nullptr, nullptr);
  };
  add("s_object_id", 1, ObjectId);
  add("s_object_id", 2, ObjectId);
  add("s_cursor_status", 2, CursorStatus);
  add("s_variable", 1, Variable);
  add("s_assign", 4, Assign);
  add("s_next", 0, Next);
  add("s_not_null", 3, NotNull);
  add("s_top", 1, Top);
  add("s_percent", 2, Percent);
  add("s_recursion", 2, Recursion);
  add("s_tiles", 1, Tiles);
  add("s_offset", 1, Offset);
  sqlite3_create_function_v2(database, "s_scalar", 1, SQLITE_UTF8, &session, nullptr, ScalarStep,
                             ScalarFinal, nullptr);
}

}  // namespace tavcc::sql
