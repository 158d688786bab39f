#include "automation/border/border.h"

#include <optional>

#include "automation/border/variant.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {

constexpr HRESULT kControlFacility = static_cast<HRESULT>(0x800A0000);
constexpr int32_t kLargestControlNumber = 0xFFFF;

// The system's own text of an HRESULT, without its line end.
std::string SystemText(HRESULT result) {
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(result), 0, buffer,
                                      static_cast<DWORD>(std::size(buffer)), nullptr);
  BSTR text = SysAllocStringLen(buffer, length);
  std::string out = ToUtf8(text);
  SysFreeString(text);
  while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) {
    out.pop_back();
  }
  return out.empty() ? Cat("Automation error ", static_cast<int32_t>(result)) : out;
}

// What automation clients make of the dispatch results for a wrong call.
std::optional<RuntimeError> DispatchError(HRESULT result) {
  switch (result) {
    case DISP_E_TYPEMISMATCH:
      return RuntimeError::kTypeMismatch;
    case DISP_E_OVERFLOW:
      return RuntimeError::kOverflow;
    case DISP_E_PARAMNOTOPTIONAL:
      return RuntimeError::kArgumentNotOptional;
    case DISP_E_BADPARAMCOUNT:
      return RuntimeError::kWrongNumberOfArguments;
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
      return RuntimeError::kMemberNotFound;
    default:
      return std::nullopt;
  }
}

}  // namespace

HRESULT ToHresult(int32_t number) {
  if (number < 0) return number;
  if (number == 0 || number > kLargestControlNumber) return DISP_E_EXCEPTION;
  return kControlFacility | number;
}

int32_t FromHresult(HRESULT result) {
  if ((result & ~kLargestControlNumber) == kControlFacility) return result & kLargestControlNumber;
  return result;
}

AutomationError WithSource(AutomationError error, std::string_view source) {
  if (!error.source().empty()) return error;
  return AutomationError(error.number(), std::string(source), error.description());
}

void FillExcepInfo(const AutomationError& error, EXCEPINFO* info) {
  *info = EXCEPINFO{};
  info->scode = ToHresult(error.number());
  info->bstrSource = NewBstr(error.source());
  info->bstrDescription = NewBstr(error.description());
}

void SetThreadError(const AutomationError& error) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.GetAddressOf()))) return;
  BSTR source = NewBstr(error.source());
  BSTR description = NewBstr(error.description());
  creator->SetSource(source);
  creator->SetDescription(description);
  SysFreeString(source);
  SysFreeString(description);
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(
          creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.GetAddressOf())))) {
    SetErrorInfo(0, info.Get());
  }
}

void RaiseHresult(HRESULT result) {
  throw AutomationError(FromHresult(result), "", SystemText(result));
}

void RaiseFrom(HRESULT result, EXCEPINFO& info) {
  if (const auto number = DispatchError(result)) throw AutomationError(*number);
  if (result != DISP_E_EXCEPTION) RaiseHresult(result);
  if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
  const int32_t number = info.scode != 0 ? FromHresult(info.scode) : info.wCode;
  const AutomationError error(number, ToUtf8(info.bstrSource), ToUtf8(info.bstrDescription));
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  throw error;
}

}  // namespace tavcc::automation
