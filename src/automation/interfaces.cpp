// The classes' own interfaces, for early-bound callers: each method hands its arguments to the
// class registry under its slot.

#include "automation/interfaces.h"

#include "automation/automation_object.h"
#include "automation/border/border.h"
#include "foundation/text.h"

namespace tavcc::automation {

namespace {
class PublicSysInfo final : public AutomationObject<_PublicSysInfo> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE AllowMinusStockNum(BSTR strConString,
                                               VARIANT* result) noexcept override {
    return Call(0, strConString, result);
  }
  HRESULT STDMETHODCALLTYPE AuditBill(IDispatch* billVect, short CheckType, BSTR sDsn,
                                      VARIANT_BOOL BatchCheck, IDispatch** dct,
                                      VARIANT_BOOL NeedCheckDaily, VARIANT_BOOL NeedCheckCrdPrc,
                                      short* result) noexcept override {
    return Call(1, billVect, CheckType, sDsn, BatchCheck, dct, NeedCheckDaily, NeedCheckCrdPrc,
                result);
  }
  HRESULT STDMETHODCALLTYPE CanCheckGH(long ClassBillType, long BillTypeID, long BillInterID,
                                       long Check, BSTR* sMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(2, ClassBillType, BillTypeID, BillInterID, Check, sMsg, result);
  }
  HRESULT STDMETHODCALLTYPE CanCheckFL(long ClassBillType, long BillTypeID, long BillInterID,
                                       long Check, BSTR* sMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(3, ClassBillType, BillTypeID, BillInterID, Check, sMsg, result);
  }
  HRESULT STDMETHODCALLTYPE CanCheckGJ(long ClassBillType, long BillTypeID, long BillInterID,
                                       long Check, BSTR* sMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(4, ClassBillType, BillTypeID, BillInterID, Check, sMsg, result);
  }
  HRESULT STDMETHODCALLTYPE CheckCredit(IDispatch* oDict, short intCheckType, BSTR sDsn,
                                        BSTR* strReturnMsg, VARIANT_BOOL* Cg,
                                        short* result) noexcept override {
    return Call(5, oDict, intCheckType, sDsn, strReturnMsg, Cg, result);
  }
  HRESULT STDMETHODCALLTYPE CheckItemStockNum(IDispatch* oDict, short intCheckType, BSTR sDsn,
                                              BSTR* strReturnMsg, IDispatch** rs,
                                              BSTR OptAboutUnderStock, IDispatch* vct,
                                              short* result) noexcept override {
    return Call(6, oDict, intCheckType, sDsn, strReturnMsg, rs, OptAboutUnderStock, vct, result);
  }
  HRESULT STDMETHODCALLTYPE GetLowPrice(IDispatch* oConn, long lItemID, long lUnitID,
                                        double* result) noexcept override {
    return Call(7, oConn, lItemID, lUnitID, result);
  }
  HRESULT STDMETHODCALLTYPE GetNewPrice(IDispatch* oConn, long lItemID, long lUnitID,
                                        double* result) noexcept override {
    return Call(8, oConn, lItemID, lUnitID, result);
  }
  HRESULT STDMETHODCALLTYPE CheckLimitPrice(IDispatch* oDict, short intCheckType, BSTR sDsn,
                                            BSTR* strReturnMsg, IDispatch** rs, VARIANT_BOOL* Cg,
                                            short* result) noexcept override {
    return Call(9, oDict, intCheckType, sDsn, strReturnMsg, rs, Cg, result);
  }
  HRESULT STDMETHODCALLTYPE SteelCheckLimitPrice(IDispatch* oDict, short intCheckType, BSTR sDsn,
                                                 BSTR* strReturnMsg, IDispatch** rs,
                                                 VARIANT_BOOL* Cg,
                                                 short* result) noexcept override {
    return Call(10, oDict, intCheckType, sDsn, strReturnMsg, rs, Cg, result);
  }
  HRESULT STDMETHODCALLTYPE CheckNegPrice(BSTR sDsn, IDispatch* vctBill, IDispatch** NegVct,
                                          VARIANT_BOOL* result) noexcept override {
    return Call(11, sDsn, vctBill, NegVct, result);
  }
  HRESULT STDMETHODCALLTYPE DateInCurrentPeriod(BSTR strConString, DATE dtDate,
                                                VARIANT_BOOL* result) noexcept override {
    return Call(12, strConString, dtDate, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteBill(IDispatch* oDict, BSTR sDsn, BSTR* strReturnMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(13, oDict, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE GetPeriodStartAndEndDate(BSTR strConString, BSTR* strBegDate,
                                                     BSTR* strEndDate,
                                                     VARIANT* result) noexcept override {
    return Call(14, strConString, strBegDate, strEndDate, result);
  }
  HRESULT STDMETHODCALLTYPE OtherBillCanCheck(long ClassBillType, long BillInterID, long Check,
                                              BSTR* sMsg, VARIANT_BOOL* result) noexcept override {
    return Call(15, ClassBillType, BillInterID, Check, sMsg, result);
  }
  HRESULT STDMETHODCALLTYPE ReBuildBal(BSTR sDsn, BSTR* sInfo, IDispatch** oEvent,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(16, sDsn, sInfo, oEvent, result);
  }
  HRESULT STDMETHODCALLTYPE UpdateBal(BSTR sDsn, long lClassTypeID, long lBillTypeID, long lBillID,
                                      long lCheckType, VARIANT_BOOL NeedCal,
                                      BSTR* result) noexcept override {
    return Call(17, sDsn, lClassTypeID, lBillTypeID, lBillID, lCheckType, NeedCal, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeAudit(IDispatch* oDict, BSTR sDsn, short intCheckType,
                                                  BSTR* strReturnMsg, VARIANT_BOOL bCheckDaily,
                                                  short* result) noexcept override {
    return Call(18, oDict, sDsn, intCheckType, strReturnMsg, bCheckDaily, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeDelete(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                   BSTR HeadTableName,
                                                   VARIANT_BOOL* result) noexcept override {
    return Call(19, lngFID, cn, strReturnMsg, HeadTableName, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherCheckStockNum(short intCheckType, IDispatch* oDict,
                                                 short* result) noexcept override {
    return Call(20, intCheckType, oDict, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherNeedCheckPrice(BSTR sDsn, short intCheckType, IDispatch* oDict,
                                                  short* result) noexcept override {
    return Call(21, sDsn, intCheckType, oDict, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherNeedCheckCredit(BSTR sDsn, short intCheckType, IDispatch* oDict,
                                                   short* result) noexcept override {
    return Call(22, sDsn, intCheckType, oDict, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherNeedUpdateStockNum(short intCheckType, IDispatch* oDict,
                                                      short* result) noexcept override {
    return Call(23, intCheckType, oDict, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherBillInvoiceStatus(IDispatch* oDict, BSTR* strRtnTempMsg,
                                                     long* result) noexcept override {
    return Call(24, oDict, strRtnTempMsg, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(25, result);
  }
  HRESULT STDMETHODCALLTYPE CheckUnCheckAmountOutOfDate(IDispatch* oDict, short intCheckType,
                                                        BSTR sDsn, BSTR* strReturnMsg,
                                                        VARIANT_BOOL* Cg,
                                                        short* result) noexcept override {
    return Call(26, oDict, intCheckType, sDsn, strReturnMsg, Cg, result);
  }
  HRESULT STDMETHODCALLTYPE WhetherNeedCheckUnCheckAmountOutOfDate(
      BSTR sDsn, short intCheckType, IDispatch* oDict, short* result) noexcept override {
    return Call(27, sDsn, intCheckType, oDict, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyUnCheckForSelf(IDispatch* oDict, BSTR sDsn, short intCheckType,
                                                 BSTR* strReturnMsg, VARIANT_BOOL bCheckDaily,
                                                 short* result) noexcept override {
    return Call(28, oDict, sDsn, intCheckType, strReturnMsg, bCheckDaily, result);
  }
};
class cls_CX final : public AutomationObject<_cls_CX> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE AuditBill(long lngFID, long lngUserID, BSTR sDsn, BSTR* strReturnMsg,
                                      VARIANT_BOOL* result) noexcept override {
    return Call(0, lngFID, lngUserID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(1, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE UnAuditBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                        VARIANT_BOOL* result) noexcept override {
    return Call(2, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeAudit(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                  VARIANT_BOOL* result) noexcept override {
    return Call(3, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeDelete(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                   VARIANT_BOOL* result) noexcept override {
    return Call(4, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeUnAudit(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                    VARIANT_BOOL* result) noexcept override {
    return Call(5, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(6, result);
  }
};
class cls_DB final : public AutomationObject<_cls_DB> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE AuditBill(long lngFID, long lngUserID, BSTR sDsn, BSTR* strReturnMsg,
                                      VARIANT_BOOL* result) noexcept override {
    return Call(0, lngFID, lngUserID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(1, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE UnAuditBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                        VARIANT_BOOL* result) noexcept override {
    return Call(2, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeAudit(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                  VARIANT_BOOL* result) noexcept override {
    return Call(3, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeDelete(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                   VARIANT_BOOL* result) noexcept override {
    return Call(4, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeUnAudit(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                    VARIANT_BOOL* result) noexcept override {
    return Call(5, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(6, result);
  }
  HRESULT STDMETHODCALLTYPE AfterSave(BSTR sDsn, IDispatch* dctClassType,
                                      IDispatch* vctClassTypeEntry, IDispatch* dctTableInfo,
                                      IDispatch* dctData, IDispatch* dctLink,
                                      VARIANT* result) noexcept override {
    return Call(7, sDsn, dctClassType, vctClassTypeEntry, dctTableInfo, dctData, dctLink, result);
  }
  HRESULT STDMETHODCALLTYPE BeforeDel(BSTR sDsn, long nClassID, IDispatch* dctClassType,
                                      long nInterID, VARIANT* result) noexcept override {
    return Call(8, sDsn, nClassID, dctClassType, nInterID, result);
  }
};
class cls_ZZ final : public AutomationObject<_cls_ZZ> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE AuditBill(IDispatch* oDict, BSTR sDsn, BSTR* strReturnMsg,
                                      VARIANT_BOOL* result) noexcept override {
    return Call(0, oDict, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(1, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE UnAuditBill(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                        VARIANT_BOOL* result) noexcept override {
    return Call(2, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeAudit(IDispatch* oDict, BSTR sDsn, BSTR* strReturnMsg,
                                                  VARIANT_BOOL* result) noexcept override {
    return Call(3, oDict, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeDelete(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                   VARIANT_BOOL* result) noexcept override {
    return Call(4, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeUnAudit(long lngFID, BSTR sDsn, BSTR* strReturnMsg,
                                                    VARIANT_BOOL* result) noexcept override {
    return Call(5, lngFID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(6, result);
  }
  HRESULT STDMETHODCALLTYPE BeforeDel(BSTR sDsn, long nClassID, IDispatch* dctClassType,
                                      long nInterID, VARIANT* result) noexcept override {
    return Call(7, sDsn, nClassID, dctClassType, nInterID, result);
  }
  HRESULT STDMETHODCALLTYPE AfterSave(BSTR sDsn, IDispatch* dctClassType,
                                      IDispatch* vctClassTypeEntry, IDispatch* dctTableInfo,
                                      IDispatch* dctData, IDispatch* dctLink,
                                      VARIANT* result) noexcept override {
    return Call(8, sDsn, dctClassType, vctClassTypeEntry, dctTableInfo, dctData, dctLink, result);
  }
};
// Stock-check gain and loss and the price adjustment: three interfaces with the same methods.
template <class Interface>
class CheckAndSave final : public AutomationObject<Interface> {
 public:
  using AutomationObject<Interface>::AutomationObject;
  HRESULT STDMETHODCALLTYPE CheckBill(BSTR sDsn, long lngInterID, long CheckDir, BSTR* strReturnMsg,
                                      IDispatch* dctData, IDispatch* dctClassType,
                                      long* result) noexcept override {
    return this->Call(0, sDsn, lngInterID, CheckDir, strReturnMsg, dctData, dctClassType, result);
  }
  HRESULT STDMETHODCALLTYPE SaveNote(BSTR sDsn, long lngInterID, IDispatch* vctEntryNotes,
                                     VARIANT_BOOL* result) noexcept override {
    return this->Call(1, sDsn, lngInterID, vctEntryNotes, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return this->Call(2, result);
  }
};
class cls_Template final : public AutomationObject<_cls_Template> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE DeleteBill(long FID, BSTR sDsn, BSTR* strReturnMsg,
                                       VARIANT_BOOL* result) noexcept override {
    return Call(0, FID, sDsn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE VerifyDataBeforeDelete(long lngFID, IDispatch* cn, BSTR* strReturnMsg,
                                                   VARIANT_BOOL* result) noexcept override {
    return Call(1, lngFID, cn, strReturnMsg, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(2, result);
  }
};
class clsOtherIn final : public AutomationObject<_clsOtherIn> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE AfterSave(BSTR sDsn, IDispatch* dctClassType,
                                      IDispatch* vctClassTypeEntry, IDispatch* dctTableInfo,
                                      IDispatch* dctData, IDispatch* dctLink,
                                      VARIANT* result) noexcept override {
    return Call(0, sDsn, dctClassType, vctClassTypeEntry, dctTableInfo, dctData, dctLink, result);
  }
  HRESULT STDMETHODCALLTYPE BeforeDel(BSTR sDsn, long nClassID, IDispatch* dctClassType,
                                      long nInterID, VARIANT* result) noexcept override {
    return Call(1, sDsn, nClassID, dctClassType, nInterID, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(2, result);
  }
};
class clsOtherOut final : public AutomationObject<_clsOtherOut> {
 public:
  using AutomationObject::AutomationObject;
  HRESULT STDMETHODCALLTYPE BeforeDel(BSTR sDsn, long nClassID, IDispatch* dctClassType,
                                      long nInterID, VARIANT* result) noexcept override {
    return Call(0, sDsn, nClassID, dctClassType, nInterID, result);
  }
  HRESULT STDMETHODCALLTYPE AfterSave(BSTR sDsn, IDispatch* dctClassType,
                                      IDispatch* vctClassTypeEntry, IDispatch* dctTableInfo,
                                      IDispatch* dctData, IDispatch* dctLink,
                                      VARIANT* result) noexcept override {
    return Call(1, sDsn, dctClassType, vctClassTypeEntry, dctTableInfo, dctData, dctLink, result);
  }
  HRESULT STDMETHODCALLTYPE get_TransMode(TransactionMode* result) noexcept override {
    return Call(2, result);
  }
};

template <class Class>
HRESULT Create(std::string_view name, const IID& interface_id, REFIID wanted, void** object) {
  return AtBorder(Cat(kLibraryName, ".", name), [&]() -> HRESULT {
    auto* created = new Class(*FindClass(name), interface_id);
    const HRESULT result = created->QueryInterface(wanted, object);
    created->Release();
    return result;
  });
}

constexpr CreatableClass kClasses[] = {
    {"PublicSysInfo", CLSID_PublicSysInfo,
     [](REFIID wanted, void** object) {
       return Create<PublicSysInfo>("PublicSysInfo", IID__PublicSysInfo, wanted, object);
     }},
    {"cls_CX", CLSID_cls_CX,
     [](REFIID wanted, void** object) {
       return Create<cls_CX>("cls_CX", IID__cls_CX, wanted, object);
     }},
    {"cls_DB", CLSID_cls_DB,
     [](REFIID wanted, void** object) {
       return Create<cls_DB>("cls_DB", IID__cls_DB, wanted, object);
     }},
    {"cls_ZZ", CLSID_cls_ZZ,
     [](REFIID wanted, void** object) {
       return Create<cls_ZZ>("cls_ZZ", IID__cls_ZZ, wanted, object);
     }},
    {"CheckProfit", CLSID_CheckProfit,
     [](REFIID wanted, void** object) {
       return Create<CheckAndSave<_CheckProfit>>("CheckProfit", IID__CheckProfit, wanted, object);
     }},
    {"CheckLoss", CLSID_CheckLoss,
     [](REFIID wanted, void** object) {
       return Create<CheckAndSave<_CheckLoss>>("CheckLoss", IID__CheckLoss, wanted, object);
     }},
    {"AdjustPrice", CLSID_AdjustPrice,
     [](REFIID wanted, void** object) {
       return Create<CheckAndSave<_AdjustPrice>>("AdjustPrice", IID__AdjustPrice, wanted, object);
     }},
    {"cls_Template", CLSID_cls_Template,
     [](REFIID wanted, void** object) {
       return Create<cls_Template>("cls_Template", IID__cls_Template, wanted, object);
     }},
    {"clsOtherIn", CLSID_clsOtherIn,
     [](REFIID wanted, void** object) {
       return Create<clsOtherIn>("clsOtherIn", IID__clsOtherIn, wanted, object);
     }},
    {"clsOtherOut", CLSID_clsOtherOut,
     [](REFIID wanted, void** object) {
       return Create<clsOtherOut>("clsOtherOut", IID__clsOtherOut, wanted, object);
     }},
};

}  // namespace

std::span<const CreatableClass> CreatableClasses() {
  return kClasses;
}

}  // namespace tavcc::automation
