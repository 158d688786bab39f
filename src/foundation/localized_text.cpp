#include "foundation/localized_text.h"

#include <algorithm>

#include "foundation/host_services.h"
#include "foundation/rule_watch.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

constexpr std::string_view kSeparator = "^|^";
constexpr std::string_view kKeyMark = "~$~";
constexpr std::string_view kResourceFile = "M8INDUSTRY";

// A loader that was just created has no language yet, so that it is replaced at once by one that
// has it and the resource file.
ResourceLoader& LoaderFor(Host& host, std::string_view language) {
  std::shared_ptr<ResourceLoader>& loader = CachedResourceLoader();
  if (loader == nullptr) loader = host.NewResourceLoader();
  if (!EqualsIgnoringCase(loader->LanguageID(), language)) {
    loader->Unload();
    loader.reset();
    loader = host.NewResourceLoader();
    loader->SetLanguageID(language);
    loader->SetResFileBaseName(kResourceFile);
  }
  return *loader;
}

std::string Translation(ResourceLoader& loader, const std::string& text,
                        std::string_view language) {
  std::string translation = loader.LoadString(text);
  if (RuleWatch* const watch = RuleWatch::OfThread()) {
    watch->HostAnswered(HostQuestion::kText, language, text, translation);
  }
  return translation;
}

}  // namespace

std::string LoadResText(Host& host, std::string_view sText, std::string_view sLanguage) {
  const PendingErrorKeeper keeper;
  const TrapWatch unwatched;  // a text without a translation is its own: nothing has failed
  std::string key(Trim(sText));
  return Trap(
      [&] {
        ResourceLoader& loader = LoaderFor(host, sLanguage);
        if (key.find(kSeparator) == std::string::npos) return Translation(loader, key, sLanguage);
        return LoadResTextParts(host, key, sLanguage);
      },
      [&](const AutomationError&) { return key; });
}

std::string LoadResTextParts(Host& host, std::string_view sText, std::string_view sLanguage) {
  std::string result;
  for (size_t begin = 0; begin <= sText.size();) {
    const size_t end = std::min(sText.find(kSeparator, begin), sText.size());
    const std::string_view piece = sText.substr(begin, end - begin);
    if (piece.starts_with(kKeyMark)) {
      result += LoadResText(host, piece.substr(kKeyMark.size()), sLanguage);
    } else {
      result += piece;
    }
    begin = end + kSeparator.size();
  }
  return result;
}

std::string LoadResTextFmt(Host& host, std::string_view sText, std::string_view sLanguage,
                           std::span<const Value> values) {
  return host.FormatPlaceholders(LoadResText(host, sText, sLanguage), values);
}

}  // namespace tavcc
