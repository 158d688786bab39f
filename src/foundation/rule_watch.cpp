#include "foundation/rule_watch.h"

namespace tavcc {

namespace {
// A bare pointer: see trap.cpp.
thread_local RuleWatch* innermost_rule_watch = nullptr;
}  // namespace

RuleWatch::RuleWatch() : outer_(innermost_rule_watch) {
  innermost_rule_watch = this;
}
RuleWatch::~RuleWatch() {
  innermost_rule_watch = outer_;
}

RuleWatch* RuleWatch::OfThread() {
  return innermost_rule_watch;
}

}  // namespace tavcc
