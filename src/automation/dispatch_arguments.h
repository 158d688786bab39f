// The arguments of a late-bound call: matched to a method's parameters, read, and written back.
//
// All that can be wrong with them is found before the method runs: a call that is refused has sent
// no statement.
#pragma once

#include <vector>

#include "automation/border/platform.h"
#include "registry/class_registry.h"

namespace tavcc::automation {

class DispatchArguments {
 public:
  // Both must outlive the object.
  DispatchArguments(const Method& method, const DISPPARAMS& parameters)
      : method_(method), parameters_(parameters) {}

  // Matches the arguments and reads them into `values`, one for each parameter, in the order of the
  // parameters. An object where a text, number, date or boolean is declared stands for the value of
  // its default member.
  // Dispatch results other than S_OK, where one argument is wrong with its place in rgvarg as
  // `bad_argument`:
  //   E_INVALIDARG             an array of arguments or names is missing
  //   DISP_E_BADPARAMCOUNT     more arguments than parameters, or more names than arguments
  //   DISP_E_PARAMNOTFOUND     a named argument that is no parameter, or is there already
  //   DISP_E_PARAMNOTOPTIONAL  one is missing
  //   E_POINTER                a null reference
  //   DISP_E_TYPEMISMATCH      no automation value, or a reference to a variable that cannot take
  //                            an in/out parameter's result
  HRESULT Read(std::vector<Value>& values, UINT* bad_argument);

  // Puts the in/out parameters' results into the variables that the caller passed by reference.
  void WriteBack(const std::vector<Value>& values) const;

  // Where in rgvarg the argument of a parameter stands.
  UINT PlaceOf(size_t position) const;

 private:
  HRESULT Match(UINT* bad_argument);
  HRESULT ReadOne(size_t position, Value& value) const;

  const Method& method_;
  const DISPPARAMS& parameters_;
  std::vector<VARIANT*> given_;  // for each parameter; null where it was left out
};

}  // namespace tavcc::automation
