// The reference host's readers of system settings. Both read t_SystemProfile past the statement
// log.
#pragma once

#include <memory>

#include "foundation/host.h"
#include "host/host_state.h"

namespace tavcc {

class HostSystemProfile final : public SystemProfile {
 public:
  explicit HostSystemProfile(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  Value GetProfile(std::string_view sDsn, std::string_view category,
                   std::string_view key) override {
    return state_->ReadProfile(sDsn, category, key);
  }

 private:
  std::shared_ptr<HostState> state_;
};

// Reads the database that a context was bound to last. `fallback` when it has no such setting.
class HostProfileReader final : public ProfileReader {
 public:
  explicit HostProfileReader(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  Value GetSystemProfile(std::string_view category, std::string_view key,
                         const Value& fallback) override {
    const Value value = state_->ReadProfile(state_->current_dsn, category, key);
    return value.IsEmpty() ? fallback : value;
  }

 private:
  std::shared_ptr<HostState> state_;
};

class HostGLData final : public GLData {
 public:
  explicit HostGLData(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  std::shared_ptr<ProfileReader> SystemProfile() override {
    return std::make_shared<HostProfileReader>(state_);
  }

 private:
  std::shared_ptr<HostState> state_;
};

}  // namespace tavcc
