// The errors and messages of the batch that ran last.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "embedded/error.h"

namespace tavcc::sql {

class ErrorList {
 public:
  void Clear() { errors_.clear(); }
  void Add(SqlError error) {
    last_ = error.number;
    if (error.line == 0) error.line = 1;
    errors_.push_back(std::move(error));
  }
  void AddMessage(int number, int severity, int state, std::string text) {
    errors_.push_back(SqlError{number, severity, state, 1, std::move(text)});
  }
  const std::vector<SqlError>& all() const { return errors_; }

  // @@ERROR: the number of the last statement's error, 0 when it had none.
  int last() const { return last_; }
  void ForgetLast() { last_ = 0; }

 private:
  std::vector<SqlError> errors_;
  int last_ = 0;
};

}  // namespace tavcc::sql
