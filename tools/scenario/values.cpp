// Conversions between automation values and JSON.
#include "scenario/values.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "host/host_dictionary.h"
#include "host/trace_lines.h"
#include "language/language.h"

namespace tavcc {
namespace {

DateTime DateFromJson(const Json& text) {
  const auto date = text.is_string() ? DateTime::Parse(text.get<std::string>()) : std::nullopt;
  if (!date) throw JsonError(Say("no date: {}", Show(text)));
  return *date;
}

Decimal DecimalFromJson(const Json& text) {
  const auto decimal = text.is_string() ? Decimal::Parse(text.get<std::string>()) : std::nullopt;
  if (!decimal) throw JsonError(Say("no decimal number (write it as a text): {}", Show(text)));
  return *decimal;
}

Value IntegerFromJson(const Json& number) {
  if (!IsWholeNumber(number, INT16_MIN, INT16_MAX)) {
    throw JsonError(Say("no 16-bit integer: {}", Show(number)));
  }
  return number.get<int16_t>();
}

Value NumberFromJson(const Json& json) {
  if (!IsWholeNumber(json, INT64_MIN, INT64_MAX)) return json.get<double>();
  const auto number = json.get<int64_t>();
  if (number < INT32_MIN || number > INT32_MAX) return Decimal(number);
  return static_cast<int32_t>(number);
}

constexpr const char* kForms[] = {"date", "decimal", "integer", "empty", "nothing"};

bool IsAnyForm(const Json& json) {
  return std::ranges::any_of(kForms, [&](const char* form) { return IsForm(json, form); });
}

Value FormFromJson(const Json& json) {
  if (IsForm(json, "date")) return DateFromJson(json.items().front().value);
  if (IsForm(json, "decimal")) return DecimalFromJson(json.items().front().value);
  if (IsForm(json, "integer")) return IntegerFromJson(json.items().front().value);
  if (IsForm(json, "empty")) return Empty{};
  return ObjectPtr();
}

Value DictionaryFromJson(Host& host, const Json& json) {
  auto dictionary = host.NewDictionary();
  for (const auto& [key, value] : json.items())
    dictionary->SetItem(key, ValueFromJson(host, value));
  return dictionary;
}

Value ArrayFromJson(Host& host, const Json& json) {
  auto vector = host.NewVector();
  for (const Json& element : json) vector->Add(ValueFromJson(host, element));
  return vector;
}

Json JsonFromDecimal(const Decimal& decimal, DecimalForm form) {
  if (form == DecimalForm::kAllDigits) return Json::number(decimal.ToText());
  constexpr int kDigitsOfDouble = 15;
  const Decimal normal = decimal.Normalized();
  if (normal.Digits() > kDigitsOfDouble || normal.scale() > kDigitsOfDouble) {
    return Json{{"decimal", decimal.ToText()}};
  }
  if (normal.scale() == 0) return *normal.Coefficient64();
  return normal.ToDouble();
}

Json JsonFromObject(const ObjectPtr& object, DecimalForm decimals) {
  if (object == nullptr) return nullptr;
  if (auto* recordset = dynamic_cast<Recordset*>(object.get())) {
    return recordset->IsOpen() ? JsonFromRows(*recordset, RowForm::kObjects, decimals)
                               : Json("closed");
  }
  if (auto* vector = dynamic_cast<Vector*>(object.get())) {
    Json elements = Json::array();
    for (int i = vector->LBound(); i <= vector->UBound(); ++i) {
      elements.push_back(JsonFromValue(vector->Item(i), decimals));
    }
    return elements;
  }
  if (auto* dictionary = dynamic_cast<HostDictionary*>(object.get())) {
    Json items = Json::object();
    for (const auto& [key, value] : dictionary->entries()) {
      items[key] = JsonFromValue(value, decimals);
    }
    return items;
  }
  if (dynamic_cast<Dictionary*>(object.get()) != nullptr) return "a dictionary";
  return "an object";
}

Json ExactJsonOfObject(const ObjectPtr& object) {
  if (object == nullptr) return Json{{"nothing", true}};
  if (const auto* vector = dynamic_cast<const Vector*>(object.get())) {
    Json elements = Json::array();
    for (int i = vector->LBound(); i <= vector->UBound(); ++i) {
      elements.push_back(ExactJson(vector->Item(i)));
    }
    return elements;
  }
  const auto* dictionary = dynamic_cast<const HostDictionary*>(object.get());
  if (dictionary == nullptr) throw JsonError(Say("an object that no file can hold"));
  Json items = Json::object();
  for (const auto& [key, value] : dictionary->entries()) items[key] = ExactJson(value);
  if (IsAnyForm(items))
    throw JsonError(Say("a dictionary that would read as one value: {}", Show(items)));
  return items;
}

}  // namespace

Value ScalarFromJson(const Json& json) {
  if (json.is_null()) return Null{};
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number()) return NumberFromJson(json);
  if (json.is_string()) return json.get<std::string>();
  if (!IsAnyForm(json)) throw JsonError(Say("no single value: {}", Show(json)));
  return FormFromJson(json);
}

Value ValueFromJson(Host& host, const Json& json) {
  if (json.is_array()) return ArrayFromJson(host, json);
  if (json.is_object() && !IsAnyForm(json)) return DictionaryFromJson(host, json);
  return ScalarFromJson(json);
}

Json ExactJson(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
      return Json{{"empty", true}};
    case Value::Kind::kInteger:
      return Json{{"integer", value.integer()}};
    case Value::Kind::kDecimal:
      return Json{{"decimal", value.decimal().ToText()}};
    case Value::Kind::kObject:
      return ExactJsonOfObject(value.object());
    default:
      return JsonFromValue(value);
  }
}

Json ErrorJson(const AutomationError& error) {
  return {
      {"number", error.number()}, {"source", error.source()}, {"description", error.description()}};
}

Json JsonFromValue(const Value& value, DecimalForm form) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
    case Value::Kind::kMissing:
      return nullptr;
    case Value::Kind::kBoolean:
      return value.boolean();
    case Value::Kind::kInteger:
      return value.integer();
    case Value::Kind::kLong:
      return value.long_integer();
    case Value::Kind::kDouble:
      return value.number();
    case Value::Kind::kDecimal:
      return JsonFromDecimal(value.decimal(), form);
    case Value::Kind::kDate:
      return ParseJson(JsonText(value));
    case Value::Kind::kText:
      return value.text();
    case Value::Kind::kObject:
      return JsonFromObject(value.object(), form);
  }
  return nullptr;
}

Json JsonFromRows(Recordset& recordset, RowForm form, DecimalForm decimals) {
  Json rows = Json::array();
  if (recordset.AtEnd() && recordset.AtStart()) return rows;
  recordset.MoveFirst();
  for (; !recordset.AtEnd(); recordset.MoveNext()) {
    Json row = form == RowForm::kObjects ? Json::object() : Json::array();
    for (int i = 0; i < recordset.FieldCount(); ++i) {
      Json field = JsonFromValue(recordset.Field(i), decimals);
      if (form == RowForm::kObjects) {
        row[recordset.FieldName(i)] = std::move(field);
      } else {
        row.push_back(std::move(field));
      }
    }
    rows.push_back(std::move(row));
  }
  recordset.MoveFirst();
  return rows;
}

}  // namespace tavcc
