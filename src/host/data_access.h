// The reference host's two components that run a statement by connection string.
#pragma once

#include <memory>

#include "foundation/host.h"
#include "host/host_state.h"

namespace tavcc {

class HostApplicationConnection final : public ApplicationConnection {
 public:
  explicit HostApplicationConnection(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  RecordsetPtr Execute(std::string_view sDsn, const SqlText& strSQL) override {
    return state_->GetConnection(sDsn)->Execute(strSQL);
  }

 private:
  std::shared_ptr<HostState> state_;
};

class HostClassInfo final : public ClassInfo {
 public:
  explicit HostClassInfo(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  RecordsetPtr GetData(std::string_view sDsn, const SqlText& strSQL) override {
    return state_->GetConnection(sDsn)->Execute(strSQL);
  }

 private:
  std::shared_ptr<HostState> state_;
};

}  // namespace tavcc
