// Every function withstands every argument: it answers, or it fails with an error of the table. Run
// with the sanitizers this also finds what must not happen inside.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "embedded/functions/evaluator.h"
#include "embedded/functions/support.h"

namespace tavcc::sql {
namespace {

class RandomCall {
 public:
  explicit RandomCall(uint64_t seed) : random_(seed) {
    using namespace internal;
    for (const auto entries :
         {IntegerFunctions(), FloatFunctions(), DecimalFunctions(), ConversionFunctions(),
          TextFunctions(), SearchFunctions(), DateFunctions()}) {
      for (const ScalarEntry& entry : entries) functions_.emplace_back(entry.name, entry.arguments);
    }
    for (const AggregateEntry& entry : AggregateFunctions()) {
      functions_.emplace_back(entry.name, entry.arguments);
    }
  }

  std::string Next() {
    const auto& [name, arguments] = functions_[Below(functions_.size())];
    std::string call = std::string(name) + "(";
    for (int i = 0; i < arguments; ++i) call += (i > 0 ? "," : "") + Argument();
    return call + ")";
  }

 private:
  size_t Below(size_t limit) { return static_cast<size_t>(random_() % limit); }

  template <size_t size>
  std::string Pick(const char* const (&choices)[size]) {
    return choices[Below(size)];
  }

  SqlType AnyType() {
    static const SqlType kTypes[] = {Type(TypeKind::kInt),
                                     Type(TypeKind::kBit),
                                     Type(TypeKind::kTinyInt),
                                     Type(TypeKind::kBigInt),
                                     Type(TypeKind::kMoney),
                                     Type(TypeKind::kSmallMoney),
                                     Type(TypeKind::kFloat),
                                     Type(TypeKind::kReal),
                                     Type(TypeKind::kDate),
                                     Type(TypeKind::kDateTime),
                                     Type(TypeKind::kSmallDateTime),
                                     Type(TypeKind::kUniqueIdentifier),
                                     DecimalType(38, 10),
                                     DecimalType(28, 10),
                                     DecimalType(38, 38),
                                     DecimalType(1, 0),
                                     TextType(TypeKind::kVarChar, 5),
                                     TextType(TypeKind::kChar, 7),
                                     TextType(TypeKind::kNVarChar, SqlType::kMax),
                                     TextType(TypeKind::kNChar, 3),
                                     TextType(TypeKind::kVarBinary, 4),
                                     TextType(TypeKind::kBinary, 6)};
    return kTypes[Below(std::size(kTypes))];
  }

  std::string Text() {
    std::string text = "'";
    for (size_t i = Below(12); i > 0; --i) {
      text += Pick({"a", "%",  "_", "[",    "]", "^", "-", " ",  "1",   "9",    ":", "/",
                    ".", "单", "😀", "\xff", "Z", "e", "+", "AM", "Mar", "2026", "é"});
    }
    return text + "'";
  }

  std::string Bytes(size_t size) {
    std::string text = "x'";
    for (; size > 0; --size) text += Pick({"00", "01", "7f", "80", "ff", "31", "a5"});
    return text + "'";
  }

  std::string Argument() {
    switch (Below(9)) {
      case 0:
        return "NULL";
      case 1:
        return std::to_string(static_cast<int64_t>(random_()));
      case 2:
        return std::to_string(static_cast<int64_t>(Below(200)) - 100);
      case 3:
        return Pick({"9223372036854775807", "-9223372036854775807-1", "0", "1", "-1"});
      case 4:
        return Pick({"1e308", "-1e308", "0.0", "1e-300", "0.5", "-2.5"});
      case 5:
        return Text();
      case 6:
        return Bytes(Below(20));
      case 7:
        return Bytes(WideInteger::kBlobSize);
      default:
        break;
    }
    if (Below(2) == 0)
      return Code(AnyType(), AnyType(), ConvertMode::kCast, static_cast<int>(Below(130)));
    return Shape(static_cast<int>(Below(39)), static_cast<int>(Below(39)), AnyType());
  }

  std::mt19937_64 random_;
  std::vector<std::pair<const char*, int>> functions_;
};

TEST(RandomCalls, AnswerOrFailWithAnErrorOfTheTable) {
  const char* count = std::getenv("TAVCC_RANDOM_CALLS");
  Evaluator evaluate;
  RandomCall calls(20260301);
  for (int i = count != nullptr ? std::atoi(count) : 20000; i > 0; --i) {
    const std::string call = calls.Next();
    const std::string answer = evaluate(call);
    const bool ours = !answer.starts_with("sqlite: ") || answer == "sqlite: string or blob too big";
    ASSERT_TRUE(ours) << call << " -> " << answer;
    if (const auto& error = evaluate.session().pending) {
      // What no column of a type can hold is damage.
      const bool damage =
          error->number == kStoreFailure && error->message.starts_with("the file is damaged: ");
      ASSERT_TRUE(damage || FindError(error->number) != nullptr) << call;
    }
  }
}

}  // namespace
}  // namespace tavcc::sql
