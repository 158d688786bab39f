// What the fuzzer and the replay of its findings do with a text.
#pragma once

#include <string_view>

namespace tavcc::sql {

// Sends the text, which may be anything, through the stages of the embedded database. Returns when
// each either did its work or refused the text with an error of the dialect; throws
// std::logic_error when one broke what it promises.
void FuzzBatch(std::string_view text);

}  // namespace tavcc::sql
