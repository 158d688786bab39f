#include "embedded/types/stored_view.h"

#include <sqlite3.h>

#include <cstring>

#include "embedded/error.h"

namespace tavcc::sql {
namespace {

std::string_view BytesOf(const void* bytes, int size) {
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

}  // namespace

StoredView ViewOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return StoredView::Integer(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return StoredView::Real(sqlite3_value_double(value));
    case SQLITE_TEXT: {
      const void* text = sqlite3_value_text(value);
      return StoredView::Text(BytesOf(text, sqlite3_value_bytes(value)));
    }
    case SQLITE_BLOB: {
      const void* bytes = sqlite3_value_blob(value);
      return StoredView::Binary(BytesOf(bytes, sqlite3_value_bytes(value)));
    }
    default:
      return {};
  }
}

StoredView FromStored(const StoredValue& value) {
  switch (value.kind()) {
    case StoredValue::Kind::kNull:
      return {};
    case StoredValue::Kind::kInteger:
      return StoredView::Integer(value.integer());
    case StoredValue::Kind::kReal:
      return StoredView::Real(value.real());
    case StoredValue::Kind::kText:
      return StoredView::Text(value.text());
    case StoredValue::Kind::kBlob:
      return StoredView::Binary(value.blob());
  }
  return {};
}

StoredValue ToStored(const StoredView& cell) {
  switch (cell.kind) {
    case StoredView::Kind::kNull:
      return {};
    case StoredView::Kind::kInteger:
      return cell.integer;
    case StoredView::Kind::kReal:
      return cell.real;
    case StoredView::Kind::kText:
      return std::string(cell.bytes);
    case StoredView::Kind::kBlob:
      return Blob{std::string(cell.bytes)};
  }
  return {};
}

WideInteger CoefficientOf(const StoredView& cell) {
  if (cell.kind == StoredView::Kind::kBlob && cell.bytes.size() == WideInteger::kBlobSize) {
    unsigned char bytes[WideInteger::kBlobSize];
    std::memcpy(bytes, cell.bytes.data(), sizeof bytes);
    return WideInteger::FromBlob(bytes);
  }
  if (cell.kind != StoredView::Kind::kInteger && cell.kind != StoredView::Kind::kNull) {
    throw StoreFailure("the file is damaged: a number is stored as something else");
  }
  return WideInteger::FromInt64(cell.integer);
}

StoredView StoreCoefficient(const WideInteger& coefficient, Scratch* scratch) {
  if (const auto small = coefficient.ToInt64()) return StoredView::Integer(*small);
  coefficient.ToBlob(scratch->decimal);
  return StoredView::Binary(BytesOf(scratch->decimal, WideInteger::kBlobSize));
}

}  // namespace tavcc::sql
