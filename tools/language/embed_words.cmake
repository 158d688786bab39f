# Writes OUT, a C++ source with the words of the JSON file IN, text beside text.
# Called as: cmake -DIN=… -DOUT=… -P embed_words.cmake
file(READ ${IN} words)

# As a literal, each byte written out, whatever the text holds.
function(literal out text)
  string(HEX "${text}" bytes)
  string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
  set(${out} "\"${bytes}\"" PARENT_SCOPE)
endfunction()

string(JSON count LENGTH "${words}")
math(EXPR last "${count} - 1")
set(rows "")
foreach(index RANGE ${last})
  string(JSON key MEMBER "${words}" ${index})
  string(JSON value GET "${words}" "${key}")
  literal(english "${key}")
  literal(chinese "${value}")
  string(APPEND rows "    {${english}, ${chinese}},\n")
endforeach()
file(WRITE ${OUT} "// Made from zh.json by embed_words.cmake.
#include \"language/words.h\"

namespace tavcc {

static constexpr Word kChinese[] = {
${rows}};
std::span<const Word> ChineseWords() { return kChinese; }

}  // namespace tavcc
")
