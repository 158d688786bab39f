// The table of dictionary keys, against what every call of every scenario reads and writes.
#include "registry/dictionary_keys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "foundation/dictionary.h"
#include "foundation/text.h"
#include "foundation/vector.h"
#include "host/host_dictionary.h"
#include "host/host_vector.h"
#include "host_calls/watched_backend.h"

namespace tavcc::testing {
namespace {

// "AuditBill.billVect.ClassTypeID": a vector's elements stand under the vector's own name.
using Path = std::vector<std::string>;

struct Uses {
  std::set<Path> read;
  std::set<Path> written;
};

Path Below(Path path, std::string_view key) {
  path.emplace_back(key);
  return path;
}

Value Noted(const Value& value, const Path& path, Uses& uses);
Value Plain(const Value& value);

// A dictionary that writes down which keys are asked for, and so do those inside it.
class NotedDictionary final : public Dictionary {
 public:
  NotedDictionary(DictionaryPtr inner, Path path, Uses& uses)
      : inner_(std::move(inner)), path_(std::move(path)), uses_(uses) {}

  Value Item(std::string_view key) const override {
    uses_.read.insert(Below(path_, key));
    return Noted(inner_->Item(key), Below(path_, key), uses_);
  }
  void SetItem(std::string_view key, Value value) override {
    uses_.written.insert(Below(path_, key));
    inner_->SetItem(key, Plain(value));
  }
  Value ItemOr(std::string_view key, Value fallback) const override {
    uses_.read.insert(Below(path_, key));
    return inner_->ItemOr(key, std::move(fallback));
  }
  bool Lookup(std::string_view key) const override {
    uses_.read.insert(Below(path_, key));
    return inner_->Lookup(key);
  }
  const DictionaryPtr& inner() const { return inner_; }

 private:
  const DictionaryPtr inner_;
  const Path path_;
  Uses& uses_;
};

class NotedVector final : public Vector {
 public:
  NotedVector(VectorPtr inner, Path path, Uses& uses)
      : inner_(std::move(inner)), path_(std::move(path)), uses_(uses) {}

  int Size() const override { return inner_->Size(); }
  int LBound() const override { return inner_->LBound(); }
  int UBound() const override { return inner_->UBound(); }
  Value Item(int index) const override { return Noted(inner_->Item(index), path_, uses_); }
  void Add(Value value) override { inner_->Add(Plain(value)); }
  const VectorPtr& inner() const { return inner_; }

 private:
  const VectorPtr inner_;
  const Path path_;
  Uses& uses_;
};

Value Noted(const Value& value, const Path& path, Uses& uses) {
  if (!value.IsObject()) return value;
  if (const auto dictionary = std::dynamic_pointer_cast<Dictionary>(value.object())) {
    return std::make_shared<NotedDictionary>(dictionary, path, uses);
  }
  if (const auto vector = std::dynamic_pointer_cast<Vector>(value.object())) {
    return std::make_shared<NotedVector>(vector, path, uses);
  }
  return value;
}

Value Plain(const Value& value) {
  if (!value.IsObject()) return value;
  if (const auto noted = std::dynamic_pointer_cast<NotedDictionary>(value.object())) {
    return noted->inner();
  }
  if (const auto noted = std::dynamic_pointer_cast<NotedVector>(value.object())) {
    return noted->inner();
  }
  return value;
}

// What a method made itself and gave back was written by it.
void NoteMade(const Value& value, const Path& path, Uses& uses) {
  if (!value.IsObject()) return;
  if (const auto* made = dynamic_cast<const HostDictionary*>(value.object().get())) {
    for (const auto& [key, item] : made->entries()) {
      uses.written.insert(Below(path, key));
      NoteMade(item, Below(path, key), uses);
    }
  } else if (const auto* list = dynamic_cast<const HostVector*>(value.object().get())) {
    for (int i = 1; i <= list->Size(); ++i) NoteMade(list->Item(i), path, uses);
  }
}

Uses RunAndNote() {
  Uses uses;
  RunAllScenarios([&](const ClassDescription& cls, const Method& method,
                      std::vector<Value>& arguments, Connection&, const auto& call) {
    const std::string name = Cat(cls.name, ".", method.name);
    std::vector<Value> given = arguments;
    for (size_t i = 0; i < given.size(); ++i) {
      given[i] = Noted(given[i], {name, std::string(method.parameters[i].name)}, uses);
    }
    const auto give_back = [&] {
      for (size_t i = 0; i < given.size(); ++i) {
        arguments[i] = Plain(given[i]);
        if (!method.parameters[i].in_out || arguments[i] != given[i]) continue;
        NoteMade(given[i], {name, std::string(method.parameters[i].name)}, uses);
      }
    };
    try {
      Value result = call(given);
      give_back();
      return result;
    } catch (const AutomationError&) {
      give_back();
      throw;
    }
  });
  return uses;
}

// The row that a path leads to, and the path as the table spells it; null where there is no row.
const DictionaryKey* RowOf(std::span<const DictionaryKey> keys, const Path& path, Path& spelt) {
  const DictionaryKey* row = nullptr;
  for (size_t i = 2; i < path.size(); ++i) {
    row = FindKey(keys, path[i]);
    if (row == nullptr) row = AnyKey(keys);
    if (row == nullptr) return nullptr;
    spelt.emplace_back(row->name);
    keys = row->keys;
  }
  return row;
}

std::string Text(const Path& path) {
  std::string text;
  for (const std::string& part : path) CatTo(text, text.empty() ? "" : ".", part);
  return text;
}

std::span<const DictionaryKey> KeysAt(const Path& path) {
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      if (Cat(cls.name, ".", method.name) != path[0]) continue;
      for (const Parameter& parameter : method.parameters) {
        if (parameter.name == path[1]) return KeysOf(cls, method, parameter);
      }
    }
  }
  return {};
}

// Each row below the keys, with its path.
void ForEachRow(std::span<const DictionaryKey> keys, const Path& path,
                const std::function<void(const DictionaryKey& row, const Path& path)>& see) {
  for (const DictionaryKey& key : keys) {
    const Path below = Below(path, key.name);
    see(key, below);
    ForEachRow(key.keys, below, see);
  }
}

TEST(DictionaryKeys, AreThoseThatTheMethodsReadAndWrite) {
  const Uses uses = RunAndNote();
  std::set<Path> read;
  std::set<Path> written;
  for (const Path& path : uses.read) {
    Path spelt{path[0], path[1]};
    EXPECT_NE(RowOf(KeysAt(path), path, spelt), nullptr) << Text(path) << " is read: no row";
    read.insert(spelt);
  }
  for (const Path& path : uses.written) {
    Path spelt{path[0], path[1]};
    EXPECT_NE(RowOf(KeysAt(path), path, spelt), nullptr) << Text(path) << " is written: no row";
    written.insert(spelt);
  }
  int rows = 0;
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      for (const Parameter& parameter : method.parameters) {
        const Path path{Cat(cls.name, ".", method.name), std::string(parameter.name)};
        ForEachRow(KeysOf(cls, method, parameter), path,
                   [&](const DictionaryKey& row, const Path& at) {
                     ++rows;
                     const auto& expected = row.use == KeyUse::kWritten ? written : read;
                     EXPECT_TRUE(expected.contains(at)) << Text(at) << ": no scenario uses it";
                   });
      }
    }
  }
  EXPECT_GT(rows, 100);
}

TEST(DictionaryKeys, StandUnderParametersThatHoldThem) {
  for (const DictionaryRow& row : DictionaryRows()) {
    SCOPED_TRACE(Cat(row.cls, ".", row.method, " ", row.parameter));
    const ClassDescription* const cls = FindClass(row.cls);
    ASSERT_NE(cls, nullptr);
    const Method* const method = FindMethod(*cls, row.method);
    ASSERT_NE(method, nullptr);
    const auto held = std::ranges::find(method->parameters, row.parameter, &Parameter::name);
    ASSERT_NE(held, method->parameters.end());
    EXPECT_EQ(KeysOf(*cls, *method, *held).data(), row.keys.data());
    EXPECT_TRUE(held->type == ArgumentType::kDictionary || held->type == ArgumentType::kVector ||
                held->type == ArgumentType::kObject);
  }
}

}  // namespace
}  // namespace tavcc::testing
