// What a batch audit hands back: one line per bill, the counts, the items below zero.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "audit/audited_bill.h"
#include "foundation/dictionary.h"

namespace tavcc {

class BatchResult {
 public:
  // Goes on from the lines that the dictionary holds already (Null is none), and marks it as having
  // no items below zero. Errors: the dictionary's.
  void Start(Dictionary& dct);

  // `outcome` is what is said of the bill after its name; it may end with the line's "|".
  void AddPassed(const AuditedBill& bill, std::string_view outcome);
  void AddRefused(const AuditedBill& bill, std::string_view outcome);
  void SetError(std::string message) { error_message_ = std::move(message); }

  std::vector<int32_t>& negative_items() { return negative_items_; }
  bool HasRefusals() const { return fail_count_ > 0; }

  // Lines that the dictionary holds stay, also where the run ended before its start. Errors: the
  // dictionary's.
  void WriteTo(Dictionary& dct);

 private:
  void AddLine(const AuditedBill& bill, std::string_view outcome);

  void TakeEarlierLines(const Dictionary& dct);

  bool started_ = false;
  std::string lines_;
  std::string error_message_;
  int32_t success_count_ = 0;
  int32_t fail_count_ = 0;
  std::vector<int32_t> negative_items_;  // as remembered, repetitions included
};

}  // namespace tavcc
