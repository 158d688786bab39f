// Stores and their sessions.
#include "embedded/embedded.h"

#include <utility>

#include "embedded/catalog/names.h"
#include "embedded/run/session.h"
#include "embedded/run/store.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

bool IsGo(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) {
    line.remove_suffix(1);
  }
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
  return SameName(line, "go");
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void RunOneBatch(Engine& engine, std::string_view batch, int line) {
  if (IsBlank(batch)) return;
  engine.RunBatch(batch);
  if (const SqlError* error = FirstError(engine.errors())) {
    throw AutomationError(error->number, std::string(kErrorSource),
                          std::to_string(line) + ": " + error->message);
  }
}

class StoreDatabase final : public Database, public std::enable_shared_from_this<StoreDatabase> {
 public:
  explicit StoreDatabase(const OpenOptions& options) : options_(options) {
    // A store in memory is its one connection; it lives as long as the database.
    if (InMemory()) memory_ = MakeEngine();
  }

  ConnectionPtr NewSession() override {
    if (!InMemory()) return std::make_shared<Session>(MakeEngine(), shared_from_this());
    if (!session_.expired()) {
      throw AutomationError(kStoreFailure, std::string(kErrorSource),
                            "a database in memory has one session, which is in use");
    }
    auto session = std::make_shared<Session>(memory_, shared_from_this());
    session_ = session;
    return session;
  }

  void Reopen(Connection& session) override { dynamic_cast<Session&>(session).Reopen(); }

  void RunScript(std::string_view script) override {
    const auto engine = InMemory() ? memory_ : MakeEngine();
    size_t batch = 0;
    int line = 1, batch_line = 1;
    for (size_t at = 0; at < script.size(); ++line) {
      const size_t end = std::min(script.find('\n', at), script.size());
      if (IsGo(script.substr(at, end - at))) {
        RunOneBatch(*engine, script.substr(batch, at - batch), batch_line);
        batch = std::min(end + 1, script.size());
        batch_line = line + 1;
      }
      at = end + 1;
    }
    RunOneBatch(*engine, script.substr(batch), batch_line);
  }

 private:
  bool InMemory() const { return options_.path == kInMemory; }

  std::shared_ptr<Engine> MakeEngine() const {
    try {
      return std::make_shared<Engine>(StoreLocation{options_.path, !InMemory()}, options_.clock,
                                      options_.budget);
    } catch (const SqlError& error) {
      throw AutomationError(error.number, std::string(kErrorSource),
                            options_.path + ": " + error.message);
    }
  }

  const OpenOptions options_;
  std::shared_ptr<Engine> memory_;
  std::weak_ptr<Session> session_;
};

}  // namespace

std::shared_ptr<Database> Database::Open(const OpenOptions& options) {
  if (options.path != kInMemory) RequireStore(options);
  return std::make_shared<StoreDatabase>(options);
}

}  // namespace tavcc::sql
