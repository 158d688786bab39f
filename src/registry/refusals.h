// The catalogue of refusals: a stable name for each reason for which a rule says no, the texts in
// which it says so, the methods that do, and what a user can do about it.
//
// The rules know nothing of it. They say their texts; the catalogue says the rest.
#pragma once

#include <span>
#include <string_view>

#include "registry/bilingual.h"

namespace tavcc {

// One text of a refusal. "%1" and the like stand for what a rule puts there.
struct RefusalText {
  std::string_view text;
  std::span<const std::string_view> methods;  // "Class.Method"
};

struct Refusal {
  std::string_view name;  // e.g. "stock.negative"
  std::span<const RefusalText> texts;
  Bilingual cause;
  Bilingual remedy;
};

std::span<const Refusal> Refusals();

// The refusal that a message tells of; null when it tells of none. A message may have more before
// the refusal's own text (the result line of a batch, the frame of a single audit), and "|" behind
// it.
const Refusal* FindRefusal(std::string_view message);

}  // namespace tavcc
