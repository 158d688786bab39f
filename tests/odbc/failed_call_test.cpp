// tavcc over a server's driver: a call in which a statement failed leaves nothing behind, whatever
// its method answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

#include "odbc/support.h"
#include "odbc/tds_responder.h"

namespace tavcc {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::TdsAnswer;
using testing::TdsInt;
using testing::TdsType;

struct Answer {
  int status;
  std::string output;
};

class FailedCall : public ::testing::Test {
 protected:
  void SetUp() override {
    target_ = "Driver=FreeTDS;Server=127.0.0.1;Port=" + std::to_string(server_.port()) +
              ";UID=tester;PWD=none;TDS_Version=7.4";
    static const bool installed =
        testing::DriverIsInstalled("Driver=FreeTDS;Server=127.0.0.1;Port=1");
    if (!installed) GTEST_SKIP() << "the driver of package tdsodbc is missing";
    server_.Answer("Select FStatus,FVoucherID From T_CC_ZZCX  where FID=121",
                   TdsAnswer()
                       .Columns({{"FStatus", TdsType::kInt}, {"FVoucherID", TdsType::kInt}})
                       .Row({TdsInt(0), TdsInt(0)})
                       .Statement(1));
  }

  // PublicSysInfo.DeleteBill of one bill, in a process of its own.
  Answer Delete(const std::string& entry_table) const {
    const std::string command = std::string("'") + TAVCC_TOOL +
                                "' call PublicSysInfo.DeleteBill --dsn '" + target_ +
                                "' 'oDict={\"BillInterID\":121,\"HeadTableName\":" +
                                "\"T_CC_ZZCX\",\"Entry1TableName\":\"" + entry_table + "\"}' 2>&1";
    Answer run{-1, ""};
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> piece;
    for (size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
      run.output.append(piece.data(), size);
    }
    run.status = WEXITSTATUS(pclose(pipe));
    return run;
  }

  testing::TdsResponder server_;
  std::string target_;
};

constexpr const char* kCommit = "IF @@TRANCOUNT > 0 COMMIT TRANSACTION";

TEST_F(FailedCall, IsUndoneOnAServerToo) {
  server_.Answer("Delete From T_NoSuchTable where FID=121",
                 TdsAnswer().Error(208, "Invalid object name 'T_NoSuchTable'.").Statement(0));
  const Answer run = Delete("T_NoSuchTable");
  EXPECT_EQ(run.status, 2) << run.output;
  EXPECT_THAT(run.output, HasSubstr("Invalid object name 'T_NoSuchTable'."));
  EXPECT_THAT(run.output, HasSubstr("What the call did was undone."));
  const auto received = server_.Received();
  EXPECT_THAT(received, Contains("BEGIN TRANSACTION"));
  EXPECT_THAT(received, Contains("Delete From T_CC_ZZCX where FID=121")) << "half of it was done";
  EXPECT_THAT(received, Not(Contains(kCommit)));
  EXPECT_THAT(received, Contains(HasSubstr("ROLLBACK TRANSACTION")));
}

TEST_F(FailedCall, TheSameWithoutAFailureIsKept) {
  const Answer run = Delete("T_CC_ZZCXEntry");
  EXPECT_EQ(run.status, 0) << run.output;
  const auto received = server_.Received();
  EXPECT_THAT(received, Contains("Delete From T_CC_ZZCXEntry where FID=121"));
  EXPECT_THAT(received, Contains(kCommit));
}

}  // namespace
}  // namespace tavcc
