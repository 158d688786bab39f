// Rows of a database before and after something was done: what of them differs.
#pragma once

#include <string>
#include <vector>

#include "foundation/connection.h"

namespace tavcc {

struct ChangeTable {
  struct Row {
    std::vector<Value> key;
    std::vector<Value> before;  // empty where the row is new
    std::vector<Value> after;   // empty where the row is gone
  };
  std::string title;
  std::vector<std::string> key_columns;
  std::vector<std::string> value_columns;
  bool amounts = true;  // whether the values are amounts, which a picture may set side by side
  std::vector<Row> rows;
};

// What is looked at: a query whose columns are the key's, then the values'.
struct WatchedRows {
  std::string title;
  std::vector<std::string> key_columns;
  std::vector<std::string> value_columns;
  std::string query;
  bool amounts = true;
};

// The stock on hand, by item, stock, batch and property; of the items that the query answers with,
// or of all where it is empty.
WatchedRows StockRows(const std::string& items);

// Looks at rows when it is made, and again when it is asked. Errors: the database's.
class RowComparison {
 public:
  RowComparison(Connection& cn, WatchedRows watched);
  // The rows that differ from those at the beginning.
  ChangeTable Changes(Connection& cn) const;

 private:
  WatchedRows watched_;
  ChangeTable before_;
};

// A key or a value as a person reads it: nothing for NULL, no zeros behind a point.
std::string CellText(const Value& value);
std::vector<std::string> CellTexts(const std::vector<Value>& values);

// The table as texts: the key's columns, then a column for each value, with "before → after" where
// it differs.
std::vector<std::string> ChangeHeader(const ChangeTable& table);
std::vector<std::vector<std::string>> ChangeRows(const ChangeTable& table);

}  // namespace tavcc
