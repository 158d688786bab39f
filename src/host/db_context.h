// The reference host's data-access context and current user.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "foundation/host.h"
#include "host/host_state.h"

namespace tavcc {

class HostUserContext final : public UserContext {
 public:
  explicit HostUserContext(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  int16_t UserID() const override { return state_->settings.user_id; }

 private:
  std::shared_ptr<HostState> state_;
};

class HostDbContext final : public DbContext {
 public:
  explicit HostDbContext(std::shared_ptr<HostState> state)
      : state_(std::move(state)), number_(state_->NextContext()) {}

  std::shared_ptr<UserContext> GetUserContext() override;
  void Bind(std::string_view sDsn) override;
  ConnectionPtr GetConnection() override;
  // Both make sure that the connection is open, and are counted, whether that succeeds or not.
  // Errors: as GetConnection.
  void ReadyFirst() override;
  void ReadySecond() override;

 private:
  std::shared_ptr<HostState> state_;
  int number_;
  std::optional<std::string> sDsn_;
};

}  // namespace tavcc
