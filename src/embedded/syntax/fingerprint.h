// What a batch's text is apart from the values of its literals: the key under which a compiled
// batch is found again without parsing.
//
// Two texts have the same key exactly when they differ in nothing but the values of exchangeable
// literals, and each literal of the one has the same type as its fellow of the other:
//
//   an integer     int, or decimal with as many digits when it is too large for an int
//   a decimal      the same precision and scale
//   a float
//   a text         plain or national, of the same length in UTF-16 units (0 counts as 1; all beyond
//                  the longest of the type count alike), and with as many line ends, so that errors
//                  of later statements name the right line
//
// The length is not rounded up to classes: SELECT INTO, ISNULL and the fields of a recordset show
// it. Other literals (see LiteralContext) and all else, blanks and comments included, are in the
// key as written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

struct FingerprintLiteral {
  LiteralExpression::Form form = LiteralExpression::Form::kNull;
  bool doubled = false;   // a text with doubled quotes in it
  std::string_view text;  // the number as written, or what stands between the quotes
};

struct Fingerprint {
  std::string key;
  // In the order of LiteralExpression::slot; they point into the text.
  std::vector<FingerprintLiteral> literals;
};

// Sets `fingerprint`, whose memory is used again, in one pass over the text. False when the batch
// cannot share a compiled form (the fingerprint is then without meaning): the text has a lexical
// error, or a literal in a place that decides on more than a value.
//
// A batch compiled from ParseBatch may be kept under the key when its literal_slots is the number
// of literals here; otherwise the parser saw a reason against it that the key does not show. What
// is compiled may not depend on a literal's value: a compiler that looks at one must keep the batch
// to itself.
bool ComputeFingerprint(std::string_view text, Fingerprint& fingerprint);

// The literal's text as LiteralExpression::text has it; `scratch` is used when it differs from what
// is written.
std::string_view LiteralText(const FingerprintLiteral& literal, std::string& scratch);

}  // namespace tavcc::sql
