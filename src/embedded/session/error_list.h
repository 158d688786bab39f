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
    Append(std::move(error));
  }
  void AddMessage(SqlError message) { Append(std::move(message)); }
  const std::vector<SqlError>& all() const { return errors_; }

  // @@ERROR: the number of the last statement's error, 0 when it had none.
  int last() const { return last_; }
  void ForgetLast() { last_ = 0; }

  // Until it is called with null, each is told to the reader when it arises.
  void ReportTo(BatchReader* reader) { reader_ = reader; }

  // Where errors arise: in a procedure, in a text that is executed, or where both are empty in the
  // batch itself.
  struct Origin {
    std::string_view procedure = {}, executed = {};
  };
  // Errors arise there while this lives.
  class Scope {
   public:
    Scope(ErrorList& list, const Origin& origin)
        : list_(list), outer_(std::exchange(list.origin_, origin)) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() { list_.origin_ = outer_; }

   private:
    ErrorList& list_;
    const Origin outer_;
  };

 private:
  void Append(SqlError error) {
    if (reader_ != nullptr) {
      reader_->Message({error.severity > kMessageSeverity, error.number, error.severity,
                        error.state, error.line, std::string(origin_.procedure), error.message,
                        std::string(origin_.executed)});
    }
    errors_.push_back(std::move(error));
  }

  std::vector<SqlError> errors_;
  int last_ = 0;
  BatchReader* reader_ = nullptr;
  Origin origin_;
};

}  // namespace tavcc::sql
