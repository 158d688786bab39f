// Port: a session that shows all of a batch, for those who work with batches themselves. A rule's
// Connection knows the first result and the first error, and no more is asked of it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/connection.h"

namespace tavcc {

// What the server says beside its rows: an error, a warning, the text of a PRINT. Drivers keep some
// of it to themselves.
struct BatchMessage {
  bool is_error = false;
  int32_t number = 0;          // the server's, e.g. 208; 0 for a PRINT
  int severity = 0;            // of an error, 0 where it is not known
  int state = 0;               // likewise
  int line = 0;                // of the batch or the procedure, from 1; likewise
  std::string procedure = {};  // in which it arose; empty for the batch itself
  std::string text = {};
  // The text of an EXEC('…') in which it arose, whose line it is; empty for the batch itself, and
  // not set where the session does not know.
  std::optional<std::string> executed = {};
};

// Gets what a batch gives, at the time at which it comes and in the order of the server.
class BatchReader {
 public:
  virtual ~BatchReader() = default;

  // A result: its columns, its rows, its end. A result that an error cuts short has an end too.
  virtual void BeginRows(const std::vector<std::string>& columns) = 0;
  // The reader may take the values.
  virtual void Row(std::span<Value> values) = 0;
  virtual void EndRows() = 0;
  // How many rows the statement returned or changed; not called where SET NOCOUNT is ON.
  virtual void RowCount(int64_t rows) = 0;
  virtual void Message(const BatchMessage& message) = 0;

 protected:
  BatchReader() = default;
  BatchReader(const BatchReader&) = default;
  BatchReader& operator=(const BatchReader&) = default;
};

// What a database holds.
struct SchemaObject {
  enum class Kind { kTable, kView, kProcedure };
  Kind kind = Kind::kTable;
  std::string name;
};

class BatchSession : public Connection {
 public:
  // Runs a batch to its end. Its errors are messages for the reader, the loss of the connection
  // among them, after which the session is closed. False when Interrupt ended it: then the reader
  // hears nothing of that, what its statements did before stays done, and a transaction stays open.
  // Errors: 3704 when the session is closed; what the reader throws, which closes the session.
  virtual bool RunBatch(std::string_view batch, BatchReader& reader) = 0;

  // Ends the batch under way, from any thread. Harmless where none is.
  virtual void Interrupt() = 0;

  // The tables, views and procedures, by name; procedures only where the database tells of them.
  // Errors: as Execute.
  virtual std::vector<SchemaObject> Objects() = 0;
  // The columns of the table or view, in order; none where there is none. Errors: as Execute.
  virtual std::vector<std::string> Columns(std::string_view name) = 0;
  // The statement that makes the object of the name, or of a table or view at least its columns as
  // such a statement names them. Empty where there is none of the name. Errors: as Execute.
  virtual std::string Definition(std::string_view name) = 0;
};

using BatchSessionPtr = std::shared_ptr<BatchSession>;

}  // namespace tavcc
