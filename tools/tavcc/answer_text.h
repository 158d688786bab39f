// The answer of a call, as a person or a program reads it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scenario/json.h"
#include "tavcc/answer.h"

namespace tavcc {

// What made a call fail: the error, and the statement it came from or the last one before it. Lines
// behind two blanks; empty for a call that did not fail.
std::string FailureText(const Answer& answer);

// The verdict, the result or the error, and the in/out arguments, a line for each.
std::string AnswerText(const ClassDescription& cls, const Method& method, const Answer& answer);

// The same as an object; a refusal has its name from the catalogue. With `statements`, what was
// sent.
Json AnswerJson(const Method& method, const Answer& answer, bool statements);

// The outcomes in a batch audit's BillInfo, bill by bill; and each on a line of its own.
std::vector<std::string> BillLines(std::string_view bill_info);
std::string LinePerBill(std::string_view bill_info, std::string_view indent);

// The name of the refusal that a message tells of; empty where it is in no catalogue.
std::string RefusalName(std::string_view message);

}  // namespace tavcc
