// Between automation values and JSON.
//
//   JSON                     value
//   true, false              Boolean
//   7                        32-bit integer; beyond its range a decimal
//   1.5                      double
//   "text"                   text
//   null                     Null
//   {"date": "2026-03-01"}   date (with a time: "2026-03-01 10:00:00" or "… 10:00:00.003")
//   {"decimal": "1.50"}      decimal, exactly
//   {"integer": 7}           16-bit integer
//   {"empty": true}          Empty
//   {"nothing": true}        a null object reference
//   any other object         dictionary
//   array                    vector
#pragma once

#include <string>
#include <vector>

#include "foundation/error.h"
#include "foundation/host.h"
#include "scenario/json.h"

namespace tavcc {

// The object of the value where it is a T, else null.
template <class T>
T* ObjectOf(const Value& value) {
  return value.IsObject() ? dynamic_cast<T*>(value.object().get()) : nullptr;
}

// Errors: JsonError for a date, decimal or integer that is none.
Value ValueFromJson(Host& host, const Json& json);

// The same of what is no dictionary and no vector. Errors: as above, and for those two.
Value ScalarFromJson(const Json& json);

// A value in the form that ValueFromJson reads back as the same kind with the same digits. Errors:
// JsonError for an object that has no such form, e.g. a recordset.
Json ExactJson(const Value& value);

// {"number": …, "source": …, "description": …}
Json ErrorJson(const AutomationError& error);

// How a decimal is written: as a scenario says it, a number while 15 digits hold it exactly; or,
// for those who read it, a number with all its digits, "1.5000".
enum class DecimalForm { kScenario, kAllDigits };

// The same forms back. A recordset is the array of its rows, each an object, read from its first
// row on and left there. Null, Empty and a null reference are null. A dictionary that is not the
// reference host's tells nobody its keys, so it is the text "a dictionary".
Json JsonFromValue(const Value& value, DecimalForm form = DecimalForm::kScenario);

// All rows of a recordset as objects, or as arrays of the fields in order.
enum class RowForm { kObjects, kArrays };
Json JsonFromRows(Recordset& recordset, RowForm form,
                  DecimalForm decimals = DecimalForm::kScenario);

// Adds to `differences` a line for each difference between what is expected and what is. Only what
// `expected` names is compared:
//   - a number equals any number of the same value (doubles with 15 digits), and a Boolean as 0, or
//     1 or -1;
//   - a text equals the same text byte for byte, or a date that it writes;
//   - null is Null, Empty, a null reference, or a key that a dictionary does not have;
//   - an object names keys of a dictionary;
//   - an array names all elements of a vector, or all rows of a recordset, each of them an object
//     that names columns, or an array of all columns.
// `path` says where in the answer the value stands.
void Compare(const Json& expected, const Value& actual, const std::string& path,
             std::vector<std::string>& differences);

}  // namespace tavcc
