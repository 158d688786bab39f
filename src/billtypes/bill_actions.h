// The actions of the bill classes: run the gate, then write.
//
// An action readies the context, takes its connection, asks the gate, writes and readies the
// context again; after an error it readies the context for the first time once more. Nothing is
// undone here: the host's transaction decides what stays.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/plug_in.h"

namespace tavcc {

enum class OnRefusal { kLeaveOpen, kClose };

struct BillAction {
  // Answers whether the action may go on; it has put its reason where the caller finds it.
  std::function<bool(Connection& cn)> gate;
  std::function<void(Connection& cn)> write;
  OnRefusal on_refusal = OnRefusal::kClose;
};

// Runs an action on the database that `sDsn` names. True when it wrote; false when the gate
// refused, or after an error, whose description then is in `message`. Raises nothing.
bool RunBillAction(PlugIn& self, std::string_view sDsn, std::string& message,
                   const BillAction& action);

// The failure part of every action. A context that cannot be readied now has nothing to add to the
// error that is being reported, so its own error is dropped.
void ReadyAfterFailure(PlugIn& self);

// The statements of the actions.
std::string AuditStatement(std::string_view head_table, int32_t user_id, int32_t bill_id);
std::string UnAuditStatement(std::string_view head_table, int32_t bill_id);

// Sends one deletion per table, in the order given. "Delete From" runs straight into the table's
// name: as stored. The database refuses the first of them (error 208), and the action reports that.
void DeleteFromTables(Connection& cn, std::span<const std::string_view> tables, int32_t bill_id);

}  // namespace tavcc
