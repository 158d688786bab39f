// t_conv and t_style: CAST, CONVERT and assignment as functions.
#include <array>

#include "embedded/functions/support.h"
#include "embedded/types/convert.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql::internal {
namespace {

struct Code {
  explicit Code(int64_t code)
      : from(TypeFromCode(code & 0xfffff)),
        to(TypeFromCode(code >> 20 & 0xfffff)),
        mode(static_cast<ConvertMode>(code >> 40 & 1)),
        style(static_cast<int>(code >> 41 & 0xffff)) {}
  SqlType from, to;
  ConvertMode mode;
  int style;
};

// Text cut off on its way into a column names the column where the emitter gave one.
void FailNaming(Context context, Arguments arguments, const Code& code) {
  Scratch scratch;
  StoredView cut;
  SqlError ignored;
  ConvertView(ViewOf(arguments[0]), code.from, code.to, ConvertMode::kCast, code.style, &scratch,
              &cut, &ignored);
  Fail(context, errors::kTruncationInColumn,
       {TextOf(arguments[2]), TextOf(arguments[3]), cut.bytes});
}

void ConvertWith(Context context, int count, Arguments arguments, const Code& code) {
  Scratch& scratch = SessionOf(context).scratch;
  StoredView out;
  SqlError error;
  const StoredView in = ViewOf(arguments[0]);
  if (ConvertView(in, code.from, code.to, code.mode, code.style, &scratch, &out, &error)) {
    Return(context, out);
    return;
  }
  if (count == 4 && error.number == errors::kTruncation)
    return FailNaming(context, arguments, code);
  Fail(context, std::move(error));
}

void Convert(Context context, int count, Arguments arguments) {
  ConvertWith(context, count, arguments, Code(sqlite3_value_int64(arguments[1])));
}

void ConvertStyled(Context context, int, Arguments arguments) {
  Code code(sqlite3_value_int64(arguments[1]));
  code.style = sqlite3_value_int(arguments[2]);
  ConvertWith(context, 1, arguments, code);
}

constexpr auto kConversionFunctions = std::to_array<ScalarEntry>({
    {"t_conv", 2, Strict<Convert>},
    {"t_conv", 4, Strict<Convert>},
    {"t_style", 3, Strict<ConvertStyled>},
});

}  // namespace

std::span<const ScalarEntry> ConversionFunctions() {
  return kConversionFunctions;
}

}  // namespace tavcc::sql::internal
