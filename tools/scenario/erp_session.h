// A session over an ERP database with the reference host: calls go straight to the classes.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/plug_in.h"
#include "host/erp.h"
#include "scenario/backend.h"

namespace tavcc {

class ErpSession : public BackendSession {
 public:
  // `observer` sees each statement that a call sends.
  ErpSession(std::unique_ptr<Erp> erp, StatementObserver observer);

  Host& host() override { return erp_->host(); }
  std::string dsn() override { return erp_->dsn(); }
  ConnectionPtr connection() override { return erp_->connection(); }
  Value Call(const ClassDescription& cls, const Method& method,
             std::vector<Value>& arguments) override;
  void StartLog(const std::optional<InjectedFailure>& failure) override;
  std::vector<LoggedStatement> TakeLog() override;

 protected:
  Erp& erp() { return *erp_; }

 private:
  const std::unique_ptr<Erp> erp_;
  const StatementObserver observer_;
  std::map<const ClassDescription*, std::unique_ptr<PlugIn>> objects_;
};

}  // namespace tavcc
