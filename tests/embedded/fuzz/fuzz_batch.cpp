// The promises of the front end, checked on any text; then the text is run.
#include "embedded/fuzz/fuzz_batch.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "embedded/error.h"
#include "embedded/fuzz/fuzz_engine.h"
#include "embedded/syntax/fingerprint.h"
#include "embedded/syntax/parser.h"
#include "embedded/syntax/print.h"

namespace tavcc::sql {
namespace {

constexpr size_t kLongestMessage = 4096;

void Require(bool holds, const char* promise) {
  if (!holds) throw std::logic_error(promise);
}

void CheckError(const SqlError& error) {
  Require(FindError(error.number) != nullptr, "an error of the parser is in the table");
  Require(error.line >= 1, "an error of the parser has a line");
  Require(!error.message.empty() && error.message.size() <= kLongestMessage,
          "a message has a bounded length");
}

// The text with other values for its exchangeable numbers and texts, of the same types.
std::string Exchanged(std::string_view text, const std::vector<FingerprintLiteral>& literals) {
  std::string result(text);
  for (const FingerprintLiteral& literal : literals) {
    const auto at = static_cast<size_t>(literal.text.data() - text.data());
    const bool number = literal.form == LiteralExpression::Form::kInteger ||
                        literal.form == LiteralExpression::Form::kDecimal;
    for (size_t i = at; i < at + literal.text.size(); ++i) {
      char& c = result[i];
      if (number && c >= '1' && c <= '9') c = c == '1' ? '2' : '1';
      if (!number && c >= 'a' && c <= 'y' && c != 'e') c = static_cast<char>(c + 1);
    }
  }
  return result;
}

// A text of the same form compiles to the same, whatever the values of its literals.
void CheckSharing(std::string_view text, const Batch& batch, const Fingerprint& fingerprint) {
  std::vector<FingerprintLiteral> literals;
  Require(fingerprint.Matches(text, literals), "a text has its own form");
  if (static_cast<size_t>(batch.literal_slots) != literals.size()) return;
  const std::string other = Exchanged(text, literals);
  const bool alike = fingerprint.Matches(other, literals);
  Require(Fingerprint(other).Matches(text, literals) == alike, "a form is mutual");
  if (!alike) return;
  const Batch others_batch = ParseBatch(other);
  Require(others_batch.literal_slots == batch.literal_slots, "one form, one number of slots");
  Require(Print(others_batch, PrintSlots::kInsteadOfValues) ==
              Print(batch, PrintSlots::kInsteadOfValues),
          "one form, one tree");
}

}  // namespace

void FuzzBatch(std::string_view text) {
  const Fingerprint fingerprint(text);
  Batch batch;
  try {
    batch = ParseBatch(text);
  } catch (const SqlError& error) {
    CheckError(error);
    return;
  }
  Print(batch);
  RunOnEngine(text);
  if (!fingerprint.shareable()) return;
  Require(batch.literal_slots <= static_cast<int>(fingerprint.literals()),
          "the parser sees no literal that the fingerprint does not see");
  CheckSharing(text, batch, fingerprint);
}

}  // namespace tavcc::sql
