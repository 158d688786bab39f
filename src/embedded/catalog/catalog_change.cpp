// Changing the store's objects: each change is written through to the store and can be undone.
#include <sqlite3.h>

#include "embedded/catalog/catalog.h"
#include "embedded/catalog/names.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

void BindText(sqlite3_stmt* statement, int index, const std::string& text) {
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string CreateViewText(const CreateViewStatement& view) {
  std::string columns;
  for (const auto& column : view.columns) {
    columns += (columns.empty() ? "(" : ",") + BracketName(column);
  }
  if (!columns.empty()) columns += ')';
  return "CREATE VIEW " + BracketName(view.name.last()) + columns + " AS " + view.text;
}

void RequireOwnSchema(const ObjectName& name, std::string_view statement) {
  if (name.parts.size() == 1) return;
  const std::string& schema = name.parts[name.parts.size() - 2];
  if (name.parts.size() > 2) Raise(166, statement);
  if (!schema.empty() && !SameName(schema, "dbo")) Raise(2760, schema);
}

}  // namespace

void Catalog::RaiseIfTaken(const std::string& name) const {
  const auto found = objects_.find(FoldName(name));
  if (found != objects_.end()) Raise(2714, name);
}

void Catalog::BumpVersion() {
  store_.Run("UPDATE main.\"tavcc.version\" SET version=version+1");
  if (shared_) {
    seen_version_ = store_.QueryInteger("SELECT version FROM main.\"tavcc.version\"");
  }
}

void Catalog::SetObject(const std::string& folded, CatalogObjectPtr object) {
  auto& place = objects_[folded];
  undo_.push_back(Undo{Undo::Kind::kObject, folded, place, nullptr, 0});
  place = std::move(object);
  if (!place) objects_.erase(folded);
  ++epoch_;
}

// Writes the object's row, a new one when it has no id yet.
void Catalog::StoreObject(std::shared_ptr<CatalogObject> object) {
  const SqliteStatement statement = store_.Prepare(
      "INSERT INTO main.\"tavcc.objects\"(id,name,definition) VALUES(?1,?2,?3) "
      "ON CONFLICT(id) DO UPDATE SET definition=excluded.definition");
  if (object->id != 0) sqlite3_bind_int64(statement.get(), 1, object->id);
  BindText(statement.get(), 2, object->name);
  BindText(statement.get(), 3, object->definition);
  store_.Step(statement.get());
  if (object->id == 0) object->id = sqlite3_last_insert_rowid(store_.handle());
  BumpVersion();
  const std::string folded = FoldName(object->name);
  SetObject(folded, std::move(object));
}

TablePtr Catalog::CreateTable(const TablePtr& definition) {
  if (definition->IsTemporary()) return TakeTemporary(definition);
  RaiseIfTaken(definition->name);
  auto table = std::make_shared<Table>(*definition);
  table->physical = "main." + QuoteName(table->name);
  store_.Run(PhysicalDefinition(*table, "main", table->name));
  auto object = std::make_shared<CatalogObject>();
  object->name = table->name;
  object->definition = table->definition;
  object->table = table;
  StoreObject(std::move(object));
  return table;
}

TablePtr Catalog::AddColumns(const TablePtr& table, std::shared_ptr<Table> changed) {
  const bool temporary = table->IsTemporary();
  const std::string schema = temporary ? "temp" : "main";
  changed->physical = table->physical;
  changed->definition = TableText(*changed);
  for (size_t i = table->columns.size(); i < changed->columns.size(); ++i) {
    store_.Run("ALTER TABLE " + table->physical + " ADD COLUMN " + PhysicalColumn(*changed, i));
  }
  for (size_t i = table->keys.size(); i < changed->keys.size(); ++i) {
    store_.Run(PhysicalIndex(*changed, i, schema, table->PhysicalName()));
  }
  if (temporary) {
    ReplaceTemporary(table, changed);
    return changed;
  }
  auto object = std::make_shared<CatalogObject>(*Find(ObjectName{{table->name}}));
  object->definition = changed->definition;
  object->table = changed;
  StoreObject(std::move(object));
  return changed;
}

void Catalog::CreateIndex(const TablePtr& table, const CreateIndexStatement& index) {
  for (const Key& key : table->keys) {
    if (SameName(key.name, index.name)) Raise(1913, index.name, "table", table->MessageName());
  }
  auto changed = std::make_shared<Table>(*table);
  AddIndex(*changed, index);
  AddColumns(table, std::move(changed));
}

void Catalog::DropIndex(const TablePtr& table, std::string_view index) {
  for (size_t i = 0; i < table->keys.size(); ++i) {
    if (table->keys[i].kind != Key::Kind::kIndex || !SameName(table->keys[i].name, index)) continue;
    store_.Run("DROP INDEX " + std::string(table->PhysicalSchema()) +
               QuoteName(PhysicalIndexName(*table, i, table->PhysicalName())));
    auto changed = std::make_shared<Table>(*table);
    changed->keys.erase(changed->keys.begin() + static_cast<ptrdiff_t>(i));
    AddColumns(table, std::move(changed));
    return;
  }
  Raise(3701, "index", std::string(index));
}

void Catalog::CreateView(const CreateViewStatement& view) {
  RequireOwnSchema(view.name, "CREATE VIEW");
  RaiseIfTaken(view.name.last());
  const std::string text = CreateViewText(view);
  StoreObject(std::make_shared<CatalogObject>(*ReadObject(0, view.name.last(), text)));
}

void Catalog::CreateProcedure(const CreateProcedureStatement& procedure) {
  RequireOwnSchema(procedure.name, "CREATE/ALTER PROCEDURE");
  RaiseIfTaken(procedure.name.last());
  StoreObject(
      std::make_shared<CatalogObject>(*ReadObject(0, procedure.name.last(), procedure.text)));
}

void Catalog::DropObject(const CatalogObjectPtr& object) {
  store_.Run("DELETE FROM main.\"tavcc.objects\" WHERE id=" + std::to_string(object->id));
  BumpVersion();
  SetObject(FoldName(object->name), nullptr);
}

void Catalog::DropTable(const TablePtr& table) {
  if (table->IsTemporary()) {
    DropTemporary(table);
    return;
  }
  store_.Run("DROP TABLE " + table->physical);
  DropObject(Find(ObjectName{{table->name}}));
}

}  // namespace tavcc::sql
