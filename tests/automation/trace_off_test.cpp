// Traces that nobody asks for cost nothing: neither the system nor the host hears more of the
// server than without them.

#include <atomic>
#include <cstring>
#include <utility>

#include "TavM_CC_PlugIns.h"
#include "automation/interface_ids.h"
#include "automation/trace_fixture.h"

namespace tavcc {
namespace {

constexpr int kManyObjects = 2000;

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

// How often the server asked the system.
std::atomic<int> environment_reads{0}, registry_reads{0}, files_made{0};

DWORD WINAPI CountedEnvironment(LPCWSTR name, LPWSTR value, DWORD size) {
  ++environment_reads;
  return GetEnvironmentVariableW(name, value, size);
}
LSTATUS WINAPI CountedRegistry(HKEY root, LPCWSTR key, LPCWSTR value, DWORD flags, LPDWORD type,
                               PVOID data, LPDWORD size) {
  ++registry_reads;
  return RegGetValueW(root, key, value, flags, type, data, size);
}
HANDLE WINAPI CountedFile(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                          DWORD how, DWORD flags, HANDLE like) {
  ++files_made;
  return CreateFileW(name, access, share, security, how, flags, like);
}

// Counts while it lives. The server must be loaded and stay so.
class SystemCalls {
 public:
  SystemCalls() { environment_reads = registry_reads = files_made = 0; }

 private:
  const HMODULE server_ = GetModuleHandleW(L"TavM_CC_PlugIns.dll");
  const ReplacedImport environment_{server_, "GetEnvironmentVariableW",
                                    reinterpret_cast<void*>(CountedEnvironment)};
  const ReplacedImport registry_{server_, "RegGetValueW", reinterpret_cast<void*>(CountedRegistry)};
  const ReplacedImport files_{server_, "CreateFileW", reinterpret_cast<void*>(CountedFile)};
};

TEST_F(TraceTest, OffNoCallAndHardlyAnObjectAsksTheSystem) {
  HostedErp erp;
  AskFor(nullptr);
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");  // keeps the server loaded
  const SystemCalls calls;
  const DWORD start = GetTickCount();
  for (int i = 0; i < kManyObjects; ++i) AuditOpenBill(erp);
  const int seconds = static_cast<int>((GetTickCount() - start) / 1000) + 1;
  EXPECT_LT(seconds, kManyObjects / 10);
  EXPECT_LE(environment_reads, seconds);
  EXPECT_LE(registry_reads, 2 * seconds) << "of the user and of the machine";
  EXPECT_EQ(files_made, 0);
}

// The counts do move.
TEST_F(TraceTest, OnceASecondTheServerLooksAgain) {
  HostedErp erp;
  AskFor(nullptr);
  EXPECT_TRUE(AuditOpenBill(erp));
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  const SystemCalls calls;
  WaitForALook();
  AuditOpenBill(erp);
  EXPECT_EQ(environment_reads, 1);
  EXPECT_EQ(registry_reads, 2);
  EXPECT_EQ(files_made, 0);
  AskFor(folder_.path().c_str());
  WaitForALook();
  AuditOpenBill(erp);
  EXPECT_EQ(environment_reads, 2);
  EXPECT_EQ(registry_reads, 2) << "the environment comes first";
  EXPECT_EQ(files_made, 1);
  AskFor(nullptr);
  WaitForALook();
  AuditOpenBill(erp);
  EXPECT_EQ(folder_.Files().size(), 1u);
}

TEST_F(TraceTest, OffTheHostIsCalledLess) {
  HostedErp erp;
  EXPECT_TRUE(AuditOpenBill(erp));  // the next ones are all the same
  const int on = HostCallsOf([&] { AuditOpenBill(erp); });
  AskFor(nullptr);
  WaitForALook();
  const int off = HostCallsOf([&] { AuditOpenBill(erp); });
  EXPECT_GT(off, 0);
  EXPECT_LT(off, on) << "a connection that is watched is asked for the number of rows";
}

}  // namespace
}  // namespace tavcc
