// The printer's inside: one member function per kind of node, in the files print*.cpp. Brackets and
// blanks are the business of Open, Close and Word.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/syntax/print.h"

namespace tavcc::sql {

class Printer {
 public:
  explicit Printer(PrintSlots slots) : slots_(slots) {}

  void Add(const std::vector<StatementPtr>& statements);
  void Add(const Statement& statement);
  std::string Take() { return std::move(out_); }
  void Line() { out_ += out_.empty() ? "" : "\n"; }

 private:
  void AddPlain(const Statement& statement);
  void Gap() {
    if (!out_.empty() && out_.back() != '(' && out_.back() != '\n') out_ += ' ';
  }
  void Word(std::string_view word) {
    Gap();
    out_ += word;
  }
  void Open(std::string_view head) {
    Gap();
    out_ += '(';
    out_ += head;
  }
  void Close() { out_ += ')'; }
  void Quoted(std::string_view prefix, std::string_view text);

  void Add(const ObjectName& name);
  void Add(const std::vector<std::string>& names);
  void Add(const TypeName& type);
  void Add(const Expression* expression);
  void Add(const Condition* condition);
  void Add(const TableSource& source);
  void Add(const Query& query);
  void AddQuery(const Query& query);
  void AddWith(const WithClause& with);
  void Add(const SelectBlock& block);
  void Add(const SelectItem& item);
  void Add(const TableDefinition& table);
  void Add(const ColumnDefinition& column);
  void AddLiteral(const LiteralExpression& literal);
  void AddCall(const FunctionExpression& call);
  void AddOver(const WindowClause& over);
  void Add(const FrameBound& bound);
  void Add(const OrderItem& item);
  void AddCase(const CaseExpression& expression);
  void AddInCondition(const Condition& condition);
  void AddTop(const std::optional<TopClause>& top);
  void AddSources(const std::vector<TableSourcePtr>& sources);
  void AddWhere(const ConditionPtr& where);
  void AddInsert(const InsertStatement& insert);
  void AddUpdate(const UpdateStatement& update);
  void AddDelete(const DeleteStatement& statement);
  void AddCreateProcedure(const CreateProcedureStatement& create);
  void AddDeclare(const DeclareStatement& declare);
  void AddCall(const ExecuteProcedureStatement& call);
  bool AddDefinition(const Statement& statement);
  bool AddProcedural(const Statement& statement);

  template <typename Node>
  void AddAll(const std::vector<Node>& nodes) {
    for (const Node& node : nodes) Add(node.get());
  }

  std::string out_;
  const PrintSlots slots_;
};

// A node as the kind that it says it is.
template <typename Node, typename Base>
const Node& To(const Base& base) {
  return static_cast<const Node&>(base);
}

}  // namespace tavcc::sql
