// Thousands of random cases against the model in oracle.py.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "embedded/error.h"
#include "embedded/functions/evaluator.h"
#include "embedded/types/named_types.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

using Fields = std::vector<std::string>;

Fields Split(const std::string& line, char by) {
  Fields fields(1);
  for (const char c : line) {
    if (c == by) {
      fields.emplace_back();
    } else {
      fields.back().push_back(c);
    }
  }
  return fields;
}

// The lines that the model writes.
std::vector<std::string> RunModel(int seed, int count) {
  const std::string command = "python3 " +
                              (SourceDir() / "tests/embedded/types/oracle.py").string() + " " +
                              std::to_string(seed) + " " + std::to_string(count);
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::vector<std::string> lines(1);
  std::array<char, 4096> buffer;
  while (const size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
    for (const char c : std::string_view(buffer.data(), size)) {
      if (c == '\n') {
        lines.emplace_back();
      } else {
        lines.back().push_back(c);
      }
    }
  }
  lines.pop_back();
  return lines;
}

const SqlType kText = TextType(TypeKind::kVarChar, 100);

// Runs one case through the functions and says what came out, in the model's words.
class Subject {
 public:
  std::string Answer(const Fields& f) {
    if (f[0] == "cmp") {
      return evaluate_("t_cmp_decimal(" + Number(f, 1) + "," + Number(f, 4) + "," +
                       Shape(Int(f[3]), Int(f[6]), DecimalType(38, 0)) + ")");
    }
    if (f[0] == "cast") {
      return Shown("t_conv(" + Number(f, 1) + "," + Code(TypeAt(f, 2), TypeAt(f, 4)) + ")",
                   TypeAt(f, 4));
    }
    if (f[0] == "int") {
      return Words(evaluate_("t_conv(" + Number(f, 1) + "," +
                             Code(TypeAt(f, 2), Type(TypeKind::kInt)) + ")"));
    }
    if (f[0] == "round") {
      return Shown("t_round_decimal(" + Number(f, 1) + "," + f[4] + "," + f[5] + "," +
                       Shape(Int(f[3]), 0, TypeAt(f, 2)) + ")",
                   TypeAt(f, 2));
    }
    if (f[0] == "aggregate") return Aggregates(f);
    if (f[0] == "datediff") {
      return Words(
          evaluate_("t_datediff(" + Part(f[1]) + "," + Moment(f[2]) + "," + Moment(f[3]) + ")"));
    }
    if (f[0] == "dateadd") {
      return ShownDate("t_dateadd(" + Part(f[1]) + "," + f[2] + "," + Moment(f[3]) + "," +
                       std::to_string(TypeCode(kDateTime)) + ")");
    }
    if (f[0] == "read") return ShownDate(Moment(f[1]));
    return Arithmetic(f);
  }

 private:
  static int Int(const std::string& text) { return std::atoi(text.c_str()); }
  static SqlType TypeAt(const Fields& f, size_t i) { return DecimalType(Int(f[i]), Int(f[i + 1])); }

  // The number at `i` with its type behind it, as a stored decimal.
  static std::string Number(const Fields& f, size_t i) { return Number(f[i], TypeAt(f, i + 1)); }
  static std::string Number(const std::string& text, const SqlType& type) {
    return "t_conv('" + text + "'," + Code(kText, type) + ")";
  }
  static std::string Moment(const std::string& text) {
    return "t_conv('" + text + "'," + Code(kText, kDateTime) + ")";
  }
  static std::string Part(const std::string& word) {
    return std::to_string(static_cast<int>(*ParseDatePart(word)));
  }

  static std::string Words(const std::string& result) {
    for (const std::string_view overflow : {"8115 ", "535 ", "517 "}) {
      if (result.starts_with(overflow)) return "overflow";
    }
    return result.starts_with("8134 ") ? "divide by zero" : result;
  }
  std::string Shown(const std::string& expression, const SqlType& type) {
    return Words(evaluate_("t_conv(" + expression + "," + Code(type, kText) + ")"));
  }
  std::string ShownDate(const std::string& expression) {
    return Words(evaluate_("t_conv(" + expression + "," +
                           Code(kDateTime, kText, ConvertMode::kCast, 121) + ")"));
  }

  // The type comes from the product's rules; the model's own follows the operands.
  std::string Arithmetic(const Fields& f) {
    using Rule = SqlType (*)(const SqlType&, const SqlType&);
    const std::map<std::string, Rule> rules = {{"add", DecimalSum},
                                               {"sub", DecimalSum},
                                               {"mul", DecimalProduct},
                                               {"div", DecimalQuotient},
                                               {"mod", DecimalRemainder}};
    const SqlType type = rules.at(f[0])(TypeAt(f, 2), TypeAt(f, 5));
    if (type != TypeAt(f, 7)) return "type " + TypeText(type);
    return Shown("t_" + f[0] + "_decimal(" + Number(f, 1) + "," + Number(f, 4) + "," +
                     Shape(Int(f[3]), Int(f[6]), type) + ")",
                 type);
  }

  std::string Aggregates(const Fields& f) {
    const SqlType type = TypeAt(f, 2);
    const SqlType sum = ResolveAggregate(Aggregate::kSum, type);
    const SqlType average = ResolveAggregate(Aggregate::kAvg, type);
    evaluate_.Run("create table if not exists numbers(x)");
    evaluate_.Run("delete from numbers");
    for (const std::string& number : Split(f[1], ',')) {
      evaluate_.Run("insert into numbers values(" + Number(number, type) + ")");
    }
    const auto over = [&](const std::string& call, const SqlType& result) {
      return Words(
          evaluate_.Run("select t_conv(" + call + "," + Code(result, kText) + ") from numbers"));
    };
    return over("t_sum_decimal(x)", sum) + "\t" +
           over("t_avg_decimal(x," + Shape(type.scale, 0, average) + ")", average) + "\t" +
           over("t_min_decimal(x)", type) + "\t" + over("t_max_decimal(x)", type);
  }

  Evaluator evaluate_;
};

TEST(Oracle, AgreesWithAnIndependentModel) {
  if (std::system("python3 -c '' 2>/dev/null") != 0) GTEST_SKIP() << "no python3 here";
  constexpr int kCases = 20000;
  const char* seed = std::getenv("TAVCC_ORACLE_SEED");
  const std::vector<std::string> lines =
      RunModel(seed != nullptr ? std::atoi(seed) : 20260301, kCases);
  ASSERT_EQ(lines.size(), size_t{kCases});
  Subject subject;
  int failures = 0;
  for (const std::string& line : lines) {
    const Fields fields = Split(line, '\t');
    const size_t answers = fields[0] == "aggregate" ? 4 : 1;
    std::string expected = fields[fields.size() - answers];
    for (size_t i = fields.size() - answers + 1; i < fields.size(); ++i)
      expected += "\t" + fields[i];
    const std::string answer = subject.Answer(fields);
    if (answer == expected) continue;
    ADD_FAILURE() << line << "\n  answer: " << answer;
    if (++failures == 20) break;
  }
}

}  // namespace
}  // namespace tavcc::sql
