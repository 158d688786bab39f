// How a test stands between the server and the system.
#pragma once

#include <cstring>
#include <utility>

#include <gtest/gtest.h>

#include "automation/border/platform.h"

namespace tavcc {

// A function that the server imports, with another one in its place while this lives.
class ReplacedImport {
 public:
  ReplacedImport(HMODULE server, const char* name, void* other) : entry_(Find(server, name)) {
    EXPECT_NE(entry_, nullptr) << name << " is not imported";
    if (entry_ != nullptr) original_ = Put(other);
  }
  ~ReplacedImport() {
    if (entry_ != nullptr) Put(original_);
  }
  ReplacedImport(const ReplacedImport&) = delete;
  ReplacedImport& operator=(const ReplacedImport&) = delete;

 private:
  // Where the module has the address of the function.
  static IMAGE_THUNK_DATA* Find(HMODULE server, const char* name) {
    char* const base = reinterpret_cast<char*>(server);
    const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
         from->Name != 0; ++from) {
      const auto* named = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
      auto* bound = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->FirstThunk);
      for (; named->u1.AddressOfData != 0; ++named, ++bound) {
        if (IMAGE_SNAP_BY_ORDINAL(named->u1.Ordinal)) continue;
        const auto* const import =
            reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + named->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) return bound;
      }
    }
    return nullptr;
  }

  void* Put(void* function) {
    DWORD protection = 0;
    VirtualProtect(entry_, sizeof(*entry_), PAGE_READWRITE, &protection);
    const auto address = reinterpret_cast<decltype(entry_->u1.Function)>(function);
    const auto before = std::exchange(entry_->u1.Function, address);
    VirtualProtect(entry_, sizeof(*entry_), protection, &protection);
    return reinterpret_cast<void*>(before);
  }

  IMAGE_THUNK_DATA* const entry_;
  void* original_ = nullptr;
};

}  // namespace tavcc
