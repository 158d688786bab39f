// A session with a database whose answers a test writes down.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/connection.h"
#include "foundation/error.h"
#include "support/scripted_host.h"

namespace tavcc::testing {

class FakeSession final : public Connection {
 public:
  RecordsetPtr Execute(const SqlText& sql) override {
    if (state == kStateClosed) throw AutomationError(RuntimeError::kObjectClosed);
    sent.emplace_back(sql.text);
    return answer ? answer(sql.text) : std::make_shared<OneColumn>(std::vector<Value>{});
  }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override { return Execute(sql); }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    sent.emplace_back(name.text);
    for (ProcedureParameter& parameter : parameters) {
      if (parameter.output) parameter.value = "out";
    }
  }
  std::vector<ConnectionError> Errors() const override { return errors; }
  int State() const override { return state; }
  void Close() override { state = kStateClosed; }

  std::function<RecordsetPtr(std::string_view sql)> answer;  // no rows when there is none
  std::vector<std::string> sent;
  std::vector<ConnectionError> errors;
  int state = kStateOpen;
};

}  // namespace tavcc::testing
