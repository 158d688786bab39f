// What a query reads from: tables, derived tables and joins.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {
namespace {

// The table hints; what else stands in brackets after a name makes it a function.
constexpr std::string_view kHints[] = {
    "FASTFIRSTROW", "FORCESCAN",       "FORCESEEK",      "HOLDLOCK",
    "KEEPDEFAULTS", "KEEPIDENTITY",    "NOEXPAND",       "NOLOCK",
    "NOWAIT",       "PAGLOCK",         "READCOMMITTED",  "READCOMMITTEDLOCK",
    "READPAST",     "READUNCOMMITTED", "REPEATABLEREAD", "ROWLOCK",
    "SERIALIZABLE", "SNAPSHOT",        "TABLOCK",        "TABLOCKX",
    "UPDLOCK",      "XLOCK",
};

bool IsHint(const Token& token) {
  if (token.kind != TokenKind::kWord) return false;
  const std::string word = UpperCase(token.text);
  for (const std::string_view hint : kHints)
    if (word == hint) return true;
  return false;
}

}  // namespace

std::vector<TableSourcePtr> Parser::ParseFromList() {
  std::vector<TableSourcePtr> sources;
  do sources.push_back(ParseTableSource());
  while (AcceptSymbol(","));
  return sources;
}

TableSourcePtr Parser::ParseTableSource() {
  return ContinueJoins(ParseTablePrimary(false), false);
}

// The right side of a join goes up to its ON: in "a join b join c on x on y" it is "b join c on x".
TableSourcePtr Parser::ContinueJoins(TableSourcePtr left, bool until_on) {
  Chain chain(*this);
  JoinedTable::Join join;
  while (!(until_on && At(Keyword::kON)) && ParseJoinWords(join)) {
    chain.Deepen();
    auto joined = MakeAt<JoinedTable>(left->line);
    joined->join = join;
    joined->left = std::move(left);
    joined->right = ParseTablePrimary(false);
    if (join != JoinedTable::Join::kCross) {
      Nest nest(*this);
      joined->right = ContinueJoins(std::move(joined->right), true);
      Expect(Keyword::kON);
      joined->on = ParseCondition();
    }
    left = std::move(joined);
  }
  return left;
}

// [INNER | LEFT [OUTER] | RIGHT [OUTER] | FULL [OUTER]] [hint] JOIN, CROSS JOIN. False, and nothing
// taken, when no join follows.
bool Parser::ParseJoinWords(JoinedTable::Join& join) {
  join = JoinedTable::Join::kInner;
  if (At(Keyword::kOUTER) && AtWord("APPLY", 1)) RaiseUnsupported("APPLY");
  if (At(Keyword::kPIVOT) || At(Keyword::kUNPIVOT)) RaiseUnsupported("PIVOT and UNPIVOT");
  if (Accept(Keyword::kJOIN)) return true;
  if (Accept(Keyword::kCROSS)) {
    if (AtWord("APPLY")) RaiseUnsupported("APPLY");
    Expect(Keyword::kJOIN);
    join = JoinedTable::Join::kCross;
    return true;
  }
  if (At(Keyword::kLEFT) || At(Keyword::kRIGHT) || At(Keyword::kFULL)) {
    const bool is_join = At(Keyword::kOUTER, 1) || At(Keyword::kJOIN, 1) ||
                         At(Keyword::kMERGE, 1) || AtWord("HASH", 1) || AtWord("LOOP", 1);
    if (!is_join) return false;
    const Keyword side = Take().keyword;
    join = side == Keyword::kLEFT    ? JoinedTable::Join::kLeft
           : side == Keyword::kRIGHT ? JoinedTable::Join::kRight
                                     : JoinedTable::Join::kFull;
    Accept(Keyword::kOUTER);
  } else if (!Accept(Keyword::kINNER)) {
    return false;
  }
  if (!Accept(Keyword::kMERGE) && !AcceptWord("HASH") && !AcceptWord("LOOP")) AcceptWord("REMOTE");
  Expect(Keyword::kJOIN);
  return true;
}

TableSourcePtr Parser::ParseTablePrimary(bool bracketed) {
  switch (Peek().keyword) {
    case Keyword::kOPENROWSET:
    case Keyword::kOPENQUERY:
    case Keyword::kOPENDATASOURCE:
    case Keyword::kOPENXML:
    case Keyword::kCONTAINSTABLE:
    case Keyword::kFREETEXTTABLE:
      RaiseUnsupported(KeywordText(Peek().keyword));
    default:
      break;
  }
  return AtSymbol("(") ? ParseBracketedSource(bracketed) : ParseNamedTable();
}

// (query) alias or (joins). A bracket directly in a bracket may be either, so its content decides.
TableSourcePtr Parser::ParseBracketedSource(bool bracketed) {
  Nest nest(*this);
  const int line = Line();
  ExpectSymbol("(");
  if (At(Keyword::kVALUES)) RaiseUnsupported("VALUES as a table");
  if (At(Keyword::kSELECT)) {
    QueryPtr query = ParseQuery();
    ExpectSymbol(")");
    return FinishDerivedTable(std::move(query), line, bracketed);
  }
  TableSourcePtr inside = ParseTablePrimary(true);
  const bool is_query = inside->kind == TableSource::Kind::kDerived &&
                        static_cast<const DerivedTable&>(*inside).alias.empty();
  if (is_query) {
    QueryPtr query = ContinueQuery(std::move(static_cast<DerivedTable&>(*inside).query));
    ParseOrderBy(*query);
    ExpectSymbol(")");
    return FinishDerivedTable(std::move(query), line, bracketed);
  }
  inside = ContinueJoins(std::move(inside), false);
  ExpectSymbol(")");
  return inside;
}

// A derived table needs an alias. Only directly in a further bracket may it come without one, as in
// ((select …) union select …) t: there it is the beginning of a query, which the caller goes on
// with.
TableSourcePtr Parser::FinishDerivedTable(QueryPtr query, int line, bool bracketed) {
  auto table = MakeAt<DerivedTable>(line);
  table->query = std::move(query);
  const bool is_query =
      bracketed && (AtSymbol(")") || At(Keyword::kUNION) || At(Keyword::kEXCEPT) ||
                    At(Keyword::kINTERSECT) || At(Keyword::kORDER));
  if (is_query) return table;
  Accept(Keyword::kAS);
  table->alias = TakeName();
  if (AtSymbol("(")) table->columns = TakeNameList();
  CheckNoTableSuffix();
  return table;
}

TableSourcePtr Parser::ParseNamedTable() {
  auto table = MakeAt<NamedTable>(Line());
  table->name = TakeTableName();
  if (AtLegacyHints()) ParseHints(table->hints);
  table->alias = ParseOptionalTableAlias();
  if (At(Keyword::kWITH) && AtSymbol("(", 1)) {
    Take();
    ParseHints(table->hints);
    if (table->alias.empty()) table->alias = ParseOptionalTableAlias();
  } else if (At(Keyword::kWITH) && AtName(1)) {
    Take();
    Raise(errors::kSyntaxNearCommonTable, {Excerpt(Inside(Peek()))});
  } else if (AtLegacyHints()) {
    ParseHints(table->hints);
  } else if (AtSymbol("(")) {
    if (table->alias.empty()) RaiseUnsupported("functions that return tables");
    RaiseUnexpected();
  }
  CheckNoTableSuffix();
  return table;
}

void Parser::CheckNoTableSuffix() {
  if (At(Keyword::kTABLESAMPLE)) RaiseUnsupported("TABLESAMPLE");
  if (At(Keyword::kPIVOT) || At(Keyword::kUNPIVOT)) RaiseUnsupported("PIVOT and UNPIVOT");
  if (At(Keyword::kFOR) && AtWord("SYSTEM_TIME", 1)) RaiseUnsupported("FOR SYSTEM_TIME");
}

std::string Parser::ParseOptionalTableAlias() {
  if (Accept(Keyword::kAS)) return TakeName();
  return AtName() ? TakeName() : std::string();
}

// "T (nolock)", as servers before WITH was required wrote it.
bool Parser::AtLegacyHints() {
  return AtSymbol("(") && IsHint(Peek(1)) && (AtSymbol(")", 2) || AtSymbol(",", 2));
}

void Parser::ParseHints(std::vector<std::string>& hints) {
  ExpectSymbol("(");
  do {
    if (Peek().kind == TokenKind::kWord && At(Keyword::kINDEX)) {
      Take();
      hints.emplace_back("INDEX");
      if (AcceptSymbol("="))
        AtSymbol("(") ? SkipBrackets() : static_cast<void>(Take());
      else
        SkipBrackets();
      continue;
    }
    if (!IsHint(Peek())) RaiseUnexpected();
    hints.push_back(UpperCase(Take().text));
    if (AtSymbol("(")) SkipBrackets();  // FORCESEEK (index (columns))
  } while (AcceptSymbol(",") || IsHint(Peek()) || At(Keyword::kINDEX));
  ExpectSymbol(")");
}

}  // namespace tavcc::sql
