// Reading the store's objects, and looking names up.
#include "embedded/catalog/catalog.h"

#include <sqlite3.h>

#include "embedded/catalog/names.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

// Whether the qualifiers of a name lead to the one schema of the store.
bool IsOwnSchema(const ObjectName& name) {
  if (name.parts.size() > 3) RaiseUnsupported("names of other servers");
  if (name.parts.size() == 3 && !name.parts[0].empty()) return false;
  if (name.parts.size() < 2) return true;
  const std::string& schema = name.parts[name.parts.size() - 2];
  return schema.empty() || SameName(schema, "dbo");
}

std::string ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (text == nullptr) return {};
  return std::string(text, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
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

}  // namespace

Catalog::Catalog(SqliteConnection& store, bool shared) : store_(store), shared_(shared) {
  scopes_.push_back(Scope{next_scope_++, {}});
  if (shared_) data_version_ = store_.Prepare("PRAGMA main.data_version");
  Refresh();
  if (!shared_) Load();
}

Catalog::~Catalog() = default;

std::string Catalog::NewStoreText() {
  return "CREATE TABLE main.\"tavcc.objects\"(id INTEGER PRIMARY KEY AUTOINCREMENT,"
         "name TEXT NOT NULL UNIQUE COLLATE NOCASE,definition TEXT NOT NULL);"
         "CREATE TABLE main.\"tavcc.version\"(version INTEGER NOT NULL);"
         "INSERT INTO main.\"tavcc.version\" VALUES(1);";
}

void Catalog::Refresh() {
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

void Catalog::Load() {
  std::unordered_map<std::string, CatalogObjectPtr> objects;
  const SqliteStatement rows =
      store_.Prepare("SELECT id,name,definition FROM main.\"tavcc.objects\" ORDER BY id");
  while (store_.Step(rows.get())) {
    const int64_t id = sqlite3_column_int64(rows.get(), 0);
    const std::string name = ColumnText(rows.get(), 1);
    const std::string definition = ColumnText(rows.get(), 2);
    const auto known = objects_.find(FoldName(name));
    const bool same = known != objects_.end() && known->second->id == id &&
                      known->second->definition == definition;
    if (same) {
      objects[FoldName(name)] = known->second;
      continue;
    }
    const std::string damage = "the definition of " + name + " in its catalog cannot be read";
    try {
      objects[FoldName(name)] = ReadObject(id, name, definition);
    } catch (const SqlError&) {
      throw store_.Damage(damage);
    } catch (const UnknownDefinition&) {
      throw store_.Damage(damage);
    }
  }
  objects_ = std::move(objects);
  ++epoch_;
}

CatalogObjectPtr Catalog::ReadObject(int64_t id, const std::string& name,
                                     const std::string& definition) {
  auto object = std::make_shared<CatalogObject>();
  object->id = id;
  object->name = name;
  object->definition = definition;
  auto batch = std::make_shared<Batch>(ParseBatch(definition));
  if (batch->statements.empty()) throw UnknownDefinition{};
  Statement* first = batch->statements.at(0).get();
  switch (first->kind) {
    case Statement::Kind::kCreateTable:
      object->table = TableFromText(*batch);
      break;
    case Statement::Kind::kCreateView: {
      auto view = std::make_shared<View>();
      view->name = name;
      view->statement = std::shared_ptr<const CreateViewStatement>(
          batch, static_cast<const CreateViewStatement*>(first));
      object->view = std::move(view);
      break;
    }
    case Statement::Kind::kCreateProcedure: {
      auto procedure = std::make_shared<Procedure>();
      procedure->name = name;
      procedure->text = batch;
      procedure->statement = static_cast<const CreateProcedureStatement*>(first);
      object->procedure = std::move(procedure);
      break;
    }
    default:
      throw UnknownDefinition{};
  }
  return object;
}

CatalogObjectPtr Catalog::Find(const ObjectName& name) const {
  if (!IsOwnSchema(name)) return nullptr;
  const auto found = objects_.find(FoldName(name.last()));
  return found == objects_.end() ? nullptr : found->second;
}

TablePtr Catalog::FindTable(const ObjectName& name) const {
  const std::string& last = name.last();
  if (last.empty()) return nullptr;
  const std::string folded = FoldName(last);
  if (last.front() == '@') {
    const auto found = scopes_.back().tables.find(folded);
    return found == scopes_.back().tables.end() ? nullptr : found->second;
  }
  if (last.front() == '#') {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
      const auto found = scope->tables.find(folded);
      if (found != scope->tables.end()) return found->second;
    }
    return nullptr;
  }
  const auto object = Find(name);
  return object ? object->table : nullptr;
}

int64_t Catalog::ObjectId(std::string_view text) const {
  ObjectName name{SplitName(text)};
  if (name.parts.empty() || name.parts.size() > 3 || name.last().empty()) return 0;
  if (name.last().front() != '#') {
    const auto object = Find(name);
    return object ? object->id : 0;
  }
  // A temporary table is an object of tempdb: only a name that says so finds it.
  if (name.parts.size() != 3 || !SameName(name.parts[0], "tempdb")) return 0;
  const TablePtr table = FindTable(name);
  return table ? -(std::stoll(table->physical.substr(table->physical.find('t', 5) + 1)) + 1) : 0;
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
  for (std::string& part : parts) {
    while (!part.empty() && part.back() == ' ') part.pop_back();
    part.erase(0,
               part.find_first_not_of(' ') == std::string::npos ? 0 : part.find_first_not_of(' '));
  }
  return parts;
}

}  // namespace tavcc::sql
