// Window functions as SQLite's own, which has all of them.
#include <array>

#include "embedded/emit/emitter_impl.h"

namespace tavcc::sql {
namespace {

struct WindowName {
  WindowFunction function;
  std::string_view name;
};

// clang-format off
constexpr auto kNames = std::to_array<WindowName>({
    {WindowFunction::kAggregate,   ""},
    {WindowFunction::kRowNumber,   "row_number"},
    {WindowFunction::kRank,        "rank"},
    {WindowFunction::kDenseRank,   "dense_rank"},
    {WindowFunction::kPercentRank, "percent_rank"},
    {WindowFunction::kCumeDist,    "cume_dist"},
    {WindowFunction::kNtile,       "ntile"},
    {WindowFunction::kLag,         "lag"},
    {WindowFunction::kLead,        "lead"},
    {WindowFunction::kFirstValue,  "first_value"},
    {WindowFunction::kLastValue,   "last_value"},
});
// clang-format on

std::string BoundText(const FrameBound& bound) {
  switch (bound.kind) {
    case FrameBound::Kind::kUnboundedPreceding:
      return "UNBOUNDED PRECEDING";
    case FrameBound::Kind::kPreceding:
      return std::to_string(bound.rows) + " PRECEDING";
    case FrameBound::Kind::kCurrentRow:
      return "CURRENT ROW";
    case FrameBound::Kind::kFollowing:
      return std::to_string(bound.rows) + " FOLLOWING";
    case FrameBound::Kind::kUnboundedFollowing:
      break;
  }
  return "UNBOUNDED FOLLOWING";
}

}  // namespace

std::string Emitter::WindowCall(const BoundWindow& window) {
  if (window.function == WindowFunction::kAggregate) {
    const BoundExpression* operand = window.arguments.empty() ? nullptr : window.arguments[0].get();
    return Aggregated(window.aggregate, operand, window.type, /*distinct=*/false, /*over=*/true);
  }
  std::string out(kNames[static_cast<size_t>(window.function)].name);
  out += '(';
  for (size_t i = 0; i < window.arguments.size(); ++i) {
    if (i > 0) out += ',';
    const std::string value = InOwnStep([&] { return Expression(*window.arguments[i]); });
    if (window.function == WindowFunction::kNtile) {
      out += Failing("s_tiles(" + value + ')');
    } else {
      out += i == 1 ? Failing("s_offset(" + value + ')') : value;
    }
  }
  return out + ')';
}

std::string Emitter::Windowed(const BoundWindow& window) {
  std::string over;
  for (const auto& key : window.partition_by) {
    over += (over.empty() ? "PARTITION BY " : ",") + InOwnStep([&] { return Collated(*key); });
  }
  std::string order;
  for (const BoundOrder& key : window.order_by) {
    order += order.empty() ? " ORDER BY " : ",";
    order += OrderKey(key, InOwnStep([&] { return Expression(*key.expression); }));
  }
  over += order;
  if (window.frame) {
    over += window.frame->range ? " RANGE BETWEEN " : " ROWS BETWEEN ";
    over += BoundText(window.frame->begin) + " AND " + BoundText(window.frame->end);
  }
  return WindowCall(window) + " OVER (" + over + ')';
}

}  // namespace tavcc::sql
