// WITH before a statement, and OPTION behind it.
//
// A statement that begins with WITH has to be told from the statement before it by a semicolon:
// behind a table's name, WITH begins the table's hints.
#include <charconv>
#include <limits>

#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {
namespace {

constexpr int kMostRecursion = 32767;

}  // namespace

StatementPtr Parser::ParseWithStatement() {
  if (unterminated_) Raise(errors::kSyntaxNearWith, {});
  ParseOptionalWith();
  switch (Peek().keyword) {
    case Keyword::kSELECT:
    case Keyword::kINSERT:
    case Keyword::kUPDATE:
    case Keyword::kDELETE:
    case Keyword::kMERGE:
      return ParseStatementOf(Peek().keyword);
    default:
      if (AtSymbol("(")) return ParseStatementOf(Keyword::kSELECT);
      RaiseUnexpected();
  }
}

void Parser::ParseOptionalWith() {
  if (!Accept(Keyword::kWITH)) return;
  if (AtWord("XMLNAMESPACES")) RaiseUnsupported("WITH XMLNAMESPACES");
  do with_.tables.push_back(ParseCommonTable());
  while (AcceptSymbol(","));
}

CommonTable Parser::ParseCommonTable() {
  Nest nest(*this);
  CommonTable table;
  table.name = TakeName();
  if (AtSymbol("(")) table.columns = TakeNameList();
  Expect(Keyword::kAS);
  ExpectSymbol("(");
  if (At(Keyword::kVALUES)) RaiseUnsupported("VALUES as a table");
  table.query = ParseQuery();
  ExpectSymbol(")");
  return table;
}

// What may follow the query of a statement. Hints choose a plan and change no result, but for the
// depth of recursion.
void Parser::ParseQueryOption() {
  if (At(Keyword::kFOR)) RaiseUnsupported("the FOR clause of SELECT");
  if (At(Keyword::kCOMPUTE)) RaiseUnsupported("COMPUTE");
  if (!At(Keyword::kOPTION) || !AtSymbol("(", 1)) return;
  Take();
  ExpectSymbol("(");
  while (!AcceptSymbol(")")) {
    if (Peek().kind == TokenKind::kEnd) RaiseUnexpected();
    if (AcceptWord("MAXRECURSION")) {
      ParseMaxRecursion();
    } else if (AtSymbol("(")) {
      SkipBrackets();
    } else {
      Take();
    }
  }
}

void Parser::ParseMaxRecursion() {
  const int64_t most = TakeWholeNumber();
  if (most > kMostRecursion) Raise(errors::kMaxRecursionTooLarge, {most, kMostRecursion});
  with_.max_recursion = static_cast<int>(most);
}

// A number that is part of what the statement says.
int64_t Parser::TakeWholeNumber() {
  if (Peek().kind != TokenKind::kInteger) RaiseUnexpected();
  const std::string_view digits = Peek().text;
  int64_t number = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (end.ec != std::errc() || number > std::numeric_limits<int>::max()) RaiseUnexpected();
  Take();
  return number;
}

}  // namespace tavcc::sql
