// Traces that nobody asks for cost nothing: neither the system nor the host hears more of the
// server than without them.

#include <atomic>

#include "TavM_CC_PlugIns.h"
#include "automation/interface_ids.h"
#include "automation/replaced_import.h"
#include "automation/trace_fixture.h"

namespace tavcc {
namespace {

constexpr int kManyObjects = 2000;

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
