#include "automation/type_library.h"

#include "automation/border/class_keys.h"
#include "automation/border/module.h"

namespace tavcc::automation {

HRESULT LoadOwnTypeLibrary(ITypeLib** library) {
  const std::wstring path = ModulePath(Module());
  return path.empty() ? E_FAIL : LoadTypeLibEx(path.c_str(), REGKIND_NONE, library);
}

}  // namespace tavcc::automation
