#include "host/seen_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/error.h"

namespace tavcc {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Row = std::vector<Value>;

// Rows of the columns A and B that write down what is asked of them, as a cursor would notice it.
class AskedRows final : public Recordset {
 public:
  explicit AskedRows(std::vector<Row> rows) : rows_(std::move(rows)) {}

  bool IsOpen() const override { return open_; }
  bool AtEnd() const override { return Ask("end"), at_ >= rows_.size(); }
  bool AtStart() const override { return Ask("start"), rows_.empty(); }
  void MoveNext() override {
    Ask("next");
    if (at_ >= rows_.size()) throw AutomationError(RuntimeError::kNoCurrentRow);
    ++at_;
  }
  void MoveFirst() override {
    Ask("first");
    at_ = 0;
  }
  int RecordCount() const override { return -1; }
  int FieldCount() const override { return 2; }
  std::string FieldName(int index) const override { return index == 0 ? "A" : "B"; }
  Value Field(int index) const override {
    Ask("field " + std::to_string(index));
    if (!open_) throw AutomationError(RuntimeError::kObjectClosed);
    if (at_ >= rows_.size()) throw AutomationError(RuntimeError::kNoCurrentRow);
    return rows_[at_].at(static_cast<size_t>(index));
  }
  Value Field(std::string_view name) const override {
    if (name != "a" && name != "A" && name != "b" && name != "B") {
      throw AutomationError(RuntimeError::kItemNotInCollection);
    }
    return Field(name == "b" || name == "B" ? 1 : 0);
  }
  void Detach() override {}
  void Close() override {
    Ask("close");
    open_ = false;
  }

  void Break() { open_ = false; }
  std::vector<std::string> TakeAsked() { return std::exchange(asked_, {}); }

 private:
  void Ask(std::string what) const { asked_.push_back(std::move(what)); }

  const std::vector<Row> rows_;
  size_t at_ = 0;
  bool open_ = true;
  mutable std::vector<std::string> asked_;
};

class SeenRowsTest : public ::testing::Test {
 protected:
  RecordsetPtr Watch(std::vector<Row> rows, int most = 100) {
    inner_ = std::make_shared<AskedRows>(std::move(rows));
    return watch_.Watch(inner_, most, seen_, [this] { ++done_; });
  }

  std::shared_ptr<AskedRows> inner_;
  SeenRowsPtr seen_ = std::make_shared<SeenRows>();
  int done_ = 0;
  RowWatch watch_;
};

TEST_F(SeenRowsTest, NothingIsSeenOfRowsThatNobodyLooksAt) {
  RecordsetPtr rows = Watch({{1, 2}});
  rows->IsOpen();
  rows->RecordCount();
  rows = nullptr;
  EXPECT_THAT(inner_->TakeAsked(), IsEmpty());
  EXPECT_EQ(seen_->count, 0);
  EXPECT_EQ(done_, 1);
}

TEST_F(SeenRowsTest, ARowIsSeenByAskingWhetherThereIsOne) {
  RecordsetPtr rows = Watch({{1, 2}, {3, 4}});
  EXPECT_FALSE(rows->AtEnd());
  rows = nullptr;
  EXPECT_THAT(seen_->columns, ElementsAre("A", "B"));
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, 2}));
}

TEST_F(SeenRowsTest, NoRowIsSeenWhereThereIsNone) {
  RecordsetPtr rows = Watch({});
  EXPECT_TRUE(rows->AtEnd());
  EXPECT_TRUE(rows->AtStart());
  EXPECT_THROW(rows->Field(0), AutomationError);
  rows = nullptr;
  EXPECT_EQ(seen_->count, 0);
  EXPECT_TRUE(seen_->to_the_end);
}

// Other fields than those that were read are read when the row is left, and no field twice.
TEST_F(SeenRowsTest, ARowIsReadBesideTheRuleOnlyWhenTheRuleIsDoneWithIt) {
  RecordsetPtr rows = Watch({{1, 2}, {3, 4}});
  EXPECT_EQ(rows->Field("b"), Value(2));
  EXPECT_THAT(inner_->TakeAsked(), ElementsAre("field 1"));
  rows->MoveNext();
  EXPECT_THAT(inner_->TakeAsked(), ElementsAre("field 0", "next"));
  EXPECT_EQ(rows->Field(0), Value(3));
  EXPECT_EQ(rows->Field(1), Value(4));
  rows->Close();
  EXPECT_THAT(inner_->TakeAsked(), ElementsAre("field 0", "field 1", "close"));
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, 2}, Row{3, 4}));
}

TEST_F(SeenRowsTest, ARowThatIsReadAgainIsSeenOnce) {
  RecordsetPtr rows = Watch({{1, 2}, {3, 4}});
  for (int round = 0; round < 2; ++round) {
    rows->MoveFirst();
    for (; !rows->AtEnd(); rows->MoveNext()) rows->Field(0);
  }
  rows = nullptr;
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, 2}, Row{3, 4}));
  EXPECT_EQ(seen_->count, 2);
  EXPECT_TRUE(seen_->to_the_end);
}

TEST_F(SeenRowsTest, MoreRowsThanAreKeptAreCounted) {
  RecordsetPtr rows = Watch({{1, 2}, {3, 4}, {5, 6}}, 1);
  for (; !rows->AtEnd(); rows->MoveNext()) {
  }
  rows = nullptr;
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, 2}));
  EXPECT_EQ(seen_->count, 3);
}

TEST_F(SeenRowsTest, ErrorsAreTheRecordsetsOwn) {
  RecordsetPtr rows = Watch({{1, 2}});
  rows->MoveNext();
  EXPECT_THROW(rows->MoveNext(), AutomationError);
  EXPECT_THROW(rows->Field(0), AutomationError);
  EXPECT_THROW(rows->Field("C"), AutomationError);
  rows = nullptr;
  EXPECT_EQ(seen_->count, 0);
}

// What the rule has read is known, whatever became of the connection.
TEST_F(SeenRowsTest, ARowBehindAClosedConnectionIsWhatWasReadOfIt) {
  RecordsetPtr rows = Watch({{1, 2}});
  EXPECT_EQ(rows->Field("A"), Value(1));
  inner_->Break();
  rows = nullptr;
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, Empty{}}));
}

TEST_F(SeenRowsTest, SettlingTakesDownTheRowThatItStandsOnAndNoMore) {
  const RecordsetPtr rows = Watch({{1, 2}, {3, 4}});
  rows->Field(0);
  watch_.Settle();
  EXPECT_EQ(done_, 1);
  EXPECT_THAT(seen_->rows, ElementsAre(Row{1, 2}));
  rows->MoveNext();
  EXPECT_EQ(rows->Field(1), Value(4));
  EXPECT_EQ(rows->Field("B"), Value(4));
  EXPECT_THAT(seen_->rows, SizeIs(1));
}

}  // namespace
}  // namespace tavcc
