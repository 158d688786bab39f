// SET options, transactions, PRINT, RAISERROR.
#include <array>
#include <limits>

#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"
#include "embedded/types/stored_conversions.h"
#include "embedded/types/text_units.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

// Options whose one value is how this database always works.
struct FixedOption {
  std::string_view name, value;
};
constexpr auto kFixedOptions = std::to_array<FixedOption>({
    {"ANSI_NULLS", "ON"},
    {"ANSI_NULL_DFLT_ON", "ON"},
    {"ANSI_PADDING", "ON"},
    {"ANSI_WARNINGS", "ON"},
    {"ARITHABORT", "ON"},
    {"CONCAT_NULL_YIELDS_NULL", "ON"},
    {"IMPLICIT_TRANSACTIONS", "OFF"},
    {"NUMERIC_ROUNDABORT", "OFF"},
    {"QUOTED_IDENTIFIER", "ON"},
    {"ROWCOUNT", "0"},
});

class SetOptionInstruction final : public Instruction {
 public:
  explicit SetOptionInstruction(const SetOptionStatement& statement)
      : Instruction(statement.line), statement_(statement) {}
  Flow Execute(SessionContext& session, Frame&) override {
    const std::string& name = statement_.name;
    const bool on = EqualsIgnoringCase(statement_.value, "ON");
    if (name == "NOCOUNT") {
      session.state.no_count = on;
    } else if (name == "XACT_ABORT") {
      session.state.abort_transaction_on_error = on;
    } else if (name == "IDENTITY_INSERT") {
      SetIdentityInsert(session);
    } else if (name == "TRANSACTION ISOLATION LEVEL") {
      session.state.snapshot_isolation = EqualsIgnoringCase(statement_.value, "SNAPSHOT");
    } else if (name != "LOCK_TIMEOUT" && !name.starts_with("TRANSACTION")) {
      CheckFixedOption(name);
    }
    return Flow::kNext;
  }

 private:
  void CheckFixedOption(const std::string& name) const {
    for (const FixedOption& option : kFixedOptions) {
      if (option.name == name && EqualsIgnoringCase(option.value, statement_.value)) return;
    }
    RaiseUnsupported("SET " + name + ' ' + statement_.value);
  }

  // The value is the table and ON or OFF.
  void SetIdentityInsert(SessionContext& session) const {
    const std::string_view value = TrimTrailingBlanks(statement_.value);
    const size_t blank = value.find_last_of(" \t\r\n");
    if (blank == std::string_view::npos) Raise(errors::kSyntaxNear, value);
    const bool on = EqualsIgnoringCase(value.substr(blank + 1), "ON");
    const ObjectName name{SplitName(value.substr(0, blank))};
    const TablePtr table = session.catalog.FindTable(name);
    if (!table) Raise(errors::kInvalidObjectName, WrittenName(name));
    if (table->identity_column < 0) Raise(errors::kNoIdentityProperty, table->name);
    if (on && !session.state.identity_insert.physical.empty() &&
        session.state.identity_insert.physical != table->physical) {
      Raise(errors::kIdentityInsertIsOn, "main", "dbo", session.state.identity_insert.name,
            table->name);
    }
    session.state.identity_insert.physical = on ? table->physical : std::string();
    session.state.identity_insert.name = on ? table->name : std::string();
  }

  const SetOptionStatement& statement_;
};

class TransactionInstruction final : public Instruction {
 public:
  explicit TransactionInstruction(const TransactionStatement& statement)
      : Instruction(statement.line), statement_(statement) {}
  Flow Execute(SessionContext& session, Frame&) override {
    switch (statement_.what) {
      case TransactionStatement::What::kBegin:
        session.transaction.Begin(statement_.name, session.state.snapshot_isolation);
        break;
      case TransactionStatement::What::kCommit:
        session.transaction.Commit();
        break;
      case TransactionStatement::What::kRollback:
        session.transaction.Rollback(statement_.name);
        break;
      case TransactionStatement::What::kSave:
        session.transaction.Save(statement_.name);
        break;
    }
    session.state.row_count = 0;
    return Flow::kNext;
  }

 private:
  const TransactionStatement& statement_;
};

class PrintInstruction final : public Instruction {
 public:
  PrintInstruction(const PrintStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line),
        value_(visible, *statement.value, TextType(TypeKind::kNVarChar, 4000)) {}
  void Prepare(SessionContext& session, Frame& frame) override {
    PrepareDeferred(line(), [&] { value_.Prepare(session, frame); });
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    const StoredValue value = value_.Value(session, frame).value;
    session.errors.AddMessage({0, 0, 1, line(), value.IsNull() ? std::string() : value.text()});
    session.state.row_count = 0;
    return Flow::kNext;
  }

 private:
  Evaluation value_;
};

// Numbers up to this are the server's own; RAISERROR takes none of them.
constexpr int kLastReserved = 50000;

// The message with %s, %d, %i, %u, %x and %% filled in. Errors: 2787.
std::string Format(const std::string& text, const std::vector<TypedValue>& values) {
  std::string out;
  size_t next = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char what = text[++i];
    if (what == '%') {
      out += what;
    } else if (what == 's' || what == 'd' || what == 'i' || what == 'u') {
      if (next >= values.size()) {
        out += "(null)";
      } else {
        const TypedValue& value = values[next++];
        out += value.value.IsNull() ? "(null)" : DisplayText(value.value, value.type);
      }
    } else {
      Raise(errors::kInvalidFormat, std::string("%") + what);
    }
  }
  return out;
}

class RaisErrorInstruction final : public Instruction {
 public:
  RaisErrorInstruction(const RaisErrorStatement& statement, DeclaredVariables visible)
      : Instruction(statement.line) {
    for (const auto& argument : statement.arguments) {
      values_.push_back(std::make_unique<Evaluation>(visible, *argument, std::nullopt));
    }
  }
  void Prepare(SessionContext& session, Frame& frame) override {
    for (const auto& value : values_) {
      PrepareDeferred(line(), [&] { value->Prepare(session, frame); });
    }
  }
  Flow Execute(SessionContext& session, Frame& frame) override {
    std::vector<TypedValue> values;
    for (const auto& value : values_) values.push_back(value->Value(session, frame));
    const auto number = [&](size_t at) {
      return values.size() > at && values[at].value.kind() == StoredValue::Kind::kInteger
                 ? static_cast<int>(values[at].value.integer())
                 : 0;
    };
    SqlError error{50000, number(1), number(2), 0, ""};
    const std::vector<TypedValue> rest(values.begin() + std::min<ptrdiff_t>(3, std::ssize(values)),
                                       values.end());
    if (values[0].value.kind() == StoredValue::Kind::kInteger) {
      error.number = number(0);
      if (error.number <= kLastReserved) {
        Raise(errors::kInvalidErrorNumber, error.number, kLastReserved + 1,
              std::numeric_limits<int>::max());
      }
    } else if (!values[0].value.IsNull()) {
      error.message = Format(DisplayText(values[0].value, values[0].type), rest);
    }
    if (error.severity > 10) throw error;
    error.line = line();
    session.errors.AddMessage(std::move(error));
    return Flow::kNext;
  }

 private:
  std::vector<std::unique_ptr<Evaluation>> values_;
};

}  // namespace

InstructionPtr MakeInstruction(const SetOptionStatement& statement, DeclaredVariables) {
  return std::make_unique<SetOptionInstruction>(statement);
}

InstructionPtr MakeInstruction(const TransactionStatement& statement, DeclaredVariables) {
  return std::make_unique<TransactionInstruction>(statement);
}

InstructionPtr MakeInstruction(const PrintStatement& statement, DeclaredVariables visible) {
  return std::make_unique<PrintInstruction>(statement, visible);
}

InstructionPtr MakeInstruction(const RaisErrorStatement& statement, DeclaredVariables visible) {
  return std::make_unique<RaisErrorInstruction>(statement, visible);
}

}  // namespace tavcc::sql
