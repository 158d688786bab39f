// Comparing what a scenario expects with what came.
#include <optional>

#include "foundation/error.h"
#include "scenario/alignment.h"
#include "scenario/values.h"

namespace tavcc {
namespace {

class Comparison {
 public:
  explicit Comparison(std::vector<std::string>& differences) : differences_(differences) {}

  void Values(const Json& expected, const Value& actual, const std::string& path);

 private:
  void Numbers(const Json& expected, const Value& actual, const std::string& path);
  void Keys(const Json& expected, const Value& actual, const std::string& path);
  void Elements(const Json& expected, const Value& actual, const std::string& path);
  void Rows(const Json& expected, Recordset& actual, const std::string& path);
  void SideBySide(const Json& expected, Recordset& actual, const std::string& path);
  void Row(const Json& expected, const Recordset& actual, const std::string& path);
  bool SameSize(size_t expected, size_t actual, std::string_view noun, const std::string& path);
  void Differ(const Json& expected, const Value& actual, const std::string& path);
  void Add(const std::string& path, const std::string& text);

  std::vector<std::string>& differences_;
};

std::optional<Decimal> ExpectedNumber(const Json& json) {
  if (json.is_object()) {
    const Json* const decimal = json.find("decimal");
    if (decimal != nullptr && decimal->is_string()) {
      return Decimal::Parse(decimal->get<std::string>());
    }
    const Json* const integer = json.find("integer");
    return integer != nullptr ? ExpectedNumber(*integer) : std::nullopt;
  }
  if (json.is_number_integer()) return Decimal(json.get<int64_t>());
  return Decimal::FromDouble(json.get<double>());
}

std::optional<Decimal> ActualNumber(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kInteger:
      return Decimal(value.integer());
    case Value::Kind::kLong:
      return Decimal(value.long_integer());
    case Value::Kind::kDouble:
      return Decimal::FromDouble(value.number());
    case Value::Kind::kDecimal:
      return value.decimal();
    default:
      return std::nullopt;
  }
}

// A bit column reads as a Boolean; statements write it as 1, automation as -1.
bool IsNumberOfBoolean(const Decimal& number, bool boolean) {
  if (!boolean) return number.IsZero();
  return number == Decimal(1) || number == Decimal(-1);
}

bool IsNothing(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
    case Value::Kind::kMissing:
      return true;
    case Value::Kind::kObject:
      return value.object() == nullptr;
    default:
      return false;
  }
}

bool IsText(const std::string& expected, const Value& actual) {
  if (actual.IsText()) return actual.text() == expected;
  return actual.kind() == Value::Kind::kDate && DateTime::Parse(expected) == actual.date();
}

void Comparison::Values(const Json& expected, const Value& actual, const std::string& path) {
  if (expected.is_null() || IsForm(expected, "nothing") || IsForm(expected, "empty")) {
    if (!IsNothing(actual)) Differ(expected, actual, path);
    return;
  }
  if (expected.is_boolean()) {
    const bool same =
        actual.kind() == Value::Kind::kBoolean && actual.boolean() == expected.get<bool>();
    if (!same) Differ(expected, actual, path);
    return;
  }
  if (expected.is_number() || IsForm(expected, "decimal") || IsForm(expected, "integer")) {
    return Numbers(expected, actual, path);
  }
  if (expected.is_string()) {
    if (!IsText(expected.get<std::string>(), actual)) Differ(expected, actual, path);
    return;
  }
  if (expected.is_array()) return Elements(expected, actual, path);
  if (IsForm(expected, "date") && ObjectOf<Dictionary>(actual) == nullptr) {
    const Json& date = expected.items().front().value;
    const bool same = actual.kind() == Value::Kind::kDate && date.is_string() &&
                      IsText(date.get<std::string>(), actual);
    if (!same) Differ(expected, actual, path);
    return;
  }
  Keys(expected, actual, path);
}

void Comparison::Numbers(const Json& expected, const Value& actual, const std::string& path) {
  const auto number = ExpectedNumber(expected);
  if (!number) return Add(path, "the expected " + Show(expected) + " is no number");
  if (actual.kind() == Value::Kind::kBoolean) {
    if (!IsNumberOfBoolean(*number, actual.boolean())) Differ(expected, actual, path);
    return;
  }
  if (ActualNumber(actual) != number) Differ(expected, actual, path);
}

void Comparison::Keys(const Json& expected, const Value& actual, const std::string& path) {
  const auto* dictionary = ObjectOf<Dictionary>(actual);
  if (dictionary == nullptr) return Differ(expected, actual, path);
  for (const auto& [key, value] : expected.items()) {
    const std::string place = path + "." + key;
    if (!dictionary->Lookup(key) && !value.is_null()) {
      Add(place, "expected " + Show(value) + ", but there is no such key");
      continue;
    }
    Values(value, dictionary->Item(key), place);
  }
}

void Comparison::Elements(const Json& expected, const Value& actual, const std::string& path) {
  if (auto* recordset = ObjectOf<Recordset>(actual)) return Rows(expected, *recordset, path);
  const auto* vector = ObjectOf<Vector>(actual);
  if (vector == nullptr) return Differ(expected, actual, path);
  if (!SameSize(expected.size(), static_cast<size_t>(vector->Size()), "elements", path)) return;
  int index = vector->LBound();
  for (const Json& element : expected) {
    Values(element, vector->Item(index), path + "(" + std::to_string(index) + ")");
    ++index;
  }
}

void Comparison::Rows(const Json& expected, Recordset& actual, const std::string& path) {
  if (!actual.IsOpen()) return Add(path, "expected rows, got a closed recordset");
  const Json rows = JsonFromRows(actual, RowForm::kObjects);
  if (!SameSize(expected.size(), rows.size(), "rows", path))
    return SideBySide(expected, actual, path);
  int number = 1;
  for (const Json& row : expected) {
    Row(row, actual, path + " row " + std::to_string(number));
    ++number;
    actual.MoveNext();
  }
  if (!rows.empty()) actual.MoveFirst();
}

// Which rows are missing, which are too many, and what differs in those that stay.
void Comparison::SideBySide(const Json& expected, Recordset& actual, const std::string& path) {
  const auto go_to = [&](size_t index) {
    actual.MoveFirst();
    for (; index > 0; --index) actual.MoveNext();
  };
  const auto same = [&](size_t i, size_t j) {
    go_to(j);
    std::vector<std::string> differences;
    Comparison(differences).Row(expected[i], actual, path);
    return differences.empty();
  };
  const Json rows = JsonFromRows(actual, RowForm::kObjects);
  for (const Aligned& pair : Align(expected.size(), rows.size(), same)) {
    if (!pair.second) {
      Add(path,
          "missing: row " + std::to_string(*pair.first + 1) + " " + Show(expected[*pair.first]));
    } else if (!pair.first) {
      Add(path,
          "too many: row " + std::to_string(*pair.second + 1) + " " + Show(rows[*pair.second]));
    } else {
      go_to(*pair.second);
      Row(expected[*pair.first], actual, path + " row " + std::to_string(*pair.second + 1));
    }
  }
  if (!rows.empty()) actual.MoveFirst();
}

void Comparison::Row(const Json& expected, const Recordset& actual, const std::string& path) {
  if (expected.is_array()) {
    if (!SameSize(expected.size(), static_cast<size_t>(actual.FieldCount()), "columns", path)) {
      return;
    }
    for (int i = 0; i < actual.FieldCount(); ++i) {
      Values(expected[static_cast<size_t>(i)], actual.Field(i), path + " " + actual.FieldName(i));
    }
    return;
  }
  if (!expected.is_object()) {
    return Add(path, "is expected as " + Show(expected) + ", which is neither object nor array");
  }
  for (const auto& [column, value] : expected.items()) {
    try {
      Values(value, actual.Field(column), path + " " + column);
    } catch (const AutomationError&) {
      Add(path, "there is no column " + column);
    }
  }
}

bool Comparison::SameSize(size_t expected, size_t actual, std::string_view noun,
                          const std::string& path) {
  if (expected == actual) return true;
  Add(path, "expected " + std::to_string(expected) + " " + std::string(noun) + ", got " +
                std::to_string(actual));
  return false;
}

void Comparison::Differ(const Json& expected, const Value& actual, const std::string& path) {
  Add(path, "expected " + Show(expected) + ", got " + Show(JsonFromValue(actual)));
}

void Comparison::Add(const std::string& path, const std::string& text) {
  differences_.push_back(path + ": " + text);
}

}  // namespace

void Compare(const Json& expected, const Value& actual, const std::string& path,
             std::vector<std::string>& differences) {
  Comparison(differences).Values(expected, actual, path);
}

}  // namespace tavcc
