// The rows that a call is about to touch, read before it touches them: the start state of a case
// that runs on the embedded database.
//
// A table is read when the first statement that names it, itself or through a view or a procedure,
// is about to be sent: nothing that is recorded has changed it by then. A small table is read
// whole. Of a large one those rows are read to which a number or text leads that the case knows by
// then: what stands in its statements, and what it was answered. What thousands of rows have in a
// column, as the class of their bills, leads to none of them.
//
// A join needs no more than the bill's id to come to its items and their stock. So the ids in rows
// to which the case leads are followed as well, one step far, and only as long as they lead to few
// rows.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/erp.h"

namespace tavcc {

struct TouchedTable {
  std::string name;
  std::vector<std::string> columns;  // those that the ERP schema has
  std::vector<std::vector<Value>> rows;
};

class TouchedRows {
 public:
  explicit TouchedRows(Erp& erp);

  // A statement is about to be sent. Errors: the database's; CommandError where a table has too
  // many rows that may matter.
  void Look(const LoggedStatement& statement);
  // The statement was answered.
  void Note(const LoggedStatement& statement);

  const std::vector<TouchedTable>& tables() const { return tables_; }

 private:
  struct Known {
    std::set<std::string> numbers, texts;

    // A value that may be a key; others lead nowhere.
    void Add(const Value& value);
    // What keys of the column are looked for among.
    const std::set<std::string>& KeysOf(std::string_view column) const;
    // What `earlier` lacks; it has all of this afterwards.
    Known TakeNew(Known& earlier) const;
  };
  // By column, the values whose rows are read.
  using Leads = std::map<std::string, std::set<std::string, CaselessLess>>;
  struct Reading {
    size_t table;       // of tables_
    bool whole = true;  // nothing more is to be read
    int joined = 0;     // rows that only a join leads to
    Known looked_for, joins_looked_for;
    Leads read;
  };

  void AddTable(Connection& schema, const std::string& name);
  void AddBehind(const std::string& name, const std::vector<std::string>& words);
  void Read(const std::string& name);
  void ReadMore(Reading& reading);
  void ReadJoined(Reading& reading);
  // What of `keys` leads to rows of the table.
  Leads LeadsTo(const std::string& table, const Known& keys);
  // Rows of the table as they are now, `most` and one more at most.
  std::vector<std::vector<Value>> Rows(TouchedTable& table, const Leads& leads, int most);
  // Adds those that were not read before.
  int Add(Reading& reading, std::vector<std::vector<Value>> rows, const Leads& leads);
  void FollowRow(const TouchedTable& table, const std::vector<Value>& row);
  // The rows of a table that was read whole to which something leads that is new.
  void FollowWhole(Reading& reading);
  bool WasRead(const Reading& reading, const std::vector<Value>& row) const;
  RecordsetPtr Ask(const std::string& sql);

  Erp& erp_;
  std::map<std::string, std::vector<std::string>, CaselessLess> columns_;  // by table of the schema
  // By view or procedure, what it reads and writes.
  std::map<std::string, std::set<std::string, CaselessLess>, CaselessLess> behind_;
  std::map<std::string, Reading, CaselessLess> readings_;
  std::vector<TouchedTable> tables_;
  Known known_;
  Known joined_;  // what stands in rows to which known_ leads
};

}  // namespace tavcc
