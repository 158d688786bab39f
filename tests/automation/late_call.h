// A late-bound call as a script makes it, and its arguments.
#pragma once

#include <vector>

#include "automation/border/platform.h"

namespace tavcc {

using automation::UniqueVariant;

// A call by name: the arguments in their written order, the last `named` of them named.
struct LateCall {
  std::vector<VARIANT> arguments;
  std::vector<const wchar_t*> names;
  UniqueVariant result = {};
  EXCEPINFO info = {};
  UINT bad_argument = 99;

  ~LateCall() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
  }
  HRESULT On(IDispatch& object, const wchar_t* method) {
    std::vector<LPOLESTR> wanted = {const_cast<LPOLESTR>(method)};
    for (const wchar_t* name : names) wanted.push_back(const_cast<LPOLESTR>(name));
    std::vector<DISPID> ids(wanted.size());
    const HRESULT found = object.GetIDsOfNames(IID_NULL, wanted.data(),
                                               static_cast<UINT>(wanted.size()), 0, ids.data());
    if (FAILED(found)) return found;
    // Named arguments stand first in the reversed list, in the order of their ids.
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
    DISPPARAMS parameters{reversed.data(), named.data(), static_cast<UINT>(reversed.size()),
                          static_cast<UINT>(named.size())};
    return object.Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, result.get(), &info,
                         &bad_argument);
  }
};

inline VARIANT Long(LONG number) {
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_I4;
  out.lVal = number;
  return out;
}

inline VARIANT Text(BSTR text) {  // borrowed
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_BSTR;
  out.bstrVal = text;
  return out;
}

inline VARIANT Dispatch(IDispatch* object) {  // borrowed
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_DISPATCH;
  out.pdispVal = object;
  return out;
}

inline VARIANT TextReference(BSTR* text) {
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_BSTR | VT_BYREF;
  out.pbstrVal = text;
  return out;
}

inline VARIANT VariantReference(VARIANT* variant) {
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_VARIANT | VT_BYREF;
  out.pvarVal = variant;
  return out;
}

}  // namespace tavcc
