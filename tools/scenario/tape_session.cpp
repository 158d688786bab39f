#include "scenario/tape_session.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "scenario/erp_session.h"
#include "scenario/runner.h"
#include "scenario/start_state.h"
#include "scenario/values.h"
#include "scenario/word_diff.h"

namespace tavcc {
namespace {

constexpr const char* kSource = "tape";

bool IsSame(const LoggedStatement& a, const LoggedStatement& b) {
  return a.is_procedure == b.is_procedure && ShowStatement(a) == ShowStatement(b);
}

// The tape of the call that is being replayed, and what was asked that is not on it.
class Deck {
 public:
  void Insert(Tape tape, const std::optional<InjectedFailure>& failure) {
    tape_ = std::move(tape);
    next_ = 0;
    sent_ = 0;
    complaints_.clear();
    // A statement that never reaches the database is not asked for.
    const bool unsent = failure && failure->fault.kind == StatementFault::Kind::kRaised;
    failing_ = unsent ? static_cast<size_t>(failure->at) : 0;
    complete_ = !failure;
  }

  // Errors: 5 where the statement is not the next one.
  const LoggedStatement& Answer(const LoggedStatement& sent) {
    ++sent_;
    if (sent_ == failing_) {
      ++sent_;
      ++next_;
    }
    if (next_ < tape_.size() && IsSame(tape_[next_], sent)) return tape_[next_++];
    Complain(Cat("statement ", static_cast<int32_t>(sent_), " is not ", WhatIsExpected(sent)));
    throw AutomationError(static_cast<int32_t>(RuntimeError::kInvalidProcedureCall), kSource,
                          "The statement is not on the tape.");
  }

  void Complain(std::string line) { complaints_.push_back(std::move(line)); }

  std::vector<std::string> TakeComplaints() {
    if (complete_ && complaints_.empty()) {
      for (size_t i = next_; i < tape_.size(); ++i) {
        Complain(Cat("statement ", static_cast<int32_t>(i + 1),
                     " of the tape was not sent: ", Show(ShowStatement(tape_[i]))));
      }
    }
    return std::exchange(complaints_, {});
  }

 private:
  std::string WhatIsExpected(const LoggedStatement& sent) const {
    const std::string text = ShowStatement(sent);
    if (next_ == tape_.size()) return Cat("on the tape, which ends before it: ", Show(text));
    const auto later =
        std::find_if(tape_.begin() + static_cast<std::ptrdiff_t>(next_), tape_.end(),
                     [&](const LoggedStatement& statement) { return IsSame(statement, sent); });
    const std::string difference = WordDiff(ShowStatement(tape_[next_]), text);
    if (later == tape_.end()) return Cat("on the tape\n", difference);
    return Cat("the next on the tape, where it is statement ",
               static_cast<int32_t>(later - tape_.begin() + 1), "\n", difference);
  }

  Tape tape_;
  size_t next_ = 0;     // on the tape
  size_t sent_ = 0;     // by the call
  size_t failing_ = 0;  // of those sent, the one that does not come here; 0 is none
  bool complete_ = true;
  std::vector<std::string> complaints_;
};

class TapeConnection final : public Connection {
 public:
  explicit TapeConnection(std::shared_ptr<Deck> deck) : deck_(std::move(deck)) {}

  RecordsetPtr Execute(const SqlText& sql) override {
    return MakeRecordset(Play({.text = std::string(sql.text)}).answer);
  }
  RecordsetPtr OpenClientRecordset(const SqlText& sql) override { return Execute(sql); }

  void CallProcedure(const SqlText& name, std::span<ProcedureParameter> parameters) override {
    LoggedStatement sent{.is_procedure = true, .text = std::string(name.text)};
    for (const ProcedureParameter& parameter : parameters) {
      if (!parameter.output) sent.parameters.push_back(parameter);
    }
    const LoggedStatement& played = Play(sent);
    for (ProcedureParameter& parameter : parameters) {
      for (const ProcedureParameter& output : played.outputs) {
        if (parameter.output && parameter.name == output.name) parameter.value = output.value;
      }
    }
  }

  std::vector<ConnectionError> Errors() const override { return errors_; }
  int State() const override { return open_ ? kStateOpen : kStateClosed; }
  void Close() override { open_ = false; }

  void Reopen() { open_ = true; }

 private:
  const LoggedStatement& Play(const LoggedStatement& sent) {
    errors_.clear();
    try {
      const LoggedStatement& played = deck_->Answer(sent);
      errors_ = played.errors;
      if (played.error) throw AutomationError(*played.error);
      return played;
    } catch (const AutomationError& error) {
      if (errors_.empty()) {
        errors_ = {{error.number(), error.source(), error.description(), ""}};
      }
      throw;
    }
  }

  const std::shared_ptr<Deck> deck_;
  std::vector<ConnectionError> errors_;  // of the last statement
  bool open_ = true;
};

class TapeSession final : public ErpSession {
 public:
  TapeSession(const StartState& start, StatementObserver observer,
              const std::shared_ptr<Deck>& deck)
      : ErpSession(
            std::make_unique<Erp>(
                "tape", [=](std::string_view) { return std::make_shared<TapeConnection>(deck); },
                [](Connection& closed) { dynamic_cast<TapeConnection&>(closed).Reopen(); }),
            std::move(observer)),
        settings_(start.taped_settings),
        deck_(deck) {
    ApplyStartState(start, erp().host(), *erp().connection());
    erp().host().settings().read_setting = [this](std::string_view category, std::string_view key) {
      return Setting(Cat(category, ".", key));
    };
  }

  void Play(const Tape& tape, const std::optional<InjectedFailure>& failure) override {
    deck_->Insert(tape, failure);
  }
  std::vector<std::string> TakeComplaints() override { return deck_->TakeComplaints(); }

 private:
  Value Setting(const std::string& name) {
    for (const auto& [known, value] : settings_) {
      if (EqualsIgnoringCase(known, name)) return value;
    }
    deck_->Complain(Cat("the setting ", name, " is not on the tape (key \"profile\")"));
    throw AutomationError(static_cast<int32_t>(RuntimeError::kInvalidProcedureCall), kSource,
                          "The setting is not on the tape.");
  }

  const std::vector<std::pair<std::string, Value>> settings_;
  const std::shared_ptr<Deck> deck_;
};

}  // namespace

std::unique_ptr<BackendSession> MakeTapeSession(const StartState& start,
                                                StatementObserver observer) {
  return std::make_unique<TapeSession>(start, std::move(observer), std::make_shared<Deck>());
}

}  // namespace tavcc
