// OVER: the rows that a window function looks at.
#include "embedded/syntax/parser_impl.h"

namespace tavcc::sql {

std::unique_ptr<WindowClause> Parser::ParseOver() {
  Nest nest(*this);
  Take();
  if (AtName()) RaiseUnsupported("named windows (WINDOW)");
  ExpectSymbol("(");
  auto window = std::make_unique<WindowClause>();
  if (AcceptWord("PARTITION")) {
    Expect(Keyword::kBY);
    do window->partition_by.push_back(ParseExpression());
    while (AcceptSymbol(","));
  }
  if (Accept(Keyword::kORDER)) {
    Expect(Keyword::kBY);
    do {
      OrderItem item;
      item.expression = ParseExpression();
      ParseOrderDirection(item);
      window->order_by.push_back(std::move(item));
    } while (AcceptSymbol(","));
  }
  const bool any = !window->partition_by.empty() || !window->order_by.empty();
  if (any && (AtWord("ROWS") || AtWord("RANGE"))) window->frame = ParseFrame();
  ExpectSymbol(")");
  return window;
}

// ROWS 2 PRECEDING is short for ROWS BETWEEN 2 PRECEDING AND CURRENT ROW. Errors: also 4193, 4194.
WindowFrame Parser::ParseFrame() {
  using Kind = FrameBound::Kind;
  WindowFrame frame;
  frame.range = AtWord("RANGE");
  Take();
  const bool between = Accept(Keyword::kBETWEEN);
  frame.begin = ParseFrameBound();
  if (between) {
    Expect(Keyword::kAND);
    frame.end = ParseFrameBound();
  }
  const auto counts = [](const FrameBound& bound) {
    return bound.kind == Kind::kPreceding || bound.kind == Kind::kFollowing;
  };
  if (frame.range && (counts(frame.begin) || counts(frame.end)))
    Raise(errors::kRangeWithOffsets, {});
  const bool backward = frame.begin.kind > frame.end.kind ||
                        frame.begin.kind == Kind::kUnboundedFollowing ||
                        frame.end.kind == Kind::kUnboundedPreceding;
  if (backward) Raise(errors::kFrameEndsBeforeItStarts, {});
  return frame;
}

FrameBound Parser::ParseFrameBound() {
  using Kind = FrameBound::Kind;
  FrameBound bound;
  if (Accept(Keyword::kCURRENT)) {
    ExpectWord("ROW");
    return bound;
  }
  const bool unbounded = AcceptWord("UNBOUNDED");
  if (!unbounded) bound.rows = TakeWholeNumber();
  if (AcceptWord("PRECEDING")) {
    bound.kind = unbounded ? Kind::kUnboundedPreceding : Kind::kPreceding;
  } else {
    ExpectWord("FOLLOWING");
    bound.kind = unbounded ? Kind::kUnboundedFollowing : Kind::kFollowing;
  }
  return bound;
}

}  // namespace tavcc::sql
