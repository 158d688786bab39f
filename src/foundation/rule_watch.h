// What the rules of a thread do beside their statements, told to whoever watches a call: which gate
// is asked and what it answers, and what the host answers.
//
// The rules have no word of it: ladder.h, the host services and the ports tell. Where nobody
// watches, telling is a look at one pointer.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/value.h"
#include "foundation/verdict.h"

namespace tavcc {

// What a rule asked the host for beside statements.
enum class HostQuestion : uint8_t {
  kSetting,    // of the system; its category and key, Empty where the host has none
  kPublished,  // a value published for the process, by its key; Empty where it is not
  kRight,      // on the bills of the class type that is the key
  kText,       // the translation of the key; the category is the language
  kUser,       // the current user's id
};

class RuleWatch {
 public:
  // Watches this thread until it ends, in place of the watch before.
  RuleWatch();
  virtual ~RuleWatch();
  RuleWatch(const RuleWatch&) = delete;
  RuleWatch& operator=(const RuleWatch&) = delete;

  // A list of gates begins, within the gate that is asked, if any, and ends: also when an error
  // leaves it.
  virtual void LadderBegins() = 0;
  virtual void LadderEnds() = 0;
  // A gate is asked. `by_others`: it stands for the gates of another list, which answer for it.
  virtual void GateAsked(std::string_view name, bool by_others) = 0;
  virtual void GateAnswered(const Verdict& verdict) = 0;
  // The host answered.
  virtual void HostAnswered(HostQuestion question, std::string_view category, std::string_view key,
                            const Value& answer) = 0;

  // The watch of this thread; null when there is none.
  static RuleWatch* OfThread();
  static void TellHostAnswer(HostQuestion question, std::string_view category, std::string_view key,
                             const Value& answer) {
    if (RuleWatch* const watch = OfThread()) watch->HostAnswered(question, category, key, answer);
  }

 private:
  RuleWatch* const outer_;
};

// The walk over one list of gates, as the thread's watch is told of it.
class WatchedLadder {
 public:
  WatchedLadder() : watch_(RuleWatch::OfThread()) {
    if (watch_ != nullptr) watch_->LadderBegins();
  }
  ~WatchedLadder() {
    if (watch_ != nullptr) watch_->LadderEnds();
  }
  WatchedLadder(const WatchedLadder&) = delete;
  WatchedLadder& operator=(const WatchedLadder&) = delete;

  template <class Gate>
  Verdict Ask(std::string_view name, bool by_others, const Gate& gate) const {
    if (watch_ == nullptr) return gate();
    watch_->GateAsked(name, by_others);
    Verdict verdict = gate();
    watch_->GateAnswered(verdict);
    return verdict;
  }

 private:
  RuleWatch* const watch_;
};

}  // namespace tavcc
