#include "embedded/catalog/stored_objects.h"

#include <sqlite3.h>

#include <mutex>
#include <unordered_map>
#include <utility>

#include "embedded/catalog/names.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

constexpr const char* kUnreadableCatalog = "its catalog cannot be read";

std::string ColumnText(SqliteConnection& store, sqlite3_stmt* row, int column) {
  if (sqlite3_column_type(row, column) != SQLITE_TEXT) throw store.Damage(kUnreadableCatalog);
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
  return std::string(text, static_cast<size_t>(sqlite3_column_bytes(row, column)));
}

void BindText(sqlite3_stmt* statement, int index, const std::string& text) {
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string UnreadableDefinition(const CatalogObject& object) {
  return "the definition of " + object.name + " in its catalog cannot be read";
}

// Of a definition that is not one of ours.
struct UnknownDefinition {};

TablePtr TableFromText(const Batch& batch) {
  const auto& create = static_cast<const CreateTableStatement&>(*batch.statements.at(0));
  auto table = BuildTable(create.name.last(), create.definition);
  for (size_t i = 1; i < batch.statements.size(); ++i) {
    if (batch.statements[i]->kind != Statement::Kind::kCreateIndex) throw UnknownDefinition{};
    AddIndex(*table, static_cast<const CreateIndexStatement&>(*batch.statements[i]));
  }
  table->physical = "main." + QuoteName(table->name);
  return table;
}

// What definitions of tables make, for all sessions of the process: a host opens many on one
// schema. A table follows from its text alone and never changes, so sessions can share it.
class SharedTables {
 public:
  TablePtr Find(const std::string& definition) {
    const std::scoped_lock lock(mutex_);
    const auto found = tables_.find(definition);
    return found == tables_.end() ? nullptr : found->second;
  }
  void Add(const std::string& definition, const TablePtr& table) {
    const std::scoped_lock lock(mutex_);
    if (tables_.size() >= kMost) tables_.clear();
    tables_.emplace(definition, table);
  }

 private:
  static constexpr size_t kMost = 512;

  std::mutex mutex_;
  std::unordered_map<std::string, TablePtr> tables_;
};

SharedTables& TablesOfProcess() {
  static SharedTables tables;
  return tables;
}

bool IsKnown(const CatalogObject& object) {
  return object.table || object.view || object.procedure;
}

// Makes of the definition what it defines.
void ReadDefinition(CatalogObject& object) {
  object.table = TablesOfProcess().Find(object.definition);
  if (object.table) return;
  auto batch = std::make_shared<Batch>(ParseBatch(object.definition));
  if (batch->statements.empty()) throw UnknownDefinition{};
  Statement* first = batch->statements.at(0).get();
  switch (first->kind) {
    case Statement::Kind::kCreateTable:
      object.table = TableFromText(*batch);
      TablesOfProcess().Add(object.definition, object.table);
      break;
    case Statement::Kind::kCreateView: {
      auto view = std::make_shared<View>();
      view->name = object.name;
      view->statement = std::shared_ptr<const CreateViewStatement>(
          batch, static_cast<const CreateViewStatement*>(first));
      object.view = std::move(view);
      break;
    }
    case Statement::Kind::kCreateProcedure: {
      auto procedure = std::make_shared<Procedure>();
      procedure->name = object.name;
      procedure->text = batch;
      procedure->statement = static_cast<const CreateProcedureStatement*>(first);
      object.procedure = std::move(procedure);
      break;
    }
    default:
      throw UnknownDefinition{};
  }
}

}  // namespace

StoredObjects::StoredObjects(SqliteConnection& store, bool shared, UndoLog& undo)
    : store_(store), shared_(shared), undo_(undo) {
  if (shared_) data_version_ = store_.Prepare("PRAGMA main.data_version");
  Refresh();
  if (!shared_) Load();
}

std::string StoredObjects::NewStoreText() {
  return "CREATE TABLE main.\"tavcc.objects\"(id INTEGER PRIMARY KEY AUTOINCREMENT,"
         "name TEXT NOT NULL UNIQUE COLLATE NOCASE,definition TEXT NOT NULL);"
         "CREATE TABLE main.\"tavcc.version\"(version INTEGER NOT NULL);"
         "INSERT INTO main.\"tavcc.version\" VALUES(1);";
}

CatalogObjectPtr StoredObjects::Find(const std::string& name) const {
  const auto found = objects_.find(FoldName(name));
  if (found == objects_.end()) return nullptr;
  Known(*found->second);
  return found->second;
}

int64_t StoredObjects::IdOf(const std::string& name) const {
  const auto found = objects_.find(FoldName(name));
  return found == objects_.end() ? 0 : found->second->id;
}

const CatalogObject& StoredObjects::Known(CatalogObject& object) const {
  if (IsKnown(object)) return object;
  try {
    ReadDefinition(object);
  } catch (const SqlError&) {
    throw store_.Damage(UnreadableDefinition(object));
  } catch (const UnknownDefinition&) {
    throw store_.Damage(UnreadableDefinition(object));
  }
  return object;
}

void StoredObjects::ForEachKnownTable(const TableVisitor& visit) const {
  for (const auto& [name, object] : objects_) {
    if (object->table) visit(*object->table);
  }
}

void StoredObjects::Refresh() {
  if (!shared_) return;
  store_.Step(data_version_.get());
  const int64_t data_version = sqlite3_column_int64(data_version_.get(), 0);
  sqlite3_reset(data_version_.get());
  if (data_version == seen_data_version_) return;
  seen_data_version_ = data_version;
  const int64_t version = store_.QueryInteger("SELECT version FROM main.\"tavcc.version\"");
  if (version == seen_version_) return;
  seen_version_ = version;
  Load();
}

void StoredObjects::ForgetVersions() {
  if (shared_) seen_version_ = seen_data_version_ = -1;
}

void StoredObjects::Load() {
  std::unordered_map<std::string, ObjectPtr> objects;
  const SqliteStatement rows =
      store_.Prepare("SELECT id,name,definition FROM main.\"tavcc.objects\" ORDER BY id");
  while (store_.Step(rows.get())) {
    auto object = std::make_shared<CatalogObject>();
    object->id = sqlite3_column_int64(rows.get(), 0);
    object->name = ColumnText(store_, rows.get(), 1);
    object->definition = ColumnText(store_, rows.get(), 2);
    const std::string folded = FoldName(object->name);
    const auto before = objects_.find(folded);
    const bool as_before = before != objects_.end() && before->second->id == object->id &&
                           before->second->definition == object->definition;
    objects[folded] = as_before ? before->second : std::move(object);
  }
  objects_ = std::move(objects);
  ++changes_;
}

void StoredObjects::CheckNameIsFree(const std::string& name) const {
  if (IdOf(name) != 0) Raise(errors::kObjectExists, name);
}

void StoredObjects::IncrementVersion() {
  store_.Run("UPDATE main.\"tavcc.version\" SET version=version+1");
  if (shared_) {
    seen_version_ = store_.QueryInteger("SELECT version FROM main.\"tavcc.version\"");
  }
}

void StoredObjects::Set(const std::string& folded, ObjectPtr object) {
  const auto put = [this, folded](ObjectPtr now) {
    if (now) {
      objects_[folded] = std::move(now);
    } else {
      objects_.erase(folded);
    }
    ++changes_;
  };
  const auto before = objects_.find(folded);
  undo_.Add([put, former = before == objects_.end() ? nullptr : before->second] { put(former); });
  put(std::move(object));
}

// Writes the object's row, a new one when it has no id yet.
void StoredObjects::Write(ObjectPtr object) {
  const SqliteStatement statement = store_.Prepare(
      "INSERT INTO main.\"tavcc.objects\"(id,name,definition) VALUES(?1,?2,?3) "
      "ON CONFLICT(id) DO UPDATE SET definition=excluded.definition");
  if (object->id != 0) sqlite3_bind_int64(statement.get(), 1, object->id);
  BindText(statement.get(), 2, object->name);
  BindText(statement.get(), 3, object->definition);
  store_.Step(statement.get());
  if (object->id == 0) object->id = sqlite3_last_insert_rowid(store_.handle());
  IncrementVersion();
  const std::string folded = FoldName(object->name);
  Set(folded, std::move(object));
}

void StoredObjects::Put(const TablePtr& table) {
  const CatalogObjectPtr known = Find(table->name);
  auto object = std::make_shared<CatalogObject>();
  object->id = known ? known->id : 0;
  object->name = known ? known->name : table->name;
  object->definition = TableText(*table);
  object->table = table;
  Write(std::move(object));
}

void StoredObjects::Add(const std::string& name, const std::string& definition) {
  CheckNameIsFree(name);
  auto object = std::make_shared<CatalogObject>();
  object->name = name;
  object->definition = definition;
  ReadDefinition(*object);
  Write(std::move(object));
}

void StoredObjects::Drop(const CatalogObject& object) {
  store_.Run("DELETE FROM main.\"tavcc.objects\" WHERE id=" + std::to_string(object.id));
  IncrementVersion();
  Set(FoldName(object.name), nullptr);
}

}  // namespace tavcc::sql
