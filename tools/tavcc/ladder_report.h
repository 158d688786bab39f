// What a ladder came to, gate by gate, as data; and how it is shown.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/statement_log.h"
#include "registry/refusals.h"
#include "scenario/json.h"

namespace tavcc {

// A system setting that a gate read; without a value where the database has none.
struct ReadSetting {
  std::string category;
  std::string key;
  std::optional<std::string> value;

  friend bool operator==(const ReadSetting&, const ReadSetting&) = default;
};

// Adds it where it is not among them.
void AddSetting(std::vector<ReadSetting>& settings, ReadSetting setting);

// The settings that were read while the gate was asked; values published for the process are told
// under "published".
std::vector<ReadSetting> SettingsOf(const std::vector<HostAnswer>& answers, std::string_view gate);

// What a row says about a refusal: labels and values, e.g. line 1, item "03.001 内胎".
using Reason = std::vector<std::pair<std::string, std::string>>;

// The rows of an answer.
struct ShownRows {
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> rows;
  bool whole = true;  // whether these are all of them
  bool none = false;  // whether it was seen that there is none
};

struct Rung {
  enum class Answer { kPassed, kRefused, kFailed, kNotAsked };

  std::string gate;
  std::string method;  // "Class.Method"
  Answer answer = Answer::kPassed;
  std::string message;                // the reason of a refusal, the error of a failure
  const Refusal* refusal = nullptr;   // of the catalogue; null where it is in no row
  std::string place;                  // "src/checks/credit.cpp:113"; empty where none is known
  std::vector<ReadSetting> settings;  // in the order in which they were read
  // The statement that decided: the last that answered with rows, or the one that failed.
  std::optional<LoggedStatement> statement;
  ShownRows rows;  // its rows
  std::vector<Reason> reasons;
};

// Those that a rule saw.
ShownRows Shown(const SeenRows& seen);

// "passed", "refused", "failed", "not asked".
const char* AnswerText(Rung::Answer answer);

// A line for each gate that was asked, and for a refused or failed one what there is to tell.
// `everything` tells it of the passed ones too, and names the gates that were not asked.
std::string LadderText(const std::vector<Rung>& ladder, bool everything);

// Refused or failed.
bool IsStopped(const Rung& rung);

// A gate that a setting switches off is worth a line, one that is for other bills is not.
bool IsShown(const Rung& rung, bool everything);

// "line 1, item 03.001 内胎"
std::string ReasonText(const Reason& reason);

// "IC/UnderStock = 0", "IC/UnderStock is not set"
std::string SettingText(const ReadSetting& setting);

// Name, cause and remedy in both languages.
Json RefusalJson(const Refusal& refusal);

Json LadderJson(const std::vector<Rung>& ladder);

}  // namespace tavcc
