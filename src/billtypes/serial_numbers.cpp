#include "billtypes/serial_numbers.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "billtypes/saved_bill.h"
#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "foundation/trap.h"

namespace tavcc {

namespace {

// ---- Which bills keep serial numbers, and how ---------------------------------------------------

enum Direction : int32_t { kOut = 0, kIn = 1 };

// One side of the stock's door. A class type is in a list when its decimal text occurs anywhere in
// the list's text: deliberately loose, as the lists have always been read.
struct Side {
  std::string_view class_types;
  // Of these bills only one bill type carries goods; the others leave the ledger alone.
  std::string_view rebates;
  int32_t rebate_with_goods;
  // Bills whose type says the direction: these types are in, all others out.
  std::string_view both_ways;
  std::span<const int32_t> types_in;
  Direction direction;  // of all others
  std::string_view stock_column;
};

constexpr int32_t kPurchasesIn[] = {2011, 2030};

constexpr std::string_view kReceivingColumn = "FDCStockID";
constexpr std::string_view kIssuingColumn = "FSCStockID";

// Looked through from the first on.
constexpr Side kSides[] = {
    {"1020002,1020003,1020004,1040001,1040003,1040005,1020005", "1020004", 2042, "1020002,1020003",
     kPurchasesIn, kIn, kReceivingColumn},
    {"1030002,1030003,1030004,1040002,1040004,1040006,1030005", "1030004", 3022, "1030002,1030003",
     bill_types::kSalesReturns, kOut, kIssuingColumn},
};

constexpr std::string_view kDisassemblies = "1040006";
constexpr std::string_view kTransfers = "1040007";
constexpr std::string_view kBillsWithComponents = "1040005,1040006";

bool IsIn(std::string_view list, int32_t class_type) {
  return list.find(Cat(class_type)) != std::string_view::npos;
}

// How the rows of a bill are recorded. A bill on neither side has no stock.
struct RowRule {
  Direction direction = kOut;
  std::string_view stock_column;
};

Direction DirectionOn(const Side& side, const SavedBill& bill, int32_t class_type) {
  if (!IsIn(side.both_ways, class_type)) return side.direction;
  const int32_t bill_type = bill.HeadNumber("FBillTypeID");
  return std::ranges::find(side.types_in, bill_type) != side.types_in.end() ? kIn : kOut;
}

// Nothing for a bill that leaves the ledger alone.
std::optional<RowRule> RuleFor(const SavedBill& bill, int32_t class_type) {
  for (const Side& side : kSides) {
    if (!IsIn(side.class_types, class_type)) continue;
    if (IsIn(side.rebates, class_type) &&
        bill.HeadNumber("FBillTypeID") != side.rebate_with_goods) {
      return std::nullopt;
    }
    // A disassembly's products go out of the stock that they were once brought into.
    const std::string_view stock_column =
        IsIn(kDisassemblies, class_type) ? kReceivingColumn : side.stock_column;
    return RowRule{DirectionOn(side, bill, class_type), stock_column};
  }
  return RowRule{};
}

// ---- Statements ---------------------------------------------------------------------------------

// One serial number of a row, as the ledger records it.
struct Record {
  int32_t bill_id;
  int32_t class_type;
  int32_t row;  // from 1, in its page
  int32_t item;
  int32_t stock;
  int32_t aux_prop;
  Direction direction;
  std::string_view serial;
  std::string_view note;
};

std::string LookUp(const Record& r) {
  return Cat("select FID from t_SerialNumList where FItemID=", r.item, " and FSerialNo='", r.serial,
             "'  and FBillID=", r.bill_id);  // two blanks: as stored
}

std::string LookUpAtStock(const Record& r) {
  return Cat("select FID from t_SerialNumList where FItemID=", r.item, " and FSerialNo='", r.serial,
             "'  and FBillID=", r.bill_id,  // two blanks: as stored
             " and FStockID=", r.stock, " and FAuxPropID=", r.aux_prop);
}

std::string Insert(const Record& r) {
  return Cat(
      "insert into t_SerialNumList(FBillID,FBillIndexID,FItemID,FStockID,FAuxPropID,FSerialNo,"
      "FNote,FClassTypeID,FStatus) values (",
      r.bill_id, ",", r.row, ",", r.item, ",", r.stock, ",", r.aux_prop, ",'", r.serial, "','",
      r.note, "',", r.class_type, ",", int32_t{r.direction}, ")");
}

std::string Update(const Record& r, int32_t id) {
  return Cat("update t_SerialNumList set FBillIndexID = ", r.row, ",FStockID = ", r.stock,
             ",FAuxPropID = ", r.aux_prop, ",FNote ='", r.note, "',FClassTypeID = ", r.class_type,
             ",FStatus = ", int32_t{r.direction}, ", FCanDeleteFlag = 0 where FID=", id);
}

std::string UpdateAtSource(const Record& r, int32_t id) {
  return Cat("update t_SerialNumList set FBillIndexID = ", r.row, ",FStockID = ", r.stock,
             ",FAuxPropID = ", r.aux_prop, ",FNote = '", r.note, "',FClassTypeID = ", r.class_type,
             ",FStatus = 0, FCanDeleteFlag = 0 where FID=", id);
}

std::string UpdateAtDestination(const Record& r, int32_t id) {
  return Cat("update t_SerialNumList set FBillIndexID = ", r.row, ",FStockID = ", r.stock,
             ",FAuxPropID = ", r.aux_prop, ",FNote = '", r.note, "',FClassTypeID = ", r.class_type,
             ",FStatus = 1, FCanDeleteFlag = 0where FID=", id);  // no blank: as stored
}

// ---- Recording ----------------------------------------------------------------------------------

using LookUpStatement = std::string (*)(const Record&);
using UpdateStatement = std::string (*)(const Record&, int32_t id);

std::optional<int32_t> FindRecord(Connection& cn, const std::string& look_up) {
  const RecordsetPtr found = cn.Execute(look_up);
  if (found->AtEnd()) return std::nullopt;
  return ToLong(found->Field("FID"));
}

void Put(Connection& cn, const Record& record, LookUpStatement look_up, UpdateStatement update) {
  const std::optional<int32_t> id = FindRecord(cn, look_up(record));
  cn.Execute(id ? update(record, *id) : Insert(record));
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

// Calls `put` with the record of each serial number that the row's text lists, in order.
template <class PutRecord>
void ForEachSerial(std::string_view text, Record record, PutRecord&& put) {
  for (const std::string_view piece : Split(text, '|')) {
    const std::vector<std::string_view> parts = Split(piece, ',');
    if (parts.size() < 2) continue;
    record.serial = parts[0];
    record.note = parts[1];
    put(record);
  }
}

class LedgerUpdate {
 public:
  LedgerUpdate(Connection& cn, const SavedBill& bill)
      : cn_(cn),
        bill_(bill),
        bill_id_(bill.Number("FID")),
        class_type_(bill.Number("FClassTypeID")) {}

  void Run();

 private:
  // The columns of an entry page that a pass reads; no stock column stands for no stock.
  struct Columns {
    std::string_view page;
    std::string_view serials;
    std::string_view item;
    std::string_view stock;
    std::string_view aux_prop;
  };

  // A row of a page: its serial numbers as they stand, and what their records have in common.
  struct Row {
    std::string serials;
    Record record;
  };

  void RecordRows(const Columns& columns, Direction direction);
  void RecordTransfer();
  Row ReadRow(const Vector& page, int row, const Columns& columns, Direction direction) const;
  int32_t StockOf(const Vector& page, int row, std::string_view column) const;
  Direction ComponentDirection(Direction of_products) const;

  Connection& cn_;
  const SavedBill& bill_;
  const int32_t bill_id_;
  const int32_t class_type_;
};

void LedgerUpdate::Run() {
  const std::optional<RowRule> rule = RuleFor(bill_, class_type_);
  if (!rule) return;

  cn_.Execute(Cat("update t_SerialNumList set FCanDeleteFlag = 1 where FBillID=", bill_id_));
  if (IsIn(kTransfers, class_type_)) {
    RecordTransfer();
  } else {
    RecordRows({"Page2", "FSerialNo", "FItemID", rule->stock_column, "FAuxPropID"},
               rule->direction);
  }
  if (IsIn(kBillsWithComponents, class_type_)) {
    RecordRows({"Page3", "FSerialNo1", "FCldItemID", "FSCStockID", "FBase"},
               ComponentDirection(rule->direction));
  }
  cn_.Execute(Cat("delete from t_SerialNumList where FCanDeleteFlag = 1 and FBillID=", bill_id_));
}

void LedgerUpdate::RecordRows(const Columns& columns, Direction direction) {
  const VectorPtr page = bill_.Page(columns.page);
  for (int i = 1; i <= page->Size(); ++i) {
    const Row row = ReadRow(*page, i, columns, direction);
    ForEachSerial(row.serials, row.record,
                  [&](const Record& record) { Put(cn_, record, LookUp, Update); });
  }
}

// A transfer takes each serial number out of one stock and brings it into another: two records.
void LedgerUpdate::RecordTransfer() {
  const Columns columns{"Page2", "FSerialNo", "FItemID", kIssuingColumn, "FAuxPropID"};
  const VectorPtr page = bill_.Page(columns.page);
  for (int i = 1; i <= page->Size(); ++i) {
    const Row row = ReadRow(*page, i, columns, kOut);
    const int32_t destination = StockOf(*page, i, kReceivingColumn);
    ForEachSerial(row.serials, row.record, [&](const Record& source) {
      Put(cn_, source, LookUpAtStock, UpdateAtSource);
      Record into = source;
      into.stock = destination;
      into.direction = kIn;
      Put(cn_, into, LookUpAtStock, UpdateAtDestination);
    });
  }
}

LedgerUpdate::Row LedgerUpdate::ReadRow(const Vector& page, int row, const Columns& columns,
                                        Direction direction) const {
  const auto field = [&](std::string_view column) { return bill_.RowField(page, row, column); };
  return {.serials = ToText(field(columns.serials)),
          .record = {.bill_id = bill_id_,
                     .class_type = class_type_,
                     .row = row,
                     .item = FieldNumber(field(columns.item)),
                     .stock = StockOf(page, row, columns.stock),
                     .aux_prop = FieldNumber(field(columns.aux_prop)),
                     .direction = direction,
                     .serial = {},
                     .note = {}}};
}

int32_t LedgerUpdate::StockOf(const Vector& page, int row, std::string_view column) const {
  return column.empty() ? 0 : FieldNumber(bill_.RowField(page, row, column));
}

// Components go the way opposite to the products'. A class type that is merely part of one of the
// two ids keeps the direction of its rows.
Direction LedgerUpdate::ComponentDirection(Direction of_products) const {
  if (class_type_ == class_type::kAssembly) return kOut;
  if (class_type_ == class_type::kDisassembly) return kIn;
  return of_products;
}

}  // namespace

bool SaveSerialNumData(Connection& cn, const Dictionary& dctTableInfo, const Dictionary& dctData) {
  return Trap(
      [&] {
        const SavedBill bill(dctTableInfo, dctData);
        LedgerUpdate(cn, bill).Run();
        return true;
      },
      [](const AutomationError& error) -> bool {
        throw AutomationError(error.number(), "SaveSerialNumData", error.description());
      });
}

bool CheckSerialNumReuse(Connection& cn, int32_t bill_id) {
  return Trap(
      [&] {
        return cn
            .Execute(
                Cat("select 1 from t_serialnumlist a inner join (select max(fid) as fid,fitemid,"
                    "fserialno from t_serialnumlist where fbillid=",
                    bill_id,
                    " group by fitemid,fserialno) b on a.fitemid=b.fitemid and "
                    "a.fserialno=b.fserialno where a.fid>b.fid and fbillid>0 "))
            ->AtEnd();
      },
      [](const AutomationError&) { return false; });
}

}  // namespace tavcc
