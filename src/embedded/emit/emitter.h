// The emitter: from a bound tree to SQLite's text and the parameters that it takes.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/bind/bound.h"

namespace tavcc::sql {

// Where the value of a parameter comes from each time the statement runs.
struct Parameter {
  enum class Source : uint8_t { kLiteral, kVariable, kSession, kRow };
  Source source = Source::kLiteral;
  int index = 0;  // the literal's slot, the variable's number, the SessionValue, the row's column
  bool convert = false;  // to the type below, from the literal's type or `from`
  SqlType from, to;
  ConvertMode mode = ConvertMode::kCast;
  std::string table, column;  // of kAssign: for the error that names them

  friend bool operator==(const Parameter&, const Parameter&) = default;
};

struct Emitted {
  std::string sql;
  std::vector<Parameter> parameters;  // ?1, ?2 …
  // Whether the statement can fail half-way, after it has changed rows, by one of the dialect's own
  // functions: SQLite does not undo that by itself inside a transaction.
  bool fails_midway = false;
  // Whether a query gives one row at most: behind it nothing needs to be looked for.
  bool single_row = false;
  // Of an INSERT: where in `sql` the query begins that computes its rows, with the same parameters.
  size_t rows_at = std::string::npos;
};

Emitted EmitQuery(const BoundQuery& query);
// A query whose rows become the values of variables, one row after the other: variables in it are
// read as they are when the row is made.
Emitted EmitAssigningQuery(const BoundQuery& query);
Emitted EmitInsert(const BoundInsert& insert);
Emitted EmitUpdate(const BoundUpdate& update);
// The rows that an UPDATE would write: the row's number, then for each assignment its value, in
// their order. Variables are set and read as the rows are made.
Emitted EmitUpdatedRows(const BoundUpdate& update);
Emitted EmitDelete(const BoundDelete& remove);
// One row: the values, then the condition as 1, 0 or NULL.
Emitted EmitValues(const BoundValues& values);

}  // namespace tavcc::sql
