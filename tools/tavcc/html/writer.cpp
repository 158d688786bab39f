#include "tavcc/html/writer.h"

#include <algorithm>

#include "foundation/utf8.h"

namespace tavcc {
namespace {

// U+2400, the picture of NUL, and those behind it.
std::string ControlPicture(unsigned char control) {
  constexpr unsigned char kDelete = 0x7F, kPictureOfDelete = 0xA1;
  const unsigned char last = control == kDelete ? kPictureOfDelete : 0x80 + control;
  return {'\xE2', '\x90', static_cast<char>(last)};
}

bool IsShownAsPicture(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F;
}

// U+FFFE and U+FFFF are no characters, and XML has none of them.
bool IsNoncharacter(std::string_view text, size_t at) {
  const std::string_view three = text.substr(at, 3);
  return three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF";
}

std::string Escaped(std::string_view given) {
  const std::string text = IsUtf8(given) ? std::string(given) : RepairedUtf8(given);
  std::string escaped;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else if (c == '\r') {
      if (i + 1 == text.size() || text[i + 1] != '\n') escaped += '\n';
    } else if (IsShownAsPicture(c)) {
      escaped += ControlPicture(static_cast<unsigned char>(c));
    } else if (IsNoncharacter(text, i)) {
      escaped += "\xEF\xBF\xBD";
      i += 2;
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

HtmlWriter::Element::~Element() {
  writer_.html_ += "</";
  writer_.html_ += tag_;
  writer_.html_ += '>';
}

void HtmlWriter::Begin(std::string_view tag, Attributes attributes) {
  html_ += '<';
  html_ += tag;
  for (const Attribute& attribute : attributes) {
    if (attribute.value.empty()) continue;
    html_ += ' ';
    html_ += attribute.name;
    html_ += "=\"";
    html_ += Escaped(attribute.value);
    html_ += '"';
  }
}

HtmlWriter::Element HtmlWriter::Open(std::string_view tag, Attributes attributes) {
  Begin(tag, attributes);
  html_ += '>';
  return {*this, tag};
}

void HtmlWriter::Leaf(std::string_view tag, std::string_view text, Attributes attributes) {
  Begin(tag, attributes);
  if (HasChinese(text)) html_ += " lang=\"zh-CN\"";
  html_ += '>';
  const Element element(*this, tag);
  Text(text);
}

void HtmlWriter::Void(std::string_view tag, Attributes attributes) {
  Begin(tag, attributes);
  html_ += "/>";
}

void HtmlWriter::Text(std::string_view text) {
  html_ += Escaped(text);
}

void HtmlWriter::Style(std::string_view css) {
  const Element style = Open("style");
  html_ += css;
}

// The blocks of Chinese characters, their punctuation and their full-width forms are those whose
// first byte is E3 to E9, EF behind BC, or F0 behind A0.
bool HasChinese(std::string_view utf8) {
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const auto next = static_cast<unsigned char>(i + 1 < utf8.size() ? utf8[i + 1] : 0);
    if (byte >= 0xE3 && byte <= 0xE9) return true;
    if (byte == 0xEF && (next == 0xBC || next == 0xBD)) return true;
    if (byte == 0xF0 && next >= 0xA0) return true;
  }
  return false;
}

}  // namespace tavcc
