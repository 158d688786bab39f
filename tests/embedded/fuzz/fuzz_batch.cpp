// The promises of the front end, checked on any text; then the text is run.
#include "embedded/fuzz/fuzz_batch.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "embedded/error.h"
#include "embedded/fuzz/fuzz_engine.h"
#include "embedded/plan/text_form.h"
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

// The text with other values for its parameterized numbers and texts, of the same types.
std::string Exchanged(std::string_view text, const std::vector<ParameterizedLiteral>& literals) {
  std::string result(text);
  for (const ParameterizedLiteral& literal : literals) {
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
void CheckSharing(std::string_view text, const Batch& batch) {
  const TextForm form(text, batch);
  std::vector<ParameterizedLiteral> literals;
  Require(form.Matches(text, literals), "a text has its own form");
  const std::string other = Exchanged(text, literals);
  if (!form.Matches(other, literals)) return;
  const Batch others_batch = ParseBatch(other);
  Require(TextForm(other, others_batch).Matches(text, literals), "a form is mutual");
  Require(others_batch.literals.size() == batch.literals.size(),
          "one form, one number of literals");
  Require(Print(others_batch, PrintSlots::kInsteadOfValues) ==
              Print(batch, PrintSlots::kInsteadOfValues),
          "one form, one tree");
}

}  // namespace

void FuzzBatch(std::string_view text) {
  Batch batch;
  try {
    batch = ParseBatch(text);
  } catch (const SqlError& error) {
    CheckError(error);
    return;
  }
  Print(batch);
  RunOnEngine(text);
  CheckSharing(text, batch);
}

}  // namespace tavcc::sql
