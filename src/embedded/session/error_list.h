// The errors and messages of the batch that ran last.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/catalog/sqlite.h"
#include "embedded/error.h"
#include "foundation/batch_session.h"

namespace tavcc::sql {

// Errors of this severity and below are messages.
inline constexpr int kMessageSeverity = 10;

class ErrorList {
 public:
  void Clear() { errors_.clear(); }
  void Add(SqlError error) {
    last_ = error.number;
    if (error.number == kInterrupted) return;
    if (error.line == 0) error.line = 1;
    Keep(std::move(error));
  }
  void AddMessage(SqlError message) { Keep(std::move(message)); }
  const std::vector<SqlError>& all() const { return errors_; }

  // @@ERROR: the number of the last statement's error, 0 when it had none.
  int last() const { return last_; }
  void ForgetLast() { last_ = 0; }

  // Until it is called with null, each is told to the reader when it arises.
  void TellTo(BatchReader* reader) { reader_ = reader; }

  // The procedure in which errors arise while this lives; empty for text that is run.
  class Procedure {
   public:
    Procedure(ErrorList& list, std::string_view name)
        : list_(list), outer_(std::exchange(list.procedure_, name)) {}
    Procedure(const Procedure&) = delete;
    Procedure& operator=(const Procedure&) = delete;
    ~Procedure() { list_.procedure_ = outer_; }

   private:
    ErrorList& list_;
    const std::string_view outer_;
  };

 private:
  void Keep(SqlError error) {
    if (reader_ != nullptr) {
      reader_->Message({error.severity > kMessageSeverity, error.number, error.severity,
                        error.state, error.line, std::string(procedure_), error.message});
    }
    errors_.push_back(std::move(error));
  }

  std::vector<SqlError> errors_;
  int last_ = 0;
  BatchReader* reader_ = nullptr;
  std::string_view procedure_;
};

}  // namespace tavcc::sql
