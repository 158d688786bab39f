#include "host/trace_lines.h"

#include <cmath>
#include <cstdio>

#include "foundation/dictionary.h"
#include "foundation/text.h"
#include "foundation/utf8.h"
#include "foundation/vector.h"

namespace tavcc {
namespace {

// Read back, the same double, and no whole number.
std::string DoubleText(double number) {
  if (!std::isfinite(number)) return "null";
  char text[40];
  std::snprintf(text, sizeof(text), "%.17g", number);
  const std::string_view digits = text;
  return Cat(digits, digits.find_first_of(".e") == std::string_view::npos ? ".0" : "");
}

// To the millisecond where the second is not whole.
std::string DateText(DateTime date) {
  const DateTime::Parts parts = date.ToParts();
  if (parts.millisecond == 0) return date.ToText();
  char text[40];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d.%03d", parts.year, parts.month,
                parts.day, parts.hour, parts.minute, parts.second, parts.millisecond);
  return text;
}

std::string Milliseconds(double milliseconds) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.3f", milliseconds);
  return text;
}

// The elements, made texts, with commas between them.
template <class Elements, class ToText>
std::string List(const Elements& elements, const ToText& to_text) {
  std::string list;
  for (const auto& element : elements) CatTo(list, list.empty() ? "" : ",", to_text(element));
  return list;
}

std::string ObjectText(const ObjectPtr& object) {
  if (object == nullptr) return "{\"nothing\":true}";
  if (const auto* vector = dynamic_cast<const Vector*>(object.get())) {
    std::string text;
    for (int i = vector->LBound(); i <= vector->UBound(); ++i) {
      CatTo(text, text.empty() ? "" : ",", JsonText(vector->Item(i)));
    }
    return Cat("[", text, "]");
  }
  if (dynamic_cast<const Dictionary*>(object.get()) != nullptr) return "\"a dictionary\"";
  if (dynamic_cast<const Recordset*>(object.get()) != nullptr) return "\"a recordset\"";
  if (dynamic_cast<const Connection*>(object.get()) != nullptr) return "\"a connection\"";
  return "\"an object\"";
}

std::string ParametersText(const std::vector<ProcedureParameter>& parameters) {
  return Cat("{",
             List(parameters,
                  [](const ProcedureParameter& parameter) {
                    return Cat(JsonQuoted(parameter.name), ":", JsonText(parameter.value));
                  }),
             "}");
}

std::string RowCountText(const LoggedStatement& statement) {
  const bool has_result = statement.rows >= 0 || statement.seen != nullptr;
  return has_result ? Cat(int32_t{statement.rows}) : "null";
}

// Without the braces.
std::string StatementMembers(const LoggedStatement& statement) {
  std::string members =
      Cat(statement.is_procedure ? "\"procedure\":" : "\"sql\":", JsonQuoted(statement.text));
  if (statement.is_procedure) {
    CatTo(members, ",\"parameters\":", ParametersText(statement.parameters),
          ",\"outputs\":", ParametersText(statement.outputs));
  }
  CatTo(members, ",\"from\":", JsonQuoted(PlaceText(statement.from)));
  if (!statement.gate.empty()) CatTo(members, ",\"gate\":", JsonQuoted(statement.gate));
  CatTo(members, ",\"rows\":", RowCountText(statement),
        ",\"milliseconds\":", Milliseconds(statement.milliseconds));
  if (statement.error) CatTo(members, ",\"error\":", ErrorJsonText(*statement.error));
  return members;
}

std::string SeenMembers(const SeenRows& seen) {
  const auto row_text = [](const std::vector<Value>& row) {
    return Cat("[", List(row, JsonText), "]");
  };
  return Cat("\"columns\":[", List(seen.columns, JsonQuoted), "],\"rows\":[",
             List(seen.rows, row_text), "],\"count\":", int32_t{seen.count},
             ",\"to_the_end\":", seen.to_the_end ? "true" : "false");
}

std::string_view QuestionName(HostQuestion question) {
  switch (question) {
    case HostQuestion::kSetting:
      return "setting";
    case HostQuestion::kPublished:
      return "published";
    case HostQuestion::kRight:
      return "right";
    case HostQuestion::kText:
      return "text";
    case HostQuestion::kUser:
      return "user";
  }
  return "";
}

}  // namespace

std::string JsonQuoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : RepairedUtf8(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20) {
      char code[8];
      std::snprintf(code, sizeof(code), "\\u%04x", byte);
      out += code;
    } else {
      out += c;
    }
  }
  return out += '"';
}

std::string JsonText(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kMissing:
      return "{\"empty\":true}";
    case Value::Kind::kNull:
      return "null";
    case Value::Kind::kBoolean:
      return value.boolean() ? "true" : "false";
    case Value::Kind::kInteger:
      return Cat("{\"integer\":", int32_t{value.integer()}, "}");
    case Value::Kind::kLong:
      return Cat(value.long_integer());
    case Value::Kind::kDouble:
      return DoubleText(value.number());
    case Value::Kind::kDecimal:
      return Cat("{\"decimal\":", JsonQuoted(value.decimal().ToText()), "}");
    case Value::Kind::kDate:
      return Cat("{\"date\":", JsonQuoted(DateText(value.date())), "}");
    case Value::Kind::kText:
      return JsonQuoted(value.text());
    case Value::Kind::kObject:
      return ObjectText(value.object());
  }
  return "null";
}

std::string ErrorJsonText(const AutomationError& error) {
  return Cat("{\"number\":", error.number(), ",\"source\":", JsonQuoted(error.source()),
             ",\"description\":", JsonQuoted(error.description()), "}");
}

std::string StatementJsonText(const LoggedStatement& statement) {
  return Cat("{", StatementMembers(statement), "}");
}

std::string StatementLine(const LoggedStatement& statement) {
  return Cat("{\"statement\":", int32_t{statement.number}, ",", StatementMembers(statement), "}");
}

std::string RowsLine(const LoggedStatement& statement) {
  return Cat("{\"rows_of\":", int32_t{statement.number}, ",", SeenMembers(*statement.seen), "}");
}

std::string ErrorsLine(int statement, const std::vector<ConnectionError>& errors) {
  return Cat("{\"errors_of\":", int32_t{statement}, ",\"errors\":[",
             List(errors,
                  [](const ConnectionError& error) {
                    return Cat("{\"number\":", error.number,
                               ",\"source\":", JsonQuoted(error.source),
                               ",\"description\":", JsonQuoted(error.description),
                               ",\"state\":", JsonQuoted(error.sql_state), "}");
                  }),
             "]}");
}

std::string HostLine(const HostAnswer& answer) {
  std::string line = Cat("{\"host\":", JsonQuoted(QuestionName(answer.question)));
  if (!answer.category.empty()) CatTo(line, ",\"category\":", JsonQuoted(answer.category));
  if (!answer.key.empty()) CatTo(line, ",\"key\":", JsonQuoted(answer.key));
  CatTo(line, ",\"value\":", JsonText(answer.value));
  if (!answer.gate.empty()) CatTo(line, ",\"gate\":", JsonQuoted(answer.gate));
  return line += '}';
}

std::string GateLine(const GateAnswer& answer) {
  const auto line = [&](std::string_view word) {
    return Cat("{\"gate\":", JsonQuoted(answer.gate), ",\"answer\":", JsonQuoted(word));
  };
  if (!answer.verdict) return line("failed") + "}";
  const Verdict& verdict = *answer.verdict;
  if (verdict.passed) return line(verdict.asked ? "passed" : "not asked") + "}";
  return Cat(line("refused"), ",\"message\":", JsonQuoted(verdict.message),
             ",\"rule\":", JsonQuoted(PlaceText(verdict.where)), "}");
}

}  // namespace tavcc
