#include "automation/trace_folder.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <iterator>
#include <utility>
#include <vector>

#include "foundation/text.h"

namespace tavcc::automation {

namespace {

constexpr const wchar_t* kVariable = L"TAVM_CC_TRACE";
constexpr const wchar_t* kRegistryKey = L"Software\\TavM_CC_PlugIns";
constexpr const wchar_t* kRegistryValue = L"TraceFolder";
constexpr const wchar_t* kPattern = L"\\trace-*.jsonl";

// How long what a look came to is taken to hold, in milliseconds.
constexpr DWORD kLookHolds = 1000;

using FolderPath = wchar_t[MAX_PATH];

bool FromEnvironment(FolderPath& folder) {
  const DWORD length = GetEnvironmentVariableW(kVariable, folder, MAX_PATH);
  return length > 0 && length < MAX_PATH;
}

bool FromRegistry(HKEY root, FolderPath& folder) {
  DWORD size = sizeof(folder);
  const LSTATUS read =
      RegGetValueW(root, kRegistryKey, kRegistryValue, RRF_RT_REG_SZ, nullptr, folder, &size);
  return read == ERROR_SUCCESS && folder[0] != L'\0';
}

bool LookUpFolder(FolderPath& folder) {
  return FromEnvironment(folder) || FromRegistry(HKEY_CURRENT_USER, folder) ||
         FromRegistry(HKEY_LOCAL_MACHINE, folder);
}

// What the last look came to. Hosts make objects by the thousand: where nobody asks for traces, an
// object costs two reads of memory.
class LastLook {
 public:
  std::wstring Folder() {
    if (Holds() && !asked_) return L"";
    AcquireSRWLockExclusive(&lock_);
    if (!Holds()) LookAgain();
    FolderPath folder = L"";
    if (asked_) std::copy(std::begin(folder_), std::end(folder_), folder);
    ReleaseSRWLockExclusive(&lock_);
    return folder;
  }

 private:
  bool Holds() const { return looked_ && GetTickCount() - at_ < kLookHolds; }
  void LookAgain() {
    asked_ = LookUpFolder(folder_);
    at_ = GetTickCount();
    looked_ = true;
  }

  SRWLOCK lock_ = SRWLOCK_INIT;
  FolderPath folder_ = L"";  // nothing that would have to be freed when the module goes
  std::atomic<DWORD> at_{0};
  std::atomic<bool> asked_{false}, looked_{false};
};

constinit LastLook last_look;

struct FoundFile {
  FILETIME written;
  std::wstring name;

  friend bool operator<(const FoundFile& a, const FoundFile& b) {
    const LONG order = CompareFileTime(&a.written, &b.written);
    return order != 0 ? order < 0 : a.name < b.name;
  }
};

std::vector<FoundFile> TracesIn(const std::wstring& folder) {
  std::vector<FoundFile> files;
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + kPattern).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return files;
  do {
    files.push_back({found.ftLastWriteTime, found.cFileName});
  } while (FindNextFileW(search, &found) != 0);
  FindClose(search);
  return files;
}

// Leaves room for one more.
void DeleteOldest(const std::wstring& folder) {
  std::vector<FoundFile> files = TracesIn(folder);
  if (files.size() < kMostTraceFiles) return;
  std::sort(files.begin(), files.end());
  files.resize(files.size() - (kMostTraceFiles - 1));
  for (const FoundFile& file : files) DeleteFileW((folder + L"\\" + file.name).c_str());
}

std::string FileName(std::string_view call, const SYSTEMTIME& time) {
  static std::atomic<unsigned> calls{0};
  char text[96];
  std::snprintf(text, sizeof(text), "trace-%04d%02d%02d-%02d%02d%02d-%03d-%lu-%u-", time.wYear,
                time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds,
                GetCurrentProcessId(), ++calls);
  return Cat(std::string_view(text), call, ".jsonl");
}

}  // namespace

std::wstring AskedTraceFolder() {
  return last_look.Folder();
}

std::string TimeText(const SYSTEMTIME& time) {
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d.%03d", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
  return text;
}

TraceFile::TraceFile(const std::wstring& folder, std::string_view call, const SYSTEMTIME& time) {
  try {
    Open(folder, call, time);
  } catch (...) {
  }
}

void TraceFile::Open(const std::wstring& folder, std::string_view call, const SYSTEMTIME& time) {
  DeleteOldest(folder);
  const std::string name = FileName(call, time);  // ASCII
  const std::wstring path = folder + L"\\" + std::wstring(name.begin(), name.end());
  file_ = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                      FILE_ATTRIBUTE_NORMAL, nullptr);
  if (IsOpen()) return;
  // For whoever asked for traces and sees none: in a debugger's output.
  OutputDebugStringW((L"TavM_CC_PlugIns: no trace can be written: " + path + L"\n").c_str());
}

TraceFile::~TraceFile() {
  if (IsOpen()) CloseHandle(file_);
}

void TraceFile::Write(std::string_view line) {
  if (written_ + line.size() < kMostTraceBytes) {
    Put(line);
  } else {
    ++left_out_;
  }
}

void TraceFile::End(std::string_view line) {
  if (left_out_ > 0) Put(Cat("{\"left_out\":", int32_t{left_out_}, "}"));
  Put(line);
}

void TraceFile::Put(std::string_view line) {
  if (!IsOpen()) return;
  const std::string text = Cat(line, "\n");
  DWORD done = 0;
  const BOOL wrote = WriteFile(file_, text.data(), static_cast<DWORD>(text.size()), &done, nullptr);
  written_ += done;
  // What follows a part of a line would be taken for the rest of it.
  if (wrote == 0 || done < text.size()) CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE));
}

}  // namespace tavcc::automation
