// What the parts of ConvertView share; for convert*.cpp only.
#pragma once

#include "embedded/error.h"
#include "embedded/types/stored_view.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql::internal {

struct Conversion {
  const StoredView& in;
  const SqlType& from;
  const SqlType& to;
  ConvertMode mode;
  int style;
  Scratch* scratch;
  StoredView* out;
  SqlError* error;

  bool Return(StoredView cell) const {
    *out = cell;
    return true;
  }
  bool Fail(errors::Number number, std::initializer_list<ErrorArgument> arguments,
            int state = -1) const {
    *error = MakeError(number, arguments);
    if (state >= 0) error->state = state;
    return false;
  }
  bool Overflow(std::string_view from_name, int state = 2) const {
    return Fail(errors::kArithmeticOverflow, {from_name, KindText(to.kind)}, state);
  }
  bool NotAllowed() const {
    return Fail(errors::kExplicitConversionNotAllowed, {KindText(from.kind), KindText(to.kind)});
  }
};

// Each for one kind of target.
bool ConvertToText(const Conversion& c);
bool ConvertToInteger(const Conversion& c);
bool ConvertToScaled(const Conversion& c);
bool ConvertToFloat(const Conversion& c);
bool ConvertToDate(const Conversion& c);
bool ConvertToBinary(const Conversion& c);
bool ConvertToGuid(const Conversion& c);

// From binary (convert_binary.cpp).
bool BinaryToInteger(const Conversion& c);
bool BinaryToScaled(const Conversion& c);
bool BinaryToDate(const Conversion& c);
// The text of UTF-16 units, the lower byte first.
std::string Utf8Of(std::string_view bytes);

}  // namespace tavcc::sql::internal
