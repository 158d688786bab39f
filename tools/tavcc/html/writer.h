// Writes HTML. What is opened is closed, and every text is escaped, whoever it came from: a page is
// well formed by construction, and for readers of XML too.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tavcc {

class HtmlWriter {
 public:
  // One without a value is left out: {"open", folded ? "" : "open"}.
  struct Attribute {
    std::string_view name;
    std::string value;
  };
  using Attributes = std::initializer_list<Attribute>;

  // An element that is open as long as the object is.
  class Element {
   public:
    ~Element();
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

   private:
    friend class HtmlWriter;
    Element(HtmlWriter& writer, std::string_view tag) : writer_(writer), tag_(tag) {}

    HtmlWriter& writer_;
    const std::string_view tag_;
  };

  // Tags and names of attributes are literals, and live as long as the writer.
  [[nodiscard]] Element Open(std::string_view tag, Attributes attributes = {});
  // An element that holds a text and nothing else. One with Chinese in it says so, since a browser
  // chooses the shapes of the characters by it.
  void Leaf(std::string_view tag, std::string_view text, Attributes attributes = {});
  // An element that holds nothing: <meta>, and those of SVG.
  void Void(std::string_view tag, Attributes attributes);
  // Control characters are shown as Unicode's pictures of them, and what is no UTF-8 as U+FFFD.
  void Text(std::string_view text);
  // A line feed between elements, for those who read the source.
  void EndLine() { html_ += '\n'; }
  // A style sheet of our own, as it is.
  void Style(std::string_view css);

  const std::string& html() const { return html_; }

 private:
  void Begin(std::string_view tag, Attributes attributes);

  std::string html_;
};

// Whether a character of it is Chinese.
bool HasChinese(std::string_view utf8);

}  // namespace tavcc
