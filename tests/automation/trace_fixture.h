// What the tests of the server's traces stand on: a folder for them, and a call to be traced.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "automation/late_call.h"
#include "scenario/json.h"

namespace tavcc {

inline constexpr const wchar_t* kTraceVariable = L"TAVM_CC_TRACE";

// An empty folder, deleted with what is in it.
class TraceFolder {
 public:
  TraceFolder() {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    path_ = std::wstring(temporary) + L"tavcc-traces-" + std::to_wstring(GetCurrentProcessId());
    CreateDirectoryW(path_.c_str(), nullptr);
    Empty();
  }
  ~TraceFolder() {
    Empty();
    RemoveDirectoryW(path_.c_str());
  }
  TraceFolder(const TraceFolder&) = delete;
  TraceFolder& operator=(const TraceFolder&) = delete;

  const std::wstring& path() const { return path_; }

  std::vector<std::wstring> Files() const {
    std::vector<std::wstring> files;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((path_ + L"\\*.jsonl").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return files;
    do {
      files.push_back(found.cFileName);
    } while (FindNextFileW(search, &found) != 0);
    FindClose(search);
    std::sort(files.begin(), files.end());
    return files;
  }

  void Make(const wchar_t* name) const {
    CloseHandle(CreateFileW((path_ + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  }

  std::vector<std::string> Texts(const std::wstring& name) const {
    std::ifstream file(std::filesystem::path(path_) / name);
    std::vector<std::string> texts;
    for (std::string line; std::getline(file, line);) texts.push_back(line);
    return texts;
  }

  std::vector<Json> Lines(const std::wstring& name) const {
    std::vector<Json> lines;
    for (const std::string& text : Texts(name)) lines.push_back(ParseJson(text));
    return lines;
  }

 private:
  void Empty() {
    for (const std::wstring& file : Files()) DeleteFileW((path_ + L"\\" + file).c_str());
  }

  std::wstring path_;
};

// Audits the open assembly bill; whether it passed.
inline bool AuditOpenBill(HostedErp& erp, BSTR dsn = nullptr) {
  const auto object = CreateByProgID(L"TavM_CC_PlugIns.cls_CX");
  UniqueVariant message;
  LateCall call{
      {Long(1), Long(7), Text(dsn == nullptr ? erp.dsn() : dsn), VariantReference(message.get())},
      {}};
  EXPECT_EQ(call.On(*object.Get(), L"AuditBill"), S_OK);
  return call.result.get()->boolVal == VARIANT_TRUE;
}

class TraceTest : public AutomationTest {
 protected:
  TraceTest() { AskFor(folder_.path().c_str()); }
  ~TraceTest() override { AskFor(nullptr); }

  // Asks for traces there, or with null for none.
  static void AskFor(const wchar_t* folder) { SetEnvironmentVariableW(kTraceVariable, folder); }
  // Until the server looks again who asks.
  static void WaitForALook() { Sleep(1100); }

  // The one file that there is; empty when there is none.
  std::wstring File() const {
    const auto files = folder_.Files();
    EXPECT_EQ(files.size(), 1u);
    return files.empty() ? std::wstring() : files[0];
  }
  // Its lines.
  std::vector<Json> Lines() const { return folder_.Lines(File()); }
  // Its lines of one kind.
  std::vector<Json> Lines(std::string_view kind) const {
    std::vector<Json> lines = Lines();
    std::erase_if(lines, [&](const Json& line) { return line.items()[0].key != kind; });
    return lines;
  }

  TraceFolder folder_;
};

}  // namespace tavcc
