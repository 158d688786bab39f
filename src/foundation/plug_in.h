// The state of an object of the library: two host objects, kept for its lifetime.
//
// It is the same for every automation class, so a method is a free function whose first argument is
// the object it is called on; which methods make up which class is told by the class registry.
#pragma once

#include <memory>
#include <string_view>

#include "foundation/host.h"

namespace tavcc {

class PlugIn {
 public:
  // Obtains a context and its user from the host; neither is tied to a database yet. Errors reach
  // whoever creates the object.
  explicit PlugIn(Host& host);
  PlugIn(const PlugIn&) = delete;
  PlugIn& operator=(const PlugIn&) = delete;

  // A fresh context, tied to the database, and its user, in place of the kept ones. Always 0.
  // Errors reach the caller; the kept objects are then as far replaced as the call came.
  int InitObjects(std::string_view sDsn);

  Host& host() { return host_; }
  DbContext& db_context() { return *db_context_; }
  int16_t user_id() const { return user_context_->UserID(); }

 private:
  Host& host_;
  // Members are released from the last to the first: the context, then the user.
  std::shared_ptr<UserContext> user_context_;
  std::shared_ptr<DbContext> db_context_;
};

}  // namespace tavcc
