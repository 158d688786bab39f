// Port: the host's ordered list, 1-based: bills, lines, results.
#pragma once

#include <memory>

#include "foundation/value.h"

namespace tavcc {

class Vector : public Object {
 public:
  virtual int Size() const = 0;
  // Bounds as the host's late-bound members give them: 1 and Size() for the host's own vector.
  virtual int LBound() const = 0;
  virtual int UBound() const = 0;
  // The element at `index`, LBound() to UBound(). Errors: 9 outside.
  virtual Value Item(int index) const = 0;
  virtual void Add(Value value) = 0;
};

using VectorPtr = std::shared_ptr<Vector>;

}  // namespace tavcc
