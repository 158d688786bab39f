// Stores in files: what is refused, what stays, several processes, and a process that is killed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include "embedded/embedded.h"
#include "embedded/session/journal.h"
#include "embedded/session/session.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

class Store : public ::testing::Test {
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

  std::shared_ptr<Database> OpenWithoutWaiting(const std::string& name) const {
    OpenOptions options;
    options.path = Path(name);
    options.busy_seconds = 0;
    return Database::Open(options);
  }

  // "number: description" of the error that a batch raises.
  static std::string ErrorOf(Connection& connection, std::string_view sql) {
    try {
      connection.Execute(sql);
    } catch (const AutomationError& error) {
      return std::to_string(error.number()) + ": " + error.description();
    }
    return {};
  }

  // What is in the folder.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
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

TEST_F(Store, OneDatabaseChangesNoTableOfAnotherWithItsSchema) {
  const auto maker = Database::Open(OpenOptions{});
  maker->NewSession()->Execute("create table t (a int not null default(1))");
  OpenOptions options;
  options.image = std::make_shared<const std::string>(maker->Image());
  const auto columns = [](Connection& session) {
    return session.Execute("select * from t")->FieldCount();
  };
  const auto first = Database::Open(options), second = Database::Open(options);
  const auto changing = first->NewSession(), other = second->NewSession();
  EXPECT_EQ(columns(*changing), 1);
  changing->Execute("alter table t add b int");
  EXPECT_EQ(columns(*changing), 2);
  EXPECT_EQ(columns(*other), 1);
  const auto third = Database::Open(options);
  EXPECT_EQ(columns(*third->NewSession()), 1);
}

// Under the thread sanitizer it tells whether what sessions share is shared rightly.
TEST_F(Store, ThreadsOpenDatabasesOfOneSchema) {
  const auto maker = Database::Open(OpenOptions{});
  maker->NewSession()->Execute("create table t (a int not null default(1), b datetime)");
  OpenOptions options;
  options.image = std::make_shared<const std::string>(maker->Image());
  std::atomic<int> rows = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&options, &rows, i] {
      for (int round = 0; round < 5; ++round) {
        const auto database = Database::Open(options);
        const auto session = database->NewSession();
        session->Execute("insert into t(b) values(getdate())");
        session->Execute("alter table t add c" + std::to_string(i) + " int");
        rows += session->Execute("select * from t")->RecordCount();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(rows, 20);
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
    int committed[2];
    ASSERT_EQ(pipe(committed), 0);
    const pid_t child = fork();
    if (child == 0) {
      const auto connection = Open("db")->NewSession();
      for (;;) {
        connection->Execute(
            "begin tran declare @i int set @i=0 while @i<7 begin insert into t values (@i) set "
            "@i=@i+1 end commit");
        if (write(committed[1], "", 1) != 1) _exit(1);
      }
    }
    char one = 0;
    EXPECT_EQ(read(committed[0], &one, 1), 1);  // however slow the machine is
    usleep(static_cast<useconds_t>(attempt) * 17'000);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(committed[0]);
    close(committed[1]);
    EXPECT_EQ(0, Number(*Open("db")->NewSession(), "select count(*)%7 from t"));
    EXPECT_LE(7 * (attempt + 1), Number(*Open("db")->NewSession(), "select count(*) from t"));
  }
}

// "MSSQLSERVER_1222": the statement that cannot have its lock ends, and the batch with it.
TEST_F(Store, ALockThatIsNotLetGo) {
  const auto holder = Open("locked")->NewSession();
  const auto other = OpenWithoutWaiting("locked")->NewSession();
  holder->Execute("create table t (a int)");
  holder->Execute("begin transaction insert into t values (1)");
  const std::string locked = "Lock request time out period exceeded. " + Path("locked") +
                             " has been locked by another process for 0 seconds.";
  EXPECT_EQ(ErrorOf(*other, "insert into t values (2)"), "1222: " + locked);
  EXPECT_EQ(ErrorOf(*other, "begin transaction insert into t values (2)"), "1222: " + locked);
  EXPECT_EQ(Number(*other, "select count(*) from t"), 0) << "reading waits for nobody";
  holder->Execute("commit transaction");
  other->Execute("insert into t values (3)");
  EXPECT_EQ(Number(*other, "select count(*) from t"), 2);
}

TEST_F(Store, ASnapshotWaitsForNobodyUntilItWrites) {
  const auto writer = Open("db")->NewSession();
  const auto reader = OpenWithoutWaiting("db")->NewSession();
  writer->Execute("create table t (a int) insert into t values (1)");
  writer->Execute("begin transaction update t set a=2");
  reader->Execute("set transaction isolation level snapshot begin transaction");
  reader->Execute("select a into #kept from t");
  reader->Execute("update #kept set a=a+10");
  writer->Execute("commit transaction");
  EXPECT_EQ(Number(*reader, "select a from t"), 1) << "as it was when the transaction began";
  EXPECT_EQ(Number(*reader, "select a from #kept"), 11);
  EXPECT_EQ(ErrorOf(*reader, "update t set a=3"),
            "3960: Snapshot isolation transaction aborted due to update conflict. You cannot use "
            "snapshot isolation to access tables in database '" +
                Path("db") +
                "' that another process has changed since the transaction began. Retry the "
                "transaction.");
  EXPECT_EQ(Number(*reader, "select @@trancount"), 0);
  reader->Execute("set transaction isolation level read committed update t set a=4");
  EXPECT_EQ(Number(*writer, "select a from t"), 4);
}

// ---- Journals ----

constexpr const char* kEndings[] = {"", "-wal", "-shm"};

// A process is killed with its changes in the journal only. Leaves the file and its journals.
void KillWriter(const std::string& path) {
  const pid_t child = fork();
  if (child == 0) {
    OpenOptions options;
    options.path = path;
    const auto connection = Database::Open(options)->NewSession();
    connection->Execute("create table killed (a int)");
    connection->Execute("insert into killed values (1)");
    kill(getpid(), SIGKILL);
  }
  waitpid(child, nullptr, 0);
  ASSERT_LT(0u, std::filesystem::file_size(path + "-wal"));
}

// Another program has turned the write-ahead log off: then a reader keeps a writer from committing,
// and one that reads and wants to write would wait for the writer that waits for it.
TEST_F(Store, AWaitThatCouldNotEndIsADeadlock) {
  Open("db")->NewSession()->Execute("create table t (a int) insert into t values (1)");
  sqlite3* writer = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(Path("db").c_str(), &writer));
  ASSERT_EQ(SQLITE_OK,
            sqlite3_exec(writer, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr));
  const auto reader = Open("db")->NewSession();
  reader->Execute("set transaction isolation level snapshot begin transaction");
  EXPECT_EQ(Number(*reader, "select a from t"), 1);
  ASSERT_EQ(SQLITE_OK, sqlite3_exec(writer, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr));
  EXPECT_EQ(
      ErrorOf(*reader, "update t set a=3"),
      "1205: Transaction (Process ID 1) was deadlocked on lock resources with another process "
      "and has been chosen as the deadlock victim. Rerun the transaction.");
  EXPECT_EQ(Number(*reader, "select @@trancount"), 0) << "the victim's transaction is gone";
  sqlite3_close(writer);
  reader->Execute("update t set a=3");
  EXPECT_EQ(Number(*reader, "select a from t"), 3);
}

TEST_F(Store, AKilledProcessSChangesAreFound) {
  KillWriter(Path("db"));
  EXPECT_EQ(Number(*Open("db", false)->NewSession(), "select a from killed"), 1);
}

TEST_F(Store, AJournalIsRemovedWithTheMakingOfAFile) {
  KillWriter(Path("db"));
  std::filesystem::remove(Path("db"));
  const auto connection = Open("db")->NewSession();
  EXPECT_EQ(ErrorOf(*connection, "select a from killed"), "208: Invalid object name 'killed'.");
  connection->Execute("create table fresh (a int)");
}

TEST_F(Store, AnotherFileSJournalIsRefused) {
  KillWriter(Path("db"));
  Open("other")->NewSession()->Execute("create table other (a int)");
  std::filesystem::rename(Path("other"), Path("db"));
  const std::string before = Bytes(Path("db"));
  const std::string journal = Bytes(Path("db-wal"));
  EXPECT_EQ(Refusal("db", false),
            Path("db") + ": cannot be opened beside " + Path("db-wal") +
                ", the journal of another file: its changes would be written into this one; move "
                "it away, or put the file back that it belongs to");
  EXPECT_TRUE(Bytes(Path("db")) == before);
  EXPECT_TRUE(Bytes(Path("db-wal")) == journal);
  std::filesystem::remove(Path("db-wal"));
  EXPECT_EQ(Number(*Open("db", false)->NewSession(), "select count(*) from other"), 0);
}

TEST_F(Store, ARollbackJournalIsRefused) {
  Open("db");
  std::ofstream(Path("db-journal"), std::ios::binary) << "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
  EXPECT_NE(Refusal("db", false).find(Path("db-journal") + ", the journal of another file"),
            std::string::npos);
}

TEST_F(Store, AFileMovesWithItsJournal) {
  KillWriter(Path("db"));
  for (const char* ending : kEndings) {
    std::filesystem::rename(Path("db") + ending, Path("moved") + ending);
  }
  EXPECT_EQ(Number(*Open("moved", false)->NewSession(), "select a from killed"), 1);
}

// Whatever a transaction changes, its journal says whose it is.
TEST_F(Store, EachTransactionMarksItsJournal) {
  {
    const auto setup = Open("db")->NewSession();
    setup->Execute("create table t (id int identity(5,5), a int)");
    setup->Execute("create table u (a int not null primary key) insert into u values (1),(2)");
  }
  for (const char* batch :
       {"insert into t (a) values (1)", "insert into t (a) select a from u", "update u set a=a+1",
        "delete u", "create table x (a int)", "create view w as select a from u",
        "begin transaction insert into t (a) values (1) commit", "select a into y from u",
        "begin transaction insert into t (a) values (1) rollback", "truncate table u",
        "set transaction isolation level snapshot begin transaction delete u commit",
        "begin transaction save transaction s delete u rollback transaction s delete t commit",
        "insert into u exec('select 7')"}) {
    SCOPED_TRACE(batch);
    for (const char* ending : kEndings) {
      std::filesystem::remove(Path("copy") + ending);
    }
    std::filesystem::copy_file(Path("db"), Path("copy"));
    const pid_t child = fork();
    if (child == 0) {
      const auto connection = Open("copy", false)->NewSession();
      connection->Execute(batch);
      _exit(0);  // without closing: the journal stays
    }
    waitpid(child, nullptr, 0);
    ASSERT_LT(0u, std::filesystem::file_size(Path("copy-wal")));
    EXPECT_EQ(ForeignJournal(Path("copy")), "");
    // The same journal beside a store of another number.
    Open("stranger");
    std::filesystem::rename(Path("stranger"), Path("copy"));
    EXPECT_EQ(ForeignJournal(Path("copy")), Path("copy-wal"));
  }
}

// ---- Images ----

TEST_F(Store, AnImageBeginsOthers) {
  const auto first = Database::Open(OpenOptions{});
  first->RunScript(
      "create table t (id int identity, name varchar(10) unique)\nGO\n"
      "create view v as select name from t\nGO\n"
      "create procedure p as insert into t values ('by p')\nGO\n"
      "insert into t values ('one')\nGO\n"
      "insert into t values ('two')");
  OpenOptions options;
  options.image = std::make_shared<const std::string>(first->Image());
  const auto second = Database::Open(options);
  const auto third = Database::Open(options);
  const auto session = second->NewSession();
  // Objects, rows, keys and the numbers that are dealt out.
  session->Execute("exec p");
  EXPECT_EQ(Number(*session, "select id from t where name='by p'"), 3);
  EXPECT_EQ(ErrorOf(*session, "insert into t values ('one')").substr(0, 5), "2627:");
  EXPECT_EQ(Number(*session, "select count(*) from v"), 3);
  // Each is one for itself, and can be changed in all that one can change.
  session->Execute("begin transaction delete from t create table more (a int) rollback");
  session->Execute("alter table t add extra int");
  session->Execute("update t set extra=7");
  EXPECT_EQ(Number(*session, "select sum(extra) from t"), 21);
  EXPECT_EQ(Number(*first->NewSession(), "select count(*) from t"), 2);
  EXPECT_EQ(Number(*third->NewSession(), "select count(*) from t"), 2);
  // An image of it is what it is now, and is made a file as any other.
  OpenOptions again;
  again.image = std::make_shared<const std::string>(second->Image());
  Database::Open(again)->SaveAs(Path("copy"));
  EXPECT_EQ(Number(*Open("copy", false)->NewSession(), "select sum(extra) from t"), 21);
}

TEST_F(Store, ThereIsNoImageInsideOfATransaction) {
  const auto database = Database::Open(OpenOptions{});
  database->RunScript("create table t (n int)");
  const auto session = database->NewSession();
  session->Execute("begin transaction insert into t values (1)");
  try {
    database->Image();
    ADD_FAILURE() << "there is one";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), "there is no image inside of a transaction");
  }
  session->Execute("rollback");
  EXPECT_FALSE(database->Image().empty());
}

TEST_F(Store, ADamagedImageIsRefused) {
  OpenOptions options;
  options.image = std::make_shared<const std::string>("no database");
  EXPECT_THROW(Database::Open(options), AutomationError);
  options.image = std::make_shared<const std::string>();
  EXPECT_THROW(Database::Open(options), AutomationError);
}

// ---- Making files ----

TEST_F(Store, OneOfSeveralMakersWins) {
  constexpr int kMakers = 4;
  std::vector<pid_t> children;
  for (int i = 0; i < kMakers; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      const auto memory = Database::Open(OpenOptions{});
      memory->RunScript("create table t (maker int)\nGO\ninsert into t values (" +
                        std::to_string(i) + ")");
      try {
        memory->SaveAs(Path("db"));
      } catch (const AutomationError& error) {
        _exit(error.description() == Path("db") + ": exists already; it is left as it is" ? 1 : 2);
      }
      _exit(0);
    }
    children.push_back(child);
  }
  int winner = -1, losers = 0;
  for (int i = 0; i < kMakers; ++i) {
    int status = 0;
    waitpid(children[static_cast<size_t>(i)], &status, 0);
    if (WEXITSTATUS(status) == 0) winner = i;
    losers += WEXITSTATUS(status) == 1 ? 1 : 0;
  }
  EXPECT_EQ(losers, kMakers - 1);
  EXPECT_EQ(Number(*Open("db", false)->NewSession(), "select maker from t"), winner);
  EXPECT_EQ(Files(), std::vector<std::string>{"db"});
}

TEST_F(Store, ALinkToNothingIsNoFile) {
  std::filesystem::create_symlink("nowhere", Path("link"));
  EXPECT_EQ(Refusal("link"), Path("link") + ": is a link to a file that does not exist");
  EXPECT_EQ(Files(), std::vector<std::string>{"link"});
}

TEST_F(Store, NamesOfSqliteAreFileNamesHere) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Path("."));
  for (const std::string name : {"file:x?mode=memory", "./:memory:"}) {
    OpenOptions options;
    options.path = name;
    Database::Open(options)->NewSession()->Execute("create table t (a int)");
    EXPECT_TRUE(std::filesystem::exists(name));
    options.create = false;
    EXPECT_EQ(Number(*Database::Open(options)->NewSession(), "select count(*) from t"), 0);
  }
  std::filesystem::current_path(before);
}

// ---- Damage ----

void Damage(const std::string& path, const std::string& sql) {
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  char* error = nullptr;
  sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error);
  EXPECT_EQ(error, nullptr) << error;
  sqlite3_close(database);
}

TEST_F(Store, ADamagedCatalogIsNamed) {
  for (const char* damage :
       {"update \"tavcc.objects\" set definition='create frobnicate'",
        "update \"tavcc.objects\" set definition=''",
        "update \"tavcc.objects\" set definition='select 1'",
        "update \"tavcc.objects\" set definition='create table t (a int) select 1'",
        "update \"tavcc.objects\" set definition=x'00ff'",
        "update \"tavcc.objects\" set name=x'ff',definition='create table t (a frob)'",
        "drop table \"tavcc.objects\"", "drop table \"tavcc.version\""}) {
    SCOPED_TRACE(damage);
    std::filesystem::remove(Path("db"));
    Open("db")->NewSession()->Execute("create table t (a int)");
    Damage(Path("db"), damage);
    std::string said;
    try {
      Open("db", false)->NewSession()->Execute("select a from t");
    } catch (const AutomationError& error) {
      said = error.description();
    }
    EXPECT_TRUE(said.starts_with(Path("db") + ": the file is damaged: ")) << said;
  }
}

TEST_F(Store, ADamagedDefinitionKeepsNobodyFromTheOtherTables) {
  Open("db")->NewSession()->Execute("create table t (a int) create table u (a int)");
  Damage(Path("db"), "update \"tavcc.objects\" set definition='create frobnicate' where name='u'");
  const auto session = Open("db", false)->NewSession();
  session->Execute("insert into t values (7)");
  EXPECT_EQ(session->Execute("select a from t")->Field(0), Value(7));
  const std::string damage =
      "50002: " + Path("db") +
      ": the file is damaged: the definition of u in its catalog cannot be read";
  EXPECT_EQ(ErrorOf(*session, "select a from u"), damage);
  EXPECT_EQ(ErrorOf(*session, "select a from u"), damage) << "however often one asks";
}

TEST_F(Store, ATableThatIsNotThatOfTheCatalogIsDamage) {
  Open("db")->NewSession()->Execute("create table t (a int)");
  Damage(Path("db"), "alter table t rename column a to b");
  EXPECT_EQ(ErrorOf(*Open("db", false)->NewSession(), "select a from t"),
            "50002: " + Path("db") +
                ": the file is damaged: its tables are not those of its "
                "catalog");
}

TEST_F(Store, AFileThatIsCutOffIsDamaged) {
  {
    const auto connection = Open("db")->NewSession();
    connection->Execute("create table t (a int, b char(200))");
    connection->Execute(
        "declare @i int set @i=0 while @i<300 begin insert into t values (@i,'x') set @i=@i+1 end");
  }
  std::filesystem::resize_file(Path("db"), 5 * 4096);
  std::string said;
  try {
    Open("db", false)->NewSession()->Execute("select sum(a) from t");
  } catch (const AutomationError& error) {
    said = error.description();
  }
  EXPECT_EQ(said, Path("db") + ": the file is damaged: its pages do not fit together");
}

// ---- Where nobody may write ----

// Runs the body as a user with no rights of root's; its exit status.
template <class Body>
int AsAnotherUser(const Body& body) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(99);
    try {
      body();
    } catch (const std::exception& error) {
      fprintf(stderr, "%s\n", error.what());
      _exit(98);
    }
    _exit(::testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WEXITSTATUS(status);
}

TEST_F(Store, WhatNobodyMayWriteCanBeRead) {
  namespace fs = std::filesystem;
  Open("db")->NewSession()->Execute("create table t (a int) insert into t values (7)");
  const auto read_only = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  const auto enter = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
  for (const bool folder : {false, true}) {
    SCOPED_TRACE(folder ? "folder" : "file");
    fs::permissions(Path("db"), folder ? fs::perms::all : read_only);
    fs::permissions(Path("."), folder ? read_only | enter : fs::perms::all);
    EXPECT_EQ(0, AsAnotherUser([&] {
                const auto connection = Open("db", false)->NewSession();
                EXPECT_EQ(Number(*connection, "select a from t"), 7);
                connection->Execute("begin transaction select a into #t from t commit");
                EXPECT_EQ(ErrorOf(*connection, "insert into t values (1)"),
                          "50002: " + Path("db") +
                              ": cannot be written: the file or its folder is read-only");
              }));
    fs::permissions(Path("."), fs::perms::all);
    EXPECT_EQ(Files(), std::vector<std::string>{"db"});
  }
}

}  // namespace
}  // namespace tavcc::sql
