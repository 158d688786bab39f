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
#include <utility>

namespace tavcc::automation {

// Owns one reference to a COM object. Our own, since the Attach of mingw-w64's takes a second one.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  explicit ComPtr(T* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~ComPtr() { Reset(); }
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* Get() const { return object_; }
  T* operator->() const { return object_; }
  friend bool operator==(const ComPtr& a, std::nullptr_t) { return a.object_ == nullptr; }

  // Takes over the caller's reference.
  void Attach(T* object) {
    Reset();
    object_ = object;
  }
  // Hands the reference over to the caller.
  T* Detach() { return std::exchange(object_, nullptr); }
  void Reset() {
    if (T* object = Detach()) object->Release();
  }
  // Where a function puts a reference; nothing may be held.
  T** GetAddressOf() { return &object_; }
  T** ReleaseAndGetAddressOf() {
    Reset();
    return &object_;
  }

 private:
  T* object_ = nullptr;
};

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
