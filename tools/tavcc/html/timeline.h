// Statements and their times, as numbers and on a line of time.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tavcc/call_watch.h"
#include "tavcc/html/writer.h"

namespace tavcc {

// The parts, one below the other, on one line of time; the statements of each are folded into it,
// on a line of their own.
void WriteTimeline(HtmlWriter& html, std::span<const NamedStretch> parts);

// The statements of one call, folded.
void WriteStatements(HtmlWriter& html, std::span<const Stretch> stretches);

// A bar on a line of time of `length` milliseconds.
void WriteTimeBar(HtmlWriter& html, double begun, double ended, double length,
                  const std::string& label);

// "from 1.2 to 3.4 ms"
std::string SpanText(double begun, double ended);

// How many statements, and how many milliseconds the database took for them.
struct StatementTotal {
  size_t count = 0;
  double milliseconds = 0;
};
StatementTotal TotalOf(std::span<const Stretch> stretches);

}  // namespace tavcc
