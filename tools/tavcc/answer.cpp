#include "tavcc/answer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "foundation/conversions.h"
#include "foundation/plug_in.h"
#include "host/host_dictionary.h"
#include "host/logged_call.h"
#include "language/language.h"
#include "tavcc/record.h"

namespace tavcc {
namespace {

constexpr int32_t kTrappedError = -1;
constexpr int32_t kHookRefused = -5;

// Methods whose number is a verdict. They do not agree on which number lets a bill pass.
struct CodeVerdict {
  std::string_view method;
  int32_t passes;
};
constexpr CodeVerdict kCodeVerdicts[] = {
    {"AuditBill", 1},         {"VerifyDataBeforeAudit", 1}, {"VerifyUnCheckForSelf", 1},
    {"CheckItemStockNum", 1}, {"CheckCredit", 0},           {"CheckUnCheckAmountOutOfDate", 0},
    {"CheckLimitPrice", 0},   {"SteelCheckLimitPrice", 0},  {"WhetherBillInvoiceStatus", 0},
};

// True here says that items were found, not that a bill may go on.
constexpr std::string_view kBooleanQuestions[] = {"CheckNegPrice"};

constexpr std::string_view kMethodWithVerdictInWords = "CheckBill";
constexpr std::string_view kWordOfSuccess = "成功";
constexpr std::string_view kMethodWithErrorAsResult = "UpdateBal";

Exit VerdictOfBoolean(const Method& method, bool result) {
  const bool question = std::find(std::begin(kBooleanQuestions), std::end(kBooleanQuestions),
                                  method.name) != std::end(kBooleanQuestions);
  if (question) return result ? Exit::kRefused : Exit::kPassed;
  return result ? Exit::kPassed : Exit::kRefused;
}

Exit VerdictOfCode(const Method& method, int32_t result) {
  for (const CodeVerdict& verdict : kCodeVerdicts) {
    if (verdict.method != method.name) continue;
    if (result == kTrappedError) return Exit::kFailed;
    return result == verdict.passes ? Exit::kPassed : Exit::kRefused;
  }
  return Exit::kPassed;
}

Exit VerdictInWords(const Method& method, std::span<const Value> arguments) {
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    const Parameter& parameter = method.parameters[i];
    if (!parameter.in_out || !arguments[i].IsText()) continue;
    return arguments[i].text().find(kWordOfSuccess) != std::string::npos ? Exit::kPassed
                                                                         : Exit::kRefused;
  }
  return Exit::kPassed;
}

std::string MessageOfBatch(const HostDictionary& results) {
  for (const char* const key : {"ErrorMsg", "BillInfo"}) {
    const Value text = results.ItemOr(key, "");
    if (text.IsText() && !text.text().empty()) return text.text();
  }
  return "";
}

std::string MessageIn(const Value& argument) {
  if (argument.IsText()) return argument.text();
  if (!argument.IsObject()) return "";
  const auto* const results = dynamic_cast<const HostDictionary*>(argument.object().get());
  return results == nullptr ? "" : MessageOfBatch(*results);
}

// The registry's own errors, raised before the method runs, have no answer to show.
bool IsErrorOfCaller(const AutomationError& error) {
  return dynamic_cast<const ArgumentError*>(&error) != nullptr ||
         error.number() == static_cast<int32_t>(RuntimeError::kMemberNotFound) ||
         error.number() == static_cast<int32_t>(RuntimeError::kArgumentNotOptional);
}

}  // namespace

HostTransaction::HostTransaction(Erp& erp, bool only_reads) : erp_(erp), only_reads_(only_reads) {
  if (only_reads_) {
    erp_.BeginReading();
  } else {
    erp_.BeginTransaction();
  }
}

HostTransaction::~HostTransaction() {
  if (ended_) return;
  try {
    erp_.Rollback();
  } catch (const AutomationError&) {
    // The database undoes by itself what is not committed when it is closed.
  }
}

void HostTransaction::Keep() {
  if (only_reads_) return;
  ended_ = true;
  try {
    erp_.Commit();
  } catch (const AutomationError& error) {
    throw AutomationError(
        error.number(), error.source(),
        Say("{} (while the call was being kept: look whether it was)", error.description()));
  }
}

Answer CalledObject::Call(const Method& method, std::vector<Value> arguments,
                          const StatementObserver& observer) {
  Answer answer;
  answer.arguments = std::move(arguments);
  if (recorder_ != nullptr) recorder_->Begin(cls_, method, answer.arguments);
  LoggedCall call(erp_.log(), observer);
  try {
    if (object_ == nullptr) object_ = std::make_unique<PlugIn>(erp_.host());
    answer.result = Invoke(cls_, method, *object_, answer.arguments);
    answer.verdict = VerdictOf(method, answer.result, answer.arguments);
  } catch (const AutomationError& error) {
    if (IsErrorOfCaller(error)) throw;
    answer.error = error;
    answer.verdict = VerdictOf(method, error);
  }
  call.End();
  answer.statements = erp_.log().statements();
  answer.failure = call.failure();
  if (answer.failure) answer.verdict = Exit::kFailed;
  if (recorder_ != nullptr) recorder_->End(answer);
  return answer;
}

Answer CallInTransaction(Erp& erp, const ClassDescription& cls, const Method& method,
                         std::vector<Value> arguments, const StatementObserver& observer,
                         const AnswerPrinter& print) {
  HostTransaction transaction(erp, !method.writes);
  Answer answer = CalledObject(erp, cls).Call(method, std::move(arguments), observer);
  if (print) print(answer);
  if (answer.verdict != Exit::kFailed) transaction.Keep();
  return answer;
}

Exit VerdictOf(const Method& method, const Value& result, std::span<const Value> arguments) {
  if (method.name == kMethodWithVerdictInWords) return VerdictInWords(method, arguments);
  switch (method.result) {
    case ArgumentType::kBoolean:
      return VerdictOfBoolean(method, ToBoolean(result));
    case ArgumentType::kInteger:
    case ArgumentType::kLong:
      return VerdictOfCode(method, ToLong(result));
    case ArgumentType::kText:
      if (method.name != kMethodWithErrorAsResult) return Exit::kPassed;
      return ToText(result).empty() ? Exit::kPassed : Exit::kFailed;
    default:
      return Exit::kPassed;
  }
}

Exit VerdictOf(const Method& method, const AutomationError& error) {
  const bool refusal = method.name == "BeforeDel" && error.number() == kHookRefused;
  return refusal ? Exit::kRefused : Exit::kFailed;
}

std::string MessageOf(const Method& method, std::span<const Value> arguments) {
  for (size_t i = 0; i < method.parameters.size(); ++i) {
    if (!method.parameters[i].in_out) continue;
    if (std::string message = MessageIn(arguments[i]); !message.empty()) return message;
  }
  return "";
}

const char* VerdictText(Exit verdict) {
  switch (verdict) {
    case Exit::kPassed:
      return Translatable("passed");
    case Exit::kRefused:
      return Translatable("refused");
    case Exit::kFailed:
      return Translatable("failed");
  }
  return "";
}

}  // namespace tavcc
