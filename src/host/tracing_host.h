// A host before another one: what the library sends to the database through it is written into a
// log. All else is the other host's.
//
// For a host whose connections are not ours, as the ERP's own; the reference host has its log
// inside. What such a host answers beside statements its components tell the thread's watch
// (foundation/rule_watch.h): some of them are kept for the thread and outlive any log.
#pragma once

#include <memory>
#include <string>

#include "foundation/host.h"
#include "host/statement_log.h"

namespace tavcc {

class TracingHost final : public Host {
 public:
  // `host` and `log` must outlive this one and all that it hands out.
  TracingHost(Host& host, StatementLog& log) : host_(host), log_(log) {}

  std::shared_ptr<DbContext> NewDbContext() override;
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override { return host_.NewSystemProfile(); }
  std::unique_ptr<ErrorChecker> NewErrorChecker() override { return host_.NewErrorChecker(); }
  std::unique_ptr<DataService> NewDataService() override { return host_.NewDataService(); }
  std::shared_ptr<GLData> NewGLData() override { return host_.NewGLData(); }
  std::shared_ptr<ResourceLoader> NewResourceLoader() override { return host_.NewResourceLoader(); }
  DictionaryPtr NewDictionary() override { return host_.NewDictionary(); }
  VectorPtr NewVector() override { return host_.NewVector(); }
  Dictionary* PublishedValues() override { return host_.PublishedValues(); }
  std::string FieldText(const Value& value) override { return host_.FieldText(value); }
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override {
    return host_.FormatPlaceholders(text, values);
  }

 private:
  Host& host_;
  StatementLog& log_;
};

}  // namespace tavcc
