// What a call through COM costs: a rule that sends no statement (WhetherNeedUpdateStockNum), called
// late-bound and early-bound, beside an empty late-bound call of the same run; and what an object
// costs that is made and released. With TAVM_CC_TRACE set, each with its trace.
//
//   tests/automation/run_in_wine.sh build/windows64/bin automation_bench.exe

#include <chrono>
#include <cstdio>

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"
#include "host/automation/dispatch_object.h"
#include "host/automation/objects_of_ports.h"

namespace tavcc {
namespace {

using automation::ComPtr;

constexpr int kCalls = 100'000;

template <class Call>
double Nanoseconds(Call&& call) {
  for (int i = 0; i < kCalls / 10; ++i) call();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kCalls; ++i) call();
  const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
  return spent.count() / kCalls;
}

void Run() {
  const Apartment apartment;
  const HostClassHome home;
  HostedErp erp;
  ComPtr<IDispatch> empty(nullptr);
  empty.Attach(host_automation::NewDispatchObject(
      {{"Nothing", [](const host_automation::Arguments&) -> Value { return Empty{}; }}}, nullptr));
  const auto bill = erp.erp().host().NewDictionary();
  bill->SetItem("ClassTypeID", 1030002);
  bill->SetItem("BillType", 3001);
  ComPtr<IDispatch> dictionary;
  dictionary.Attach(host_automation::FaceOf(bill));
  ComPtr<_PublicSysInfo> early;
  CoCreateInstance(CLSID_PublicSysInfo, nullptr, CLSCTX_INPROC_SERVER, IID__PublicSysInfo,
                   reinterpret_cast<void**>(early.GetAddressOf()));

  const double nothing = Nanoseconds([&] {
    DISPPARAMS none{};
    automation::UniqueVariant result;
    empty->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, result.get(), nullptr, nullptr);
  });
  const double late_bound = Nanoseconds([&] {
    VARIANT arguments[2];  // the last first; borrowed
    arguments[0].vt = VT_DISPATCH;
    arguments[0].pdispVal = dictionary.Get();
    arguments[1].vt = VT_I2;
    arguments[1].iVal = 1;
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    automation::UniqueVariant result;
    early->Invoke(0x60030026, IID_NULL, 0, DISPATCH_METHOD, &parameters, result.get(), nullptr,
                  nullptr);
  });
  const double early_bound = Nanoseconds([&] {
    SHORT answer = 0;
    early->WhetherNeedUpdateStockNum(1, dictionary.Get(), &answer);
  });
  const double made = Nanoseconds([&] {
    ComPtr<_PublicSysInfo> object;
    CoCreateInstance(CLSID_PublicSysInfo, nullptr, CLSCTX_INPROC_SERVER, IID__PublicSysInfo,
                     reinterpret_cast<void**>(object.GetAddressOf()));
  });
  std::printf("empty late-bound call   %7.0f ns\n", nothing);
  std::printf("rule, late bound        %7.0f ns  %5.1f times the empty call\n", late_bound,
              late_bound / nothing);
  std::printf("rule, early bound       %7.0f ns  %5.1f times the empty call\n", early_bound,
              early_bound / nothing);
  std::printf("object made, released   %7.0f ns  %5.1f times the empty call\n", made,
              made / nothing);
  std::printf("(the rule makes four calls of its own: two reads of the dictionary, by name)\n");
}

}  // namespace
}  // namespace tavcc

int main() {
  tavcc::Run();
}
