#include "decisions/table.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "support/source_dir.h"

namespace tavcc::testing {

DecisionTable ReadDecisionTable(const std::string& name) {
  const std::string file = (SourceDir() / "tests/decisions" / (name + ".txt")).string();
  std::ifstream in(file);
  if (!in) throw std::runtime_error(file + ": cannot be read");
  DecisionTable table;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    std::istringstream words(line.substr(0, line.find('#')));
    std::vector<std::string> row;
    for (std::string word; words >> word;) row.push_back(word);
    if (row.empty()) continue;
    if (table.head.empty()) {
      table.head = row;
      continue;
    }
    if (row.size() != table.head.size()) {
      throw std::runtime_error(file + ":" + std::to_string(number) + ": " +
                               std::to_string(row.size()) + " columns, but the head has " +
                               std::to_string(table.head.size()));
    }
    table.rows.push_back(row);
  }
  if (table.rows.empty()) throw std::runtime_error(file + ": no rows");
  return table;
}

}  // namespace tavcc::testing
