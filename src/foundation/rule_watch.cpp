#include "foundation/rule_watch.h"

namespace tavcc {

namespace {
// A bare pointer: see trap.cpp.
thread_local RuleWatch* innermost_watch = nullptr;
}  // namespace

RuleWatch::RuleWatch() : outer_(innermost_watch) {
  innermost_watch = this;
}
RuleWatch::~RuleWatch() {
  innermost_watch = outer_;
}

RuleWatch* RuleWatch::OfThread() {
  return innermost_watch;
}

}  // namespace tavcc
