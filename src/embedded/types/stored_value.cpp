// Stored values at the borders: SQLite's values, automation values, what a client shows.
#include "embedded/types/stored_value.h"

#include <sqlite3.h>

#include <cstring>
#include <limits>

#include "embedded/error.h"
#include "embedded/types/cell.h"
#include "embedded/types/convert.h"
#include "embedded/types/decimal_math.h"
#include "embedded/types/text_units.h"
#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

std::string_view View(const void* bytes, int size) {
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

Decimal ToDecimal(const Cell& cell, int scale) {
  if (cell.kind == Cell::Kind::kInteger) return Decimal::FromScaled(cell.integer, scale);
  // A stored decimal has at most 38 digits, so its text is always one.
  return *Decimal::Parse(DecimalText(CoefficientOf(cell), scale));
}

StoredValue FromDecimal(const Decimal& value) {
  const auto& limbs = value.limbs();
  Wide coefficient = Wide::FromInt64(0);
  for (size_t i = limbs.size(); i-- > 0;) {
    coefficient = Wide::Multiply(coefficient, Wide::FromInt64(int64_t{1} << 32));
    coefficient.Add(Wide::FromInt64(limbs[i]));
  }
  if (value.IsNegative()) coefficient.Negate();
  Scratch scratch;
  return ToStored(StoreCoefficient(coefficient, &scratch));
}

}  // namespace

StoredValue FromSqlite(sqlite3_value* value) {
  return ToStored(CellOf(value));
}

void ReadSqlite(sqlite3_value* value, StoredValue& out) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      out.SetInteger(sqlite3_value_int64(value));
      return;
    case SQLITE_TEXT: {
      const void* text = sqlite3_value_text(value);
      out.SetText(View(text, sqlite3_value_bytes(value)));
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

Cell CellOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return Cell::Integer(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return Cell::Real(sqlite3_value_double(value));
    case SQLITE_TEXT: {
      const void* text = sqlite3_value_text(value);
      return Cell::Text(View(text, sqlite3_value_bytes(value)));
    }
    case SQLITE_BLOB: {
      const void* bytes = sqlite3_value_blob(value);
      return Cell::Binary(View(bytes, sqlite3_value_bytes(value)));
    }
    default:
      return {};
  }
}

Cell FromStored(const StoredValue& value) {
  switch (value.kind()) {
    case StoredValue::Kind::kNull:
      return {};
    case StoredValue::Kind::kInteger:
      return Cell::Integer(value.integer());
    case StoredValue::Kind::kReal:
      return Cell::Real(value.real());
    case StoredValue::Kind::kText:
      return Cell::Text(value.text());
    case StoredValue::Kind::kBlob:
      return Cell::Binary(value.blob());
  }
  return {};
}

StoredValue ToStored(const Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::kNull:
      return {};
    case Cell::Kind::kInteger:
      return cell.integer;
    case Cell::Kind::kReal:
      return cell.real;
    case Cell::Kind::kText:
      return std::string(cell.bytes);
    case Cell::Kind::kBlob:
      return Blob{std::string(cell.bytes)};
  }
  return {};
}

Wide CoefficientOf(const Cell& cell) {
  if (cell.kind == Cell::Kind::kBlob && cell.bytes.size() == Wide::kBlobSize) {
    unsigned char bytes[Wide::kBlobSize];
    std::memcpy(bytes, cell.bytes.data(), sizeof bytes);
    return Wide::FromBlob(bytes);
  }
  return Wide::FromInt64(cell.integer);
}

Cell StoreCoefficient(const Wide& coefficient, Scratch* scratch) {
  if (const auto small = coefficient.ToInt64()) return Cell::Integer(*small);
  coefficient.ToBlob(scratch->decimal);
  return Cell::Binary(View(scratch->decimal, Wide::kBlobSize));
}

StoredValue ConvertStored(const StoredValue& value, const SqlType& from, const SqlType& to,
                          ConvertMode mode, int style) {
  Scratch scratch;
  Cell out;
  SqlError error;
  if (!ConvertCell(FromStored(value), from, to, mode, style, &scratch, &out, &error)) throw error;
  return ToStored(out);
}

Value ToValue(const StoredValue& value, const SqlType& type) {
  if (value.IsNull()) return Null{};
  if (IsBinary(type.kind)) RaiseUnsupported("a value of type " + TypeText(type));
  switch (type.kind) {
    case TypeKind::kBit:
      return value.integer() != 0;
    case TypeKind::kTinyInt:
    case TypeKind::kSmallInt:
      return static_cast<int16_t>(value.integer());
    case TypeKind::kInt:
      return static_cast<int32_t>(value.integer());
    case TypeKind::kBigInt:
    case TypeKind::kSmallMoney:
    case TypeKind::kMoney:
    case TypeKind::kDecimal:
      return ToDecimal(FromStored(value), StoredScale(type));
    case TypeKind::kReal:
    case TypeKind::kFloat:
      return value.real();
    case TypeKind::kDate:
    case TypeKind::kSmallDateTime:
    case TypeKind::kDateTime:
      return DateTime::FromTicks(value.integer());
    default:
      return value.text();
  }
}

TypedValue FromValue(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kEmpty:
    case Value::Kind::kNull:
    case Value::Kind::kMissing:
      return {};
    case Value::Kind::kBoolean:
      return {Type(TypeKind::kBit), int64_t{value.boolean()}};
    case Value::Kind::kInteger:
      return {Type(TypeKind::kSmallInt), int64_t{value.integer()}};
    case Value::Kind::kLong:
      return {Type(TypeKind::kInt), int64_t{value.long_integer()}};
    case Value::Kind::kDouble:
      return {Type(TypeKind::kFloat), value.number()};
    case Value::Kind::kDecimal:
      return {DecimalType(Decimal::kMaxPrecision, value.decimal().scale()),
              FromDecimal(value.decimal())};
    case Value::Kind::kDate:
      return {Type(TypeKind::kDateTime), value.date().ticks()};
    case Value::Kind::kText: {
      const size_t units = CountUnits(value.text());
      const int length = units > 4000 ? SqlType::kMax : std::max(static_cast<int>(units), 1);
      return {TextType(TypeKind::kNVarChar, length), value.text()};
    }
    case Value::Kind::kObject:
      break;
  }
  RaiseUnsupported("an object as a parameter");
}

std::string DisplayText(const StoredValue& value, const SqlType& type) {
  if (value.IsNull()) return "NULL";
  if (IsText(type.kind)) return value.text();
  constexpr int kOdbcCanonical = 121;
  constexpr int kAllDigitsOfMoney = 2;
  constexpr int kAllDigitsOfFloat = 3;
  int style = kNoStyle;
  if (IsDate(type.kind)) style = kOdbcCanonical;
  if (IsMoney(type.kind)) style = kAllDigitsOfMoney;
  if (IsApproximate(type.kind)) style = kAllDigitsOfFloat;
  if (IsBinary(type.kind)) style = 1;
  return ConvertStored(value, type, TextType(TypeKind::kVarChar, SqlType::kMax), ConvertMode::kCast,
                       style)
      .text();
}

}  // namespace tavcc::sql
