// How the changes of the open transaction to what the session knows are taken back. The store's own
// contents are rolled back by SQLite.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace tavcc::sql {

class UndoLog {
 public:
  // `step` takes the change back that was made just now, with all later ones taken back before it.
  void Add(std::function<void()> step) { steps_.push_back(std::move(step)); }

  // A point to which RollbackTo leads back.
  size_t Mark() const { return steps_.size(); }
  void RollbackTo(size_t mark) {
    while (steps_.size() > mark) {
      const std::function<void()> step = std::move(steps_.back());
      steps_.pop_back();
      step();
    }
  }
  // The transaction was committed.
  void Forget() { steps_.clear(); }

 private:
  std::vector<std::function<void()>> steps_;
};

}  // namespace tavcc::sql
