// What the library keeps for a thread: cached host objects that outlive its components, and one
// global object while there are components. Each apartment has its own.

#include <thread>

#include "TavM_CC_PlugIns.h"
#include "automation/border/variant.h"
#include "automation/fixture.h"

namespace tavcc {
namespace {

using automation::ComPtr;
using automation::UnwrapObject;

constexpr wchar_t kGlobal[] = L"TavGlobal.Application";
constexpr wchar_t kGLData[] = L"TavEBCGLView.GLData";
constexpr wchar_t kLoader[] = L"M8RESLOADER.Loader";

template <class Interface>
ComPtr<Interface> Make(const CLSID& id, const IID& interface_id) {
  ComPtr<Interface> object;
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, interface_id,
                             reinterpret_cast<void**>(object.GetAddressOf())),
            S_OK);
  return object;
}

// One component for one use, of the loader: a bill that does not exist, told in the user's
// language.
void UseTheLoader(HostedErp& erp) {
  const auto object = Make<_CheckProfit>(CLSID_CheckProfit, IID__CheckProfit);
  BSTR message = nullptr;
  LONG verdict = 7;
  EXPECT_EQ(object->CheckBill(erp.dsn(), 77, 1, &message, nullptr, nullptr, &verdict), S_OK);
  EXPECT_EQ(verdict, 0);
  SysFreeString(message);
}

// And one of the profile reader, which the general-ledger object hands out.
void UseTheProfileReader(HostedErp& erp) {
  const auto object = Make<_PublicSysInfo>(CLSID_PublicSysInfo, IID__PublicSysInfo);
  ComPtr<IDispatch> connection;
  connection.Attach(UnwrapObject(erp.erp().connection()));
  double price = 7;
  EXPECT_EQ(object->GetNewPrice(connection.Get(), 1, 1, &price), S_OK);
}

struct Counts {
  int gl_data = TimesMade(kGLData);
  int loaders = TimesMade(kLoader);
  friend Counts operator-(const Counts& a, const Counts& b) {
    Counts difference;
    difference.gl_data = a.gl_data - b.gl_data;
    difference.loaders = a.loaders - b.loaders;
    return difference;
  }
};

// A loader that was just made has no language; it is replaced once by one that has it.
constexpr int kLoadersForOneLanguage = 2;

TEST_F(AutomationTest, AThousandComponentsMakeEachCachedObjectOnce) {
  HostedErp erp;
  const Counts before;
  for (int i = 0; i < 500; ++i) {
    UseTheLoader(erp);
    UseTheProfileReader(erp);
  }
  const Counts made = Counts() - before;
  EXPECT_EQ(made.gl_data, 1);
  EXPECT_EQ(made.loaders, kLoadersForOneLanguage);
  EXPECT_GT(HostObjectsAlive(), 0);
}

TEST_F(AutomationTest, AnotherThreadHasItsOwnAndLeavesNothing) {
  HostedErp erp;
  UseTheLoader(erp);
  UseTheProfileReader(erp);
  const long alive_here = HostObjectsAlive();
  const Counts before;
  std::thread([&] {
    {
      const Apartment apartment;
      const HostClassHome home;
      HostedErp own;
      for (int i = 0; i < 3; ++i) UseTheProfileReader(own);
      EXPECT_GT(HostObjectsAlive(), alive_here);
    }
    // COM was uninitialized: what the thread kept is gone with it.
    EXPECT_EQ(HostObjectsAlive(), alive_here);
  }).join();
  EXPECT_EQ((Counts() - before).gl_data, 1);
  UseTheProfileReader(erp);
  EXPECT_EQ((Counts() - before).gl_data, 1) << "this thread's own stayed";
}

TEST_F(AutomationTest, OnlyTheLastUninitializationEndsAnApartment) {
  std::thread([] {
    const Apartment outer;
    const HostClassHome home;
    HostedErp erp;
    const Counts before;
    {
      const Apartment inner;
      UseTheProfileReader(erp);
    }
    UseTheProfileReader(erp);
    EXPECT_EQ((Counts() - before).gl_data, 1);
  }).join();
  EXPECT_EQ(HostObjectsAlive(), 0);
}

// COM asks DllCanUnloadNow of whoever frees unused libraries: nothing of the host's is held then.
TEST_F(AutomationTest, WhatMayBeUnloadedHoldsNothing) {
  HostedErp erp;
  UseTheLoader(erp);
  EXPECT_GT(HostObjectsAlive(), 0);
  EXPECT_TRUE(ServerIsIdle());
  EXPECT_EQ(HostObjectsAlive(), 0);
  UseTheLoader(erp);  // and it goes on working
}

TEST_F(AutomationTest, AModuleThatAnotherThreadUsesStays) {
  HostedErp erp;
  UseTheLoader(erp);
  std::thread([] {
    const Apartment apartment;
    EXPECT_FALSE(ServerIsIdle()) << "the first thread's cached objects live";
  }).join();
  EXPECT_TRUE(ServerIsIdle());
}

TEST_F(AutomationTest, AnApartmentHasOneGlobalObjectWhileItHasComponents) {
  HostedErp erp;
  const int before = TimesMade(kGlobal);
  {
    const auto first = Make<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
    const long alive = HostObjectsAlive();
    const auto second = Make<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
    EXPECT_EQ(TimesMade(kGlobal) - before, 1);
    BSTR message = nullptr;
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(first->AuditBill(1, 2, erp.dsn(), &message, &done), S_OK);  // fetches a new context
    EXPECT_EQ(first->UnAuditBill(1, erp.dsn(), &message, &done), S_OK);
    SysFreeString(message);
    EXPECT_EQ(TimesMade(kGlobal) - before, 1);
    EXPECT_GT(HostObjectsAlive(), alive);
    std::thread([&] {
      const Apartment apartment;
      const HostClassHome home;
      HostedErp own;
      const auto third = Make<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
      EXPECT_EQ(TimesMade(kGlobal) - before, 2) << "another apartment has its own";
    }).join();
  }
  EXPECT_EQ(HostObjectsAlive(), 0) << "it goes with the last component";
  Make<_cls_CX>(CLSID_cls_CX, IID__cls_CX);
  EXPECT_EQ(TimesMade(kGlobal) - before, 3);
}

}  // namespace
}  // namespace tavcc
