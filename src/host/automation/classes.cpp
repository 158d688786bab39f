#include "host/automation/classes.h"

#include "automation/border/border.h"
#include "host/automation/ado_objects.h"
#include "host/automation/component_objects.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/session_object.h"

namespace tavcc::host_automation {

namespace {

template <IDispatch* (*New)()>
HRESULT Create(REFIID wanted, void** object) {
  return automation::AtBorder("TavReferenceHost", [&]() -> HRESULT {
    if (const auto fault = TakeFault()) {
      if (*fault != Fault::kNothing) return E_FAIL;
      *object = nullptr;
      return S_OK;
    }
    IDispatch* created = New();
    const HRESULT result = created->QueryInterface(wanted, object);
    created->Release();
    return result;
  });
}

constexpr CLSID Id(unsigned long number) {
  return {0x5e21c700 + number, 0x0b6a, 0x4d11, {0xb3, 0x4f, 0x6c, 0x1d, 0x07, 0x9e, 0xa4, 0x52}};
}

constexpr HostClass kClasses[] = {
    {L"TavGlobal.Application", Id(1), Create<NewGlobal>},
    {L"TavMAPPConnection.APPConnection", Id(2), Create<NewApplicationConnectionObject>},
    {L"TavMClass.ClassInfo", Id(3), Create<NewClassInfoObject>},
    {L"TavEBSBase.SystemProfile", Id(4), Create<NewSystemProfileObject>},
    {L"TavErrorHandle.CheckADOError", Id(5), Create<NewErrorCheckerObject>},
    {L"TavEBCGLView.GLData", Id(6), Create<NewGLDataObject>},
    {L"M8RESLOADER.Loader", Id(7), Create<NewResourceLoaderObject>},
    {L"Bzo.Dictionary", Id(8), Create<NewDictionaryObject>},
    {L"Bzo.Vector", Id(9), Create<NewVectorObject>},
    {L"Bzo.Functions", Id(10), Create<NewFunctionsObject>},
    {L"ADODB.Recordset", Id(11), Create<NewAdoRecordset>},
    {L"ADODB.Command", Id(12), Create<NewAdoCommand>},
    {L"TavReferenceHost.Session", Id(13), Create<NewSession>},
    {L"TavReferenceHost.Output", Id(14), Create<NewOutput>},
};

}  // namespace

std::span<const HostClass> HostClasses() {
  return kClasses;
}

}  // namespace tavcc::host_automation
