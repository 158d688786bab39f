// The rewrites of one statement, for the list in rewrite.cpp.
#pragma once

#include <memory>

#include "embedded/bind/binder.h"
#include "embedded/rewrite/statement_pass.h"

namespace tavcc::sql {

std::unique_ptr<StatementPass> AntiJoinPass(BindResult& binding);
std::unique_ptr<StatementPass> CommonConjunctsPass(BindResult& binding);
std::unique_ptr<StatementPass> SemiJoinReductionPass(BindResult& binding);
std::unique_ptr<StatementPass> ImpliedIndexFilterPass(BindResult& binding);
std::unique_ptr<StatementPass> SingleRowPass(BindResult& binding);
std::unique_ptr<StatementPass> UpdateInPlacePass(BindResult& binding);

}  // namespace tavcc::sql
