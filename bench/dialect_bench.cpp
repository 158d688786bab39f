// What the dialect costs: statements through the embedded database beside the same work written by
// hand in SQLite's own SQL.
//
// Each statement is run in turns with its fellows, block by block, so that what else the machine
// does meets them all alike. Times are of the processor, and of one statement; the counters:
//   by_hand_ns   the same work with a statement that was prepared once
//   anew_ns      the same work with SQLite's own text prepared anew each time
//   ratio        the statement's own time to by_hand_ns: at most 1.5 is the aim
//   anew_ratio   the same to anew_ns
// The dialect's text is put together within its time: its numbers change from one to the next.
//
// SelectKeptRows and SelectLongLiteral stand beside SelectNewText for what is made by hand in the
// database for speed. SelectFirstTime is a statement that is compiled, since it is new in more than
// its numbers; its ratio is to one that is not. ApplyRows is the inventory posting: its time per
// row is to stay flat.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <time.h>

#include <charconv>
#include <string>

#include "embedded/embedded.h"

namespace {

using tavcc::ConnectionPtr;
using tavcc::sql::Database;
using tavcc::sql::OpenOptions;

constexpr int kRows = 10'000;

struct Dialect {
  std::shared_ptr<Database> database = Database::Open(OpenOptions{});
  ConnectionPtr connection = database->NewSession();

  void Run(const std::string& sql) const { connection->Execute(sql); }
};

// SQLite as the embedded database itself opens it.
struct ByHand {
  sqlite3* database = nullptr;

  ByHand() {
    Database::Open(OpenOptions{});  // configures SQLite for the whole process
    sqlite3_open_v2(":memory:", &database,
                    SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    Run("pragma temp_store=memory; pragma cache_size=-65536; pragma journal_mode=memory");
  }
  ~ByHand() { sqlite3_close_v2(database); }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  void Run(const std::string& sql) const {
    sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_stmt* Prepare(std::string_view sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()),
                       SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return statement;
  }
  // Runs a text that is prepared for this once.
  void RunAnew(std::string_view sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
    }
    sqlite3_finalize(statement);
  }
};

constexpr char kTable[] =
    "create table t (id int not null primary key, name nvarchar(40), qty decimal(28,10))";
constexpr char kTableByHand[] = "create table t (id integer primary key, name text, qty integer)";

void Fill(const Dialect& dialect, const ByHand& by_hand, int rows = kRows) {
  dialect.Run(kTable);
  dialect.Run("begin tran");
  by_hand.Run(kTableByHand);
  by_hand.Run("begin");
  for (int i = 1; i <= rows; ++i) {
    const std::string id = std::to_string(i);
    dialect.Run("insert into t values (" + id + ",'item',1.5)");
    by_hand.Run("insert into t values (" + id + ",'item',15000000000)");
  }
  dialect.Run("commit");
  by_hand.Run("commit");
}

// A text with a number in it, in memory that is used again.
class Numbered {
 public:
  const std::string& operator()(std::string_view before, int number, std::string_view after = {}) {
    text_.clear();
    return Add(before, number, after);
  }
  const std::string& Add(std::string_view before, int number, std::string_view after = {}) {
    char digits[12];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    text_.append(before).append(digits, static_cast<size_t>(end - digits)).append(after);
    return text_;
  }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

double ProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
double Measure(int block, const Work& work) {
  const double start = ProcessorSeconds();
  for (int i = 0; i < block; ++i) work();
  return ProcessorSeconds() - start;
}

// Runs the three in turns.
template <class Work, class HandWork, class AnewWork>
void Compare(benchmark::State& state, int block, const Work& work, const HandWork& by_hand,
             const AnewWork& anew) {
  double own = 0, prepared = 0, unprepared = 0;
  while (state.KeepRunningBatch(block)) {
    const double time = Measure(block, work);
    state.SetIterationTime(time);
    own += time;
    prepared += Measure(block, by_hand);
    unprepared += Measure(block, anew);
  }
  const double each = 1e9 / static_cast<double>(state.iterations());
  state.counters["by_hand_ns"] = prepared * each;
  state.counters["anew_ns"] = unprepared * each;
  state.counters["ratio"] = own / prepared;
  state.counters["anew_ratio"] = own / unprepared;
}

constexpr int kBlock = 500;

int Next(int& id, int limit = kRows) {
  return id = id % limit + 1;
}

// ---- One row read ----

void ReadOne(sqlite3_stmt* select, int id) {
  sqlite3_bind_int64(select, 1, id);
  sqlite3_step(select);
  std::string name(reinterpret_cast<const char*>(sqlite3_column_text(select, 1)));
  benchmark::DoNotOptimize(name);
  benchmark::DoNotOptimize(sqlite3_column_int64(select, 0) + sqlite3_column_int64(select, 2));
  sqlite3_reset(select);
}

struct SelectForm {
  std::string_view text = "select id,name,qty from t where id=";
  bool same_text = false;
  bool kept_rows = false;  // the last recordset is still held when the next one is made
};

void SelectWith(benchmark::State& state, const SelectForm& form) {
  const Dialect dialect;
  const ByHand hand;
  Fill(dialect, hand);
  sqlite3_stmt* const select = hand.Prepare("select id,name,qty from t where id=?1");
  Numbered text, anew_text;
  tavcc::RecordsetPtr kept;
  int id = 0, hand_id = 0, anew_id = 0;
  const auto next = [&](int& last) { return form.same_text ? 4711 : Next(last); };
  Compare(
      state, kBlock,
      [&] {
        auto rows = dialect.connection->Execute(text(form.text, next(id)));
        benchmark::DoNotOptimize(rows->AtEnd());
        if (form.kept_rows) kept = std::move(rows);
      },
      [&] { ReadOne(select, next(hand_id)); },
      [&] { hand.RunAnew(anew_text(form.text, next(anew_id))); });
  sqlite3_finalize(select);
}

void SelectSameText(benchmark::State& state) {
  SelectWith(state, {.same_text = true});
}
BENCHMARK(SelectSameText)->UseManualTime();

void SelectNewText(benchmark::State& state) {
  SelectWith(state, {});
}
BENCHMARK(SelectNewText)->UseManualTime();

// Beside SelectNewText: what it brings that a recordset is made again of the memory of the last.
void SelectKeptRows(benchmark::State& state) {
  SelectWith(state, {.kept_rows = true});
}
BENCHMARK(SelectKeptRows)->UseManualTime();

// Beside SelectNewText: what the short way of reading literals brings. A number of so many digits
// takes the long one.
void SelectLongLiteral(benchmark::State& state) {
  SelectWith(state, {.text = "select id,name,qty from t where id=000000000"});
}
BENCHMARK(SelectLongLiteral)->UseManualTime();

// Texts of a name of their own each time, beside one that is known.
void SelectFirstTime(benchmark::State& state) {
  const Dialect dialect;
  Fill(dialect, ByHand());
  Numbered text;
  int id = 0;
  double own = 0, known = 0;
  while (state.KeepRunningBatch(kBlock)) {
    const double time = Measure(kBlock, [&] {
      dialect.Run(text("select id,name,qty as q", ++id, " from t where id=4711"));
    });
    state.SetIterationTime(time);
    own += time;
    known += Measure(kBlock, [&] { dialect.Run(text("select id,name,qty from t where id=", 7)); });
  }
  state.counters["ratio"] = own / known;
}
BENCHMARK(SelectFirstTime)->UseManualTime();

// ---- One row changed ----

void Update(benchmark::State& state) {
  const Dialect dialect;
  const ByHand hand;
  Fill(dialect, hand);
  dialect.Run("begin tran");
  hand.Run("begin");
  sqlite3_stmt* const update = hand.Prepare("update t set qty=?2 where id=?1");
  Numbered text, anew_text;
  int id = 0, hand_id = 0, anew_id = 0;
  Compare(
      state, kBlock, [&] { dialect.Run(text("update t set qty=2.5 where id=", Next(id))); },
      [&] {
        sqlite3_bind_int64(update, 1, Next(hand_id));
        sqlite3_bind_int64(update, 2, 25'000'000'000);
        sqlite3_step(update);
        sqlite3_reset(update);
      },
      [&] { hand.RunAnew(anew_text("update t set qty=25000000000 where id=", Next(anew_id))); });
  sqlite3_finalize(update);
}
BENCHMARK(Update)->UseManualTime();

// ---- One row added, and one taken out ----

void InsertByHand(sqlite3_stmt* insert, int id) {
  sqlite3_bind_int64(insert, 1, id);
  sqlite3_bind_text(insert, 2, "item", 4, SQLITE_STATIC);
  sqlite3_bind_int64(insert, 3, 15'000'000'000);
  sqlite3_step(insert);
  sqlite3_reset(insert);
}

void Insert(benchmark::State& state) {
  const Dialect dialect;
  const ByHand hand, anew;
  Fill(dialect, hand, 0);
  anew.Run(kTableByHand);
  dialect.Run("begin tran");
  hand.Run("begin");
  anew.Run("begin");
  sqlite3_stmt* const insert = hand.Prepare("insert into t values (?1,?2,?3)");
  Numbered text, anew_text;
  int id = 0, hand_id = 0, anew_id = 0;
  Compare(
      state, kBlock, [&] { dialect.Run(text("insert into t values (", ++id, ",'item',1.5)")); },
      [&] { InsertByHand(insert, ++hand_id); },
      [&] {
        anew.RunAnew(anew_text("insert into t values (", ++anew_id, ",'item',15000000000)"));
      });
  sqlite3_finalize(insert);
}
BENCHMARK(Insert)->UseManualTime();

// Each round puts the row back that it takes out: two statements.
void DeleteAndInsert(benchmark::State& state) {
  const Dialect dialect;
  const ByHand hand;
  Fill(dialect, hand);
  dialect.Run("begin tran");
  hand.Run("begin");
  sqlite3_stmt* const remove = hand.Prepare("delete from t where id=?1");
  sqlite3_stmt* const insert = hand.Prepare("insert into t values (?1,?2,?3)");
  Numbered text, anew_text;
  int id = 0, hand_id = 0, anew_id = 0;
  Compare(
      state, kBlock,
      [&] {
        dialect.Run(text("delete t where id=", Next(id)));
        dialect.Run(text("insert into t values (", id, ",'item',1.5)"));
      },
      [&] {
        sqlite3_bind_int64(remove, 1, Next(hand_id));
        sqlite3_step(remove);
        sqlite3_reset(remove);
        InsertByHand(insert, hand_id);
      },
      [&] {
        hand.RunAnew(anew_text("delete from t where id=", Next(anew_id)));
        hand.RunAnew(anew_text("insert into t values (", anew_id, ",'item',15000000000)"));
      });
  sqlite3_finalize(remove);
  sqlite3_finalize(insert);
}
BENCHMARK(DeleteAndInsert)->UseManualTime();

// ---- A batch of ten statements, as the rules send them ----

constexpr int kPairs = 5;

void Batch(benchmark::State& state) {
  const Dialect dialect;
  const ByHand hand;
  Fill(dialect, hand);
  dialect.Run("begin tran");
  hand.Run("begin");
  sqlite3_stmt* const select = hand.Prepare("select qty from t where id=?1");
  sqlite3_stmt* const update = hand.Prepare("update t set qty=?2 where id=?1");
  Numbered text, anew_text;
  int id = 0, hand_id = 0, anew_id = 0;
  constexpr int kLast = kRows - kPairs;
  Compare(
      state, kBlock / 10,
      [&] {
        text("set nocount on declare @q decimal(28,10) select @q=qty from t where id=",
             Next(id, kLast));
        for (int i = 0; i < kPairs; ++i) {
          if (i > 0) text.Add(" select @q=qty from t where id=", id + i);
          text.Add(" update t set qty=@q where id=", id + i);
        }
        dialect.Run(text.Text());
      },
      [&] {
        Next(hand_id, kLast);
        for (int i = 0; i < kPairs; ++i) {
          sqlite3_bind_int64(select, 1, hand_id + i);
          sqlite3_step(select);
          const int64_t quantity = sqlite3_column_int64(select, 0);
          sqlite3_reset(select);
          sqlite3_bind_int64(update, 1, hand_id + i);
          sqlite3_bind_int64(update, 2, quantity);
          sqlite3_step(update);
          sqlite3_reset(update);
        }
      },
      [&] {
        Next(anew_id, kLast);
        for (int i = 0; i < kPairs; ++i) {
          hand.RunAnew(anew_text("select qty from t where id=", anew_id + i));
          hand.RunAnew(anew_text("update t set qty=15000000000 where id=", anew_id + i));
        }
      });
  sqlite3_finalize(select);
  sqlite3_finalize(update);
}
BENCHMARK(Batch)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
