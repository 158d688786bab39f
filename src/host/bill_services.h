// The reference host's rights service and its judge of database errors.
#pragma once

#include <memory>

#include "foundation/host.h"
#include "host/host_state.h"

namespace tavcc {

// The current user has the right on every class type that the settings do not deny.
class HostDataService final : public DataService {
 public:
  explicit HostDataService(std::shared_ptr<HostState> state) : state_(std::move(state)) {}
  void SetClassTypeID(int32_t class_type_id) override { class_type_id_ = class_type_id; }
  Value CheckBillHaveRight(const Value&) override {
    return !state_->settings.denied_class_types.contains(class_type_id_);
  }

 private:
  std::shared_ptr<HostState> state_;
  int32_t class_type_id_ = 0;
};

// A mere message of the server carries the number 0.
class HostErrorChecker final : public ErrorChecker {
 public:
  bool IsError(const ConnectionError& error) override { return error.number != 0; }
};

}  // namespace tavcc
