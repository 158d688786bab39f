// The one door to Windows' headers, and the two small owners that COM code needs.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// clang-format off
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
// clang-format on
#include <wrl/client.h>

namespace tavcc::automation {

using Microsoft::WRL::ComPtr;

// Owns a VARIANT: empty at first, cleared at the end.
class UniqueVariant {
 public:
  UniqueVariant() { VariantInit(&variant_); }
  ~UniqueVariant() { VariantClear(&variant_); }
  UniqueVariant(UniqueVariant&& other) noexcept : variant_(other.variant_) {
    VariantInit(&other.variant_);
  }
  UniqueVariant(const UniqueVariant&) = delete;
  UniqueVariant& operator=(const UniqueVariant&) = delete;

  VARIANT* get() { return &variant_; }
  const VARIANT& operator*() const { return variant_; }
  // Hands the content over; this one is empty afterwards.
  void MoveTo(VARIANT* target) {
    *target = variant_;
    VariantInit(&variant_);
  }

 private:
  VARIANT variant_;
};

}  // namespace tavcc::automation
