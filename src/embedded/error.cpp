// The table of the dialect's errors and how a message is made from its template.
#include "embedded/error.h"

#include <algorithm>
#include <array>

namespace tavcc::sql {
namespace {

using enum AfterError;

constexpr auto kErrors = std::to_array<ErrorDefinition>({
#define TAVCC_SQL_ERROR(number, name, severity, state, text, after) \
  {errors::name, severity, state, text, after},
#include "embedded/errors.def"
#undef TAVCC_SQL_ERROR
});

static_assert(std::ranges::is_sorted(kErrors, {}, &ErrorDefinition::number));

// The length of the argument mark that `text` begins with, e.g. 5 for "%.*ls", "%S_MSG"; 0 when it
// begins with none.
size_t MarkLength(std::string_view text) {
  for (const std::string_view mark :
       {"%.*ls", "%.*s", "%S_MSG", "%ls", "%hs", "%ld", "%s", "%d", "%i", "%f"}) {
    if (text.starts_with(mark)) return mark.size();
  }
  return 0;
}

std::string FillIn(std::string_view text, std::initializer_list<ErrorArgument> arguments) {
  std::string out;
  auto argument = arguments.begin();
  while (!text.empty()) {
    const size_t mark = text.front() == '%' ? MarkLength(text) : 0;
    if (mark == 0) {
      const size_t next = std::min(text.find('%', 1), text.size());
      out.append(text.substr(0, next));
      text.remove_prefix(next);
      continue;
    }
    if (argument != arguments.end()) out.append((argument++)->text());
    text.remove_prefix(mark);
  }
  return out;
}

}  // namespace

std::span<const ErrorDefinition> AllErrors() {
  return kErrors;
}

const ErrorDefinition* FindError(int number) {
  const auto found = std::ranges::lower_bound(kErrors, number, {}, &ErrorDefinition::number);
  return found != kErrors.end() && found->number == number ? &*found : nullptr;
}

AfterError WhatFollows(int number) {
  const ErrorDefinition* definition = FindError(number);
  return definition != nullptr ? definition->after : kNextStatement;
}

SqlError MakeError(errors::Number number, std::initializer_list<ErrorArgument> arguments) {
  const ErrorDefinition* definition = FindError(number);
  return SqlError{number, definition->severity, definition->state, 0,
                  FillIn(definition->text, arguments)};
}

SqlError StoreFailure(std::string message) {
  return SqlError{kStoreFailure, 16, 1, 0, std::move(message)};
}

void RaiseUnsupported(std::string_view construct) {
  Raise(errors::kNotSupported, construct);
}

}  // namespace tavcc::sql
