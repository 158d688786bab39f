// The reference host's loader of translated texts.
#include "host/resource_loader.h"

namespace tavcc {

std::string HostResourceLoader::LoadString(std::string_view key) {
  const auto& resources = state_->settings.resources;
  const auto table = resources.find(language_);
  if (file_.empty() || table == resources.end()) return std::string(key);
  const auto text = table->second.find(std::string(key));
  return text == table->second.end() ? std::string(key) : text->second;
}

}  // namespace tavcc
