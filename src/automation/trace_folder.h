// Where the traces of calls go: the folder that was asked for, and a file for one call in it.
//
// What goes wrong in writing is nobody's affair: a file that cannot be made or written any further
// is given up, and the call goes on without it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "automation/border/platform.h"

namespace tavcc::automation {

// What there may be of traces: no file grows beyond the one, and the oldest files go so that there
// are no more than the other.
inline constexpr size_t kMostTraceBytes = size_t{4} << 20;
inline constexpr size_t kMostTraceFiles = 200;

// The folder that is asked for: by the environment variable TAVM_CC_TRACE, or the text value
// TraceFolder under Software\TavM_CC_PlugIns of the user or the machine, in this order. Empty where
// nobody asks. It is looked up once a second at most, for all threads together.
std::wstring AskedTraceFolder();

// A time of the clock on the wall, "2026-03-15 10:00:00.123".
std::string TimeText(const SYSTEMTIME& time);

// The file of one call.
class TraceFile {
 public:
  // Makes trace-<time>-<process>-<number>-<call>.jsonl in the folder.
  TraceFile(const std::wstring& folder, std::string_view call, const SYSTEMTIME& time);
  ~TraceFile();
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }

  // Writes a line, or counts it where there is no room left.
  void Write(std::string_view line);
  // The last line, for which there is room in any case, and before it how many were left out.
  void End(std::string_view line);

 private:
  void Open(const std::wstring& folder, std::string_view call, const SYSTEMTIME& time);
  void Put(std::string_view line);

  HANDLE file_ = INVALID_HANDLE_VALUE;
  size_t written_ = 0;
  int left_out_ = 0;
};

}  // namespace tavcc::automation
