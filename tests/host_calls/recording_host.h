// A host that writes down, in one list, whatever the library asks of it and of the objects that it
// hands out; another host does the work.
//
//   context, bind, user     a context from the global object, its database, its user
//   first, second           the readying members
//   connection              the context's connection; sql, client sql, procedure, errors, state and
//                           close are what is done with it
//   run, first value        a statement by connection string
//   setting C.K, cached C.K a setting, by connection string or of the cached reader
//   rights C F              the right on a bill F of class type C
//   is error                the question whether an error of the connection is one
//   text                    a text of the resource loader
//   published               the dictionary that the host publishes
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host.h"

namespace tavcc::testing {

struct HostCalls {
  std::vector<std::string> list;
  // Given, the head that a stock-check bill reads has this field FBillNo, which its statement does
  // not select.
  std::string bill_no;

  void Add(std::string call) { list.push_back(std::move(call)); }
};

class RecordingHost final : public Host {
 public:
  // `host` must outlive this one and all that it hands out, and so must `calls`.
  RecordingHost(Host& host, HostCalls& calls) : host_(host), calls_(calls) {}

  std::shared_ptr<DbContext> NewDbContext() override;
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override;
  std::unique_ptr<ErrorChecker> NewErrorChecker() override;
  std::unique_ptr<DataService> NewDataService() override;
  std::shared_ptr<GLData> NewGLData() override;
  std::shared_ptr<ResourceLoader> NewResourceLoader() override;
  DictionaryPtr NewDictionary() override { return host_.NewDictionary(); }
  VectorPtr NewVector() override { return host_.NewVector(); }
  Dictionary* PublishedValues() override;
  std::string FieldText(const Value& value) override { return host_.FieldText(value); }
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override {
    return host_.FormatPlaceholders(text, values);
  }

 private:
  Host& host_;
  HostCalls& calls_;
};

// The connection with the list before it.
ConnectionPtr RecordCalls(ConnectionPtr connection, HostCalls& calls);

// The dictionary with the list before it: "read KEY" and "store KEY".
DictionaryPtr RecordCalls(DictionaryPtr dictionary, HostCalls& calls);

}  // namespace tavcc::testing
