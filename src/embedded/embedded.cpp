// Stores and their sessions.
#include "embedded/embedded.h"

#include <stdexcept>
#include <utility>

#include "embedded/script.h"
#include "embedded/session/engine.h"
#include "embedded/session/session.h"
#include "embedded/session/store.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

void RunOneBatch(Engine& engine, const ScriptBatch& batch) {
  engine.RunBatch(batch.text);
  if (const SqlError* error = FindFirstError(engine.errors())) {
    throw AutomationError(error->number, std::string(kErrorSource),
                          std::to_string(batch.line) + ": " + error->message);
  }
}

// What `work` returns; an error of the store as the caller knows errors.
template <class Work>
auto WithAutomationErrors(const Work& work) {
  try {
    return work();
  } catch (const SqlError& error) {
    throw AutomationError(error.number, std::string(kErrorSource), error.message);
  }
}

class StoreDatabase final : public Database, public std::enable_shared_from_this<StoreDatabase> {
 public:
  StoreDatabase(const OpenOptions& options, StoreLocation location)
      : options_(options), location_(std::move(location)) {
    // A store in memory is its one connection; it lives as long as the database.
    if (InMemory()) memory_ = MakeEngine();
  }

  BatchSessionPtr NewSession() override {
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
    for (const ScriptBatch& batch : SplitScript(script)) {
      for (int i = 0; i < batch.times; ++i) RunOneBatch(*engine, batch);
    }
  }

  std::string Image() override {
    if (!InMemory()) throw std::logic_error("only a database in memory has an image");
    return WithAutomationErrors([&] { return StoreImage(memory_->context().store); });
  }

  void SaveAs(const std::string& path) override {
    if (!InMemory()) throw std::logic_error("only a database in memory is saved");
    WithAutomationErrors([&] { SaveStore(memory_->context().store, path); });
  }

 private:
  bool InMemory() const { return !location_.shared; }

  std::shared_ptr<Engine> MakeEngine() const {
    return WithAutomationErrors([&] {
      if (!InMemory()) CheckOwnJournals(location_.path);
      return std::make_shared<Engine>(location_, options_.clock, options_.budget);
    });
  }

  const OpenOptions options_;
  const StoreLocation location_;
  std::shared_ptr<Engine> memory_;
  std::weak_ptr<Session> session_;
};

}  // namespace

std::shared_ptr<Database> Database::Open(const OpenOptions& options) {
  return WithAutomationErrors(
      [&] { return std::make_shared<StoreDatabase>(options, FindStore(options)); });
}

}  // namespace tavcc::sql
