#include "faults/contract_update.h"

#include <algorithm>
#include <map>
#include <utility>

#include "scenario/accept.h"
#include "scenario/values.h"

namespace tavcc::faults {
namespace {

// As much of a statement as a reader wants to see in a promise.
constexpr size_t kLongestPiece = 60;
constexpr size_t kShortestPiece = 12;

std::string Replaced(std::string text, const std::string& from, std::string_view to) {
  if (from.empty()) return text;
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// What speaks of the failure becomes its placeholder.
Json Templated(const Json& json, const AutomationError& failure) {
  if (json.is_string()) {
    return Replaced(json.get<std::string>(), failure.description(), "%error%");
  }
  if (!json.is_structured()) return json;
  Json result = json.is_array() ? Json::array() : Json::object();
  for (const Json& element : json) result.push_back(Templated(element, failure));
  for (const auto& [key, value] : json.items()) result[key] = Templated(value, failure);
  return result;
}

bool Keeps(const Json& promise, const Method& method, const AutomationError& failure,
           const CallOutcome& usual, const CallOutcome& outcome) {
  std::vector<std::string> differences;
  CompareWithPromise(promise, method, failure, usual, outcome, differences);
  return differences.empty();
}

// The result, and the in/out arguments that a failing call speaks in: texts, and what the promise
// that there is names.
Json ExpectedAnswer(const Json* promise, const Method& method, const CallOutcome& outcome) {
  const Json* const named = promise == nullptr ? nullptr : promise->find("expect");
  Json expect = Json::object();
  if (named != nullptr) {
    for (const auto& [name, value] : named->items()) {
      if (name == "result") expect[name] = JsonFromValue(outcome.result);
      for (size_t i = 0; i < method.parameters.size(); ++i) {
        if (method.parameters[i].name == name) {
          expect[name] = Accepted(value, outcome.arguments[i]);
        }
      }
    }
    return expect;
  }
  expect["result"] = JsonFromValue(outcome.result);
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    const Parameter& parameter = method.parameters[i];
    if (parameter.in_out && outcome.arguments[i].IsText()) {
      expect[parameter.name] = outcome.arguments[i].text();
    }
  }
  return expect;
}

// A promise without what it promises: for whom it is.
Json Condition(const Json& promise) {
  Json condition = Json::object();
  for (const char* key : {"fault", "statement", "when"}) {
    if (const Json* const value = promise.find(key)) condition[key] = *value;
  }
  return condition;
}

Json Joined(Json condition, const Json& answer) {
  for (const auto& [key, value] : answer.items()) condition[key] = value;
  return condition;
}

bool IsFault(StatementFault::Kind kind) {
  return kind == StatementFault::Kind::kLeft || kind == StatementFault::Kind::kNulls;
}

using Observed = std::vector<const Observation*>;

bool Holds(const Observation& observation, const std::string& piece) {
  return observation.statement.find(piece) != std::string::npos;
}

// A piece that all of `these` begin with and none of `others` holds; empty where there is none.
std::string PieceOf(const Observed& these, const Observed& others) {
  std::string common = these.front()->statement;
  for (const Observation* one : these) {
    size_t same = 0;
    while (same < common.size() && same < one->statement.size() &&
           common[same] == one->statement[same]) {
      ++same;
    }
    common.resize(same);
  }
  for (size_t length = kShortestPiece; length <= std::min(common.size(), kLongestPiece); ++length) {
    // Not in the middle of a character or a word.
    if (length < common.size() && (common[length] & 0xC0) == 0x80) continue;
    if (length < common.size() && std::isalnum(static_cast<unsigned char>(common[length])) != 0) {
      continue;
    }
    const std::string piece = common.substr(0, length);
    const bool alone = std::ranges::none_of(
        others, [&](const Observation* other) { return Holds(*other, piece); });
    if (alone) return piece;
  }
  return "";
}

// The faults that one promise stands for, or that no promise stands for.
class Share {
 public:
  // `kind` is that of the faults where there is no promise.
  Share(std::string method, const Json* promise, StatementFault::Kind kind)
      : method_(std::move(method)), promise_(promise), kind_(kind) {}

  void Add(const Observation& observation) {
    (observation.kept ? kept_ : broken_).push_back(&observation);
  }
  const Json* promise() const { return promise_; }
  StatementFault::Kind kind() const { return kind_; }

  // What takes the promise's place in the method's list: itself changed, or others in front of it.
  std::vector<Json> Promises(std::vector<std::string>& notes) const;

 private:
  struct Group {
    Json answer;
    Observed observed;
  };
  std::vector<Group> Groups() const;
  Observed Others(const Group& group) const;

  std::string method_;
  const Json* promise_;
  StatementFault::Kind kind_;
  Observed kept_, broken_;
};

std::vector<Share::Group> Share::Groups() const {
  std::vector<Group> groups;
  for (const Observation* one : broken_) {
    const auto same = std::ranges::find(groups, one->answer, &Group::answer);
    if (same == groups.end()) {
      groups.push_back({one->answer, {one}});
    } else {
      same->observed.push_back(one);
    }
  }
  std::ranges::stable_sort(
      groups, [](const Group& a, const Group& b) { return a.observed.size() < b.observed.size(); });
  return groups;
}

Observed Share::Others(const Group& group) const {
  Observed others = kept_;
  for (const Observation* one : broken_) {
    if (one->answer != group.answer) others.push_back(one);
  }
  return others;
}

std::vector<Json> Share::Promises(std::vector<std::string>& notes) const {
  std::vector<Json> promises;
  const Json condition = promise_ == nullptr ? Json::object() : Condition(*promise_);
  const std::vector<Group> groups = Groups();
  for (size_t i = 0; i < groups.size(); ++i) {
    const Group& group = groups[i];
    const bool rest = kept_.empty() && i + 1 == groups.size();
    Json with = condition;
    if (IsFault(group.observed.front()->kind))
      with["fault"] = FaultName(group.observed.front()->kind);
    if (rest) {
      promises.push_back(Joined(with, group.answer));
      continue;
    }
    const std::string piece = PieceOf(group.observed, Others(group));
    if (piece.empty()) {
      notes.push_back(method_ + ": a person must say when " + Show(group.answer) +
                      " is promised, e.g. for " + Show(Json(group.observed.front()->statement)));
      continue;
    }
    with["statement"] = piece;
    promises.push_back(Joined(with, group.answer));
  }
  const bool replaced = kept_.empty() && !promises.empty();
  if (promise_ != nullptr && !replaced) promises.push_back(*promise_);
  return promises;
}

bool IsOwn(const Json& contracts, const std::string& method, const Json* promise) {
  const Json* const promises = contracts.find(method);
  return promises != nullptr && promise >= promises->begin() && promise < promises->end();
}

}  // namespace

Json AnswerOf(const Json* promise, const Method& method, const AutomationError& failure,
              const CallOutcome& usual, const CallOutcome& outcome) {
  if (outcome.error) {
    Json error = {
        {"number", outcome.error->number() == failure.number() ? Json("%number%")
                                                               : Json(outcome.error->number())},
        {"source", outcome.error->source()},
        {"description", outcome.error->description()}};
    return Json{{"error", Templated(error, failure)}};
  }
  for (const char* word : {"as_usual", "goes_on"}) {
    Json answer = Json::object();
    answer[word] = true;
    const bool asked = promise != nullptr && promise->contains("expect");
    if (!asked && Keeps(answer, method, failure, usual, outcome)) return answer;
  }
  return Json{{"expect", Templated(ExpectedAnswer(promise, method, outcome), failure)}};
}

ContractUpdate Updated(const Json& contracts, const std::vector<Observation>& observations) {
  // By method, then by promise, in the order in which they were met.
  std::map<std::string, std::vector<Share>> shares;
  for (const Observation& one : observations) {
    const Json* const promise =
        PromiseFor(contracts, one.kind, one.method, one.statement, one.arguments);
    // The promises of all methods, and those about other faults, get company of the method's own.
    auto& of_method = shares[one.method];
    const auto is_for = [&](const Share& share) {
      return share.promise() == promise && (promise != nullptr || share.kind() == one.kind);
    };
    auto share = std::ranges::find_if(of_method, is_for);
    if (share == of_method.end())
      share = of_method.emplace(of_method.end(), one.method, promise, one.kind);
    share->Add(one);
  }
  ContractUpdate update{Json::object(), {}};
  for (const auto& [method, promises] : contracts.items()) update.contracts[method] = promises;
  for (const auto& [method, of_method] : shares) {
    std::vector<Json> in_front;
    Json list = Json::array();
    std::map<const Json*, std::vector<Json>> instead;
    for (const Share& share : of_method) {
      std::vector<Json> promises = share.Promises(update.notes);
      if (IsOwn(contracts, method, share.promise())) {
        instead[share.promise()] = std::move(promises);
        continue;
      }
      const bool others = share.promise() != nullptr && !promises.empty();
      if (others && promises.back() == *share.promise()) promises.pop_back();
      in_front.insert(in_front.end(), promises.begin(), promises.end());
    }
    for (const Json& promise : in_front) list.push_back(promise);
    if (const Json* const old = contracts.find(method)) {
      for (const Json& promise : *old) {
        const auto found = instead.find(&promise);
        if (found == instead.end()) {
          list.push_back(promise);
          continue;
        }
        for (const Json& one : found->second) list.push_back(one);
      }
    }
    if (!list.empty()) update.contracts[method] = list;
  }
  return update;
}

}  // namespace tavcc::faults
