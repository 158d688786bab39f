// Which type an expression has, and which type meets which: the rules of Transact-SQL's "Data type
// precedence", "Precision, scale, and length" and "CAST and CONVERT" pages, as functions.
//
// All errors are SqlErrors without a line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/types/operators.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/type_name.h"

namespace tavcc::sql {

// ---- Names ----

// What a type name is used for: the length of a text type without one is 1 where something is
// declared, 30 in CAST and CONVERT.
enum class TypeNameUse : uint8_t { kDeclaration, kCast };

// What the messages about a type name say of its place.
struct TypePlace {
  int ordinal = 1;          // of the column, parameter or variable in its list, from 1
  int line = 1;             // of the batch
  std::string_view column;  // its name, of a variable with its "@"; empty in CAST
};

// The type of a name as written: "int", "dec(28,10)", "nvarchar(max)", "text" (varchar(max)),
// "ntext", "image", "sysname", "numeric" … in any case. Errors: 2715 (243 in CAST) unknown type;
// 1001, 131, 2717, 2750 a length or precision out of bounds; 192 a scale above the precision; 2716
// (291 in CAST) a length on a type that takes none; 50001 types of the server that are not built
// (xml, datetime2, time, sql_variant …).
SqlType ResolveTypeName(const TypeName& name, TypeNameUse use = TypeNameUse::kDeclaration,
                        const TypePlace& place = {});

// "decimal(28,10)", "nvarchar(max)", "int".
std::string TypeText(const SqlType& type);
// As messages name it: "int", "numeric" (of every decimal), "nvarchar".
std::string_view KindText(TypeKind kind);

// ---- Groups ----

constexpr bool IsText(TypeKind k) {
  return k >= TypeKind::kChar && k <= TypeKind::kNVarChar;
}
constexpr bool IsNationalText(TypeKind k) {
  return k == TypeKind::kNChar || k == TypeKind::kNVarChar;
}
constexpr bool IsFixedText(TypeKind k) {
  return k == TypeKind::kChar || k == TypeKind::kNChar;
}
// A type that may be of (max), and is stored without padding.
constexpr bool IsVarying(TypeKind k) {
  return k == TypeKind::kVarChar || k == TypeKind::kNVarChar || k == TypeKind::kVarBinary;
}
// The characters that a text type holds without (max).
constexpr int MaxTextLength(TypeKind k) {
  return IsNationalText(k) ? 4000 : 8000;
}
constexpr bool IsBinary(TypeKind k) {
  return k == TypeKind::kBinary || k == TypeKind::kVarBinary;
}
// bit, tinyint … bigint
constexpr bool IsInteger(TypeKind k) {
  return k >= TypeKind::kBit && k <= TypeKind::kBigInt;
}
// Whether a whole number is one of the type.
constexpr bool IsInRange(TypeKind integer, int64_t value) {
  switch (integer) {
    case TypeKind::kTinyInt:
      return value == static_cast<uint8_t>(value);
    case TypeKind::kSmallInt:
      return value == static_cast<int16_t>(value);
    case TypeKind::kInt:
      return value == static_cast<int32_t>(value);
    default:
      return true;
  }
}
constexpr bool IsMoney(TypeKind k) {
  return k == TypeKind::kSmallMoney || k == TypeKind::kMoney;
}
// Stored as a scaled coefficient: decimal and money.
constexpr bool IsScaled(TypeKind k) {
  return k == TypeKind::kDecimal || IsMoney(k);
}
constexpr bool IsExact(TypeKind k) {
  return IsInteger(k) || IsScaled(k);
}
constexpr bool IsApproximate(TypeKind k) {
  return k == TypeKind::kReal || k == TypeKind::kFloat;
}
constexpr bool IsNumeric(TypeKind k) {
  return k >= TypeKind::kBit && k <= TypeKind::kFloat;
}
constexpr bool IsDate(TypeKind k) {
  return k >= TypeKind::kDate;
}

// Whether every value of the type is stored as an INTEGER, so that SQLite's own comparison, ORDER
// BY, MIN and MAX are right without a function: whole numbers, money, dates, decimals of up to 18
// digits.
bool AlwaysStoredAsInteger(const SqlType& type);

// Precision and scale of an exact number as decimal arithmetic sees it: int is (10,0), bigint
// (19,0), smallint (5,0), tinyint (3,0), bit (1,0), money (19,4), smallmoney (10,4).
SqlType AsDecimal(const SqlType& type);
// The scale at which a numeric value is stored: of a decimal its own, 4 of money, 0 of whole
// numbers.
int StoredScale(const SqlType& type);

constexpr SqlType Type(TypeKind kind) {
  return SqlType{kind, 0, 0, 0};
}
inline constexpr SqlType kIntType = Type(TypeKind::kInt);
constexpr SqlType DecimalType(int precision, int scale) {
  return SqlType{TypeKind::kDecimal, 0, precision, scale};
}
constexpr SqlType TextType(TypeKind kind, int length) {
  return SqlType{kind, length, 0, 0};
}

// The type of an int constant where it meets a decimal in arithmetic: decimal(digits, 0), at least
// 1 digit. A constant is a literal, also with a sign, not a column or a variable.
SqlType ConstantAsDecimal(int64_t value);

// ---- Implicit conversions ----

enum class Convertibility : uint8_t { kImplicit, kExplicitOnly, kNever };
// The matrix of the "CAST and CONVERT" page.
Convertibility HowConvertible(const SqlType& from, const SqlType& to);

// Whether a value of `from` may stand where `to` is asked for without CAST (assignment, INSERT,
// UPDATE, arguments). Errors: 257 when only CAST leads there, 206 when nothing does.
void CheckImplicit(const SqlType& from, const SqlType& to);
// Whether CAST leads from `from` to `to`. Error: 529.
void CheckExplicit(const SqlType& from, const SqlType& to);

// ---- Types that meet ----

// The one type of two values side by side: CASE branches, COALESCE, UNION columns, IN, and the type
// in which = < LIKE and the others compare. A bare NULL takes the other's type. Text takes the
// longer length, decimals enough digits for both. Errors: 206 ("int is incompatible with …") when
// the lower type does not convert to the higher.
//
// For a comparison of exact numbers nothing has to be converted: t_cmp_decimal takes each operand
// at its own scale.
SqlType CommonType(const SqlType& a, const SqlType& b);

// What + - * / % & | ^ work on and give.
struct ArithmeticResult {
  enum class Way : uint8_t {
    kInteger,   // t_add_int …, by `type`; operands as they are stored
    kDecimal,   // t_add_decimal …, operands as they are stored, with their StoredScale()
    kFloat,     // t_add_float …, operands converted to `type` first
    kText,      // SQLite's ||, operands converted to `type`'s kind first
    kDateTime,  // t_add_datetime / t_sub_datetime, operands converted to `type` first
    kBitwise,   // SQLite's & and |, t_xor
  };
  Way way;
  SqlType type;
  // What each operand must be converted to first; equal to the operand's own type when it stays.
  SqlType left, right;
};

// `a_constant`/`b_constant`: the value of an operand that is an int constant (see
// ConstantAsDecimal), else null. Errors: 402 ("The data types %s and %s are incompatible in the %s
// operator."), 8117
// ("Operand data type %s is invalid for %s operator."), 206, 257.
ArithmeticResult ResolveArithmetic(BinaryOperator op, const SqlType& a, const SqlType& b,
                                   const int64_t* a_constant = nullptr,
                                   const int64_t* b_constant = nullptr);
// -x, +x, ~x. Errors: 8117. The result of -x for a tinyint is a smallint as the server has it.
SqlType ResolveUnary(UnaryOperator op, const SqlType& operand);

// The rules for two decimals, with the reduction to 38 digits.
SqlType DecimalSum(const SqlType& a, const SqlType& b);  // + and -
SqlType DecimalProduct(const SqlType& a, const SqlType& b);
SqlType DecimalQuotient(const SqlType& a, const SqlType& b);
SqlType DecimalRemainder(const SqlType& a, const SqlType& b);

// ---- Functions ----

enum class Aggregate : uint8_t { kSum, kAvg, kMin, kMax, kCount };
// SUM(int) is int, SUM(decimal(p,s)) decimal(38,s), AVG(decimal(p,s)) decimal(38,max(s,6)). Errors:
// 8117 ("Operand data type %s is invalid for %s operator." with "sum", "avg", "min", "max").
SqlType ResolveAggregate(Aggregate aggregate, const SqlType& operand);

}  // namespace tavcc::sql
