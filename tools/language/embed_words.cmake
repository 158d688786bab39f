# Writes OUT, a C++ source that holds the words of the file IN byte for byte.
# Called as: cmake -DIN=… -DOUT=… -P embed_words.cmake
file(READ ${IN} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
file(WRITE ${OUT} "// Made from zh.json by embed_words.cmake.
#include \"language/words.h\"

namespace tavcc {

static constexpr char kChinese[] = {${bytes}};
std::string_view ChineseWords() { return {kChinese, sizeof(kChinese)}; }

}  // namespace tavcc
")
