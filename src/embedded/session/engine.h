// The engine of one session: its connection to the store, its catalog, its caches, its state, and
// the running of programs.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/bind/binder.h"
#include "embedded/catalog/catalog.h"
#include "embedded/catalog/sqlite.h"
#include "embedded/plan/batch_cache.h"
#include "embedded/session/cursor.h"
#include "embedded/session/program.h"
#include "embedded/session/recordset.h"
#include "foundation/connection.h"

namespace tavcc::sql {

// An argument of a procedure call.
struct CallArgument {
  std::string parameter;  // with its "@"; empty when by position
  TypedValue value;
  bool is_default = false;
  bool output = false;
};

// How statements become programs: the engine runs them, and knows none of them.
struct Compiler {
  CompileBatch batch;
  std::shared_ptr<Program> (*procedure)(const Procedure& procedure);
};

class Engine {
 public:
  // See OpenEngine, which also makes the functions known that need the engine.
  Engine(const StoreLocation& location, std::function<DateTime()> clock, int64_t budget,
         const Compiler& compiler);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine();

  // ---- For the session ----
  // Runs a batch to its end. Errors are listed, not thrown.
  void RunBatch(std::string_view text);
  // Calls a procedure; output arguments get their values back.
  void RunProcedure(std::string_view name, std::vector<CallArgument>& arguments);
  RecordsetPtr TakeResult();
  const std::vector<SqlError>& errors() const { return errors_; }
  // Ends the session's transaction, temporary tables and cursors.
  void Clear();

  // ---- For instructions ----
  Catalog& catalog() { return catalog_; }
  SqliteConnection& store() { return store_; }
  // Whether the store is a file, which other processes may be at work on.
  bool shared() const { return shared_; }
  StoredValue SessionValueOf(SessionValue value, const Frame& frame) const;
  void RunBlock(const std::vector<InstructionPtr>& body, Frame& frame, Flow& flow);
  Flow RunOne(Instruction& instruction, Frame& frame);
  // Counts a statement; ends the batch when the budget is used up.
  void Spend();
  void RunText(std::string_view text);
  // `arguments` as for RunProcedure. Returns the procedure's RETURN value. Errors: 2812 and those
  // of the arguments.
  int64_t Call(const ObjectName& name, std::vector<CallArgument>& arguments);
  // Takes the rows of a query: the first of a batch are its result.
  void Return(Rows&& rows);
  RecordsetMaker& recordsets() { return recordsets_; }
  // The rows of the statements inside are handed to `sink` instead of to the client.
  void Capture(std::vector<Rows>* sink) { capture_ = sink; }
  bool capturing() const { return capture_ != nullptr; }
  void Message(int number, int severity, int state, std::string text);
  void CountCompiled() { ++compiled_; }
  // How many statements were compiled so far: for tests and benchmarks.
  int64_t compiled() const { return compiled_; }

  std::map<std::string, Cursor>& cursors() { return cursors_; }

  // State that statements read and set.
  int64_t row_count = 0;
  int fetch_status = 0;
  std::optional<int64_t> identity;
  bool no_count = false, abort_transaction_on_error = false;
  // Transactions read the file as it was when they began, and wait for nobody until they write.
  bool snapshot_isolation = false;
  std::string identity_insert;  // the physical name of the table, empty for none
  std::string identity_insert_name;
  Frame* live_frame = nullptr;  // that s_variable reads
  // What s_next counts on from in the statement at hand.
  struct Counter {
    int64_t last = 0, step = 0;
    SqlType type;
  };
  Counter next_number;

  // ---- Transactions (transaction.cpp) ----
  int transaction_count() const { return transaction_count_; }
  void Begin(const std::string& name);
  void Commit();                           // error 3902
  void Rollback(const std::string& name);  // error 3903, 6401
  void Save(const std::string& name);      // error 628
  bool InTransaction() const { return transaction_count_ > 0; }

 private:
  friend class StatementGuard;
  struct SavePoint {
    std::string name;
    size_t mark;
  };

  void Start();
  template <class Body>
  void Run(const Body& body);
  void Report(SqlError error);
  void RunProgram(const std::shared_ptr<Program>& program, Frame& frame);
  template <class Body>
  void RunInScope(const Body& body);
  void PrepareProgram(Program& program, Frame& frame);
  void EndLocalCursors(const Frame& frame);
  void BindArguments(const Procedure& procedure, std::vector<CallArgument>& arguments,
                     Frame& frame);
  void RollbackAll();

  SqliteConnection store_;
  const bool shared_;
  Catalog catalog_;
  const Compiler compiler_;
  BatchCache batches_;
  CachedBatch batch_;  // the client's, while it runs and until the next one
  std::map<std::string, Cursor> cursors_;
  std::vector<SqlError> errors_;
  bool has_result_ = false;
  Rows result_;
  RecordsetMaker recordsets_;
  const RecordsetPtr closed_ = ClosedRecordset();
  std::vector<Rows>* capture_ = nullptr;
  int last_error_ = 0;
  std::optional<int64_t> scope_identity_;  // of the session's own batches
  int transaction_count_ = 0;
  std::string transaction_name_;
  std::vector<SavePoint> save_points_;
  int nesting_ = 0;
  const int64_t budget_;
  int64_t spent_ = 0;
  int64_t compiled_ = 0;
};

// Makes one statement whole: what it did to store and catalog is undone unless Keep is called.
class StatementGuard {
 public:
  // `store`: whether the store's own file is changed, not only temporary tables.
  StatementGuard(Engine& engine, bool store);
  StatementGuard(const StatementGuard&) = delete;
  StatementGuard& operator=(const StatementGuard&) = delete;
  ~StatementGuard();
  void Keep();

 private:
  Engine& engine_;
  const bool own_transaction_;
  const size_t mark_;
  bool kept_ = false;
};

}  // namespace tavcc::sql
