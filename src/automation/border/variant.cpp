#include "automation/border/variant.h"

#include "foundation/error.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

constexpr VARTYPE kByReference = VT_BYREF;
constexpr int kCurrencyScale = 4;
constexpr int kMaxDecimalScale = 28;  // of a DECIMAL, whose coefficient has 96 bits

Value FromUnsigned64(uint64_t number) {
  return *Decimal::FromLimbs(
      {static_cast<uint32_t>(number), static_cast<uint32_t>(number >> 32), 0, 0}, false, 0);
}

Value FromDecimal(const DECIMAL& decimal) {
  const auto value = Decimal::FromLimbs(
      {static_cast<uint32_t>(decimal.Lo64), static_cast<uint32_t>(decimal.Lo64 >> 32),
       static_cast<uint32_t>(decimal.Hi32), 0},
      decimal.sign == DECIMAL_NEG, decimal.scale);
  if (!value) throw AutomationError(RuntimeError::kTypeMismatch);
  return *value;
}

Value FromDate(DATE date) {
  const auto value = DateTime::FromAutomation(date);
  if (!value)
    throw AutomationError(RuntimeError::kTypeMismatch, "Type mismatch: date out of range");
  return *value;
}

[[noreturn]] void RaiseUnsupported(VARTYPE type) {
  throw AutomationError(
      RuntimeError::kTypeMismatch,
      Cat("Type mismatch: no value of type ", static_cast<int32_t>(type),
          (type & VT_ARRAY) != 0 ? " (an array) is understood" : " is understood"));
}

// What a by-reference VARIANT points at, as a VARIANT of its own that owns nothing.
VARIANT Dereferenced(const VARIANT& variant) {
  if (variant.byref == nullptr) throw AutomationError(RuntimeError::kTypeMismatch);
  VARIANT out;
  VariantInit(&out);
  out.vt = static_cast<VARTYPE>(variant.vt & ~kByReference);
  switch (out.vt) {
    case VT_I1:
    case VT_UI1:
      out.bVal = *variant.pbVal;
      break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      out.iVal = *variant.piVal;
      break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
    case VT_R4:
      out.lVal = *variant.plVal;
      break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      out.llVal = *variant.pllVal;
      break;
    case VT_BSTR:
      out.bstrVal = *variant.pbstrVal;
      break;
    case VT_DISPATCH:
      out.pdispVal = *variant.ppdispVal;
      break;
    case VT_UNKNOWN:
      out.punkVal = *variant.ppunkVal;
      break;
    case VT_DECIMAL:
      out.decVal = *variant.pdecVal;
      out.vt = VT_DECIMAL;
      break;
    default:
      RaiseUnsupported(variant.vt);
  }
  return out;
}

void PutDecimal(Decimal value, VARIANT* out) {
  constexpr uint32_t kTooLarge = 1;
  while (value.scale() > kMaxDecimalScale || value.limbs()[3] >= kTooLarge) {
    if (value.scale() == 0) throw AutomationError(RuntimeError::kOverflow);
    value = *value.Rescaled(value.scale() - 1);  // one digit fewer always fits
  }
  DECIMAL& decimal = out->decVal;
  decimal.Lo64 = (uint64_t{value.limbs()[1]} << 32) | value.limbs()[0];
  decimal.Hi32 = value.limbs()[2];
  decimal.scale = static_cast<BYTE>(value.scale());
  decimal.sign = value.IsNegative() ? DECIMAL_NEG : 0;
  out->vt = VT_DECIMAL;  // last: it shares its place with the decimal's reserved word
}

// As WrapObject; an object without late binding is error 13.
Value WrapUnknown(IUnknown* object) {
  if (object == nullptr) return ObjectPtr();
  ComPtr<IDispatch> dispatch;
  if (FAILED(object->QueryInterface(IID_IDispatch,
                                    reinterpret_cast<void**>(dispatch.GetAddressOf())))) {
    throw AutomationError(RuntimeError::kTypeMismatch);
  }
  return WrapObject(dispatch.Get());
}

}  // namespace

std::string ToUtf8(BSTR text) {
  const UINT length = SysStringLen(text);
  if (length == 0) return "";
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), out.data(), bytes, nullptr,
                      nullptr);
  return out;
}

BSTR NewBstr(std::string_view utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int length =
      bytes == 0 ? 0 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  BSTR out = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (out == nullptr) throw AutomationError(RuntimeError::kOutOfMemory);
  if (length > 0) MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, out, length);
  return out;
}

VARIANT* Referred(VARIANT* variant) {
  constexpr int kDeepest = 16;  // deeper ones go round in a circle
  for (int depth = 0; variant != nullptr; ++depth) {
    if (variant->vt != (VT_VARIANT | kByReference)) return variant;
    if (depth == kDeepest) return nullptr;
    variant = variant->pvarVal;
  }
  return nullptr;
}

Value FromVariant(const VARIANT& given) {
  const VARIANT* const referred = Referred(const_cast<VARIANT*>(&given));
  if (referred == nullptr) throw AutomationError(RuntimeError::kTypeMismatch);
  const bool by_reference = (referred->vt & VT_ARRAY) == 0 && (referred->vt & kByReference) != 0;
  const VARIANT variant = by_reference ? Dereferenced(*referred) : *referred;
  switch (variant.vt) {
    case VT_EMPTY:
      return Empty{};
    case VT_NULL:
      return Null{};
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_I1:
      return int16_t{variant.cVal};
    case VT_UI1:
      return int16_t{variant.bVal};
    case VT_I2:
      return int16_t{variant.iVal};
    case VT_UI2:
      return int32_t{variant.uiVal};
    case VT_I4:
    case VT_INT:
      return static_cast<int32_t>(variant.lVal);
    case VT_UI4:
    case VT_UINT:
      return FromUnsigned64(static_cast<uint32_t>(variant.ulVal));
    case VT_I8:
      return Decimal(variant.llVal);
    case VT_UI8:
      return FromUnsigned64(variant.ullVal);
    case VT_R4:
      return double{variant.fltVal};
    case VT_R8:
      return variant.dblVal;
    case VT_CY:
      return Decimal::FromScaled(variant.cyVal.int64, kCurrencyScale);
    case VT_DECIMAL:
      return FromDecimal(variant.decVal);
    case VT_DATE:
      return FromDate(variant.date);
    case VT_BSTR:
      return ToUtf8(variant.bstrVal);
    case VT_DISPATCH:
      return WrapObject(variant.pdispVal);
    case VT_UNKNOWN:
      return WrapUnknown(variant.punkVal);
    case VT_ERROR:
      if (variant.scode == DISP_E_PARAMNOTFOUND) return Missing{};
      RaiseUnsupported(VT_ERROR);
    default:
      RaiseUnsupported(variant.vt);
  }
}

void ToVariant(const Value& value, VARIANT* out) {
  VariantInit(out);
  switch (value.kind()) {
    case Value::Kind::kEmpty:
      return;
    case Value::Kind::kNull:
      out->vt = VT_NULL;
      return;
    case Value::Kind::kMissing:
      out->vt = VT_ERROR;
      out->scode = DISP_E_PARAMNOTFOUND;
      return;
    case Value::Kind::kBoolean:
      out->vt = VT_BOOL;
      out->boolVal = value.boolean() ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case Value::Kind::kInteger:
      out->vt = VT_I2;
      out->iVal = value.integer();
      return;
    case Value::Kind::kLong:
      out->vt = VT_I4;
      out->lVal = value.long_integer();
      return;
    case Value::Kind::kDouble:
      out->vt = VT_R8;
      out->dblVal = value.number();
      return;
    case Value::Kind::kDecimal:
      PutDecimal(value.decimal(), out);
      return;
    case Value::Kind::kDate:
      out->vt = VT_DATE;
      out->date = value.date().ToAutomation();
      return;
    case Value::Kind::kText:
      out->bstrVal = NewBstr(value.text());
      out->vt = VT_BSTR;
      return;
    case Value::Kind::kObject:
      out->pdispVal = UnwrapObject(value.object());
      out->vt = VT_DISPATCH;
      return;
  }
}

}  // namespace tavcc::automation
