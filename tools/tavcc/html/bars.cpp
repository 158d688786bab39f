#include "tavcc/html/bars.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "foundation/decimal.h"
#include "language/language.h"

namespace tavcc {
namespace {

// What a row was or is; nothing where it is not there.
std::optional<std::string> ValueAt(const std::vector<Value>& values, size_t column) {
  if (column >= values.size()) return std::nullopt;
  return CellText(values[column]);
}

Decimal AmountOf(const std::optional<std::string>& value) {
  return Decimal::Parse(value.value_or("0")).value_or(Decimal());
}

std::string DifferenceText(const Decimal& before, const Decimal& after) {
  const auto difference = Decimal::Subtract(after, before);
  if (!difference) return "";
  const std::string text = difference->Normalized().ToText();
  return text.starts_with('-') || text == "0" ? text : "+" + text;
}

// A bar from zero to the amount, where the whole width is from `low` to `high`.
void WriteBar(HtmlWriter& html, const char* name, const char* top, double amount, double low,
              double high) {
  constexpr double kWidth = 100;
  const double scale = high > low ? kWidth / (high - low) : 0;
  const double from = (std::min(amount, 0.0) - low) * scale;
  html.Void("rect", {{"class", name},
                     {"x", fmt::format("{:.2f}", from)},
                     {"y", top},
                     {"width", fmt::format("{:.2f}", std::abs(amount) * scale)},
                     {"height", "6"}});
}

void WriteBarPair(HtmlWriter& html, const std::string& label, const Decimal& before,
                  const Decimal& after) {
  const double old_amount = before.ToDouble(), new_amount = after.ToDouble();
  const double low = std::min({0.0, old_amount, new_amount});
  const double high = std::max({0.0, old_amount, new_amount});
  const auto picture = html.Open("svg", {{"class", "bars"},
                                         {"viewBox", "0 0 100 14"},
                                         {"preserveAspectRatio", "none"},
                                         {"role", "img"},
                                         {"aria-label", label}});
  WriteBar(html, "before", "0", old_amount, low, high);
  WriteBar(html, "after", "8", new_amount, low, high);
}

class ChangeWriter {
 public:
  ChangeWriter(HtmlWriter& html, const ChangeTable& table) : html_(html), table_(table) {
    for (size_t i = 0; i < table.key_columns.size(); ++i) {
      const bool tells = std::ranges::any_of(
          table.rows, [&](const ChangeTable::Row& row) { return !CellText(row.key[i]).empty(); });
      if (tells) keys_.push_back(i);
    }
  }

  void Write() const {
    const auto scroll = html_.Open("div", {{"class", "scroll"}});
    const auto table = html_.Open("table", {{"class", "changes"}});
    html_.Leaf("caption", CaptionText());
    WriteHeader();
    const auto body = html_.Open("tbody");
    for (const ChangeTable::Row& row : table_.rows) {
      WriteRow(row);
      html_.EndLine();
    }
  }

 private:
  std::string CaptionText() const {
    const std::string title = Translated(table_.title);
    if (!table_.amounts) return title;
    return Say("{}; the bars of each row are to a scale of their own", title);
  }

  void WriteHeader() const {
    const auto head = html_.Open("thead");
    {
      const auto row = html_.Open("tr");
      for (const size_t key : keys_) {
        html_.Leaf("th", Translated(table_.key_columns[key]), {{"scope", "col"}, {"rowspan", "2"}});
      }
      for (const std::string& value : table_.value_columns) {
        html_.Leaf(
            "th", Translated(value),
            {{"scope", "colgroup"}, {"class", "group"}, {"colspan", table_.amounts ? "4" : "2"}});
      }
    }
    const auto row = html_.Open("tr");
    for (size_t i = 0; i < table_.value_columns.size(); ++i) {
      html_.Leaf("th", Translated("before"), {{"scope", "col"}, {"class", "before"}});
      html_.Leaf("th", Translated("after"), {{"scope", "col"}, {"class", "after"}});
      if (!table_.amounts) continue;
      html_.Leaf("th", Translated("change"), {{"scope", "col"}});
      html_.Leaf("th", Translated("compared"), {{"scope", "col"}});
    }
  }

  void WriteRow(const ChangeTable::Row& row) const {
    const auto line = html_.Open("tr");
    std::string name;
    for (const size_t key : keys_) {
      const std::string text = CellText(row.key[key]);
      // The first names the row.
      html_.Leaf(key == keys_.front() ? "th" : "td", text,
                 {{"scope", key == keys_.front() ? "row" : ""}});
      if (!text.empty()) name += (name.empty() ? "" : " ") + text;
    }
    for (size_t i = 0; i < table_.value_columns.size(); ++i) WriteValue(row, i, name);
  }

  void WriteValue(const ChangeTable::Row& row, size_t column, const std::string& name) const {
    const auto before = ValueAt(row.before, column), after = ValueAt(row.after, column);
    const std::string old_text = before.value_or(Translated("none"));
    const std::string new_text = after.value_or(Translated("none"));
    html_.Leaf("td", old_text, {{"class", "amount"}});
    html_.Leaf("td", new_text, {{"class", "amount"}});
    if (!table_.amounts) return;
    html_.Leaf("td", DifferenceText(AmountOf(before), AmountOf(after)), {{"class", "amount"}});
    const auto cell = html_.Open("td");
    WriteBarPair(html_,
                 Say("{}, {}: before {}, after {}", name, Translated(table_.value_columns[column]),
                     old_text, new_text),
                 AmountOf(before), AmountOf(after));
  }

  HtmlWriter& html_;
  const ChangeTable& table_;
  std::vector<size_t> keys_;  // the columns in which a row has something
};

}  // namespace

void WriteChanges(HtmlWriter& html, const ChangeTable& table) {
  ChangeWriter(html, table).Write();
  html.EndLine();
}

}  // namespace tavcc
