// A connection before another one, to which it hands every call on: for those that watch or change
// what comes back.
#pragma once

#include <span>
#include <utility>
#include <vector>

#include "foundation/connection.h"

namespace tavcc {

class ConnectionWrapper : public Connection {
 public:
  explicit ConnectionWrapper(ConnectionPtr inner) : inner_(std::move(inner)) {}

  RecordsetPtr Execute(const SqlText& sql) override { return inner_->Execute(sql); }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override {
    return inner_->OpenClientRecordset(sql);
  }
  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    inner_->CallProcedure(name, parameters);
  }
  std::vector<ConnectionError> Errors() const override { return inner_->Errors(); }
  int State() const override { return inner_->State(); }
  void Close() override { inner_->Close(); }

  Connection& inner() { return *inner_; }
  const Connection& inner() const { return *inner_; }

 private:
  const ConnectionPtr inner_;
};

}  // namespace tavcc
