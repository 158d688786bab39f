// The places whose literals stay: see the header for what they are and why.
#include "embedded/syntax/literal_context.h"

namespace tavcc::sql {
namespace {

// Keywords that can stand inside an element of an ORDER BY or GROUP BY list; any other ends the
// list.
constexpr bool IsInsideList(Keyword keyword) {
  switch (keyword) {
    case Keyword::kASC:
    case Keyword::kDESC:
    case Keyword::kCASE:
    case Keyword::kWHEN:
    case Keyword::kTHEN:
    case Keyword::kELSE:
    case Keyword::kEND:
    case Keyword::kAND:
    case Keyword::kOR:
    case Keyword::kNOT:
    case Keyword::kNULL:
    case Keyword::kLIKE:
    case Keyword::kESCAPE:
    case Keyword::kIN:
    case Keyword::kIS:
    case Keyword::kBETWEEN:
    case Keyword::kLEFT:
    case Keyword::kRIGHT:
    case Keyword::kCONVERT:
    case Keyword::kCOALESCE:
    case Keyword::kNULLIF:
    case Keyword::kCURRENT_TIMESTAMP:
    case Keyword::kCURRENT_USER:
    case Keyword::kSESSION_USER:
    case Keyword::kSYSTEM_USER:
    case Keyword::kUSER:
      return true;
    default:
      return !IsReserved(keyword);
  }
}

constexpr bool IsInsideCall(Keyword keyword) {
  return keyword == Keyword::kNULL || keyword == Keyword::kDEFAULT || !IsReserved(keyword);
}

// After these a value begins; a text after any other keyword than these, or after a value, can only
// be an alias ("select FName as 'x'", "case … end 'x'") or a syntax error.
constexpr bool IsEndOfValue(Keyword keyword) {
  return keyword == Keyword::kAS || keyword == Keyword::kEND || keyword == Keyword::kNULL ||
         keyword == Keyword::kCURRENT_TIMESTAMP || keyword == Keyword::kCURRENT_USER ||
         keyword == Keyword::kSESSION_USER || keyword == Keyword::kSYSTEM_USER ||
         keyword == Keyword::kUSER;
}

constexpr bool IsOperator(char c) {
  return std::string_view("+-*/%&|^=<>!").find(c) != std::string_view::npos;
}

constexpr bool IsIndexWord(Keyword keyword) {
  return keyword == Keyword::kUNIQUE || keyword == Keyword::kCLUSTERED ||
         keyword == Keyword::kNONCLUSTERED || keyword == Keyword::kINDEX;
}

// What may stand in CREATE INDEX before its filter.
constexpr bool IsBeforeFilter(Keyword keyword) {
  return IsIndexWord(keyword) || keyword == Keyword::kON || keyword == Keyword::kASC ||
         keyword == Keyword::kDESC;
}

}  // namespace

void LiteralContext::Pass(TokenKind kind, Keyword keyword, char symbol) {
  if (kind == TokenKind::kSymbol) {
    PassSymbol(symbol);
    return;
  }
  if (kind == TokenKind::kWord && keyword != Keyword::kNone) {
    PassKeyword(keyword);
    return;
  }
  if (kind == TokenKind::kVariable) {
    if (table_ == Table::kName) table_ = Table::kNone;
    set_ = Set::kNone;
    previous_ = Previous::kLiteral;
    return;
  }
  if (previous_ == Previous::kStart) in_call_ = true;
  if (after_create_) pin_rest_ = true;
  if (previous_ == Previous::kWord && table_ == Table::kName) table_ = Table::kNone;
  set_ = set_ == Set::kSet ? Set::kOption : Set::kNone;
  previous_ = Previous::kWord;
}

void LiteralContext::PassKeyword(Keyword keyword) {
  if (depth_ == list_depth_ && !IsInsideList(keyword)) list_depth_ = kNever;
  if (after_create_ && keyword != Keyword::kTABLE && !IsIndexWord(keyword)) pin_rest_ = true;
  if (in_index_ && keyword == Keyword::kWHERE) pin_rest_ = true;
  in_index_ = (in_index_ && IsBeforeFilter(keyword)) || (after_create_ && IsIndexWord(keyword));
  after_create_ = keyword == Keyword::kCREATE;
  if (keyword == Keyword::kALTER) pin_rest_ = true;
  table_ = keyword == Keyword::kTABLE ? Table::kName : Table::kNone;
  if (keyword == Keyword::kBY && list_depth_ == kNever) list_depth_ = depth_;
  set_ = keyword == Keyword::kSET ? Set::kSet : set_ == Set::kSet ? Set::kOption : Set::kNone;
  in_call_ = keyword == Keyword::kEXEC || keyword == Keyword::kEXECUTE ||
             (in_call_ && IsInsideCall(keyword)) ||
             (previous_ == Previous::kStart && keyword == Keyword::kTypeName);
  previous_ = Previous::kKeyword;
  previous_keyword_ = keyword;
}

void LiteralContext::PassSymbol(char symbol) {
  after_create_ = false;
  if (symbol == '(') {
    Open();
    return;
  }
  if (symbol == '.') {
    previous_ = Previous::kDot;
    return;
  }
  table_ = Table::kNone;
  if (symbol != '-') set_ = Set::kNone;
  if (symbol == ')') {
    Shut();
    return;
  }
  if (symbol == ';' && depth_ == list_depth_) list_depth_ = kNever;
  if (symbol == ',' && converts_ > 0 && convert_[converts_ - 1].depth == depth_)
    ++convert_[converts_ - 1].commas;
  previous_ = symbol == ',' ? Previous::kComma : Previous::kOther;
}

void LiteralContext::Open() {
  ++depth_;
  const bool keyword = previous_ == Previous::kKeyword;
  const bool pins =
      table_ == Table::kName ||
      (keyword && (previous_keyword_ == Keyword::kTypeName || previous_keyword_ == Keyword::kTOP ||
                   previous_keyword_ == Keyword::kIDENTITY));
  if (pins && pinned_depth_ == kNever) pinned_depth_ = depth_;
  if (keyword && previous_keyword_ == Keyword::kCONVERT) {
    if (converts_ == kMaxConverts)
      shareable_ = false;
    else
      convert_[converts_++] = {depth_, 0};
  }
  table_ = Table::kNone;
  set_ = Set::kNone;
  previous_ = Previous::kOther;
}

void LiteralContext::Shut() {
  if (depth_ == pinned_depth_) pinned_depth_ = kNever;
  if (depth_ == list_depth_) list_depth_ = kNever;
  if (converts_ > 0 && convert_[converts_ - 1].depth == depth_) --converts_;
  --depth_;
  previous_ = Previous::kClose;
}

bool LiteralContext::IsTextOfAlias(char next) const {
  switch (previous_) {
    case Previous::kWord:
      return !in_call_;
    case Previous::kLiteral:
    case Previous::kClose:
      return true;
    case Previous::kComma:
    case Previous::kStart:
      return next == '=';
    case Previous::kKeyword:
      return IsEndOfValue(previous_keyword_) ||
             (previous_keyword_ == Keyword::kTypeName && !in_call_) || next == '=';
    default:
      return false;
  }
}

bool LiteralContext::IsPinned(TokenKind kind, char next) const {
  if (pin_rest_ || depth_ >= pinned_depth_ || kind == TokenKind::kBinary) return true;
  if (converts_ > 0 && convert_[converts_ - 1].commas >= 2) return true;
  if (previous_ == Previous::kKeyword && previous_keyword_ == Keyword::kTOP) return true;
  if (set_ == Set::kOption) return true;
  return (kind == TokenKind::kText || kind == TokenKind::kNationalText) && IsTextOfAlias(next);
}

bool LiteralContext::Literal(TokenKind kind, char next) {
  bool exchangeable = !IsPinned(kind, next);
  if (list_depth_ != kNever && !pin_rest_) {
    const bool ordinal = kind == TokenKind::kInteger && depth_ == list_depth_ &&
                         !IsOperator(next) &&
                         (previous_ == Previous::kComma ||
                          (previous_ == Previous::kKeyword && previous_keyword_ == Keyword::kBY));
    if (!ordinal) shareable_ = false;
    exchangeable = false;
  }
  after_create_ = false;
  table_ = Table::kNone;
  set_ = Set::kNone;
  previous_ = Previous::kLiteral;
  return exchangeable;
}

}  // namespace tavcc::sql
