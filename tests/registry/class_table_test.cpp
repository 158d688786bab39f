// The interfaces as they were published, typed out: a host may have cached every slot and id.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "registry/class_registry.h"

namespace tavcc {
namespace {

// One method per line: slot, dispatch id, name, parameters, result. "&" marks in/out, "?" optional,
// "=" its default.
constexpr const char* kPublicSysInfo = R"(
0 60030003 AllowMinusStockNum(strConString BSTR) VARIANT
1 60030004 AuditBill(billVect Bzo.Vector, CheckType I2, sDsn BSTR, BatchCheck BOOL, &dct Bzo.Dictionary, ?NeedCheckDaily BOOL=True, ?NeedCheckCrdPrc BOOL=True) I2
2 60030005 CanCheckGH(ClassBillType I4, BillTypeID I4, BillInterID I4, Check I4, &sMsg BSTR) BOOL
3 60030006 CanCheckFL(ClassBillType I4, BillTypeID I4, BillInterID I4, Check I4, &sMsg BSTR) BOOL
4 60030007 CanCheckGJ(ClassBillType I4, BillTypeID I4, BillInterID I4, Check I4, &sMsg BSTR) BOOL
5 60030008 CheckCredit(oDict Bzo.Dictionary, intCheckType I2, sDsn BSTR, &strReturnMsg BSTR, &?Cg BOOL) I2
6 60030009 CheckItemStockNum(oDict Bzo.Dictionary, intCheckType I2, sDsn BSTR, &strReturnMsg BSTR, &rs ADODB.Recordset, ?OptAboutUnderStock BSTR, ?vct Bzo.Vector) I2
7 6003000A GetLowPrice(oConn ADODB.Connection, lItemID I4, lUnitID I4) R8
8 6003000B GetNewPrice(oConn ADODB.Connection, lItemID I4, lUnitID I4) R8
9 6003000C CheckLimitPrice(oDict Bzo.Dictionary, intCheckType I2, sDsn BSTR, &strReturnMsg BSTR, &?rs ADODB.Recordset, &?Cg BOOL) I2
10 6003000D SteelCheckLimitPrice(oDict Bzo.Dictionary, intCheckType I2, sDsn BSTR, &strReturnMsg BSTR, &?rs ADODB.Recordset, &?Cg BOOL) I2
11 6003000E CheckNegPrice(sDsn BSTR, vctBill Bzo.Vector, &NegVct Bzo.Vector) BOOL
12 6003000F DateInCurrentPeriod(strConString BSTR, dtDate DATE) BOOL
13 60030010 DeleteBill(oDict Bzo.Dictionary, sDsn BSTR, &strReturnMsg BSTR) BOOL
14 60030011 GetPeriodStartAndEndDate(strConString BSTR, &strBegDate BSTR, &strEndDate BSTR) VARIANT
15 60030012 OtherBillCanCheck(ClassBillType I4, BillInterID I4, Check I4, &sMsg BSTR) BOOL
16 60030013 ReBuildBal(sDsn BSTR, &sInfo BSTR, &?oEvent IDispatch) BOOL
17 60030014 UpdateBal(sDsn BSTR, lClassTypeID I4, lBillTypeID I4, lBillID I4, lCheckType I4, ?NeedCal BOOL=True) BSTR
18 60030015 VerifyDataBeforeAudit(oDict Bzo.Dictionary, sDsn BSTR, intCheckType I2, &strReturnMsg BSTR, ?bCheckDaily BOOL=True) I2
19 60030016 VerifyDataBeforeDelete(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR, HeadTableName BSTR) BOOL
20 60030023 WhetherCheckStockNum(intCheckType I2, oDict Bzo.Dictionary) I2
21 60030024 WhetherNeedCheckPrice(sDsn BSTR, intCheckType I2, oDict Bzo.Dictionary) I2
22 60030025 WhetherNeedCheckCredit(sDsn BSTR, intCheckType I2, oDict Bzo.Dictionary) I2
23 60030026 WhetherNeedUpdateStockNum(intCheckType I2, oDict Bzo.Dictionary) I2
24 60030028 WhetherBillInvoiceStatus(oDict Bzo.Dictionary, &strRtnTempMsg BSTR) I4
25 68030000 TransMode property, always 2
26 6003002B CheckUnCheckAmountOutOfDate(oDict Bzo.Dictionary, intCheckType I2, sDsn BSTR, &strReturnMsg BSTR, &?Cg BOOL) I2
27 60030039 WhetherNeedCheckUnCheckAmountOutOfDate(sDsn BSTR, intCheckType I2, oDict Bzo.Dictionary) I2
28 6003003C VerifyUnCheckForSelf(oDict Bzo.Dictionary, sDsn BSTR, intCheckType I2, &strReturnMsg BSTR, ?bCheckDaily BOOL=True) I2
)";

constexpr const char* kClsCX = R"(
0 60030003 AuditBill(lngFID I4, lngUserID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
1 60030004 DeleteBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
2 60030005 UnAuditBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
3 60030006 VerifyDataBeforeAudit(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
4 60030007 VerifyDataBeforeDelete(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
5 60030008 VerifyDataBeforeUnAudit(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
6 68030000 TransMode property, always 3
)";

constexpr const char* kClsDB = R"(
0 60030003 AuditBill(lngFID I4, lngUserID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
1 60030004 DeleteBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
2 60030005 UnAuditBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
3 60030006 VerifyDataBeforeAudit(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
4 60030007 VerifyDataBeforeDelete(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
5 60030008 VerifyDataBeforeUnAudit(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
6 68030000 TransMode property, always 3
7 6003000A AfterSave(sDsn BSTR, dctClassType Bzo.Dictionary, vctClassTypeEntry Bzo.Vector, dctTableInfo Bzo.Dictionary, dctData Bzo.Dictionary, dctLink Bzo.Dictionary) VARIANT
8 6003000B BeforeDel(sDsn BSTR, nClassID I4, dctClassType Bzo.Dictionary, nInterID I4) VARIANT
)";

constexpr const char* kClsZZ = R"(
0 60030003 AuditBill(oDict Bzo.Dictionary, sDsn BSTR, &strReturnMsg BSTR) BOOL
1 60030004 DeleteBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
2 60030005 UnAuditBill(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
3 60030006 VerifyDataBeforeAudit(oDict Bzo.Dictionary, sDsn BSTR, &strReturnMsg BSTR) BOOL
4 60030007 VerifyDataBeforeDelete(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
5 60030008 VerifyDataBeforeUnAudit(lngFID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
6 68030000 TransMode property, always 3
7 6003000A BeforeDel(sDsn BSTR, nClassID I4, dctClassType Bzo.Dictionary, nInterID I4) VARIANT
8 6003000B AfterSave(sDsn BSTR, dctClassType Bzo.Dictionary, vctClassTypeEntry Bzo.Vector, dctTableInfo Bzo.Dictionary, dctData Bzo.Dictionary, dctLink Bzo.Dictionary) VARIANT
)";

constexpr const char* kStockCheckBill = R"(
0 60030003 CheckBill(sDsn BSTR, lngInterID I4, ?CheckDir I4=1, &?strReturnMsg BSTR, ?dctData Bzo.Dictionary, ?dctClassType Bzo.Dictionary) I4
1 60030004 SaveNote(sDsn BSTR, lngInterID I4, vctEntryNotes IDispatch) BOOL
2 68030000 TransMode property, always 3
)";

constexpr const char* kClsTemplate = R"(
0 60030003 DeleteBill(FID I4, sDsn BSTR, &strReturnMsg BSTR) BOOL
1 60030004 VerifyDataBeforeDelete(lngFID I4, cn ADODB.Connection, &strReturnMsg BSTR) BOOL
2 68030000 TransMode property, always 3
)";

constexpr const char* kClsOtherIn = R"(
0 60030003 AfterSave(sDsn BSTR, dctClassType Bzo.Dictionary, vctClassTypeEntry Bzo.Vector, dctTableInfo Bzo.Dictionary, dctData Bzo.Dictionary, dctLink Bzo.Dictionary) VARIANT
1 60030004 BeforeDel(sDsn BSTR, nClassID I4, dctClassType Bzo.Dictionary, nInterID I4) VARIANT
2 68030000 TransMode property, always 2
)";

constexpr const char* kClsOtherOut = R"(
0 60030003 BeforeDel(sDsn BSTR, nClassID I4, dctClassType Bzo.Dictionary, nInterID I4) VARIANT
1 60030004 AfterSave(sDsn BSTR, dctClassType Bzo.Dictionary, vctClassTypeEntry Bzo.Vector, dctTableInfo Bzo.Dictionary, dctData Bzo.Dictionary, dctLink Bzo.Dictionary) VARIANT
2 68030000 TransMode property, always 2
)";

void Print(std::ostream& out, const Parameter& parameter) {
  out << (parameter.in_out ? "&" : "") << (parameter.optional ? "?" : "") << parameter.name << ' '
      << TypeText(parameter.type);
  if (!parameter.default_value) return;
  out << '=';
  if (parameter.type == ArgumentType::kBoolean) {
    out << (*parameter.default_value != 0 ? "True" : "False");
  } else {
    out << *parameter.default_value;
  }
}

std::string Print(const ClassDescription& cls) {
  std::ostringstream out;
  out << '\n';
  for (const Method& method : cls.methods) {
    out << method.slot << ' ' << std::hex << std::uppercase << method.dispatch_id << std::dec << ' '
        << method.name;
    if (method.is_property) {
      out << " property, always " << cls.trans_mode << '\n';
      continue;
    }
    const char* separator = "(";
    for (const Parameter& parameter : method.parameters) {
      out << separator;
      Print(out, parameter);
      separator = ", ";
    }
    out << ") " << TypeText(method.result) << '\n';
  }
  return out.str();
}

TEST(ClassTable, IsThePublishedInterface) {
  const struct {
    const char* name;
    const char* interface;
  } rows[] = {
      {"PublicSysInfo", kPublicSysInfo},
      {"cls_CX", kClsCX},
      {"cls_DB", kClsDB},
      {"cls_ZZ", kClsZZ},
      {"CheckProfit", kStockCheckBill},
      {"CheckLoss", kStockCheckBill},
      {"AdjustPrice", kStockCheckBill},
      {"cls_Template", kClsTemplate},
      {"clsOtherIn", kClsOtherIn},
      {"clsOtherOut", kClsOtherOut},
  };
  ASSERT_EQ(Classes().size(), std::size(rows));
  for (const auto& row : rows) {
    const ClassDescription* cls = FindClass(row.name);
    ASSERT_NE(cls, nullptr) << row.name;
    EXPECT_EQ(cls->name, row.name);
    EXPECT_EQ(Print(*cls), row.interface)
        << row.name << ": the row is on the left; where it is a new one, write it into this test";
  }
}

TEST(ClassTable, SlotsFollowTheListAndIdsRise) {
  for (const ClassDescription& cls : Classes()) {
    uint32_t greatest = 0;
    for (size_t i = 0; i < cls.methods.size(); ++i) {
      EXPECT_EQ(cls.methods[i].slot, static_cast<int>(i)) << cls.name;
      if (cls.methods[i].is_property) continue;
      EXPECT_GT(cls.methods[i].dispatch_id, greatest)
          << cls.name << "." << cls.methods[i].name << ": its id is not behind those above it";
      greatest = cls.methods[i].dispatch_id;
    }
  }
}

TEST(ClassTable, EveryMethodIsBuilt) {
  for (const ClassDescription& cls : Classes()) {
    for (const Method& method : cls.methods) {
      EXPECT_TRUE(IsBuilt(method)) << cls.name << "." << method.name;
    }
  }
}

}  // namespace
}  // namespace tavcc
