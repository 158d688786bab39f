// Transactions: the server's counting over SQLite's one transaction, and whole statements.
#include "embedded/catalog/names.h"
#include "embedded/session/engine.h"

namespace tavcc::sql {

void Engine::Begin(const std::string& name) {
  if (transaction_count_ == 0) {
    store_.RunCached(shared_ && !snapshot_isolation ? "BEGIN IMMEDIATE" : "BEGIN");
    transaction_name_ = name;
    catalog_.Forget();
    catalog_.Refresh();
  }
  ++transaction_count_;
}

void Engine::Commit() {
  if (transaction_count_ == 0) Raise(3902);
  if (transaction_count_ == 1) {
    store_.RunCached("COMMIT");
    catalog_.Forget();
    save_points_.clear();
  }
  --transaction_count_;
}

void Engine::RollbackAll() {
  if (store_.InTransaction()) {
    catalog_.SaveVariables();
    catalog_.SaveNumbers();
    store_.RunCached("ROLLBACK");
  }
  catalog_.RollBackTo(0);
  save_points_.clear();
  transaction_count_ = 0;
}

void Engine::Rollback(const std::string& name) {
  if (transaction_count_ == 0) Raise(3903);
  if (name.empty() || SameName(name, transaction_name_)) {
    RollbackAll();
    return;
  }
  for (size_t i = save_points_.size(); i-- > 0;) {
    if (!SameName(save_points_[i].name, name)) continue;
    catalog_.SaveVariables();
    catalog_.SaveNumbers();
    store_.Run("ROLLBACK TO \"save." + std::to_string(i) + '"');
    catalog_.RollBackTo(save_points_[i].mark);
    save_points_.resize(i + 1);
    return;
  }
  Raise(6401, name);
}

void Engine::Save(const std::string& name) {
  if (transaction_count_ == 0) Raise(628);
  store_.Run("SAVEPOINT \"save." + std::to_string(save_points_.size()) + '"');
  save_points_.push_back(SavePoint{name, catalog_.Mark()});
}

StatementGuard::StatementGuard(Engine& engine, bool store)
    : engine_(engine),
      own_transaction_(!engine.store_.InTransaction()),
      mark_(own_transaction_ ? 0 : engine.catalog_.Mark()) {
  if (!own_transaction_) {
    if (store) engine.store_.MarkChange();
    engine.store_.RunCached("SAVEPOINT statement");
    return;
  }
  engine.catalog_.Forget();
  engine.store_.RunCached(store && engine.shared_ ? "BEGIN IMMEDIATE" : "BEGIN");
  if (store) engine.store_.MarkChange();
}

void StatementGuard::Keep() {
  engine_.store_.RunCached(own_transaction_ ? "COMMIT" : "RELEASE statement");
  if (own_transaction_) engine_.catalog_.Forget();
  kept_ = true;
}

StatementGuard::~StatementGuard() {
  if (kept_ || !engine_.store_.InTransaction()) return;
  try {
    engine_.catalog_.SaveNumbers();
    if (own_transaction_) {
      engine_.store_.RunCached("ROLLBACK");
    } else {
      engine_.store_.RunCached("ROLLBACK TO statement");
      engine_.store_.RunCached("RELEASE statement");
    }
    engine_.catalog_.RollBackTo(mark_);
  } catch (const SqlError&) {
    // The store has given the transaction up; the engine finds that out by itself.
  }
}

}  // namespace tavcc::sql
