// Words for the types that the tests of this folder speak of.
#pragma once

#include "embedded/types/type_rules.h"

namespace tavcc::sql {

inline constexpr SqlType kInt = Type(TypeKind::kInt);
inline constexpr SqlType kBigInt = Type(TypeKind::kBigInt);
inline constexpr SqlType kSmallInt = Type(TypeKind::kSmallInt);
inline constexpr SqlType kTinyInt = Type(TypeKind::kTinyInt);
inline constexpr SqlType kBit = Type(TypeKind::kBit);
inline constexpr SqlType kFloat = Type(TypeKind::kFloat);
inline constexpr SqlType kReal = Type(TypeKind::kReal);
inline constexpr SqlType kMoney = Type(TypeKind::kMoney);
inline constexpr SqlType kSmallMoney = Type(TypeKind::kSmallMoney);
inline constexpr SqlType kDateTime = Type(TypeKind::kDateTime);
inline constexpr SqlType kSmallDateTime = Type(TypeKind::kSmallDateTime);
inline constexpr SqlType kDate = Type(TypeKind::kDate);
constexpr SqlType VarChar(int length) {
  return TextType(TypeKind::kVarChar, length);
}
constexpr SqlType NVarChar(int length) {
  return TextType(TypeKind::kNVarChar, length);
}

}  // namespace tavcc::sql
