// The reference host's loader of translated texts.
#pragma once

#include <memory>
#include <string>

#include "foundation/host.h"
#include "host/host_state.h"

namespace tavcc {

// Translates from the settings' table of its language. A text that the table lacks, and every text
// while no resource file is named, is its own translation.
class HostResourceLoader final : public ResourceLoader {
 public:
  explicit HostResourceLoader(std::shared_ptr<HostState> state) : state_(std::move(state)) {}

  std::string LanguageID() override { return language_; }
  void SetLanguageID(std::string_view language) override { language_ = language; }
  void SetResFileBaseName(std::string_view name) override { file_ = name; }
  void Unload() override { file_.clear(); }
  std::string LoadString(std::string_view key) override;

 private:
  std::shared_ptr<HostState> state_;
  std::string language_;
  std::string file_;
};

}  // namespace tavcc
