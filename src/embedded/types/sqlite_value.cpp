#include "embedded/types/sqlite_value.h"

#include <sqlite3.h>

#include "embedded/types/stored_view.h"

namespace tavcc::sql {

StoredValue FromSqlite(sqlite3_value* value) {
  return ToStored(ViewOf(value));
}

void ReadSqlite(sqlite3_value* value, StoredValue& out) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      out.SetInteger(sqlite3_value_int64(value));
      return;
    case SQLITE_TEXT: {
      const void* text = sqlite3_value_text(value);
      out.SetText(
          {static_cast<const char*>(text), static_cast<size_t>(sqlite3_value_bytes(value))});
      return;
    }
    default:
      out = FromSqlite(value);
  }
}

void BindStored(sqlite3_stmt* statement, int index, const StoredValue& value) {
  switch (value.kind()) {
    case StoredValue::Kind::kNull:
      sqlite3_bind_null(statement, index);
      return;
    case StoredValue::Kind::kInteger:
      sqlite3_bind_int64(statement, index, value.integer());
      return;
    case StoredValue::Kind::kReal:
      sqlite3_bind_double(statement, index, value.real());
      return;
    case StoredValue::Kind::kText:
      sqlite3_bind_text64(statement, index, value.text().data(), value.text().size(), SQLITE_STATIC,
                          SQLITE_UTF8);
      return;
    case StoredValue::Kind::kBlob:
      sqlite3_bind_blob64(statement, index, value.blob().data(), value.blob().size(),
                          SQLITE_STATIC);
      return;
  }
}

}  // namespace tavcc::sql
