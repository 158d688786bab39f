#include "scenario/masking.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "foundation/utf8.h"
#include "language/language.h"
#include "scenario/scenario.h"

namespace tavcc {
namespace {

// A shorter value is masked where it stands alone; inside a text it could be anything.
constexpr size_t kShortestInside = 2;

// "xxx1": as long as the value.
std::string MaskOf(size_t characters, size_t number) {
  const std::string digits = std::to_string(number);
  return digits.size() < characters ? std::string(characters - digits.size(), 'x') + digits
                                    : digits;
}

bool IsKnownForm(const Json& json) {
  return IsForm(json, "date") || IsForm(json, "decimal") || IsForm(json, "integer") ||
         IsForm(json, "empty") || IsForm(json, "nothing");
}

bool IsStatement(std::string_view key) {
  return key == "sql" || key == "query" || key == "statements";
}

std::string ReplaceAll(std::string text, std::string_view what, std::string_view by) {
  for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

bool Mentions(const std::string& sql, const std::string& column) {
  const std::string upper = UpperCase(sql);
  const std::string name = UpperCase(column);
  const auto is_name = [&](size_t at) {
    return at < upper.size() &&
           (std::isalnum(static_cast<unsigned char>(upper[at])) != 0 || upper[at] == '_');
  };
  for (size_t at = 0; (at = upper.find(name, at)) != std::string::npos; at += name.size()) {
    if ((at == 0 || !is_name(at - 1)) && !is_name(at + name.size())) return true;
  }
  return false;
}

}  // namespace

Masks::Masks(std::vector<std::string> columns) : columns_(std::move(columns)) {}

bool Masks::IsMasked(std::string_view column) const {
  return std::ranges::any_of(
      columns_, [&](const std::string& masked) { return EqualsIgnoringCase(masked, column); });
}

void Masks::Learn(std::string_view column, const Json& value) {
  if (std::ranges::find(seen_, column) == seen_.end()) seen_.emplace_back(column);
  if (!IsMasked(column) || value.is_null() || IsForm(value, "empty")) return;
  if (!value.is_string()) {
    throw JsonError(Say(
        "--mask {}: holds {}, and only texts can be masked: rules calculate with numbers and dates",
        column, Show(value)));
  }
  if (!value.get<std::string>().empty()) masks_.emplace(value.get<std::string>(), "");
}

void Masks::LearnTape(const Json& tape) {
  for (const Json& statement : tape) {
    const Json* const columns = statement.find("columns");
    if (columns == nullptr) continue;
    for (size_t i = 0; i < columns->size(); ++i) {
      const auto column = (*columns)[i].get<std::string>();
      if (statement["rows"].empty()) Learn(column, nullptr);
      for (const Json& row : statement["rows"]) Learn(column, row[i]);
    }
  }
}

void Masks::LearnKeys(const Json& json) {
  for (const Json& element : json) LearnKeys(element);
  if (IsKnownForm(json)) return;
  for (const auto& [key, value] : json.items()) {
    if (value.is_structured() && !IsKnownForm(value)) {
      LearnKeys(value);
    } else {
      Learn(key, value);
    }
  }
}

void Masks::Learn(const Json& scenario) {
  for (const Json& step : scenario["steps"]) {
    if (const Json* const tape = step.find("tape")) LearnTape(*tape);
    for (const char* key : {"args", "expect"}) {
      if (const Json* const given = step.find(key)) LearnKeys(*given);
    }
  }
}

void Masks::Settle(std::string_view texts) {
  for (const std::string& column : columns_) {
    const bool known = std::ranges::any_of(
        seen_, [&](const std::string& seen) { return EqualsIgnoringCase(seen, column); });
    if (!known) {
      throw JsonError(Say("--mask {}: nothing that was recorded has this column{}", column,
                          DidYouMean(column, seen_)));
    }
  }
  size_t number = 0;
  for (auto& [value, mask] : masks_) {
    do {
      mask = MaskOf(CharacterCount(value), ++number);
    } while (texts.find(mask) != std::string_view::npos && CharacterCount(mask) >= kShortestInside);
    longest_first_.push_back(value);
  }
  std::ranges::stable_sort(longest_first_, [](const std::string& a, const std::string& b) {
    return a.size() > b.size();
  });
}

std::string Masks::InText(const std::string& text) const {
  if (const auto whole = masks_.find(text); whole != masks_.end()) return whole->second;
  std::string out;
  for (size_t at = 0; at < text.size();) {
    const auto value = std::ranges::find_if(longest_first_, [&](const std::string& known) {
      return CharacterCount(known) >= kShortestInside && text.compare(at, known.size(), known) == 0;
    });
    if (value == longest_first_.end()) {
      out += text[at++];
    } else {
      out += masks_.at(*value);
      at += value->size();
    }
  }
  return out;
}

// What stands between quotes is a text; all else is the rule's own.
std::string Masks::InStatement(const std::string& sql, const std::string& place) const {
  std::string out;
  for (size_t at = 0; at < sql.size();) {
    if (sql[at] != '\'') {
      out += sql[at++];
      continue;
    }
    size_t end = at + 1;
    while (end < sql.size() &&
           (sql[end] != '\'' || (end + 1 < sql.size() && sql[end + 1] == '\''))) {
      end += sql[end] == '\'' ? 2 : 1;
    }
    const std::string literal = ReplaceAll(sql.substr(at + 1, end - at - 1), "''", "'");
    out += "'" + ReplaceAll(InText(literal), "'", "''") + "'";
    at = std::min(end + 1, sql.size());
  }
  for (const std::string& value : longest_first_) {
    if (CharacterCount(value) >= kShortestInside && out.find(value) != std::string::npos) {
      throw JsonError(Say(
          "--mask: a masked value stands outside of quotes, where it cannot be masked: {}", place));
    }
  }
  return out;
}

Json Masks::Replaced(const Json& json, std::string_view key, const std::string& place) const {
  if (json.is_string()) {
    const auto text = json.get<std::string>();
    return IsStatement(key) ? InStatement(text, place) : InText(text);
  }
  if (!json.is_structured() || IsKnownForm(json)) return json;
  if (json.is_array()) {
    Json array = Json::array();
    for (const Json& element : json) {
      const std::string inner = place + " " + std::to_string(array.size() + 1);
      array.push_back(key == "columns" ? element : Replaced(element, key, inner));
    }
    return array;
  }
  Json object = Json::object();
  for (const auto& [name, value] : json.items()) {
    object[name] = name == "call" ? value : Replaced(value, name, place + ", " + name);
  }
  return object;
}

Json Masks::Apply(const Json& scenario) const {
  Json masked = Json::object();
  for (const auto& [key, value] : scenario.items()) masked[key] = Replaced(value, key, key);
  return masked;
}

std::vector<std::string> Masks::Notes(const Json& scenario) const {
  std::vector<std::string> notes;
  for (const Json& step : scenario["steps"]) {
    for (const Json& statement : step.value("tape", Json::array())) {
      const Json* const sql = statement.find("sql");
      const Json* const answers = statement.find("columns");
      if (sql == nullptr || answers == nullptr) continue;
      std::string others;
      bool has = false;
      for (const Json& answer : *answers) {
        const auto name = answer.get<std::string>();
        has = has || IsMasked(name);
        if (!IsMasked(name)) others += (others.empty() ? "" : ", ") + name;
      }
      for (const std::string& column : columns_) {
        if (has || !Mentions(sql->get<std::string>(), column)) continue;
        notes.push_back(
            Say("a statement reads {} and answers {}: mask these too where they hold it", column,
                others));
      }
    }
  }
  return notes;
}

}  // namespace tavcc
