// The reference host's ordered list.
#pragma once

#include <vector>

#include "foundation/vector.h"

namespace tavcc {

// Indexes run from 1 to Size(); an empty vector's upper bound 0 lies below its lower bound.
class HostVector final : public Vector {
 public:
  HostVector() = default;
  explicit HostVector(std::vector<Value> elements) : elements_(std::move(elements)) {}

  int Size() const override { return static_cast<int>(elements_.size()); }
  int LBound() const override { return 1; }
  int UBound() const override { return Size(); }
  Value Item(int index) const override;
  void Add(Value value) override { elements_.push_back(std::move(value)); }

 private:
  std::vector<Value> elements_;
};

}  // namespace tavcc
