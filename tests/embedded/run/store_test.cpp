// Stores in files: what is refused, what stays, several processes, and a process that is killed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "embedded/embedded.h"
#include "embedded/run/session.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

class Store : public testing::Test {
 protected:
  Store() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~Store() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::shared_ptr<Database> Open(const std::string& name, bool create = true) const {
    OpenOptions options;
    options.path = Path(name);
    options.create = create;
    return Database::Open(options);
  }

  // The description of the error that opening raises.
  std::string Refusal(const std::string& name, bool create = true) const {
    try {
      Open(name, create);
    } catch (const AutomationError& error) {
      return error.description();
    }
    return {};
  }

  static std::string Bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }

  static int32_t Number(Connection& connection, std::string_view sql) {
    return ToLong(connection.Execute(sql)->Field(0));
  }

 private:
  const std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("tavcc_store_" + std::to_string(getpid()));
};

TEST_F(Store, RefusesWhatIsNoStoreAndLeavesItAlone) {
  std::ofstream(Path("text")) << "just some text, longer than a header is";
  sqlite3* other = nullptr;
  sqlite3_open(Path("other").c_str(), &other);
  sqlite3_exec(other, "create table t(a)", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  for (const char* name : {"text", "other"}) {
    const std::string before = Bytes(Path(name));
    EXPECT_EQ(Path(name) + ": is no database of this kind", Refusal(name));
    EXPECT_EQ(before, Bytes(Path(name)));
  }
  EXPECT_EQ(Path("missing") + ": does not exist", Refusal("missing", /*create=*/false));
  EXPECT_FALSE(std::filesystem::exists(Path("missing")));
  std::filesystem::create_directory(Path("folder"));
  EXPECT_EQ(Path("folder") + ": is no file", Refusal("folder"));
}

TEST_F(Store, KeepsTablesViewsProceduresAndNumbering) {
  {
    const auto connection = Open("db")->NewSession();
    connection->Execute("create table t (id int identity, q decimal(9,2) default(1.5))");
    connection->Execute("create view v as select q from t");
    connection->Execute("create procedure p @a int as insert into t (q) values (@a)");
    connection->Execute("insert into t default values");
  }
  const auto connection = Open("db", /*create=*/false)->NewSession();
  connection->Execute("exec p 7");
  EXPECT_EQ(2, Number(*connection, "select count(*) from v"));
  EXPECT_EQ(2, Number(*connection, "select max(id) from t"));
}

TEST_F(Store, OneSessionSeesWhatAnotherDefinedAndItsTemporaryTablesAreItsOwn) {
  const auto database = Open("db");
  const auto first = database->NewSession();
  const auto second = Open("db")->NewSession();
  EXPECT_THROW(second->Execute("select * from t"), AutomationError);
  first->Execute("create table t (a int) create table #t (a int)");
  first->Execute("insert into t values (1)");
  EXPECT_EQ(1, Number(*second, "select a from t"));
  EXPECT_THROW(second->Execute("select * from #t"), AutomationError);
  first->Execute("drop table t");
  first->Execute("create table t (b int, c int)");
  first->Execute("insert into t values (2,3)");
  EXPECT_EQ(3, Number(*second, "select c from t"));
}

TEST_F(Store, InMemoryThereIsOneSession) {
  const auto database = Database::Open(OpenOptions{});
  auto session = database->NewSession();
  EXPECT_THROW(database->NewSession(), AutomationError);
  session->Execute("create table t (a int) create table #t (a int) begin tran");
  session->Close();
  EXPECT_THROW(session->Execute("select 1"), AutomationError);
  database->Reopen(*session);
  EXPECT_EQ(0, Number(*session, "select @@trancount"));
  EXPECT_THROW(session->Execute("select * from #t"), AutomationError);
  session.reset();
  session = database->NewSession();
  EXPECT_EQ(1, Number(*session, "select 1"));
}

TEST_F(Store, SeveralProcessesCountTogether) {
  constexpr int kProcesses = 3, kRounds = 20;
  Open("db")->NewSession()->Execute("create table t (n int) insert into t values (0)");
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      int failed = 0;
      try {
        const auto connection = Open("db")->NewSession();
        for (int round = 0; round < kRounds; ++round) {
          connection->Execute(
              "begin tran declare @n int select @n=n from t update t set n=@n+1 commit");
        }
      } catch (const AutomationError&) {
        failed = 1;
      }
      _exit(failed);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, WEXITSTATUS(status));
  }
  EXPECT_EQ(kProcesses * kRounds, Number(*Open("db")->NewSession(), "select n from t"));
}

TEST_F(Store, AKilledProcessLeavesWholeTransactions) {
  Open("db")->NewSession()->Execute("create table t (n int)");
  for (int attempt = 0; attempt < 5; ++attempt) {
    const pid_t child = fork();
    if (child == 0) {
      const auto connection = Open("db")->NewSession();
      for (;;) {
        connection->Execute(
            "begin tran declare @i int set @i=0 while @i<7 begin insert into t values (@i) set "
            "@i=@i+1 end commit");
      }
    }
    usleep(30'000 + attempt * 17'000);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(0, Number(*Open("db")->NewSession(), "select count(*)%7 from t"));
  }
  EXPECT_LT(0, Number(*Open("db")->NewSession(), "select count(*) from t"));
}

// "MSSQLSERVER_1205": the statement that cannot have its lock is the victim, and with it all of its
// transaction.
TEST_F(Store, ALockThatIsNotLetGo) {
  const auto database = Open("locked");
  const ConnectionPtr holder = database->NewSession();
  const ConnectionPtr other = database->NewSession();
  holder->Execute("create table t (a int)");
  sqlite3_busy_timeout(dynamic_cast<Session&>(*other).engine().store().handle(), 20);
  holder->Execute("begin transaction insert into t values (1)");
  try {
    other->Execute("insert into t values (2)");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 1205);
    EXPECT_EQ(
        error.description(),
        "Transaction (Process ID 1) was deadlocked on lock resources with another process and "
        "has been chosen as the deadlock victim. Rerun the transaction.");
  }
  holder->Execute("commit transaction");
  other->Execute("insert into t values (3)");
  EXPECT_EQ(Number(*other, "select count(*) from t"), 2);
}

}  // namespace
}  // namespace tavcc::sql
