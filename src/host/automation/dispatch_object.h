// An automation object over C++ members: a table of names, and a function behind each.
//
// The reference host shows itself to the automation server through such objects. They count
// themselves, so that a test can see that every reference was given back, and one call can be made
// to go wrong, so that it can see what then happens.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "automation/border/platform.h"
#include "foundation/error.h"
#include "foundation/value.h"

namespace tavcc::host_automation {

// The arguments of a call in the order in which they were written; for an assignment the value is
// the last. An omitted one is of kind Missing.
class Arguments {
 public:
  explicit Arguments(std::span<const Value> values) : values_(values) {}
  size_t size() const { return values_.size(); }
  // Missing beyond the end.
  const Value& operator[](size_t index) const;
  const Value& last() const { return (*this)[values_.size() - 1]; }

 private:
  std::span<const Value> values_;
};

using Handler = std::function<Value(const Arguments&)>;

struct Member {
  std::string_view name;
  Handler call;             // a method, or reading a property
  Handler put = nullptr;    // assigning it; null when it cannot be assigned
  bool is_default = false;  // also answers as the object's default member
};

// A new object with one reference, which the caller owns. `behind` is what the object stands for:
// it comes out again where the object comes back (see objects_of_ports.h). Names are compared
// without regard to letter case.
IDispatch* NewDispatchObject(std::vector<Member> members, ObjectPtr behind);

// What an object of this module stands for; null for any other object.
ObjectPtr BehindObject(IDispatch* object);

// Objects alive now, over all threads.
long LivingDispatchObjects();

// How a host call can go wrong: what a member answers in place of its own answer.
enum class Fault {
  kNothing,        // no object
  kEmpty,          // Empty
  kNumber,         // 7, perhaps where an object belongs
  kStrangeObject,  // an object without members
  kBareResult,     // E_FAIL, without error information
  kError,          // error 50000, "host failed"
};
inline constexpr Fault kFaults[] = {Fault::kNothing,       Fault::kEmpty,      Fault::kNumber,
                                    Fault::kStrangeObject, Fault::kBareResult, Fault::kError};

// Makes the k-th host call from now on (1 is the next one), on this thread, go wrong. Host calls
// are those of a member, and the making of a component, which fails or answers no object.
void OrderFault(int k, Fault fault);
// Takes an order back. Returns how many calls it was still away; 0 when it was met.
int CancelFault();
// For whoever carries out a host call: whether this is the one.
std::optional<Fault> TakeFault();

}  // namespace tavcc::host_automation
