#include "scenario/json_edit.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/utf8.h"
#include "scenario/alignment.h"

namespace tavcc {
namespace {

// As wide as a line may become when a value is written on it.
constexpr size_t kWidest = 100;

// Where a value stands in the text, and where its parts do.
struct Part {
  size_t key = 0;  // where the member's key begins; of an element, where the element does
  std::string name;
  size_t begin = 0, end = 0;  // of the value
  std::vector<Part> parts;    // of the value
};

// Finds the places of a text that is known to be JSON.
class Finder {
 public:
  explicit Finder(std::string_view text) : text_(text) {}

  Part Whole() {
    Part whole;
    Value(whole);
    return whole;
  }

 private:
  void Blanks() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

  void Text() {
    for (++at_; text_[at_] != '"'; ++at_) {
      if (text_[at_] == '\\') ++at_;
    }
    ++at_;
  }

  void Value(Part& part) {
    Blanks();
    part.begin = at_;
    if (part.key == 0) part.key = at_;
    const char first = text_[at_];
    if (first == '{' || first == '[') {
      Parts(part, first == '{');
    } else if (first == '"') {
      Text();
    } else {
      at_ = std::min(text_.find_first_of(" \t\r\n,]}", at_), text_.size());
    }
    part.end = at_;
  }

  void Parts(Part& whole, bool members) {
    ++at_;
    for (Blanks(); text_[at_] != ']' && text_[at_] != '}'; Blanks()) {
      Part& part = whole.parts.emplace_back();
      part.key = at_;
      if (members) {
        Text();
        part.name = ParseJson(text_.substr(part.key, at_ - part.key)).get<std::string>();
        at_ = text_.find(':', at_) + 1;
      }
      Value(part);
      Blanks();
      if (text_[at_] == ',') ++at_;
    }
    ++at_;
  }

  std::string_view text_;
  size_t at_ = 0;
};

std::string OnOneLine(const Json& json) {
  if (!json.is_structured()) return Show(json);
  std::string out;
  for (const Json& element : json) out += (out.empty() ? "" : ", ") + OnOneLine(element);
  for (const auto& [key, value] : json.items()) {
    out += (out.empty() ? "" : ", ") + Show(Json(key)) + ": " + OnOneLine(value);
  }
  return json.is_array() ? "[" + out + "]" : "{" + out + "}";
}

// `column` is where the value begins, `indent` what the line begins with.
std::string LaidOut(const Json& json, const std::string& indent, size_t column) {
  std::string line = OnOneLine(json);
  if (json.empty() || column + CharacterCount(line) <= kWidest) return line;
  const std::string deeper = indent + "  ";
  std::string out;
  for (const Json& element : json) {
    out += (out.empty() ? "\n" : ",\n") + deeper + LaidOut(element, deeper, deeper.size());
  }
  for (const auto& [key, value] : json.items()) {
    const std::string name = Show(Json(key)) + ": ";
    out += (out.empty() ? "\n" : ",\n") + deeper + name;
    out += LaidOut(value, deeper, deeper.size() + CharacterCount(name));
  }
  out += "\n" + indent;
  return json.is_array() ? "[" + out + "]" : "{" + out + "}";
}

class Rewriter {
 public:
  explicit Rewriter(std::string_view text) : text_(text) {}

  std::string Value(const Part& place, const Json& old, const Json& updated) const {
    if (old == updated) return std::string(Between(place.begin, place.end));
    std::string out;
    if (old.is_array() && updated.is_array() && !old.empty() && !updated.empty()) {
      out = Elements(place, old, updated);
    } else if (old.is_object() && updated.is_object() && !old.empty() && !updated.empty()) {
      out = Members(place, old, updated);
    }
    const size_t line = LineBegin(place.begin);
    const size_t column = CharacterCount(Between(line, place.begin));
    // A line that was too long already may stay one.
    const bool wide =
        CharacterCount(Between(line, std::min(text_.find('\n', line), text_.size()))) > kWidest;
    const bool stays = wide || out.find('\n') != std::string::npos;
    if (!out.empty() && (stays || column + CharacterCount(out) <= kWidest)) return out;
    return wide && Between(place.begin, place.end).find('\n') == std::string_view::npos
               ? OnOneLine(updated)
               : LaidOut(updated, Indent(place.begin), column);
  }

 private:
  std::string_view Between(size_t begin, size_t end) const {
    return text_.substr(begin, end - begin);
  }
  size_t LineBegin(size_t at) const {
    const size_t line = at == 0 ? std::string_view::npos : text_.rfind('\n', at - 1);
    return line == std::string_view::npos ? 0 : line + 1;
  }
  std::string Indent(size_t at) const {
    const size_t begin = LineBegin(at);
    return std::string(Between(begin, text_.find_first_not_of(' ', begin)));
  }

  // What stands in front of part `index`: behind the bracket, or behind the part before it.
  std::string_view Lead(const Part& whole, size_t index) const {
    return Between(index == 0 ? whole.begin + 1 : whole.parts[index - 1].end,
                   whole.parts[index].key);
  }
  // The comma and what follows it, in front of a part that is new.
  std::string NewLead(const Part& whole) const {
    const std::string_view first = Lead(whole, 0);
    const size_t line = first.rfind('\n');
    return line == std::string_view::npos ? ", " : "," + std::string(first.substr(line));
  }
  std::string NewIndent(const Part& whole) const {
    const std::string_view first = Lead(whole, 0);
    const size_t line = first.rfind('\n');
    return line == std::string_view::npos ? Indent(whole.begin)
                                          : std::string(first.substr(line + 1));
  }

  // Puts parts together; each comes with the index that it had, or none.
  class Joined {
   public:
    Joined(const Rewriter& rewriter, const Part& whole) : rewriter_(rewriter), whole_(whole) {}

    void Old(size_t index, const std::string& text) {
      Add(out_.empty() || index == 0 ? "" : std::string(rewriter_.Lead(whole_, index)), text);
    }
    void New(const std::string& text) { Add("", text); }
    std::string Whole() const {
      const std::string_view tail = rewriter_.Between(whole_.parts.back().end, whole_.end);
      return rewriter_.text_[whole_.begin] + out_ + std::string(tail);
    }

   private:
    void Add(const std::string& lead, const std::string& text) {
      if (out_.empty()) {
        out_ = rewriter_.Lead(whole_, 0);
      } else {
        out_ += lead.empty() ? rewriter_.NewLead(whole_) : lead;
      }
      out_ += text;
    }

    const Rewriter& rewriter_;
    const Part& whole_;
    std::string out_;
  };

  std::string Elements(const Part& place, const Json& old, const Json& updated) const {
    const std::string indent = NewIndent(place);
    const auto same = [&](size_t i, size_t j) { return old[i] == updated[j]; };
    Joined joined(*this, place);
    for (const Aligned& pair : Align(old.size(), updated.size(), same)) {
      if (!pair.second) continue;  // it is gone
      const Json& element = updated[*pair.second];
      if (pair.first) {
        joined.Old(*pair.first, Value(place.parts[*pair.first], old[*pair.first], element));
      } else {
        joined.New(LaidOut(element, indent, indent.size()));
      }
    }
    return joined.Whole();
  }

  std::string Members(const Part& place, const Json& old, const Json& updated) const {
    const std::string indent = NewIndent(place);
    Joined joined(*this, place);
    for (size_t i = 0; i < place.parts.size(); ++i) {
      const Part& part = place.parts[i];
      const Json* const value = updated.find(part.name);
      if (value == nullptr) continue;
      joined.Old(i,
                 std::string(Between(part.key, part.begin)) + Value(part, old[part.name], *value));
    }
    for (const auto& [key, value] : updated.items()) {
      if (old.contains(key)) continue;
      const std::string name = Show(Json(key)) + ": ";
      joined.New(name + LaidOut(value, indent, indent.size() + CharacterCount(name)));
    }
    return joined.Whole();
  }

  std::string_view text_;
};

}  // namespace

std::string LaidOut(const Json& json) {
  return LaidOut(json, "", 0);
}

std::string Rewritten(std::string_view text, const Json& updated) {
  const Json old = ParseJson(text);
  const Part whole = Finder(text).Whole();
  return std::string(text.substr(0, whole.begin)) + Rewriter(text).Value(whole, old, updated) +
         std::string(text.substr(whole.end));
}

}  // namespace tavcc
