#include "embedded/catalog/catalog.h"

#include "embedded/catalog/names.h"

namespace tavcc::sql {
namespace {

// Whether the qualifiers of a name lead to the one schema of the store.
bool IsOwnSchema(const ObjectName& name) {
  if (name.parts.size() > 3) RaiseUnsupported("names of other servers");
  if (name.parts.size() == 3 && !name.parts[0].empty()) return false;
  if (name.parts.size() < 2) return true;
  const std::string& schema = name.parts[name.parts.size() - 2];
  return schema.empty() || EqualsIgnoringCase(schema, "dbo");
}

std::string CreateViewText(const CreateViewStatement& view) {
  std::string columns;
  for (const auto& column : view.columns) {
    columns += (columns.empty() ? "(" : ",") + BracketName(column);
  }
  if (!columns.empty()) columns += ')';
  return "CREATE VIEW " + BracketName(view.name.last()) + columns + " AS " + view.text;
}

void CheckOwnSchema(const ObjectName& name, std::string_view statement) {
  if (name.parts.size() == 1) return;
  const std::string& schema = name.parts[name.parts.size() - 2];
  if (name.parts.size() > 2) Raise(errors::kDatabasePrefixNotAllowed, statement);
  if (!schema.empty() && !EqualsIgnoringCase(schema, "dbo")) Raise(errors::kUnknownSchema, schema);
}

}  // namespace

Catalog::Catalog(SqliteConnection& store, bool shared)
    : store_(store),
      identities_(store, shared),
      objects_(store, shared, undo_),
      temporaries_(store, identities_, undo_) {}

// ---- Looking up ----

CatalogObjectPtr Catalog::Find(const ObjectName& name) const {
  return IsOwnSchema(name) ? objects_.Find(name.last()) : nullptr;
}

TablePtr Catalog::FindTable(const ObjectName& name) const {
  const std::string& last = name.last();
  if (last.empty()) return nullptr;
  if (last.front() == '@' || last.front() == '#') return temporaries_.Find(last);
  const auto object = Find(name);
  return object ? object->table : nullptr;
}

int64_t Catalog::ObjectId(std::string_view text) const {
  ObjectName name{SplitName(text)};
  if (name.parts.empty() || name.parts.size() > 3 || name.last().empty()) return 0;
  if (name.last().front() != '#') return IsOwnSchema(name) ? objects_.IdOf(name.last()) : 0;
  // A temporary table is an object of tempdb: only a name that says so finds it.
  if (name.parts.size() != 3 || !EqualsIgnoringCase(name.parts[0], "tempdb")) return 0;
  const TablePtr table = FindTable(name);
  return table ? -(table->number + 1) : 0;
}

std::vector<std::string> SplitName(std::string_view text) {
  std::vector<std::string> parts(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '.') {
      parts.emplace_back();
    } else if (text[i] == '[' || text[i] == '"') {
      const char close = text[i] == '[' ? ']' : '"';
      for (++i; i < text.size() && text[i] != close; ++i) parts.back() += text[i];
    } else {
      parts.back() += text[i];
    }
  }
  for (std::string& part : parts) part = std::string(Trim(part));
  return parts;
}

// ---- Changing ----

TablePtr Catalog::CreateTable(const TablePtr& definition) {
  if (definition->IsTemporary()) return temporaries_.Create(definition);
  objects_.CheckNameIsFree(definition->name);
  auto table = std::make_shared<Table>(*definition);
  table->physical = "main." + QuoteName(table->name);
  store_.Run(PhysicalDefinition(*table, "main", table->name));
  objects_.Put(table);
  return table;
}

void Catalog::AddColumns(const TablePtr& table, std::shared_ptr<Table> changed) {
  const bool temporary = table->IsTemporary();
  const std::string schema = temporary ? "temp" : "main";
  changed->physical = table->physical;
  for (size_t i = table->columns.size(); i < changed->columns.size(); ++i) {
    store_.Run("ALTER TABLE " + table->physical + " ADD COLUMN " + PhysicalColumn(*changed, i));
  }
  for (size_t i = table->keys.size(); i < changed->keys.size(); ++i) {
    store_.Run(PhysicalIndex(*changed, i, schema, table->PhysicalName()));
  }
  if (temporary) {
    changed->definition = TableText(*changed);
    temporaries_.Replace(table, changed);
  } else {
    objects_.Put(changed);
  }
}

void Catalog::CreateIndex(const TablePtr& table, const CreateIndexStatement& index) {
  if (FindByName(table->keys, index.name) != nullptr)
    Raise(errors::kIndexExists, index.name, "table", table->MessageName());
  auto changed = std::make_shared<Table>(*table);
  AddIndex(*changed, index);
  AddColumns(table, std::move(changed));
}

void Catalog::DropIndex(const TablePtr& table, std::string_view index) {
  for (size_t i = 0; i < table->keys.size(); ++i) {
    if (table->keys[i].kind != Key::Kind::kIndex || !EqualsIgnoringCase(table->keys[i].name, index))
      continue;
    store_.Run("DROP INDEX " + std::string(table->PhysicalSchema()) +
               QuoteName(PhysicalIndexName(*table, i, table->PhysicalName())));
    auto changed = std::make_shared<Table>(*table);
    changed->keys.erase(changed->keys.begin() + static_cast<ptrdiff_t>(i));
    AddColumns(table, std::move(changed));
    return;
  }
  Raise(errors::kDropOfMissing, "index", std::string(index));
}

void Catalog::CreateView(const CreateViewStatement& view) {
  CheckOwnSchema(view.name, "CREATE VIEW");
  objects_.Add(view.name.last(), CreateViewText(view));
}

void Catalog::CreateProcedure(const CreateProcedureStatement& procedure) {
  CheckOwnSchema(procedure.name, "CREATE/ALTER PROCEDURE");
  objects_.Add(procedure.name.last(), procedure.text);
}

void Catalog::DropTable(const TablePtr& table) {
  if (table->IsTemporary()) {
    temporaries_.Drop(table);
    return;
  }
  store_.Run("DROP TABLE " + table->physical);
  objects_.Drop(*objects_.Find(table->name));
}

void Catalog::RollbackTo(size_t mark) {
  undo_.RollbackTo(mark);
  temporaries_.FinishRollback();
  objects_.ForgetVersions();
  identities_.Restore([this](const TableVisitor& visit) {
    // What nobody asked for gave out no number.
    objects_.ForEachKnownTable(visit);
    temporaries_.ForEachTable(visit);
  });
}

}  // namespace tavcc::sql
