-- The ERP database as the inventory rules see it: tables, views, stored procedures.
--
-- Plain Transact-SQL that runs unchanged on SQL Server and on the embedded database; batches are
-- separated by lines that hold only GO. Conventions:
--   * ids, flags and states are int; quantities, prices and amounts decimal(28,10); texts nvarchar;
--     dates datetime with their time of day.
--   * A column that an insert leaves out means "nothing": 0, the empty text, a null date. Columns
--     that the rules read null-safely accept null as well.
--   * No foreign keys: heads are deleted before their entries.
--   * Entry tables are indexed by bill, not keyed by row: a bill's rows are renumbered while it is
--     being saved.
--   * Indexes of T_CC_Inventory have filters. SQL Server wants certain settings of whoever makes
--     such an index or changes its table (CREATE INDEX, "Required SET options for filtered
--     indexes"): ADO and ODBC connections have them, sqlcmd lacks the one that is set here.
SET QUOTED_IDENTIFIER ON
GO

-- System settings, each a text under a category and a key.
CREATE TABLE t_SystemProfile (
  FCategory nvarchar(60) NOT NULL,
  FKey nvarchar(60) NOT NULL,
  FValue nvarchar(255) NULL DEFAULT(''),
  PRIMARY KEY (FCategory, FKey)
)
GO

-- The accounting periods: first and last day of each.
CREATE TABLE t_PeriodDate (
  FYear int NOT NULL,
  FPeriod int NOT NULL,
  FStartDate datetime NULL,
  FEndDate datetime NULL,
  PRIMARY KEY (FYear, FPeriod)
)
GO

-- Items. FTrack is the costing method (76, 78, or 80: specific identification), FCalDate the date
-- from which the item's costs are to be calculated again.
CREATE TABLE t_ICItem (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT(''),
  FModel nvarchar(255) NULL DEFAULT(''),
  FUnitGroupID int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FTrack int NOT NULL DEFAULT(0),
  FISBatchManager int NOT NULL DEFAULT(0),
  FIsKFPeriod int NOT NULL DEFAULT(0),
  FIsSerialNumMgr int NOT NULL DEFAULT(0),
  FCalDate datetime NULL
)
GO

-- Measure units. FCoefficient is the number of base units of the group that the unit holds.
CREATE TABLE t_MeasureUnit (
  FMeasureUnitID int NOT NULL PRIMARY KEY,
  FUnitGroupID int NOT NULL DEFAULT(0),
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(80) NOT NULL DEFAULT(''),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_MeasureUnit_Group ON t_MeasureUnit (FUnitGroupID)
GO

-- Auxiliary properties of items (colour, size …).
CREATE TABLE t_AuxItem (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT('')
)
GO

-- Bar codes: one row per code, with the unit it stands for and that unit's coefficient.
CREATE TABLE t_Barcode (
  FItemID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FBarcode nvarchar(80) NOT NULL DEFAULT('')
)
GO
CREATE INDEX IX_Barcode_Item ON t_Barcode (FItemID, FUnitID)
GO

-- Stocks (warehouses). FTypeID 500 is an ordinary stock; 502 is left out of costs and prices.
CREATE TABLE t_Stock (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT(''),
  FTypeID int NOT NULL DEFAULT(0)
)
GO

-- Customer types. FCoefficient multiplies the limit prices of the customers of the type.
CREATE TABLE t_ClientType (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT(''),
  FCoefficient decimal(28,10) NULL DEFAULT(0)
)
GO

-- Customers, with their credit line, balances and prepayments.
CREATE TABLE t_Organization (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT(''),
  FTypeID int NULL DEFAULT(0),
  FCreditAmount decimal(28,10) NULL DEFAULT(0),
  FCurComeGoBalance decimal(28,10) NULL DEFAULT(0),
  FCurReceAmount decimal(28,10) NULL DEFAULT(0),
  FCurPrepAmount decimal(28,10) NULL DEFAULT(0),
  FPrepCheckAmount decimal(28,10) NULL DEFAULT(0),
  FUnPrepCheckAmount decimal(28,10) NULL DEFAULT(0),
  FIntent int NOT NULL DEFAULT(0)
)
GO

-- Suppliers, likewise.
CREATE TABLE t_Supplier (
  FItemID int NOT NULL PRIMARY KEY,
  FNumber nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT(''),
  FCreditAmount decimal(28,10) NULL DEFAULT(0),
  FCurComeGoBalance decimal(28,10) NULL DEFAULT(0),
  FCurReceAmount decimal(28,10) NULL DEFAULT(0),
  FCurPrepAmount decimal(28,10) NULL DEFAULT(0),
  FPrepCheckAmount decimal(28,10) NULL DEFAULT(0),
  FUnPrepCheckAmount decimal(28,10) NULL DEFAULT(0)
)
GO

-- Limit and latest prices of an item in a unit.
CREATE TABLE T_ItemPrice (
  FItemID int NOT NULL,
  FUnitID int NOT NULL,
  FXSLimitPrice decimal(28,10) NULL DEFAULT(0),
  FCGLimitPrice decimal(28,10) NULL DEFAULT(0),
  FLatestInPrice decimal(28,10) NULL DEFAULT(0),
  FLowestInPrice decimal(28,10) NULL DEFAULT(0),
  FCGLatestPrice decimal(28,10) NULL DEFAULT(0),
  FXSLatestPrice decimal(28,10) NULL DEFAULT(0),
  FXSIncludeTaxLastPrice decimal(28,10) NULL DEFAULT(0),
  PRIMARY KEY (FItemID, FUnitID)
)
GO

-- Price history: the prices of an item in a unit with a customer, a supplier, or neither. FIsLast
-- marks the rows of the partner's latest bill, which is what a new row belongs to.
CREATE TABLE t_LatestPrice (
  FCustID int NOT NULL DEFAULT(0),
  FSupplyID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FIncludeTaxPrice decimal(28,10) NULL DEFAULT(0),
  FDiscountRate decimal(28,10) NULL DEFAULT(0),
  FDate datetime NULL,
  FCheckDate datetime NULL,
  FIsLast int NOT NULL DEFAULT(1)
)
GO
CREATE INDEX IX_LatestPrice_Item ON t_LatestPrice (FItemID, FUnitID)
GO

-- Stock on hand: quantity and value (FBal) of an item in a stock, by batch, auxiliary property and
-- shelf life. The dates are texts, "YYYY-MM-DD", "1900-01-01" where there is none. The posting
-- refreshes the shelf life of rows, so that two rows may come to have the same key: no unique key.
CREATE TABLE T_CC_Inventory (
  FBrNo nvarchar(10) NOT NULL DEFAULT(''),
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NOT NULL DEFAULT(''),
  FAuxPropID int NOT NULL DEFAULT(0),
  FKFPeriod int NOT NULL DEFAULT(0),
  FKFDate nvarchar(20) NOT NULL DEFAULT(''),
  FPeriodDate nvarchar(20) NOT NULL DEFAULT(''),
  FBatchNoIndex nvarchar(30) NOT NULL DEFAULT(''),
  FQty decimal(28,10) NULL DEFAULT(0),
  FSecQty decimal(28,10) NULL DEFAULT(0),
  FBal decimal(28,10) NULL DEFAULT(0),
  FLockQty decimal(28,10) NULL DEFAULT(0)
)
GO
CREATE INDEX IX_Inventory_Item ON T_CC_Inventory (FItemID, FStockID)
GO
-- What the clean-up after un-auditing looks for: emptied rows with a second quantity left over, and
-- emptied rows with all that decides whether they may go.
CREATE INDEX IX_Inventory_SecondLeft ON T_CC_Inventory (FItemID)
  WHERE FSecQty <> 0 AND FQty >= -0.000000001 AND FQty <= 0.000000001
GO
CREATE INDEX IX_Inventory_Emptied ON T_CC_Inventory (FBal, FItemID, FStockID, FAuxPropID, FBatchNo)
  WHERE FQty = 0
GO

-- Opening stock: what was on hand, and worth how much, before the first bill. Same key and texts as
-- T_CC_Inventory.
CREATE TABLE ICInvInitial (
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NOT NULL DEFAULT(''),
  FAuxPropID int NOT NULL DEFAULT(0),
  FKFPeriod int NOT NULL DEFAULT(0),
  FKFDate nvarchar(20) NOT NULL DEFAULT(''),
  FPeriodDate nvarchar(20) NOT NULL DEFAULT(''),
  FBatchNoIndex nvarchar(30) NOT NULL DEFAULT(''),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FBal decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_InvInitial_Item ON ICInvInitial (FItemID)
GO

-- Shelf life of the batches in stock.
CREATE TABLE T_CC_Stock (
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FKFDate datetime NULL,
  FKFPeriod int NOT NULL DEFAULT(0),
  FPeriodDate datetime NULL,
  FQty decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_CC_Stock_Item ON T_CC_Stock (FItemID, FStockID)
GO

-- Shelf life of batches that were registered by themselves.
CREATE TABLE T_CC_Stock_batchno (
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FKFDate datetime NULL,
  FKFPeriod int NOT NULL DEFAULT(0),
  FPeriodDate datetime NULL,
  FQty decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_CC_Stock_batchno_Item ON T_CC_Stock_batchno (FItemID, FStockID)
GO

-- Stock bills: purchase, sale, other receipt and issue, stock check, transfer, price adjustment.
-- FStatus 0 is open, 1 audited, 2 closed or linked. FInvoiceSatus is spelt so.
CREATE TABLE T_CC_StockBill (
  FID int NOT NULL PRIMARY KEY,
  FClassTypeID int NOT NULL DEFAULT(0),
  FBillTypeID int NOT NULL DEFAULT(0),
  FBillNo nvarchar(80) NOT NULL DEFAULT(''),
  FDate datetime NULL,
  FSaveDate datetime NULL,
  FCustID int NOT NULL DEFAULT(0),
  FSupplyID int NOT NULL DEFAULT(0),
  FStatus int NULL DEFAULT(0),
  FRejected int NULL DEFAULT(0),
  FBillerID int NULL DEFAULT(0),
  FCheckerID int NULL DEFAULT(0),
  FCheckDate datetime NULL,
  FVoucherID int NULL DEFAULT(0),
  FAllAmount decimal(28,10) NULL DEFAULT(0),
  FNeutralizeAmount decimal(28,10) NULL DEFAULT(0),
  FUnCheckAmount decimal(28,10) NULL DEFAULT(0),
  FSettleLimitDate datetime NULL,
  FInvoiceSatus int NULL DEFAULT(0),
  FInvoiceAmt decimal(28,10) NULL DEFAULT(0),
  FNoInvoiceAmt decimal(28,10) NULL DEFAULT(0),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_StockBill_Class ON T_CC_StockBill (FClassTypeID, FBillTypeID)
GO
CREATE INDEX IX_StockBill_Cust ON T_CC_StockBill (FCustID)
GO
CREATE INDEX IX_StockBill_Supply ON T_CC_StockBill (FSupplyID)
GO

-- Rows of the stock bills. FQty counts base units, FShowQty the shown unit, of which FCoefficient
-- says how many base units it holds; prices are those of the shown unit, FBasePrice of the base
-- unit. FDCStockID receives, FSCStockID issues; FClassID_SRC and FID_SRC name the bill that the row
-- was made from.
CREATE TABLE T_CC_StockBillEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FBatchNoIndex nvarchar(30) NOT NULL DEFAULT(''),
  FDCStockID int NULL DEFAULT(0),
  FSCStockID int NULL DEFAULT(0),
  FKFPeriod int NOT NULL DEFAULT(0),
  FKFDate datetime NULL,
  FPeriodDate datetime NULL,
  FUnitID int NOT NULL DEFAULT(0),
  FShowUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FShowQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FPriceDiscount decimal(28,10) NULL DEFAULT(0),
  FBasePrice decimal(28,10) NULL DEFAULT(0),
  FIncludeTaxPrice decimal(28,10) NULL DEFAULT(0),
  FDiscountRate decimal(28,10) NULL DEFAULT(0),
  FAmount decimal(28,10) NULL DEFAULT(0),
  FCostPrice decimal(28,10) NULL DEFAULT(0),
  FCostAmount decimal(28,10) NULL DEFAULT(0),
  FProfitLossQty decimal(28,10) NOT NULL DEFAULT(0),
  FProfitLossSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FClassID_SRC int NOT NULL DEFAULT(0),
  FID_SRC int NOT NULL DEFAULT(0),
  FSerialNo nvarchar(2000) NULL DEFAULT(''),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_StockBillEntry_Bill ON T_CC_StockBillEntry (FID, FEntryID)
GO
CREATE INDEX IX_StockBillEntry_Source ON T_CC_StockBillEntry (FClassID_SRC, FID_SRC)
GO
CREATE INDEX IX_StockBillEntry_Item ON T_CC_StockBillEntry
  (FItemID, FDCStockID, FAuxPropID, FBatchNo, FID)
GO

-- Assembly (1040005) and disassembly (1040006) bills.
CREATE TABLE T_CC_ZZCX (
  FID int NOT NULL PRIMARY KEY,
  FClassTypeID int NOT NULL DEFAULT(0),
  FBillTypeID int NOT NULL DEFAULT(0),
  FBillNo nvarchar(80) NOT NULL DEFAULT(''),
  FDate datetime NULL,
  FSaveDate datetime NULL,
  FStatus int NULL DEFAULT(0),
  FBillerID int NULL DEFAULT(0),
  FCheckerID int NULL DEFAULT(0),
  FCheckDate datetime NULL,
  FVoucherID int NULL DEFAULT(0),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO

-- Their products: put together into FDCStockID, or taken apart from there.
CREATE TABLE T_CC_ZZCX_Entry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FBatchNoIndex nvarchar(30) NOT NULL DEFAULT(''),
  FDCStockID int NULL DEFAULT(0),
  FKFPeriod int NOT NULL DEFAULT(0),
  FProDate datetime NULL,
  FExpDate datetime NULL,
  FUnitID int NOT NULL DEFAULT(0),
  FShowUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FShowQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FAmount decimal(28,10) NULL DEFAULT(0),
  FCostPrice decimal(28,10) NULL DEFAULT(0),
  FCostAmount decimal(28,10) NULL DEFAULT(0),
  FSerialNo nvarchar(2000) NULL DEFAULT(''),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_ZZCX_Entry_Bill ON T_CC_ZZCX_Entry (FID, FEntryID)
GO
CREATE INDEX IX_ZZCX_Entry_Item ON T_CC_ZZCX_Entry
  (FItemID, FDCStockID, FAuxPropID, FBatchNo, FID)
GO

-- Their components: taken from FSCStockID, or won back into it.
CREATE TABLE T_CC_ZZCX_Entry2 (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FBatchNoIndex nvarchar(30) NOT NULL DEFAULT(''),
  FDCStockID int NULL DEFAULT(0),
  FSCStockID int NULL DEFAULT(0),
  FKFPeriod int NOT NULL DEFAULT(0),
  FProDate datetime NULL,
  FExpDate datetime NULL,
  FUnitID int NOT NULL DEFAULT(0),
  FShowUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FShowQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FAmount decimal(28,10) NULL DEFAULT(0),
  FCostPrice decimal(28,10) NULL DEFAULT(0),
  FCostAmount decimal(28,10) NULL DEFAULT(0),
  FSerialNo nvarchar(2000) NULL DEFAULT(''),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_ZZCX_Entry2_Bill ON T_CC_ZZCX_Entry2 (FID, FEntryID)
GO
CREATE INDEX IX_ZZCX_Entry2_Item ON T_CC_ZZCX_Entry2
  (FItemID, FSCStockID, FAuxPropID, FBatchNo, FID)
GO

-- Purchase orders (1020001). Orders make no vouchers and have no voucher column.
CREATE TABLE t_CG_Order (
  FID int NOT NULL PRIMARY KEY,
  FClassTypeID int NOT NULL DEFAULT(0),
  FBillTypeID int NOT NULL DEFAULT(0),
  FBillNo nvarchar(80) NOT NULL DEFAULT(''),
  FDate datetime NULL,
  FSaveDate datetime NULL,
  FSupplyID int NOT NULL DEFAULT(0),
  FStatus int NULL DEFAULT(0),
  FRejected int NULL DEFAULT(0),
  FBillerID int NULL DEFAULT(0),
  FCheckerID int NULL DEFAULT(0),
  FCheckDate datetime NULL,
  FAllAmount decimal(28,10) NULL DEFAULT(0)
)
GO

-- Rows of the purchase orders: how much is on order and how much is to come in, in the shown unit
-- and (FBase…) in base units.
CREATE TABLE t_CG_OrderEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FShowUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FShowQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FPriceDiscount decimal(28,10) NULL DEFAULT(0),
  FBasePrice decimal(28,10) NULL DEFAULT(0),
  FIncludeTaxPrice decimal(28,10) NULL DEFAULT(0),
  FDiscountRate decimal(28,10) NULL DEFAULT(0),
  FAmount decimal(28,10) NULL DEFAULT(0),
  FCgOrderQty decimal(28,10) NOT NULL DEFAULT(0),
  FBaseCgOrderQty decimal(28,10) NOT NULL DEFAULT(0),
  FInTotalQty decimal(28,10) NOT NULL DEFAULT(0),
  FBaseInTotalQty decimal(28,10) NOT NULL DEFAULT(0),
  FClassID_SRC int NOT NULL DEFAULT(0),
  FID_SRC int NOT NULL DEFAULT(0),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_CG_OrderEntry_Bill ON t_CG_OrderEntry (FID, FEntryID)
GO

-- Sales orders (1030001), likewise without a voucher column.
CREATE TABLE t_XS_Order (
  FID int NOT NULL PRIMARY KEY,
  FClassTypeID int NOT NULL DEFAULT(0),
  FBillTypeID int NOT NULL DEFAULT(0),
  FBillNo nvarchar(80) NOT NULL DEFAULT(''),
  FDate datetime NULL,
  FSaveDate datetime NULL,
  FCustID int NOT NULL DEFAULT(0),
  FStatus int NULL DEFAULT(0),
  FRejected int NULL DEFAULT(0),
  FBillerID int NULL DEFAULT(0),
  FCheckerID int NULL DEFAULT(0),
  FCheckDate datetime NULL,
  FAllAmount decimal(28,10) NULL DEFAULT(0)
)
GO

-- Rows of the sales orders: how much is sold and how much of it is still to be had.
CREATE TABLE t_XS_OrderEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FIndex int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FShowUnitID int NOT NULL DEFAULT(0),
  FCoefficient decimal(28,10) NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FShowQty decimal(28,10) NOT NULL DEFAULT(0),
  FSecQty decimal(28,10) NOT NULL DEFAULT(0),
  FPrice decimal(28,10) NULL DEFAULT(0),
  FPriceDiscount decimal(28,10) NULL DEFAULT(0),
  FBasePrice decimal(28,10) NULL DEFAULT(0),
  FIncludeTaxPrice decimal(28,10) NULL DEFAULT(0),
  FDiscountRate decimal(28,10) NULL DEFAULT(0),
  FAmount decimal(28,10) NULL DEFAULT(0),
  FXSOrderQty decimal(28,10) NOT NULL DEFAULT(0),
  FBaseXSOrderQty decimal(28,10) NOT NULL DEFAULT(0),
  FInTotalQty decimal(28,10) NOT NULL DEFAULT(0),
  FBaseInTotalQty decimal(28,10) NOT NULL DEFAULT(0),
  FClassID_SRC int NOT NULL DEFAULT(0),
  FID_SRC int NOT NULL DEFAULT(0),
  FNote nvarchar(255) NULL DEFAULT('')
)
GO
CREATE INDEX IX_XS_OrderEntry_Bill ON t_XS_OrderEntry (FID, FEntryID)
GO

-- Stock templates: lists of items that bills are started from.
CREATE TABLE T_CC_Templet (
  FID int NOT NULL PRIMARY KEY,
  FBillNo nvarchar(80) NOT NULL DEFAULT(''),
  FName nvarchar(255) NOT NULL DEFAULT('')
)
GO
CREATE TABLE T_CC_TempletEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FUnitID int NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_TempletEntry_Templet ON T_CC_TempletEntry (FID, FEntryID)
GO

-- Relations among bills: the bills of one group number belong together.
CREATE TABLE ICRelations (
  FGroupNo int NOT NULL DEFAULT(0),
  FClassTypeID int NOT NULL DEFAULT(0),
  FID int NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_Relations_Bill ON ICRelations (FClassTypeID, FID)
GO
CREATE INDEX IX_Relations_Group ON ICRelations (FGroupNo)
GO

-- Rows of payable, receivable and settlement documents, each with the bill that it was made from.
CREATE TABLE t_RP_PBillEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FSourceClassTypeID int NOT NULL DEFAULT(0),
  FSourceBillID int NOT NULL DEFAULT(0),
  FAmount decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_RP_PBillEntry_Source ON t_RP_PBillEntry (FSourceClassTypeID, FSourceBillID)
GO
CREATE TABLE t_RP_RBillEntry (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FSourceClassTypeID int NOT NULL DEFAULT(0),
  FSourceBillID int NOT NULL DEFAULT(0),
  FAmount decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_RP_RBillEntry_Source ON t_RP_RBillEntry (FSourceClassTypeID, FSourceBillID)
GO
CREATE TABLE t_RP_CheckBillEntry1 (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FSourceClassTypeID int NOT NULL DEFAULT(0),
  FSourceBillID int NOT NULL DEFAULT(0),
  FAmount decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_RP_CheckBillEntry1_Source
  ON t_RP_CheckBillEntry1 (FSourceClassTypeID, FSourceBillID)
GO
CREATE TABLE t_RP_CheckBillEntry2 (
  FID int NOT NULL DEFAULT(0),
  FEntryID int NOT NULL DEFAULT(0),
  FSourceClassTypeID int NOT NULL DEFAULT(0),
  FSourceBillID int NOT NULL DEFAULT(0),
  FAmount decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_RP_CheckBillEntry2_Source
  ON t_RP_CheckBillEntry2 (FSourceClassTypeID, FSourceBillID)
GO

-- Prepayments that a bill neutralises: the prepaid document's class and the amount.
CREATE TABLE ICCheckInfo (
  FID int NOT NULL DEFAULT(0),
  FSourceClassTypeID2 int NULL DEFAULT(0),
  FCurCheckAmount decimal(28,10) NULL DEFAULT(0)
)
GO
CREATE INDEX IX_CheckInfo_Bill ON ICCheckInfo (FID)
GO

-- Invoices drawn on a bill.
CREATE TABLE t_CC_InvoiceFlow (
  FID int NOT NULL DEFAULT(0),
  FBillTypeID int NOT NULL DEFAULT(0),
  FInvoiceNo nvarchar(80) NOT NULL DEFAULT(''),
  FAmount decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_InvoiceFlow_Bill ON t_CC_InvoiceFlow (FID)
GO

-- Calculated balances by bill, and their condensed copy.
CREATE TABLE t_CC_Bal (
  FClassTypeID int NOT NULL DEFAULT(0),
  FID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FBal decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_CC_Bal_Bill ON t_CC_Bal (FClassTypeID, FID)
GO
CREATE TABLE ICSpeedBal (
  FClassTypeID int NOT NULL DEFAULT(0),
  FID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FQty decimal(28,10) NOT NULL DEFAULT(0),
  FBal decimal(28,10) NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_SpeedBal_Bill ON ICSpeedBal (FClassTypeID, FID)
GO

-- From when on costs are to be calculated again, per item and batch, and per stock where costs are
-- kept per stock (FStockID 0 where not). One item and batch may have several rows: no unique key.
CREATE TABLE ICCalFlag (
  FStockID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FTrack int NOT NULL DEFAULT(0),
  FBatchNo nvarchar(255) NULL DEFAULT(''),
  FLastDate datetime NULL,
  FID int NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_CalFlag_Item ON ICCalFlag (FItemID)
GO

-- The serial-number ledger: one row per serial number and bill. FStatus 1 brings the number into
-- the stock, 0 takes it out; FCanDeleteFlag marks rows for removal while a bill's rows are renewed.
CREATE TABLE t_SerialNumList (
  FID int IDENTITY(1,1) NOT NULL PRIMARY KEY,
  FBillID int NOT NULL DEFAULT(0),
  FBillIndexID int NOT NULL DEFAULT(0),
  FItemID int NOT NULL DEFAULT(0),
  FStockID int NOT NULL DEFAULT(0),
  FAuxPropID int NOT NULL DEFAULT(0),
  FSerialNo nvarchar(255) NOT NULL DEFAULT(''),
  FNote nvarchar(255) NULL DEFAULT(''),
  FClassTypeID int NOT NULL DEFAULT(0),
  FStatus int NOT NULL DEFAULT(0),
  FCanDeleteFlag int NOT NULL DEFAULT(0)
)
GO
CREATE INDEX IX_SerialNumList_Bill ON t_SerialNumList (FBillID)
GO
CREATE INDEX IX_SerialNumList_Serial ON t_SerialNumList (FItemID, FSerialNo)
GO

-- The units in which an item may be counted: those of its unit group.
CREATE VIEW VW_UNIT AS
SELECT i.FItemID AS FSrcItemID, u.FMeasureUnitID AS FItemID, u.FNumber, u.FName, u.FCoefficient
FROM t_ICItem i INNER JOIN t_MeasureUnit u ON i.FUnitGroupID = u.FUnitGroupID
WHERE u.FCoefficient <> 0
GO

-- Issuing lines: what leaves a stock, or has left it, with the head's state. Purchase returns
-- (2012) and reversed estimates (2031, 2032) leave the stock they once came into; sales returns
-- (3002, 3004, 3011) come back instead; a stock-check loss (1040004) counts its difference; an assembly
-- uses up its components, a disassembly its products.
CREATE VIEW vw_cc_Send AS
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID AS FUnitID,
  CASE WHEN v.FBillTypeID IN (2012, 2031, 2032) THEN u.FDCStockID ELSE u.FSCStockID END AS FStockID,
  u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FKFDate, u.FPeriodDate,
  CASE WHEN v.FClassTypeID = 1040004 THEN u.FProfitLossQty * u.FCoefficient ELSE u.FQty END AS FQty
FROM T_CC_StockBill v INNER JOIN T_CC_StockBillEntry u ON v.FID = u.FID
WHERE (v.FBillTypeID IN (2012, 2031, 2032) AND u.FDCStockID <> 0)
  OR (v.FBillTypeID NOT IN (2012, 2031, 2032, 3002, 3004, 3011) AND u.FSCStockID <> 0)
UNION ALL
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID, u.FSCStockID, u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FProDate, u.FExpDate, u.FQty
FROM T_CC_ZZCX v INNER JOIN T_CC_ZZCX_Entry2 u ON v.FID = u.FID
WHERE v.FClassTypeID = 1040005
UNION ALL
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID, u.FDCStockID, u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FProDate, u.FExpDate, u.FQty
FROM T_CC_ZZCX v INNER JOIN T_CC_ZZCX_Entry u ON v.FID = u.FID
WHERE v.FClassTypeID = 1040006
GO

-- Receiving lines, the other way round.
CREATE VIEW vw_cc_Receive AS
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID AS FUnitID,
  CASE WHEN v.FBillTypeID IN (3002, 3004, 3011) THEN u.FSCStockID ELSE u.FDCStockID END AS FStockID,
  u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FKFDate, u.FPeriodDate, u.FQty
FROM T_CC_StockBill v INNER JOIN T_CC_StockBillEntry u ON v.FID = u.FID
WHERE (v.FBillTypeID IN (3002, 3004, 3011) AND u.FSCStockID <> 0)
  OR (v.FBillTypeID NOT IN (2012, 2031, 2032, 3002, 3004, 3011) AND u.FDCStockID <> 0)
UNION ALL
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID, u.FDCStockID, u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FProDate, u.FExpDate, u.FQty
FROM T_CC_ZZCX v INNER JOIN T_CC_ZZCX_Entry u ON v.FID = u.FID
WHERE v.FClassTypeID = 1040005
UNION ALL
SELECT v.FID, u.FEntryID, v.FClassTypeID, v.FBillTypeID, v.FStatus, v.FDate, u.FItemID,
  u.FShowUnitID, u.FSCStockID, u.FAuxPropID, u.FBatchNo, u.FKFPeriod, u.FProDate, u.FExpDate, u.FQty
FROM T_CC_ZZCX v INNER JOIN T_CC_ZZCX_Entry2 u ON v.FID = u.FID
WHERE v.FClassTypeID = 1040006
GO

-- The issuing lines as the stock check reads them beside a bill's own.
CREATE VIEW vw_cc_Send_audit AS
SELECT FID, FEntryID, FClassTypeID, FBillTypeID, FStatus, FDate, FItemID, FUnitID, FStockID,
  FAuxPropID, FBatchNo, FKFPeriod, FKFDate, FPeriodDate, FQty
FROM vw_cc_Send
GO

-- An item's last cost in a stock and batch: value over quantity of what lies there; null when
-- nothing does.
CREATE PROCEDURE sp_GetLastCost
  @StockID int, @ItemID int, @BatchNo nvarchar(255), @Price decimal(28,10) OUTPUT
AS
SET NOCOUNT ON
SET @Price = NULL
SELECT @Price = CONVERT(decimal(28,10), SUM(FBal)) / CONVERT(decimal(28,10), SUM(FQty))
FROM T_CC_Inventory
WHERE FStockID = @StockID AND FItemID = @ItemID AND FBatchNo = @BatchNo
HAVING SUM(FQty) <> 0
GO

-- Bills that move value but no quantity (rebates, price adjustments): adds each line's amount to
-- the value of the stock row that the line names, on un-audit (@AuditOrUnAddit -1) takes it away
-- again. A line that names no stock row moves nothing.
CREATE PROCEDURE sp_UpdateInventoryForFLTJ
  @ClassTypeID int, @billTypeID int, @FID int, @AuditOrUnAddit int,
  @ErrorMessage nvarchar(255) OUTPUT
AS
SET NOCOUNT ON
SET @ErrorMessage = ''
UPDATE t SET t.FBal = t.FBal + u.FAmount
FROM T_CC_Inventory t INNER JOIN
  (SELECT FItemID, FStockID, FBatchNo, FAuxPropID, FKFPeriod, FKFDate, FPeriodDate, FBatchNoIndex,
     SUM(FAmount) AS FAmount
   FROM
     (SELECT FItemID,
        CASE WHEN @ClassTypeID IN (1030004, 1040002) THEN FSCStockID ELSE FDCStockID END
          AS FStockID,
        ISNULL(FBatchNo, '') AS FBatchNo, FAuxPropID, FKFPeriod,
        LEFT(ISNULL(CONVERT(varchar(20), FKFDate, 120), '1900-01-01'), 10) AS FKFDate,
        LEFT(ISNULL(CONVERT(varchar(20), FPeriodDate, 120), '1900-01-01'), 10) AS FPeriodDate,
        FBatchNoIndex,
        CASE WHEN @AuditOrUnAddit = -1 THEN -ISNULL(FAmount, 0) ELSE ISNULL(FAmount, 0) END
          AS FAmount
      FROM T_CC_StockBillEntry WHERE FID = @FID) l
   GROUP BY FItemID, FStockID, FBatchNo, FAuxPropID, FKFPeriod, FKFDate, FPeriodDate, FBatchNoIndex
  ) u
  ON t.FItemID = u.FItemID AND t.FStockID = u.FStockID AND t.FBatchNo = u.FBatchNo
    AND t.FAuxPropID = u.FAuxPropID AND t.FKFPeriod = u.FKFPeriod AND t.FKFDate = u.FKFDate
    AND t.FPeriodDate = u.FPeriodDate AND t.FBatchNoIndex = u.FBatchNoIndex
GO
