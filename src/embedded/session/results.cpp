#include "embedded/session/results.h"

#include "embedded/error.h"
#include "embedded/types/stored_conversions.h"

namespace tavcc::sql {

RowReport::RowReport(BatchReader& reader, const ResultShape& shape)
    : reader_(reader), shape_(shape) {
  values_.resize(shape.types.size());
  reader_.BeginRows(shape.names);
}

void RowReport::Send(std::span<const StoredValue> cells) {
  for (size_t i = 0; i < values_.size(); ++i) values_[i] = ToValue(cells[i], shape_.types[i]);
  reader_.Row(values_);
}

void Results::Report(const Rows& rows) {
  const size_t columns = rows.shape->types.size();
  ReportResult(*reader_, *rows.shape, [&](RowReport& report) {
    for (size_t row = 0; row < rows.count; ++row) {
      report.Send(std::span(rows.cells).subspan(row * columns, columns));
    }
  });
}

}  // namespace tavcc::sql
