#include "tavcc/sql/batch_writer.h"

#include <fmt/core.h>

#include <utility>
#include <vector>

#include "language/language.h"
#include "tavcc/output.h"
#include "tavcc/sql/error_report.h"

namespace tavcc {
namespace {

std::string TimeText(double milliseconds) {
  return fmt::format("Time: {:.3f} ms\n", milliseconds);
}

// Messages of the severities 1 to 9 say what they are; PRINT and severity 10 are text alone.
std::string MessageText(const BatchMessage& message) {
  if (message.severity == 0 || message.severity == 10) return message.text + "\n";
  return fmt::format("Msg {}, Level {}, State {}\n{}\n", message.number, message.severity,
                     message.state, message.text);
}

// For people: rows, counts and messages; errors go aside.
class TextWriter : public BatchWriter {
 public:
  TextWriter(OutputMode mode, Outlet& outlet)
      : outlet_(outlet), rows_(MakeRowFormat(mode, outlet)) {}

  void BeginRows(const std::vector<std::string>& columns) override { rows_->Begin(columns); }
  void Row(std::span<Value> values) override { rows_->Row(values); }
  void EndRows() override {
    rows_->End();
    outlet_.Flush();
  }
  void RowCount(int64_t rows) override {
    outlet_.Write(rows == 1 ? Say("(1 row affected)\n") : Say("({} rows affected)\n", rows));
    outlet_.Flush();
  }
  void Message(const BatchMessage& message) override {
    if (message.is_error) return outlet_.WriteAside(ErrorText(message, batch()));
    outlet_.Write(MessageText(message));
    outlet_.Flush();
  }
  void Time(double milliseconds) override { outlet_.Write(TimeText(milliseconds)); }
  void Finish() override { outlet_.Finish(); }

 protected:
  Outlet& outlet_;

 private:
  const std::unique_ptr<RowFormat> rows_;
};

// For programs that read rows: all else goes aside.
class CsvWriter final : public TextWriter {
 public:
  explicit CsvWriter(Outlet& outlet) : TextWriter(OutputMode::kCsv, outlet) {}

  void RowCount(int64_t) override {}
  void Message(const BatchMessage& message) override {
    if (message.is_error) return TextWriter::Message(message);
    outlet_.WriteAside(MessageText(message));
  }
  void Time(double milliseconds) override { outlet_.WriteAside(TimeText(milliseconds)); }
};

// {"results": […]}: what came, in its order, each an object: rows, a count, a message, an error.
class JsonWriter final : public BatchWriter {
 public:
  explicit JsonWriter(Outlet& outlet) : outlet_(outlet) {}

  void BeginRows(const std::vector<std::string>& columns) override {
    Write(Next() + "{\"columns\": " + Show(Json(columns)) + ", \"rows\": [");
    in_rows_ = first_row_ = true;
  }
  void Row(std::span<Value> values) override {
    Json row = Json::array();
    for (const Value& value : values) row.push_back(ValueJson(value));
    Write((std::exchange(first_row_, false) ? "\n  " : ",\n  ") + Show(row));
  }
  void EndRows() override {
    Write("]");
    in_rows_ = false;
    open_rows_ = true;
    for (const BatchMessage& message : std::exchange(messages_, {})) Message(message);
  }
  void RowCount(int64_t rows) override {
    // Behind rows it is theirs.
    if (!std::exchange(open_rows_, false)) {
      Write(Next() + fmt::format("{{\"rows_affected\": {}}}", rows));
    } else {
      Write(fmt::format(", \"rows_affected\": {}}}", rows));
    }
  }
  void Message(const BatchMessage& message) override {
    if (in_rows_) return messages_.push_back(message);
    Json json{{"number", message.number},
              {"severity", message.severity},
              {"state", message.state},
              {"line", message.line},
              {"text", message.text}};
    if (!message.procedure.empty()) json["procedure"] = message.procedure;
    if (const auto found = message.is_error ? FindPlace(message, batch()) : std::nullopt) {
      json["place"] = found->place;
      json["source"] = found->line;
      json["column"] = static_cast<int64_t>(found->column) + 1;
    }
    Write(Next() + Show(Json{{message.is_error ? "error" : "message", std::move(json)}}));
    if (message.is_error) outlet_.WriteAside(ErrorText(message, batch()));
  }
  void Time(double milliseconds) override {
    Write(Next() + Show(Json{{"milliseconds", milliseconds}}));
  }
  void Finish() override {
    CloseRows();
    Write(first_ ? "{\"results\": []}\n" : "\n]}\n");
    first_ = true;
    outlet_.Finish();
  }

 private:
  void Write(const std::string& text) { outlet_.Write(text); }
  void CloseRows() {
    if (std::exchange(open_rows_, false)) Write("}");
  }
  // What stands before the next object.
  std::string Next() {
    CloseRows();
    return std::exchange(first_, false) ? "{\"results\": [\n " : ",\n ";
  }

  Outlet& outlet_;
  bool first_ = true;      // no object was written yet
  bool first_row_ = true;  // of the result at hand
  bool in_rows_ = false;
  bool open_rows_ = false;              // they have come to their end, their object has not
  std::vector<BatchMessage> messages_;  // that came between rows
};

}  // namespace

std::unique_ptr<BatchWriter> MakeBatchWriter(OutputMode mode, Outlet& outlet) {
  if (mode == OutputMode::kJson) return std::make_unique<JsonWriter>(outlet);
  if (mode == OutputMode::kCsv) return std::make_unique<CsvWriter>(outlet);
  return std::make_unique<TextWriter>(mode, outlet);
}

}  // namespace tavcc
