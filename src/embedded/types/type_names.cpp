// Names of types, as written and as messages show them.
#include <array>

#include "embedded/error.h"
#include "embedded/types/type_rules.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

// What may stand in the brackets of a type name.
enum class Arguments : uint8_t { kNone, kLength, kPrecision, kFloat };

struct NamedType {
  std::string_view name;
  TypeKind kind;
  Arguments arguments;
  int length = 0;  // fixed by the name, e.g. of sysname
};

// clang-format off
constexpr auto kTypes = std::to_array<NamedType>({
    {"bigint", TypeKind::kBigInt, Arguments::kNone},
    {"binary", TypeKind::kBinary, Arguments::kLength},
    {"bit", TypeKind::kBit, Arguments::kNone},
    {"char", TypeKind::kChar, Arguments::kLength},
    {"character", TypeKind::kChar, Arguments::kLength},
    {"date", TypeKind::kDate, Arguments::kNone},
    {"datetime", TypeKind::kDateTime, Arguments::kNone},
    {"dec", TypeKind::kDecimal, Arguments::kPrecision},
    {"decimal", TypeKind::kDecimal, Arguments::kPrecision},
    {"double precision", TypeKind::kFloat, Arguments::kNone},
    {"float", TypeKind::kFloat, Arguments::kFloat},
    {"image", TypeKind::kVarBinary, Arguments::kNone, SqlType::kMax},
    {"int", TypeKind::kInt, Arguments::kNone},
    {"integer", TypeKind::kInt, Arguments::kNone},
    {"money", TypeKind::kMoney, Arguments::kNone},
    {"nchar", TypeKind::kNChar, Arguments::kLength},
    {"ntext", TypeKind::kNVarChar, Arguments::kNone, SqlType::kMax},
    {"numeric", TypeKind::kDecimal, Arguments::kPrecision},
    {"nvarchar", TypeKind::kNVarChar, Arguments::kLength},
    {"real", TypeKind::kReal, Arguments::kNone},
    {"smalldatetime", TypeKind::kSmallDateTime, Arguments::kNone},
    {"smallint", TypeKind::kSmallInt, Arguments::kNone},
    {"smallmoney", TypeKind::kSmallMoney, Arguments::kNone},
    {"sysname", TypeKind::kNVarChar, Arguments::kNone, 128},
    {"text", TypeKind::kVarChar, Arguments::kNone, SqlType::kMax},
    {"tinyint", TypeKind::kTinyInt, Arguments::kNone},
    {"uniqueidentifier", TypeKind::kUniqueIdentifier, Arguments::kNone},
    {"varbinary", TypeKind::kVarBinary, Arguments::kLength},
    {"varchar", TypeKind::kVarChar, Arguments::kLength},
});
// Types of the server that are not built: refused by name rather than unknown.
constexpr auto kNotBuilt = std::to_array<std::string_view>({
    "cursor", "datetime2", "datetimeoffset", "geography", "geometry", "hierarchyid", "rowversion",
    "sql_variant", "table", "time", "timestamp", "xml",
});
// clang-format on

const NamedType& FindType(const TypeName& name, TypeNameUse use, const TypePlace& place) {
  const std::string lower = LowerCase(name.name);
  for (const NamedType& type : kTypes) {
    if (type.name == lower) return type;
  }
  for (const std::string_view type : kNotBuilt) {
    if (type == lower) RaiseUnsupported("type " + lower);
  }
  if (use == TypeNameUse::kCast) Raise(errors::kUnknownType, name.name);
  Raise(errors::kParameterOfUnknownType, place.ordinal, name.name);
}

[[noreturn]] void RaiseTooLong(const NamedType& type, int length, TypeNameUse use,
                               const TypePlace& place) {
  const int limit = MaxTextLength(type.kind);
  if (use == TypeNameUse::kCast) {
    Raise(errors::kSizeAboveAnyTypes, length,
          IsNationalText(type.kind) ? "convert specification" : "type", type.name, limit);
  }
  const bool is_variable = place.column.starts_with('@');
  if (IsNationalText(type.kind))
    Raise(errors::kSizeAboveTypes, length, "parameter", place.column, limit);
  if (is_variable) Raise(errors::kSizeAboveAnyTypes, length, "type", type.name, limit);
  Raise(errors::kSizeAboveAnyTypes, length, "column", place.column, limit);
}

SqlType WithLength(const NamedType& type, const TypeName& name, TypeNameUse use,
                   const TypePlace& place) {
  if (name.arguments.empty()) return TextType(type.kind, use == TypeNameUse::kCast ? 30 : 1);
  const int length = name.arguments[0];
  if (length == SqlType::kMax && IsVarying(type.kind)) return TextType(type.kind, SqlType::kMax);
  if (length <= 0) Raise(errors::kInvalidLengthSpecification, place.line, length);
  if (length > MaxTextLength(type.kind)) RaiseTooLong(type, length, use, place);
  return TextType(type.kind, length);
}

SqlType WithPrecision(const TypeName& name, const TypePlace& place) {
  constexpr int kDefaultPrecision = 18;
  const int precision = name.arguments.empty() ? kDefaultPrecision : name.arguments[0];
  const int scale = name.arguments.size() < 2 ? 0 : name.arguments[1];
  if (precision <= 0) Raise(errors::kInvalidLengthSpecification, place.line, precision);
  if (precision > SqlType::kMaxPrecision)
    Raise(errors::kPrecisionTooLarge, place.ordinal, precision, SqlType::kMaxPrecision);
  if (scale < 0 || scale > precision) Raise(errors::kScaleAbovePrecision);
  return DecimalType(precision, scale);
}

SqlType FloatOf(const TypeName& name, const TypePlace& place) {
  constexpr int kMostOfReal = 24;
  constexpr int kMostOfFloat = 53;
  if (name.arguments.empty()) return Type(TypeKind::kFloat);
  const int bits = name.arguments[0];
  if (bits <= 0) Raise(errors::kInvalidLengthSpecification, place.line, bits);
  if (bits > kMostOfFloat) Raise(errors::kPrecisionTooLarge, place.ordinal, bits, kMostOfFloat);
  return Type(bits <= kMostOfReal ? TypeKind::kReal : TypeKind::kFloat);
}

}  // namespace

SqlType ResolveTypeName(const TypeName& name, TypeNameUse use, const TypePlace& place) {
  const NamedType& type = FindType(name, use, place);
  const size_t most = type.arguments == Arguments::kNone        ? 0
                      : type.arguments == Arguments::kPrecision ? 2
                                                                : 1;
  if (name.arguments.size() > most) {
    if (use == TypeNameUse::kCast) Raise(errors::kInvalidCastAttributes, type.name);
    Raise(errors::kWidthNotAllowed, place.ordinal, type.name);
  }
  switch (type.arguments) {
    case Arguments::kLength:
      return WithLength(type, name, use, place);
    case Arguments::kPrecision:
      return WithPrecision(name, place);
    case Arguments::kFloat:
      return FloatOf(name, place);
    case Arguments::kNone:
      break;
  }
  return TextType(type.kind, type.length);
}

std::string_view KindText(TypeKind kind) {
  // In the order of TypeKind.
  static constexpr std::string_view kNames[] = {
      "NULL",     "binary",           "varbinary", "char",    "varchar",  "nchar",
      "nvarchar", "uniqueidentifier", "bit",       "tinyint", "smallint", "int",
      "bigint",   "smallmoney",       "money",     "numeric", "real",     "float",
      "date",     "smalldatetime",    "datetime"};
  return kNames[static_cast<size_t>(kind)];
}

std::string TypeText(const SqlType& type) {
  if (type.kind == TypeKind::kDecimal) {
    return "decimal(" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
  }
  std::string text(KindText(type.kind));
  if (!IsText(type.kind) && !IsBinary(type.kind)) return text;
  return text + "(" + (type.length == SqlType::kMax ? "max" : std::to_string(type.length)) + ")";
}

}  // namespace tavcc::sql
