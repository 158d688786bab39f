// What becomes of promises that methods no longer keep.
#include "faults/contract_update.h"

#include <gtest/gtest.h>

namespace tavcc::faults {
namespace {

using Kind = StatementFault::Kind;

constexpr const char* kSelect = "Select FStatus From T_CC_ZZCX where FID=1";
constexpr const char* kUpdate = "Update T_CC_ZZCX set FStatus=1";

Observation Seen(const char* statement, bool kept, const char* answer, Kind kind = Kind::kRaised) {
  return {kind, "cls_CX.AuditBill", statement, Json::object(), kept, ParseJson(answer)};
}

std::string UpdatedText(const char* contracts, const std::vector<Observation>& observations) {
  return Show(Updated(ParseJson(contracts), observations).contracts);
}

constexpr const char* kOnePromise = R"({"cls_CX.AuditBill":[{"expect":{"result":false}}]})";

TEST(ContractUpdate, LeavesWhatIsKept) {
  EXPECT_EQ(UpdatedText(kOnePromise, {Seen(kSelect, true, R"({"as_usual":true})")}), kOnePromise);
}

TEST(ContractUpdate, ReplacesWhatNoFaultKeeps) {
  EXPECT_EQ(UpdatedText(kOnePromise, {Seen(kSelect, false, R"({"expect":{"result":true}})"),
                                      Seen(kUpdate, false, R"({"expect":{"result":true}})")}),
            R"({"cls_CX.AuditBill":[{"expect":{"result":true}}]})");
}

TEST(ContractUpdate, PutsAPromiseInFrontOfOneThatSomeKeep) {
  EXPECT_EQ(UpdatedText(kOnePromise, {Seen(kSelect, true, R"({"expect":{"result":false}})"),
                                      Seen(kUpdate, false, R"({"goes_on":true})")}),
            R"({"cls_CX.AuditBill":[{"statement":"Update T_CC_ZZCX","goes_on":true},)"
            R"({"expect":{"result":false}}]})");
}

TEST(ContractUpdate, MakesAPromiseWhereThereIsNone) {
  EXPECT_EQ(UpdatedText("{}", {Seen(kSelect, false, R"({"goes_on":true})", Kind::kNulls)}),
            R"({"cls_CX.AuditBill":[{"fault":"nulls","goes_on":true}]})");
}

TEST(ContractUpdate, LeavesToAPersonWhatTheStatementDoesNotTell) {
  const ContractUpdate update =
      Updated(ParseJson(kOnePromise), {Seen(kSelect, true, R"({"expect":{"result":false}})"),
                                       Seen(kSelect, false, R"({"goes_on":true})")});
  EXPECT_EQ(Show(update.contracts), kOnePromise);
  ASSERT_EQ(update.notes.size(), 1u);
  EXPECT_EQ(update.notes[0],
            "cls_CX.AuditBill: a person must say when {\"goes_on\":true} is promised, e.g. for "
            "\"Select FStatus From T_CC_ZZCX where FID=1\"");
}

}  // namespace
}  // namespace tavcc::faults
