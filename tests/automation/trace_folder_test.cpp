// The folder of traces: shared by processes, one that takes no file, a disk that is full.

#include <set>
#include <string>
#include <vector>

#include "automation/trace_fixture.h"

namespace tavcc {
namespace {

constexpr int kProcesses = 3;
constexpr const wchar_t* kReady = L"tavcc-trace-processes-ready";
constexpr const wchar_t* kStart = L"tavcc-trace-processes-start";
constexpr const wchar_t* kCalls = L"TAVCC_CALLS_OF_A_PROCESS";
constexpr size_t kMostFiles = 200;

// This program once more, for the test of the name alone.
PROCESS_INFORMATION RunAgain(const wchar_t* test) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(program) +
                         L"\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=" +
                         test;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process));
  return process;
}

DWORD ExitCodeOf(const PROCESS_INFORMATION& process) {
  DWORD code = 1;
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

// One of the processes of the next tests: its calls, into the folder that the environment names.
class TraceProcess : public AutomationTest {};

TEST_F(TraceProcess, DISABLED_AuditsWithOthers) {
  HostedErp erp;
  const HANDLE start = OpenEventW(SYNCHRONIZE, FALSE, kStart);
  const HANDLE ready = OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, kReady);
  ASSERT_TRUE(ReleaseSemaphore(ready, 1, nullptr));
  ASSERT_EQ(WaitForSingleObject(start, 60'000), WAIT_OBJECT_0);
  CloseHandle(ready);
  CloseHandle(start);
  wchar_t calls[16] = L"";
  GetEnvironmentVariableW(kCalls, calls, 16);
  ASSERT_GT(std::stoi(calls), 1);
  EXPECT_TRUE(AuditOpenBill(erp));
  for (int i = 1; i < std::stoi(calls); ++i) EXPECT_FALSE(AuditOpenBill(erp));
}

// Processes that call at the same time, each so often.
void CallInProcesses(int calls) {
  SetEnvironmentVariableW(kCalls, std::to_wstring(calls).c_str());
  const HANDLE ready = CreateSemaphoreW(nullptr, 0, kProcesses, kReady);
  const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, kStart);
  std::vector<PROCESS_INFORMATION> processes;
  for (int i = 0; i < kProcesses; ++i) {
    processes.push_back(RunAgain(L"TraceProcess.DISABLED_AuditsWithOthers"));
  }
  for (int i = 0; i < kProcesses; ++i) EXPECT_EQ(WaitForSingleObject(ready, 60'000), WAIT_OBJECT_0);
  SetEvent(start);
  for (const PROCESS_INFORMATION& process : processes) EXPECT_EQ(ExitCodeOf(process), 0u);
  CloseHandle(ready);
  CloseHandle(start);
  SetEnvironmentVariableW(kCalls, nullptr);
}

// That each file is a whole trace, with its process in its name; how many processes wrote them.
size_t WritersOf(const TraceFolder& folder) {
  std::set<std::string> writers;
  for (const std::wstring& file : folder.Files()) {
    const std::vector<Json> lines = folder.Lines(file);
    EXPECT_GT(lines.size(), 1u);
    if (lines.empty()) continue;
    EXPECT_EQ(lines.front()["call"], Json("cls_CX.AuditBill"));
    EXPECT_TRUE(lines.back().contains("result"));
    const std::string process = Show(lines.front()["process"]);
    const std::wstring part = L"-" + std::wstring(process.begin(), process.end()) + L"-";
    const size_t behind_the_time = std::wstring(L"trace-20260315-100000-000").size();
    EXPECT_EQ(file.substr(behind_the_time, part.size()), part);
    writers.insert(process);
  }
  return writers.size();
}

TEST_F(TraceTest, ProcessesWriteAtOnce) {
  CallInProcesses(60);
  EXPECT_EQ(folder_.Files().size(), size_t{kProcesses * 60}) << "none is lost";
  EXPECT_EQ(WritersOf(folder_), size_t{kProcesses});
}

TEST_F(TraceTest, ProcessesKeepTheBoundAtOnce) {
  CallInProcesses(150);
  // Each makes room for the one that it is about to write.
  EXPECT_GE(folder_.Files().size(), kMostFiles);
  EXPECT_LT(folder_.Files().size(), kMostFiles + kProcesses);
  EXPECT_GT(WritersOf(folder_), 1u);
}

TEST_F(TraceTest, AFolderThatTakesNoFileDisturbsNobody) {
  HostedErp erp;
  AskFor(L"Z:\\proc");  // where no user may make one
  EXPECT_TRUE(AuditOpenBill(erp));
}

TEST_F(TraceTest, AFileInPlaceOfTheFolderDisturbsNobody) {
  HostedErp erp;
  folder_.Make(L"file.jsonl");
  AskFor((folder_.path() + L"\\file.jsonl").c_str());
  EXPECT_TRUE(AuditOpenBill(erp));
  EXPECT_EQ(folder_.Files().size(), 1u);
  EXPECT_TRUE(folder_.Lines(L"file.jsonl").empty());
}

// Run by itself, with so small a bound on the size of files that a trace does not get to its end:
// as when the disk is full.
TEST_F(TraceTest, DISABLED_AFullDiskCostsTheTraceAndNothingElse) {
  HostedErp erp;
  EXPECT_TRUE(AuditOpenBill(erp));
  EXPECT_FALSE(AuditOpenBill(erp));
  const auto files = folder_.Files();
  EXPECT_EQ(files.size(), 2u);
  for (const std::wstring& file : files) {
    const std::vector<std::string> texts = folder_.Texts(file);
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.back().find("\"result\""), std::string::npos)
        << "it was not cut off: " << texts.back();
  }
}

}  // namespace
}  // namespace tavcc
