// Windows has no pager that shows UTF-8: there is one where PAGER names it.
#include "tavcc/platform/pager.h"

#include <cstdio>
#include <string>

#include "tavcc/platform/process.h"
#include "tavcc/platform/windows/wide_text.h"

namespace tavcc {
namespace {

class PagerProcess : public Pager {
 public:
  explicit PagerProcess(FILE* input) : input_(input) {}
  ~PagerProcess() override { _pclose(input_); }

  void Write(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), input_);
    std::fflush(input_);
  }

 private:
  FILE* const input_;
};

}  // namespace

std::unique_ptr<Pager> Pager::Begin() {
  const std::string command = EnvironmentVariable("PAGER").value_or("");
  if (command.empty() || command == "cat") return nullptr;
  FILE* const input = _wpopen(ToWide(command).c_str(), L"wb");
  return input == nullptr ? nullptr : std::make_unique<PagerProcess>(input);
}

}  // namespace tavcc
