// CREATE, ALTER, DROP, TRUNCATE.
#include "embedded/session/instructions/duplicate_key.h"
#include "embedded/session/instructions/instructions.h"
#include "embedded/session/session_context.h"

namespace tavcc::sql {
namespace {

bool IsTemporary(const ObjectName& name) {
  return name.last().starts_with('#');
}

// A statement that is one change of the catalog.
template <class StatementType>
class DefineInstruction final : public Instruction {
 public:
  using Apply = void (*)(SessionContext&, const StatementType&);
  DefineInstruction(const StatementType& statement, bool store, Apply apply)
      : Instruction(statement.line), statement_(statement), store_(store), apply_(apply) {}
  Flow Execute(SessionContext& session, Frame&) override {
    StatementGuard guard(session.transaction, store_);
    apply_(session, statement_);
    guard.Commit();
    session.state.row_count = 0;
    return Flow::kNext;
  }

 private:
  const StatementType& statement_;
  const bool store_;
  const Apply apply_;
};

template <class StatementType>
InstructionPtr Define(const StatementType& statement, bool store,
                      void (*apply)(SessionContext&, const StatementType&)) {
  return std::make_unique<DefineInstruction<StatementType>>(statement, store, apply);
}

class CreateTableInstruction final : public Instruction {
 public:
  explicit CreateTableInstruction(const CreateTableStatement& statement)
      : Instruction(statement.line), statement_(statement) {}
  Flow Execute(SessionContext& session, Frame&) override {
    if (!table_) table_ = BuildTable(statement_.name.last(), statement_.definition);
    StatementGuard guard(session.transaction, !table_->IsTemporary());
    session.catalog.CreateTable(table_);
    guard.Commit();
    session.state.row_count = 0;
    return Flow::kNext;
  }

 private:
  const CreateTableStatement& statement_;
  TablePtr table_;  // checked once, made as often as the statement runs
};

TablePtr RequireTable(SessionContext& session, const ObjectName& name, errors::Number number) {
  TablePtr table = session.catalog.FindTable(name);
  if (!table) Raise(number, WrittenName(name));
  return table;
}

void AddColumns(SessionContext& session, const AlterTableAddStatement& statement) {
  const TablePtr table = RequireTable(session, statement.name, errors::kAlterOfMissing);
  const auto added = BuildTable(table->name, statement.definition);
  auto changed = std::make_shared<Table>(*table);
  for (const Column& column : added->columns) {
    if (table->FindColumn(column.name) >= 0)
      Raise(errors::kColumnTwiceInTable, column.name, table->name);
    if (column.identity) RaiseUnsupported("adding an identity column");
    if (!column.nullable && !column.constant_default) {
      RaiseUnsupported("adding a NOT NULL column without a constant default");
    }
    changed->columns.push_back(column);
  }
  for (Key key : added->keys) {
    for (int& column : key.columns) column += static_cast<int>(table->columns.size());
    if (key.kind == Key::Kind::kPrimary) RaiseUnsupported("adding a primary key");
    changed->keys.push_back(std::move(key));
  }
  session.catalog.AddColumns(table, std::move(changed));
}

void CreateIndex(SessionContext& session, const CreateIndexStatement& statement) {
  const TablePtr table = RequireTable(session, statement.table, errors::kIndexOnMissingObject);
  try {
    session.catalog.CreateIndex(table, statement);
  } catch (const SqlError& error) {
    if (error.number != kDuplicateRefused) throw;
    Raise(errors::kDuplicateKeyInIndex, table->MessageName(), statement.name,
          RepeatedKey(session, *table, statement.columns));
  }
}

void CreateView(SessionContext& session, const CreateViewStatement& statement) {
  BindResult unused;
  Binder(session.catalog, {}, {}, unused).CheckView(statement);
  session.catalog.CreateView(statement);
}

void CreateProcedure(SessionContext& session, const CreateProcedureStatement& statement) {
  session.catalog.CreateProcedure(statement);
}

std::string_view KindWord(DropStatement::What what) {
  static constexpr std::string_view kWords[] = {"table", "view", "procedure", "index"};
  return kWords[static_cast<size_t>(what)];
}

std::string Verb(DropStatement::What what) {
  static constexpr std::string_view kWords[] = {"TABLE", "VIEW", "PROCEDURE", "INDEX"};
  return std::string(kWords[static_cast<size_t>(what)]);
}

DropStatement::What KindOf(const CatalogObject& object) {
  if (object.view) return DropStatement::What::kView;
  return object.procedure ? DropStatement::What::kProcedure : DropStatement::What::kTable;
}

bool DropOne(SessionContext& session, const DropStatement& drop, const ObjectName& name) {
  Catalog& catalog = session.catalog;
  if (drop.what == DropStatement::What::kIndex) {
    const TablePtr table = RequireTable(session, drop.on_table, errors::kAlterOfMissing);
    catalog.DropIndex(table, name.last());
    return true;
  }
  if (drop.what == DropStatement::What::kTable) {
    const TablePtr table = catalog.FindTable(name);
    if (table && !table->IsVariable()) catalog.DropTable(table);
    if (table) return true;
  }
  const CatalogObjectPtr object = catalog.Find(name);
  if (!object) return false;
  if (KindOf(*object) != drop.what) {
    const std::string written = WrittenName(name);
    Raise(errors::kDropOfOtherKind, Verb(drop.what), written, written, KindWord(KindOf(*object)),
          "DROP " + Verb(KindOf(*object)));
  }
  catalog.DropObject(object);
  return true;
}

void Drop(SessionContext& session, const DropStatement& drop) {
  for (const ObjectName& name : drop.names) {
    if (!DropOne(session, drop, name) && !drop.if_exists) {
      Raise(errors::kDropOfMissing, "drop", std::string(KindWord(drop.what)), WrittenName(name));
    }
  }
}

void Truncate(SessionContext& session, const TruncateStatement& statement) {
  const TablePtr table = RequireTable(session, statement.table, errors::kTruncateOfMissing);
  session.catalog.temporaries().Truncate(*table);
}

}  // namespace

InstructionPtr MakeInstruction(const CreateTableStatement& statement, DeclaredVariables) {
  return std::make_unique<CreateTableInstruction>(statement);
}
InstructionPtr MakeInstruction(const AlterTableAddStatement& statement, DeclaredVariables) {
  return Define(statement, !IsTemporary(statement.name), AddColumns);
}
InstructionPtr MakeInstruction(const CreateIndexStatement& statement, DeclaredVariables) {
  return Define(statement, !IsTemporary(statement.table), CreateIndex);
}
InstructionPtr MakeInstruction(const CreateViewStatement& statement, DeclaredVariables) {
  return Define(statement, true, CreateView);
}
InstructionPtr MakeInstruction(const CreateProcedureStatement& statement, DeclaredVariables) {
  return Define(statement, true, CreateProcedure);
}
InstructionPtr MakeInstruction(const DropStatement& statement, DeclaredVariables) {
  const bool temporary =
      statement.what == DropStatement::What::kTable && IsTemporary(statement.names.front());
  return Define(statement, !temporary, Drop);
}
InstructionPtr MakeInstruction(const TruncateStatement& statement, DeclaredVariables) {
  return Define(statement, !IsTemporary(statement.table), Truncate);
}

}  // namespace tavcc::sql
