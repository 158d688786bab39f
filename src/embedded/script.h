// Scripts: batches separated by lines that hold only the word GO, as the server's own tools read
// them. Usable with any database that runs batches.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tavcc::sql {

// What parts words in a script, and a text without it at both ends.
inline constexpr std::string_view kBlanks = " \t\r\n\f\v";
std::string_view WithoutBlanks(std::string_view text);

struct ScriptBatch {
  std::string_view text;  // of the script
  int line = 1;           // on which it starts, from 1
  int times = 1;          // how often it is to run
};

// The batches in order, without those that hold blanks only.
std::vector<ScriptBatch> SplitScript(std::string_view script);

// Reads a script line by line, and knows whether a line stands in a quotation or a comment that
// began on an earlier one: the word GO ends no batch there.
class ScriptLines {
 public:
  // Whether the next line begins outside of all.
  bool IsOutside() const { return closing_ == 0 && comments_ == 0; }
  // Reads the next line, and answers where in it a variable of the tools, "$(…", begins outside of
  // comments.
  std::vector<size_t> Read(std::string_view line);
  // A batch has ended: the next line begins outside of all.
  void Reset() { *this = ScriptLines(); }

 private:
  size_t ReadComment(std::string_view line, size_t at);
  size_t ReadQuotation(std::string_view line, size_t at, std::vector<size_t>& variables);

  char closing_ = 0;  // the mark that ends the quotation; 0 outside of one
  int comments_ = 0;  // open ones, which nest
};

// How often the batch before it is to run, if the line ends one: 1 for "GO", 3 for "go 3". 0 where
// a count is asked for that is none.
std::optional<int> BatchEnd(std::string_view line);

}  // namespace tavcc::sql
