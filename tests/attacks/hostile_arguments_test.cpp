// Every method is called with arguments that no sane host sends: wrong types, wrong keys, huge and
// tiny numbers, texts that are statements. It answers or raises an automation error; what it did is
// rolled back with the host's transaction, and a sound call works afterwards.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

#include "foundation/conversions.h"
#include "foundation/error.h"
#include "foundation/plug_in.h"
#include "host/erp.h"
#include "host/schema.h"
#include "registry/class_registry.h"
#include "support/seed.h"

namespace tavcc::testing {
namespace {

constexpr int32_t kNumbers[] = {0,
                                1,
                                -1,
                                2,
                                101,
                                121,
                                1020002,
                                1030002,
                                1040005,
                                2013,
                                3001,
                                std::numeric_limits<int32_t>::max(),
                                std::numeric_limits<int32_t>::min()};
constexpr double kDoubles[] = {0,
                               -0.5,
                               1e15,
                               1e300,
                               -1e-300,
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};
const std::string kTexts[] = {"",
                              " ",
                              "121",
                              "-1",
                              "1e400",
                              "2026-03-01",
                              "T_CC_StockBill",
                              "T_CC_ZZCX",
                              "x'y",
                              "--",
                              "/*",
                              "1;select 1",
                              "T_CC_ZZCX where 1=0 select 1,2 from T_CC_ZZCX",
                              "]",
                              "\"",
                              "%1%2",
                              "^|^~$~",
                              "单据",
                              "\xff\xfe",
                              std::string("a\0b", 3),
                              std::string(5000, 'x'),
                              std::string(300, '(')};
constexpr std::string_view kKeys[] = {"ClassTypeID",
                                      "BillInterID",
                                      "BillType",
                                      "BillTypeID",
                                      "HeadTableName",
                                      "BillNo",
                                      "Entry1TableName",
                                      "Entry2TableName",
                                      "CustOrSupplyID",
                                      "AllAmount",
                                      "FItemID",
                                      "FQty",
                                      "FSCStockID",
                                      "FDCStockID",
                                      "FCoefficient",
                                      "FNeutralizeAmount",
                                      "Map",
                                      "Page1",
                                      "Page2",
                                      "FFLD",
                                      "FPrice"};

class Hostile : public Chance {
 public:
  Hostile(Erp& erp, uint32_t seed) : Chance(seed), erp_(erp) {}

  Value Of(ArgumentType type) {
    if (Below(8) == 0) return Anything(3);
    switch (type) {
      case ArgumentType::kBoolean:
        return Below(2) == 0;
      case ArgumentType::kInteger:
        return static_cast<int16_t>(Chance::Of(kNumbers));
      case ArgumentType::kLong:
        return Chance::Of(kNumbers);
      case ArgumentType::kDictionary:
        return Bill(3);
      case ArgumentType::kVector:
        return Bills(3);
      case ArgumentType::kConnection:
        return ObjectPtr(erp_.connection());
      case ArgumentType::kText:
        return Chance::Of(kTexts);
      default:
        return Anything(3);
    }
  }

 private:
  Value Anything(int depth) {
    switch (Below(depth > 0 ? 10 : 8)) {
      case 0:
        return Empty{};
      case 1:
        return Null{};
      case 2:
        return ObjectPtr();
      case 3:
        return Chance::Of(kDoubles);
      case 4:
        return Below(2) == 0;
      case 5:
        return Chance::Of(kTexts);
      case 6:
        return *Decimal::Parse("99999999999999999999999999999999999999");
      case 7:
        return Chance::Of(kNumbers);
      case 8:
        return Bill(depth - 1);
      default:
        return Bills(depth - 1);
    }
  }
  Value Bill(int depth) {
    const DictionaryPtr dictionary = erp_.host().NewDictionary();
    const size_t keys = Below(std::size(kKeys) + 1);
    for (size_t i = 0; i < keys; ++i) {
      const bool number = Below(3) > 0;
      const std::string_view key = Chance::Of(kKeys);
      dictionary->SetItem(key, number ? Value(Chance::Of(kNumbers)) : Anything(depth));
    }
    return ObjectPtr(dictionary);
  }
  Value Bills(int depth) {
    const VectorPtr vector = erp_.host().NewVector();
    for (size_t i = Below(4); i > 0; --i) vector->Add(Below(4) > 0 ? Bill(depth) : Anything(depth));
    return ObjectPtr(vector);
  }

  Erp& erp_;
};

// One call in the host's transaction, which is rolled back.
bool Answers(Erp& erp, const ClassDescription& cls, const Method& method, Hostile& hostile) {
  std::vector<Value> arguments;
  for (const Parameter& parameter : method.parameters) {
    const bool is_dsn = parameter.name == "sDsn" || parameter.name == "strConString";
    arguments.push_back(is_dsn ? Value(erp.dsn()) : hostile.Of(parameter.type));
  }
  erp.BeginTransaction();
  bool answered = true;
  try {
    PlugIn object(erp.host());
    Invoke(cls, method, object, arguments);
  } catch (const AutomationError&) {
    answered = false;
  }
  erp.Rollback();
  erp.log().Clear();
  return answered;
}

std::string Count(Erp& erp) {
  std::string counts;
  for (const char* table : {"T_CC_StockBill", "T_CC_StockBillEntry", "T_CC_ZZCX", "T_CC_Inventory",
                            "t_SerialNumList", "t_LatestPrice"}) {
    const RecordsetPtr rows =
        erp.connection()->Execute(std::string("select count(*) from ") + table);
    counts += ToText(rows->Field(0)) + " ";
  }
  return counts;
}

TEST(HostileArguments, EachMethodAnswersOrRaisesAndLeavesNothing) {
  const uint32_t seed = Seed();
  const int calls = TryAll() ? 2000 : 25;
  Erp erp{sql::OpenOptions{}};
  for (const std::string_view script : {SchemaScript(), BaseScript(), SampleScript()}) {
    erp.RunScript(script);
  }
  Hostile hostile(erp, seed);
  const std::string before = Count(erp);
  int tried = 0, answered = 0;
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      if (!IsBuilt(method)) continue;
      SCOPED_TRACE(std::string(cls.name) + "." + std::string(method.name) + ", seed " +
                   std::to_string(seed));
      for (int call = 0; call < calls; ++call) {
        ++tried;
        if (Answers(erp, cls, method, hostile)) ++answered;
      }
      ASSERT_EQ(Count(erp), before);
    }
  }
  std::printf("seed %u: %d hostile calls, %d answered, the others raised\n", seed, tried, answered);
  EXPECT_GT(answered, 0);
  EXPECT_LT(answered, tried);
}

}  // namespace
}  // namespace tavcc::testing
