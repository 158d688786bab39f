// A recordset before another one, to which it hands every question on: for those that change one
// answer or watch.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "foundation/recordset.h"

namespace tavcc {

class RecordsetWrapper : public Recordset {
 public:
  explicit RecordsetWrapper(RecordsetPtr rows) : rows_(std::move(rows)) {}

  bool IsOpen() const override { return rows_->IsOpen(); }
  bool AtEnd() const override { return rows_->AtEnd(); }
  bool AtStart() const override { return rows_->AtStart(); }
  void MoveNext() override { rows_->MoveNext(); }
  void MoveFirst() override { rows_->MoveFirst(); }
  int RecordCount() const override { return rows_->RecordCount(); }
  int FieldCount() const override { return rows_->FieldCount(); }
  std::string FieldName(int index) const override { return rows_->FieldName(index); }
  Value Field(int index) const override { return rows_->Field(index); }
  Value Field(std::string_view name) const override { return rows_->Field(name); }
  void Detach() override { rows_->Detach(); }
  void Close() override { rows_->Close(); }

  const RecordsetPtr& inner() const { return rows_; }

 private:
  RecordsetPtr rows_;
};

}  // namespace tavcc
