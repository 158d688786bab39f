// What the commands print: values and rows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/recordset.h"
#include "registry/bilingual.h"
#include "scenario/json.h"
#include "scenario/values.h"

namespace tavcc {

// Writes the text to standard output, all of it, now. What is no UTF-8 in it is written as U+FFFD.
// Errors: CommandError "the output cannot be written: …".
void Print(std::string_view text);

// The same to standard error, where what cannot be written is lost: it is aside from any verdict.
void PrintAside(std::string_view text);

// Of the two texts the one in the language of the process.
std::string InLanguage(const Bilingual& text);

// A value on one line: NULL, dates as YYYY-MM-DD HH:MM:SS, Booleans as True and False.
std::string ValueText(const Value& value);
std::vector<std::string> ValueTexts(const std::vector<Value>& values);

// A value as a cell of a table: on one line, whatever is in it, and a text is never taken for NULL:
// control characters are shown as Unicode's pictures of them, and the text "NULL" in quotes.
std::string TableCell(const Value& value);

// The same as ValueText, with a decimal's zeros behind the point left out.
std::string PlainText(const Value& value);

// "error 208: Invalid object name 'x'."
std::string ErrorText(const AutomationError& error);

// The names of the columns.
std::vector<std::string> FieldNames(const Recordset& rows);

// All rows with their header, each line behind `indent`; "(no rows)" where there is none.
std::string RowsText(Recordset& rows, std::string_view indent = "");

// A value as every command prints it in JSON: decimals are numbers with all their digits.
Json ValueJson(const Value& value);
Json RowsJson(Recordset& rows, RowForm form);
Json RowsJson(const std::vector<std::vector<Value>>& rows);

}  // namespace tavcc
