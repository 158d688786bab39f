// The host as its components are on Windows: created by ProgID, called late-bound.
#pragma once

#include <memory>
#include <optional>

#include "automation/objects.h"
#include "foundation/host.h"

namespace tavcc::automation {

// The dictionary that the host publishes, over a pointer that is only borrowed: no reference is
// taken and none is given back.
class BorrowedDictionary final : public LateBoundDictionary {
 public:
  explicit BorrowedDictionary(IDispatch* object) : late_(LateBound::Borrow(object)) {}
  ~BorrowedDictionary() override { late_.Forget(); }
  BorrowedDictionary(const BorrowedDictionary&) = delete;
  BorrowedDictionary& operator=(const BorrowedDictionary&) = delete;

 private:
  const LateBound& late() const override { return late_; }

  LateBound late_;
};

// One for each object of the library. Everything is created at the moment of use; what is to be
// kept, the host services and the apartment keep.
class ComHost final : public Host {
 public:
  std::shared_ptr<DbContext> NewDbContext() override;
  std::unique_ptr<ApplicationConnection> NewApplicationConnection() override;
  std::unique_ptr<ClassInfo> NewClassInfo() override;
  std::unique_ptr<SystemProfile> NewSystemProfile() override;
  std::unique_ptr<ErrorChecker> NewErrorChecker() override;
  std::unique_ptr<DataService> NewDataService() override;
  std::shared_ptr<GLData> NewGLData() override;
  std::shared_ptr<ResourceLoader> NewResourceLoader() override;
  DictionaryPtr NewDictionary() override;
  VectorPtr NewVector() override;
  Dictionary* PublishedValues() override;
  std::string FieldText(const Value& value) override;
  std::string FormatPlaceholders(std::string_view text, std::span<const Value> values) override;

 private:
  std::optional<BorrowedDictionary> published_;
};

}  // namespace tavcc::automation
