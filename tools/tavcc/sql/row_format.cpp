#include "tavcc/sql/row_format.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include "tavcc/output.h"
#include "tavcc/table.h"

namespace tavcc {
namespace {

std::vector<std::string> Cells(std::span<const Value> values) {
  std::vector<std::string> cells;
  for (const Value& value : values) cells.push_back(TableCell(value));
  return cells;
}

// Rows are kept until there are enough of them to tell how wide the columns are, or a moment has
// passed; those behind are written as they come, and a wider cell pushes the others aside.
class AlignedFormat : public RowFormat {
 public:
  using RowFormat::RowFormat;

  void Begin(const std::vector<std::string>& columns) override {
    kept_ = {columns};
    layout_.reset();
    since_ = std::chrono::steady_clock::now();
  }
  void Row(std::span<const Value> values) override {
    if (layout_) return WriteLine(*layout_, Cells(values));
    kept_.push_back(Cells(values));
    if (kept_.size() > kMostKept || std::chrono::steady_clock::now() - since_ > kMoment) Settle();
  }
  void End() override {
    if (!layout_) Settle();
    WriteFoot(*layout_);
  }

 protected:
  virtual void WriteHead(const TableLayout& layout, const std::vector<std::string>& columns) = 0;
  virtual void WriteLine(const TableLayout& layout, const std::vector<std::string>& cells) = 0;
  virtual void WriteFoot(const TableLayout&) {}

 private:
  static constexpr size_t kMostKept = 1000;
  static constexpr auto kMoment = std::chrono::milliseconds(500);

  void Settle() {
    layout_.emplace(kept_);
    WriteHead(*layout_, kept_.front());
    for (size_t row = 1; row < kept_.size(); ++row) WriteLine(*layout_, kept_[row]);
    kept_.clear();
  }

  std::vector<std::vector<std::string>> kept_;  // the header first
  std::optional<TableLayout> layout_;
  std::chrono::steady_clock::time_point since_;
};

class TableFormat final : public AlignedFormat {
 public:
  using AlignedFormat::AlignedFormat;

 protected:
  void WriteHead(const TableLayout& layout, const std::vector<std::string>& columns) override {
    outlet_.Write(layout.Line(columns) + "\n" + layout.Rule() + "\n");
  }
  void WriteLine(const TableLayout& layout, const std::vector<std::string>& cells) override {
    outlet_.Write(layout.Line(cells) + "\n");
  }
};

class BoxFormat final : public AlignedFormat {
 public:
  using AlignedFormat::AlignedFormat;

 protected:
  void WriteHead(const TableLayout& layout, const std::vector<std::string>& columns) override {
    WriteRule(layout, "┌", "┬", "┐");
    WriteLine(layout, columns);
    WriteRule(layout, "├", "┼", "┤");
  }
  void WriteLine(const TableLayout& layout, const std::vector<std::string>& cells) override {
    std::string line;
    for (size_t c = 0; c < cells.size(); ++c) line += "│ " + layout.Cell(cells[c], c) + " ";
    outlet_.Write(line + "│\n");
  }
  void WriteFoot(const TableLayout& layout) override { WriteRule(layout, "└", "┴", "┘"); }

 private:
  void WriteRule(const TableLayout& layout, std::string_view left, std::string_view cross,
                 std::string_view right) {
    std::string line;
    for (const size_t width : layout.widths()) {
      line += line.empty() ? left : cross;
      for (size_t i = 0; i < width + 2; ++i) line += "─";
    }
    outlet_.Write(line.append(right) + "\n");
  }
};

// As RFC 4180 has it, but with plain line feeds. NULL is nothing at all, an empty text two quotes.
class CsvFormat final : public RowFormat {
 public:
  using RowFormat::RowFormat;

  void Begin(const std::vector<std::string>& columns) override {
    std::string line;
    for (const std::string& column : columns) {
      line += (&column == &columns.front() ? "" : ",") + Quoted(column);
    }
    // Results are apart by an empty line.
    outlet_.Write((any_ ? "\n" : "") + line + "\n");
    any_ = true;
  }
  void Row(std::span<const Value> values) override {
    std::string line;
    for (const Value& value : values) {
      if (&value != &values.front()) line += ",";
      if (!value.IsNull()) line += Quoted(ValueText(value));
    }
    outlet_.Write(line + "\n");
  }
  void End() override {}

 private:
  static std::string Quoted(const std::string& text) {
    if (!text.empty() && text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + "\"";
  }

  bool any_ = false;
};

// One column a line, rows apart by an empty line.
class LineFormat final : public RowFormat {
 public:
  using RowFormat::RowFormat;

  void Begin(const std::vector<std::string>& columns) override {
    columns_ = columns;
    size_t width = 0;
    for (const std::string& column : columns_) width = std::max(width, DisplayWidth(column));
    for (std::string& column : columns_) column = Padded(column, width);
    first_ = true;
  }
  void Row(std::span<const Value> values) override {
    std::string lines = first_ ? "" : "\n";
    first_ = false;
    for (size_t i = 0; i < values.size(); ++i) {
      lines += columns_[i] + " = " + TableCell(values[i]) + "\n";
    }
    outlet_.Write(lines);
  }
  void End() override {}

 private:
  std::vector<std::string> columns_;
  bool first_ = true;
};

}  // namespace

const std::vector<std::string>& OutputModeNames() {
  static const std::vector<std::string> names = {"table", "box", "csv", "line", "json"};
  return names;
}

std::unique_ptr<RowFormat> MakeRowFormat(OutputMode mode, Outlet& outlet) {
  switch (mode) {
    case OutputMode::kBox:
      return std::make_unique<BoxFormat>(outlet);
    case OutputMode::kCsv:
      return std::make_unique<CsvFormat>(outlet);
    case OutputMode::kLine:
      return std::make_unique<LineFormat>(outlet);
    default:
      return std::make_unique<TableFormat>(outlet);
  }
}

}  // namespace tavcc
