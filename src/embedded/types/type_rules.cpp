// Which types meet how: precedence, arithmetic, conversions that nobody wrote.
#include "embedded/types/type_rules.h"

#include <algorithm>

#include "embedded/error.h"

namespace tavcc::sql {
namespace {

int LongerLength(int a, int b) {
  if (a == SqlType::kMax || b == SqlType::kMax) return SqlType::kMax;
  return std::max(a, b);
}

TypeKind CommonTextKind(TypeKind a, TypeKind b) {
  const bool national = IsNationalText(a) || IsNationalText(b);
  const bool variable = IsVarying(a) || IsVarying(b);
  if (national) return variable ? TypeKind::kNVarChar : TypeKind::kNChar;
  return variable ? TypeKind::kVarChar : TypeKind::kChar;
}

// The rule of + and - and of values side by side: the digits before the point come first.
SqlType KeepWholeDigits(int precision, int scale, int whole_digits) {
  if (precision <= SqlType::kMaxPrecision) return DecimalType(std::max(precision, 1), scale);
  return DecimalType(SqlType::kMaxPrecision,
                     std::max(0, std::min(scale, SqlType::kMaxPrecision - whole_digits)));
}

// The rule of * and /: the scale gives way, but not below 6.
SqlType KeepSixDecimals(int precision, int scale) {
  constexpr int kLeastScale = 6;
  if (precision <= SqlType::kMaxPrecision) return DecimalType(std::max(precision, 1), scale);
  const int whole_digits = precision - scale;
  if (whole_digits < SqlType::kMaxPrecision - kLeastScale) {
    return DecimalType(SqlType::kMaxPrecision,
                       std::min(scale, SqlType::kMaxPrecision - whole_digits));
  }
  return DecimalType(SqlType::kMaxPrecision, std::min(scale, kLeastScale));
}

SqlType CommonDecimal(const SqlType& a, const SqlType& b) {
  const int scale = std::max(a.scale, b.scale);
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  return KeepWholeDigits(scale + whole, scale, whole);
}

[[noreturn]] void RaiseClash(const SqlType& a, const SqlType& b) {
  Raise(errors::kOperandTypeClash, KindText(a.kind), KindText(b.kind));
}

// ---- Convertibility ----

Convertibility FromTextOrBinary(const SqlType& from, const SqlType& to) {
  if (IsText(from.kind)) {
    return IsBinary(to.kind) ? Convertibility::kExplicitOnly : Convertibility::kImplicit;
  }
  return IsApproximate(to.kind) ? Convertibility::kNever : Convertibility::kImplicit;
}

Convertibility FromNumber(const SqlType& to) {
  const bool never = to.kind == TypeKind::kDate || to.kind == TypeKind::kUniqueIdentifier;
  return never ? Convertibility::kNever : Convertibility::kImplicit;
}

Convertibility FromDate(const SqlType& from, const SqlType& to) {
  if (IsText(to.kind) || IsDate(to.kind)) return Convertibility::kImplicit;
  if (to.kind == TypeKind::kUniqueIdentifier) return Convertibility::kNever;
  if (from.kind == TypeKind::kDate && !IsBinary(to.kind)) return Convertibility::kNever;
  return Convertibility::kExplicitOnly;
}

// ---- Arithmetic ----

std::string_view OperatorName(BinaryOperator op) {
  // In the order of BinaryOperator.
  static constexpr std::string_view kNames[] = {"add",    "subtract", "multiply", "divide",
                                                "modulo", "'&'",      "'|'",      "'^'"};
  return kNames[static_cast<size_t>(op)];
}

bool IsBitwise(BinaryOperator op) {
  return op >= BinaryOperator::kBitAnd;
}

[[noreturn]] void RaiseIncompatible(const SqlType& a, const SqlType& b, BinaryOperator op) {
  Raise(errors::kIncompatibleOperandTypes, KindText(a.kind), KindText(b.kind), OperatorName(op));
}
[[noreturn]] void RaiseInvalid(const SqlType& type, BinaryOperator op) {
  Raise(errors::kInvalidOperandType, KindText(type.kind), OperatorName(op));
}

using Way = ArithmeticResult::Way;

ArithmeticResult Concatenate(const SqlType& a, const SqlType& b) {
  const TypeKind kind = CommonTextKind(a.kind, b.kind);
  const int limit = MaxTextLength(kind);
  const bool max = a.length == SqlType::kMax || b.length == SqlType::kMax;
  const int length = max ? SqlType::kMax : std::min(a.length + b.length, limit);
  return {Way::kText, TextType(kind, length), a, b};
}

ArithmeticResult OnDates(BinaryOperator op, const SqlType& a, const SqlType& b) {
  const SqlType common = CommonType(a, b);
  if (common.kind == TypeKind::kDate) RaiseInvalid(common, op);
  // An old date and a new one have no sum, though they compare.
  if (a.kind == TypeKind::kDate || b.kind == TypeKind::kDate) RaiseIncompatible(a, b, op);
  if (op != BinaryOperator::kAdd && op != BinaryOperator::kSubtract) RaiseInvalid(common, op);
  return {Way::kDateTime, common, common, common};
}

ArithmeticResult OnMoney(const SqlType& a, const SqlType& b) {
  const bool small = std::max(a.kind, b.kind) == TypeKind::kSmallMoney;
  return {Way::kDecimal, Type(small ? TypeKind::kSmallMoney : TypeKind::kMoney), a, b};
}

SqlType DecimalResult(BinaryOperator op, const SqlType& a, const SqlType& b) {
  switch (op) {
    case BinaryOperator::kMultiply:
      return DecimalProduct(a, b);
    case BinaryOperator::kDivide:
      return DecimalQuotient(a, b);
    case BinaryOperator::kModulo:
      return DecimalRemainder(a, b);
    default:
      return DecimalSum(a, b);
  }
}

ArithmeticResult OnNumbers(BinaryOperator op, const SqlType& a, const SqlType& b,
                           const int64_t* a_constant, const int64_t* b_constant) {
  const TypeKind higher = std::max(a.kind, b.kind);
  if (IsBitwise(op)) {
    if (!IsInteger(higher)) RaiseIncompatible(a, b, op);
    return {Way::kBitwise, Type(higher), a, b};
  }
  if (IsApproximate(higher)) {
    if (op == BinaryOperator::kModulo) RaiseIncompatible(a, b, op);
    return {Way::kFloat, Type(higher), Type(higher), Type(higher)};
  }
  if (higher == TypeKind::kBit) RaiseIncompatible(a, b, op);
  if (IsInteger(higher)) return {Way::kInteger, Type(higher), a, b};
  if (IsMoney(higher)) return OnMoney(a, b);
  const SqlType left = a_constant != nullptr ? ConstantAsDecimal(*a_constant) : AsDecimal(a);
  const SqlType right = b_constant != nullptr ? ConstantAsDecimal(*b_constant) : AsDecimal(b);
  return {Way::kDecimal, DecimalResult(op, left, right), a, b};
}

}  // namespace

// ---- Groups ----

bool AlwaysStoredAsInteger(const SqlType& type) {
  constexpr int kMostIn64Bits = 18;
  if (type.kind == TypeKind::kDecimal) return type.precision <= kMostIn64Bits;
  return IsInteger(type.kind) || IsMoney(type.kind) || IsDate(type.kind);
}

SqlType AsDecimal(const SqlType& type) {
  switch (type.kind) {
    case TypeKind::kBit:
      return DecimalType(1, 0);
    case TypeKind::kTinyInt:
      return DecimalType(3, 0);
    case TypeKind::kSmallInt:
      return DecimalType(5, 0);
    case TypeKind::kInt:
      return DecimalType(10, 0);
    case TypeKind::kBigInt:
      return DecimalType(19, 0);
    case TypeKind::kSmallMoney:
      return DecimalType(10, 4);
    case TypeKind::kMoney:
      return DecimalType(19, 4);
    default:
      return type;
  }
}

int StoredScale(const SqlType& type) {
  constexpr int kMoneyScale = 4;
  if (type.kind == TypeKind::kDecimal) return type.scale;
  return IsMoney(type.kind) ? kMoneyScale : 0;
}

// ---- Conversions that nobody wrote ----

Convertibility HowConvertible(const SqlType& from, const SqlType& to) {
  if (from.kind == to.kind || from.kind == TypeKind::kNull) return Convertibility::kImplicit;
  if (IsText(from.kind) || IsBinary(from.kind)) return FromTextOrBinary(from, to);
  if (IsNumeric(from.kind)) return FromNumber(to);
  if (IsDate(from.kind)) return FromDate(from, to);
  // uniqueidentifier
  if (IsText(to.kind) || IsBinary(to.kind)) return Convertibility::kImplicit;
  return Convertibility::kNever;
}

void CheckImplicit(const SqlType& from, const SqlType& to) {
  switch (HowConvertible(from, to)) {
    case Convertibility::kImplicit:
      return;
    case Convertibility::kExplicitOnly:
      Raise(errors::kImplicitConversionNotAllowed, KindText(from.kind), KindText(to.kind));
    case Convertibility::kNever:
      RaiseClash(from, to);
  }
}

void CheckExplicit(const SqlType& from, const SqlType& to) {
  if (HowConvertible(from, to) == Convertibility::kNever) {
    Raise(errors::kExplicitConversionNotAllowed, KindText(from.kind), KindText(to.kind));
  }
}

// ---- Types that meet ----

SqlType CommonType(const SqlType& a, const SqlType& b) {
  if (a == b || b.kind == TypeKind::kNull) return a;
  if (a.kind == TypeKind::kNull) return b;
  if (IsText(a.kind) && IsText(b.kind)) {
    const TypeKind kind = CommonTextKind(a.kind, b.kind);
    const int length = LongerLength(a.length, b.length);
    return TextType(kind, length > MaxTextLength(kind) ? SqlType::kMax : length);
  }
  if (IsBinary(a.kind) && IsBinary(b.kind)) {
    return TextType(std::max(a.kind, b.kind), LongerLength(a.length, b.length));
  }
  const bool decimal = std::max(a.kind, b.kind) == TypeKind::kDecimal;
  if (decimal && IsExact(a.kind) && IsExact(b.kind))
    return CommonDecimal(AsDecimal(a), AsDecimal(b));
  const SqlType& higher = a.kind >= b.kind ? a : b;
  const SqlType& lower = a.kind >= b.kind ? b : a;
  if (HowConvertible(lower, higher) == Convertibility::kNever) RaiseClash(a, b);
  return higher;
}

ArithmeticResult ResolveArithmetic(BinaryOperator op, const SqlType& a, const SqlType& b,
                                   const int64_t* a_constant, const int64_t* b_constant) {
  // A bare NULL counts as an int beside another NULL, else as the other operand.
  if (a.kind == TypeKind::kNull && b.kind == TypeKind::kNull) {
    return ResolveArithmetic(op, kIntType, kIntType);
  }
  if (a.kind == TypeKind::kNull) return ResolveArithmetic(op, b, b, nullptr, b_constant);
  if (b.kind == TypeKind::kNull) return ResolveArithmetic(op, a, a, a_constant, nullptr);
  for (const SqlType* type : {&a, &b}) {
    if (type->kind == TypeKind::kUniqueIdentifier) RaiseIncompatible(a, b, op);
  }
  const bool texts = IsText(a.kind) && IsText(b.kind);
  if (texts && op == BinaryOperator::kAdd) return Concatenate(a, b);
  if (texts) {
    if (op == BinaryOperator::kModulo || IsBitwise(op)) RaiseIncompatible(a, b, op);
    RaiseInvalid(a, op);
  }
  if (IsDate(a.kind) || IsDate(b.kind)) {
    if (IsBitwise(op) || op == BinaryOperator::kModulo) RaiseIncompatible(a, b, op);
    return OnDates(op, a, b);
  }
  if (IsBinary(a.kind) && IsBinary(b.kind)) RaiseUnsupported("arithmetic on binary values");
  // A text or binary beside a number becomes a number of its type.
  if (!IsNumeric(a.kind) || !IsNumeric(b.kind)) {
    const SqlType& number = IsNumeric(a.kind) ? a : b;
    if (!IsNumeric(number.kind)) RaiseUnsupported("arithmetic on binary values");
    ArithmeticResult result = OnNumbers(op, number, number, nullptr, nullptr);
    if (result.way == Way::kDecimal || result.way == Way::kInteger || result.way == Way::kBitwise) {
      result.left = result.right = number;
    }
    return result;
  }
  return OnNumbers(op, a, b, a_constant, b_constant);
}

SqlType ResolveUnary(UnaryOperator op, const SqlType& operand) {
  using Operator = UnaryOperator;
  if (op == Operator::kPlus) return operand;
  if (op == Operator::kBitNot) {
    if (operand.kind == TypeKind::kNull) return kIntType;
    if (!IsInteger(operand.kind)) Raise(errors::kInvalidOperandType, KindText(operand.kind), "'~'");
    return operand;
  }
  if (operand.kind == TypeKind::kNull) return kIntType;
  if (operand.kind == TypeKind::kTinyInt) return Type(TypeKind::kSmallInt);
  if (!IsNumeric(operand.kind) || operand.kind == TypeKind::kBit) {
    Raise(errors::kInvalidOperandType, KindText(operand.kind), "minus");
  }
  return operand;
}

SqlType DecimalSum(const SqlType& a, const SqlType& b) {
  const int scale = std::max(a.scale, b.scale);
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  return KeepWholeDigits(scale + whole + 1, scale, whole);
}

SqlType DecimalProduct(const SqlType& a, const SqlType& b) {
  return KeepSixDecimals(a.precision + b.precision + 1, a.scale + b.scale);
}

SqlType DecimalQuotient(const SqlType& a, const SqlType& b) {
  const int scale = std::max(6, a.scale + b.precision + 1);
  return KeepSixDecimals(a.precision - a.scale + b.scale + scale, scale);
}

SqlType DecimalRemainder(const SqlType& a, const SqlType& b) {
  const int scale = std::max(a.scale, b.scale);
  const int whole = std::min(a.precision - a.scale, b.precision - b.scale);
  return KeepWholeDigits(scale + whole, scale, whole);
}

// ---- Functions ----

SqlType ResolveAggregate(Aggregate aggregate, const SqlType& operand) {
  if (aggregate == Aggregate::kCount) return kIntType;
  constexpr std::string_view kNames[] = {"sum", "avg", "min", "max"};
  const std::string_view name = kNames[static_cast<size_t>(aggregate)];
  const bool ordered = aggregate == Aggregate::kMin || aggregate == Aggregate::kMax;
  const bool allowed = ordered ? operand.kind != TypeKind::kNull && operand.kind != TypeKind::kBit
                               : IsNumeric(operand.kind) && operand.kind != TypeKind::kBit;
  if (!allowed) Raise(errors::kInvalidOperandType, KindText(operand.kind), name);
  if (ordered) return operand;
  constexpr int kLeastScaleOfAverage = 6;
  switch (operand.kind) {
    case TypeKind::kTinyInt:
    case TypeKind::kSmallInt:
      return kIntType;
    case TypeKind::kSmallMoney:
      return Type(TypeKind::kMoney);
    case TypeKind::kReal:
      return Type(TypeKind::kFloat);
    case TypeKind::kDecimal:
      if (aggregate == Aggregate::kSum) return DecimalType(SqlType::kMaxPrecision, operand.scale);
      return DecimalType(SqlType::kMaxPrecision, std::max(operand.scale, kLeastScaleOfAverage));
    default:
      return operand;
  }
}

}  // namespace tavcc::sql
