// Definitions of tables, indexes, views, procedures and variables.
#include "embedded/syntax/print_impl.h"

namespace tavcc::sql {

void Printer::Add(const ColumnDefinition& column) {
  Open("column");
  Word(column.name);
  Add(column.type);
  if (column.nullable) Word(*column.nullable ? "null" : "not-null");
  if (column.identity) {
    Open("identity");
    Word(std::to_string(column.identity_seed));
    Word(std::to_string(column.identity_increment));
    Close();
  }
  if (column.default_value) {
    Open("default");
    Add(column.default_value.get());
    Close();
  }
  if (column.primary_key) Word("primary-key");
  if (column.unique) Word("unique");
  Close();
}

void Printer::Add(const TableDefinition& table) {
  for (const ColumnDefinition& column : table.columns) Add(column);
  for (const KeyDefinition& key : table.keys) {
    Open(key.primary ? "primary-key" : "unique");
    if (!key.name.empty()) Word(key.name);
    Add(key.columns);
    Close();
  }
}

void Printer::AddCreateProcedure(const CreateProcedureStatement& create) {
  Open("create-procedure");
  Add(create.name);
  for (const ParameterDefinition& parameter : create.parameters) {
    Open("parameter");
    Word(parameter.name);
    Add(parameter.type);
    if (parameter.default_value) Add(parameter.default_value.get());
    if (parameter.output) Word("output");
    Close();
  }
  for (const StatementPtr& statement : create.body) Add(*statement);
  Close();
}

void Printer::AddDeclare(const DeclareStatement& declare) {
  Open("declare");
  for (const VariableDefinition& variable : declare.variables) {
    Open(variable.name);
    if (variable.table)
      Add(*variable.table);
    else
      Add(variable.type);
    if (variable.initial) Add(variable.initial.get());
    Close();
  }
  Close();
}

// False when the statement defines nothing.
bool Printer::AddDefinition(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::kCreateTable:
      Open("create-table");
      Add(To<CreateTableStatement>(statement).name);
      Add(To<CreateTableStatement>(statement).definition);
      Close();
      return true;
    case Statement::Kind::kAlterTableAdd:
      Open("alter-table-add");
      Add(To<AlterTableAddStatement>(statement).name);
      Add(To<AlterTableAddStatement>(statement).definition);
      Close();
      return true;
    case Statement::Kind::kCreateIndex: {
      const auto& create = To<CreateIndexStatement>(statement);
      Open(create.unique ? "create-unique-index" : "create-index");
      Word(create.name);
      Add(create.table);
      Add(create.columns);
      if (create.filter) Add(create.filter.get());
      Close();
      return true;
    }
    case Statement::Kind::kCreateView: {
      const auto& create = To<CreateViewStatement>(statement);
      Open("create-view");
      Add(create.name);
      if (!create.columns.empty()) Add(create.columns);
      Add(*create.query);
      Close();
      return true;
    }
    case Statement::Kind::kCreateProcedure:
      AddCreateProcedure(To<CreateProcedureStatement>(statement));
      return true;
    case Statement::Kind::kDrop: {
      const auto& drop = To<DropStatement>(statement);
      constexpr std::string_view kWords[] = {"table", "view", "procedure", "index"};
      Open("drop-" + std::string(kWords[static_cast<size_t>(drop.what)]));
      if (drop.if_exists) Word("if-exists");
      for (const ObjectName& name : drop.names) Add(name);
      if (!drop.on_table.parts.empty()) {
        Word("on");
        Add(drop.on_table);
      }
      Close();
      return true;
    }
    case Statement::Kind::kDeclare:
      AddDeclare(To<DeclareStatement>(statement));
      return true;
    default:
      return false;
  }
}

}  // namespace tavcc::sql
