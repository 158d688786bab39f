#include "embedded/session/transaction.h"

#include "foundation/text.h"

namespace tavcc::sql {

void Transaction::Begin(const std::string& name, bool snapshot) {
  if (count_ == 0) {
    store_.RunCached(shared_ && !snapshot ? "BEGIN IMMEDIATE" : "BEGIN");
    name_ = name;
    catalog_.Forget();
    catalog_.Refresh();
  }
  ++count_;
}

void Transaction::Commit() {
  if (count_ == 0) Raise(errors::kCommitWithoutBegin);
  if (count_ == 1) {
    store_.RunCached("COMMIT");
    catalog_.Forget();
    save_points_.clear();
  }
  --count_;
}

void Transaction::RollbackAll() {
  if (store_.InTransaction()) {
    catalog_.SaveVariables();
    catalog_.SaveIdentities();
    store_.RunCached("ROLLBACK");
  }
  catalog_.RollbackTo(0);
  save_points_.clear();
  count_ = 0;
}

void Transaction::Rollback(const std::string& name) {
  if (count_ == 0) Raise(errors::kRollbackWithoutBegin);
  if (name.empty() || EqualsIgnoringCase(name, name_)) {
    RollbackAll();
    return;
  }
  for (size_t i = save_points_.size(); i-- > 0;) {
    if (!EqualsIgnoringCase(save_points_[i].name, name)) continue;
    catalog_.SaveVariables();
    catalog_.SaveIdentities();
    store_.Run("ROLLBACK TO \"save." + std::to_string(i) + '"');
    catalog_.RollbackTo(save_points_[i].mark);
    save_points_.resize(i + 1);
    return;
  }
  Raise(errors::kUnknownSavepoint, name);
}

void Transaction::Save(const std::string& name) {
  if (count_ == 0) Raise(errors::kSaveOutsideTransaction);
  store_.Run("SAVEPOINT \"save." + std::to_string(save_points_.size()) + '"');
  save_points_.push_back(SavePoint{name, catalog_.Mark()});
}

StatementGuard::StatementGuard(Transaction& transaction, bool store)
    : store_(transaction.store_),
      catalog_(transaction.catalog_),
      own_transaction_(!store_.InTransaction()),
      mark_(own_transaction_ ? 0 : catalog_.Mark()) {
  if (!own_transaction_) {
    if (store) store_.MarkChange();
    store_.RunCached("SAVEPOINT statement");
    return;
  }
  catalog_.Forget();
  store_.RunCached(store && transaction.shared_ ? "BEGIN IMMEDIATE" : "BEGIN");
  if (store) store_.MarkChange();
}

void StatementGuard::Commit() {
  store_.RunCached(own_transaction_ ? "COMMIT" : "RELEASE statement");
  if (own_transaction_) catalog_.Forget();
  committed_ = true;
}

StatementGuard::~StatementGuard() {
  if (committed_ || !store_.InTransaction()) return;
  try {
    catalog_.SaveIdentities();
    if (own_transaction_) {
      store_.RunCached("ROLLBACK");
    } else {
      store_.RunCached("ROLLBACK TO statement");
      store_.RunCached("RELEASE statement");
    }
    catalog_.RollbackTo(mark_);
  } catch (const SqlError&) {
    // The store has given the transaction up; the interpreter finds that out by itself.
  }
}

}  // namespace tavcc::sql
