// Masks in a recorded case: the values of chosen columns, so that names stay where they belong.
//
// The same value has the same mask wherever it stands: in the rows of any column, in dictionaries,
// in messages, and inside the quotes of a statement. A mask has as many characters as its value.
// Only texts are masked: rules calculate with numbers and dates.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/json.h"

namespace tavcc {

class Masks {
 public:
  // `columns` are compared without regard to letter case.
  explicit Masks(std::vector<std::string> columns);

  // Finds the values to mask: in the answers of tapes, in dictionaries and rows of arguments and
  // results.
  void Learn(const Json& scenario);
  // In a row of a table.
  void Learn(std::string_view column, const Json& value);

  // Errors: JsonError where a column is in nothing that was learnt, or holds something that cannot
  // be masked.
  void Settle(std::string_view texts);

  // The scenario with masks. Errors: JsonError, naming the place, where a value is left.
  Json Apply(const Json& scenario) const;

  // What a reader should know: statements that read a masked column under another name.
  std::vector<std::string> Notes(const Json& scenario) const;

 private:
  bool IsMasked(std::string_view column) const;
  void LearnTape(const Json& tape);
  void LearnKeys(const Json& json);
  Json Replaced(const Json& json, std::string_view key, const std::string& place) const;
  std::string InText(const std::string& text) const;
  std::string InStatement(const std::string& sql, const std::string& place) const;

  const std::vector<std::string> columns_;
  std::vector<std::string> seen_;             // names of columns and keys
  std::vector<std::string> found_;            // of columns_
  std::map<std::string, std::string> masks_;  // by value
  std::vector<std::string> longest_first_;    // values
};

}  // namespace tavcc
