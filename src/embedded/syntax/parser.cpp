// The parser's entry, its handling of tokens and names, and its errors.
#include "embedded/syntax/parser.h"

#include <algorithm>
#include <utility>

#include "embedded/syntax/parser_impl.h"
#include "foundation/utf8.h"

namespace tavcc::sql {
namespace {

constexpr size_t kMaxNameLength = 128;
constexpr size_t kMaxNameParts = 4;
constexpr size_t kMaxShown = 1000;  // characters of the batch's own text in an error text

// The text up to `count` characters.
std::string_view FirstCharacters(std::string_view text, size_t count) {
  size_t at = 0;
  for (; at < text.size() && count > 0; --count) do
      ++at;
    while (at < text.size() && IsContinuationByte(text[at]));
  return text.substr(0, at);
}

}  // namespace

Batch ParseBatch(std::string_view text) {
  return Parser(text).Run();
}

ExpressionPtr ParseExpression(std::string_view text) {
  return Parser(text).RunExpression();
}

ExpressionPtr Parser::RunExpression() {
  const Constants constants(*this);
  ExpressionPtr expression = ParseExpression();
  if (Peek().kind != TokenKind::kEnd) RaiseUnexpected();
  return expression;
}

Batch Parser::Run() {
  Batch batch;
  batch.statements = ParseStatementsToEnd();
  batch.literals = std::move(literals_);
  batch.shareable = shareable_;
  batch.table_variables = std::move(table_variables_);
  return batch;
}

// ---- Depth ----

void Parser::RaiseTooDeep() {
  Raise(errors::kNestedTooDeep, {});
}

Parser::Nest::Nest(Parser& parser) : parser_(parser), height_of_siblings_(parser.height_) {
  if (parser.depth_ >= kMaxNesting) parser.RaiseTooDeep();
  ++parser.depth_;
  parser.height_ = 0;
}

Parser::Nest::~Nest() {
  --parser_.depth_;
  parser_.height_ = std::max(height_of_siblings_, parser_.height_ + 1);
}

Parser::CaseNest::CaseNest(Parser& parser) : parser_(parser), nest_(parser) {
  if (parser.cases_ >= kMaxCaseNesting) parser.Raise(errors::kCaseTooDeep, {kMaxCaseNesting});
  ++parser.cases_;
}

Parser::CaseNest::~CaseNest() {
  --parser_.cases_;
}

Parser::Chain::Chain(Parser& parser) : parser_(parser), height_of_siblings_(parser.height_) {
  parser.height_ = 0;
}

Parser::Chain::~Chain() {
  parser_.height_ = std::max(height_of_siblings_, parser_.height_);
}

void Parser::Chain::Deepen() {
  if (++parser_.height_ > kMaxChain) parser_.RaiseTooDeep();
}

// ---- Tokens ----

Token Parser::Take() {
  const TokenKind kind = Peek().kind;
  if (kind == TokenKind::kUnclosedQuote || kind == TokenKind::kUnclosedComment) RaiseUnexpected();
  last_ = lexer_.Take();
  return last_;
}

bool Parser::AtSymbol(std::string_view symbol, size_t ahead) {
  return Peek(ahead).kind == TokenKind::kSymbol && Peek(ahead).text == symbol;
}

bool Parser::AtWord(std::string_view upper, size_t ahead) {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::kWord && !IsReserved(token.keyword) &&
         EqualsIgnoringCase(token.text, upper);
}

bool Parser::AtName(size_t ahead) {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::kQuotedName ||
         (token.kind == TokenKind::kWord && !IsReserved(token.keyword));
}

bool Parser::AtText(size_t ahead) {
  return Peek(ahead).kind == TokenKind::kText || Peek(ahead).kind == TokenKind::kNationalText;
}

bool Parser::Accept(Keyword keyword) {
  if (!At(keyword)) return false;
  Take();
  return true;
}

bool Parser::AcceptSymbol(std::string_view symbol) {
  if (!AtSymbol(symbol)) return false;
  Take();
  return true;
}

bool Parser::AcceptWord(std::string_view upper) {
  if (!AtWord(upper)) return false;
  Take();
  return true;
}

void Parser::Expect(Keyword keyword) {
  if (!Accept(keyword)) RaiseUnexpected();
}

void Parser::ExpectSymbol(std::string_view symbol) {
  if (!AcceptSymbol(symbol)) RaiseUnexpected();
}

void Parser::ExpectWord(std::string_view upper) {
  if (!AcceptWord(upper)) RaiseUnexpected();
}

std::string Parser::TextBetween(size_t begin, size_t end) const {
  std::string_view text = lexer_.text().substr(begin, end - begin);
  const size_t last = text.find_last_not_of(" \t\r\n");
  return std::string(text.substr(0, last + 1));
}

std::string Parser::TakeName() {
  if (!AtName()) RaiseUnexpected();
  std::string name = Unquote(Take());
  if (name.empty()) Raise(errors::kEmptyName, {});
  if (name.size() > kMaxNameLength && CharacterCount(name) > kMaxNameLength)
    Raise(errors::kNameTooLong,
          {"identifier", FirstCharacters(name, kMaxNameLength), int{kMaxNameLength}});
  return name;
}

std::string Parser::TakeVariable() {
  if (Peek().kind != TokenKind::kVariable) RaiseUnexpected();
  if (Peek().text.starts_with("@@")) RaiseUnsupported("a variable whose name begins with @@");
  return std::string(Take().text);
}

// A part may be left out between two points: tempdb..#T.
ObjectName Parser::TakeObjectName() {
  ObjectName name;
  const size_t begin = Begin();
  name.parts.push_back(TakeName());
  while (AtSymbol(".") && !AtSymbol("*", 1)) {
    Take();
    if (AtSymbol("."))
      name.parts.emplace_back();
    else
      name.parts.push_back(TakeName());
  }
  if (name.parts.size() > kMaxNameParts)
    Raise(errors::kTooManyPrefixes,
          {"object", Excerpt(TextBetween(begin, last_.end)), int{kMaxNameParts - 1}});
  return name;
}

ObjectName Parser::TakeTableName() {
  ObjectName name;
  if (Peek().kind == TokenKind::kVariable)
    name.parts.push_back(TakeVariable());
  else
    name = TakeObjectName();
  if (name.last().starts_with('@')) table_variables_.push_back(name.last());
  return name;
}

std::vector<std::string> Parser::TakeNameList() {
  ExpectSymbol("(");
  std::vector<std::string> names;
  do names.push_back(TakeName());
  while (AcceptSymbol(","));
  ExpectSymbol(")");
  return names;
}

void Parser::SkipBrackets(std::string_view refused) {
  ExpectSymbol("(");
  for (int open = 1; open > 0;) {
    if (Peek().kind == TokenKind::kEnd) RaiseUnexpected();
    if (!refused.empty() && AtWord(refused)) RaiseUnsupported(refused);
    const Token token = Take();
    if (token.kind != TokenKind::kSymbol) continue;
    if (token.text == "(") ++open;
    if (token.text == ")") --open;
  }
}

ExpressionPtr Parser::ParseListItem() {
  const Constants constants(*this);
  const int before = constants_met_;
  auto item = ParseExpression();
  const bool ordinal =
      item->kind == Expression::Kind::kLiteral &&
      static_cast<const LiteralExpression&>(*item).form == LiteralExpression::Form::kInteger;
  if (constants_met_ > before && !ordinal) shareable_ = false;
  return item;
}

// ---- Errors ----

std::string Parser::Excerpt(std::string_view text) {
  return std::string(FirstCharacters(text, kMaxShown));
}

void Parser::Raise(errors::Number number, std::initializer_list<ErrorArgument> arguments) {
  RaiseAt(Line(), number, arguments);
}

void Parser::RaiseAt(int line, errors::Number number,
                     std::initializer_list<ErrorArgument> arguments) {
  SqlError error = MakeError(number, arguments);
  error.line = line;
  throw error;
}

void Parser::RaiseUnexpected() {
  RaiseUnexpectedAt(Token(Peek()));
}

// The server names the token that it cannot use; at the end of the text, the last one there was.
void Parser::RaiseUnexpectedAt(const Token& token) {
  switch (token.kind) {
    case TokenKind::kUnclosedQuote: {
      const size_t mark = token.text.find_first_of("'\"[");
      RaiseAt(token.line, errors::kUnclosedQuotation, {Excerpt(token.text.substr(mark + 1))});
    }
    case TokenKind::kUnclosedComment:
      RaiseAt(token.line, errors::kUnclosedComment, {});
    case TokenKind::kMoney:
      RaiseUnsupported("money constants");
    case TokenKind::kEnd:
      RaiseAt(last_.line, errors::kSyntaxNear, {Excerpt(Inside(last_))});
    default:
      if (token.keyword == Keyword::kWITH) RaiseAt(token.line, errors::kSyntaxNearWith, {});
      RaiseAt(token.line,
              IsReserved(token.keyword) ? errors::kSyntaxNearKeyword : errors::kSyntaxNear,
              {Excerpt(Inside(token))});
  }
}

void Parser::RaiseUnsupported(std::string_view construct) {
  Raise(errors::kNotSupported, {construct});
}

}  // namespace tavcc::sql
