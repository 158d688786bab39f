-- A small company, for demonstrations and trials: a bicycle dealer with a workshop, in March 2026.
--
-- Its bills are of every kind that the inventory module knows; user 16390 made them, so that user
-- 16394 may audit them. FIDs are unique across all bill tables: several rules find a bill by its FID
-- alone. Prices and amounts are those of the shown unit, FQty counts base units.

-- One person may not make and audit the same bill; credit lines and limit prices are watched.
UPDATE t_SystemProfile SET FValue = '0' WHERE FCategory = 'General' AND FKey = 'SingleMan'
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES
  ('IC', 'ControlPoint', '1'),
  ('IC', 'AlertOverdue', '1'),
  ('IC', 'XSPriceLimit', '0'),
  ('IC', 'XSPriceLimitType', '0'),
  ('IC', 'PriceDigitCount', '2'),
  ('IC', 'Is502PriceNoControl', '1'),
  ('IC', 'StockQtyIncludeUnCheck', '0'),
  ('IC', 'UnCheckOnlySelf', '0'),
  ('IC', 'EditSelfBill', '0')
GO

-- Units: 个/箱, 辆, 瓶/箱, 米/卷.
INSERT INTO t_MeasureUnit (FMeasureUnitID, FUnitGroupID, FNumber, FName, FCoefficient) VALUES
  (101, 1, '01', N'个', 1),
  (102, 1, '02', N'箱', 12),
  (103, 2, '03', N'辆', 1),
  (104, 3, '04', N'瓶', 1),
  (105, 3, '05', N'箱', 24),
  (106, 4, '06', N'米', 1),
  (107, 4, '07', N'卷', 50)
GO

-- Items. Costing method 76 but for helmets and oil (78) and imported tube (80: specific
-- identification). Oil is kept by batch and shelf life, tube by batch, electric bicycles by serial
-- number.
INSERT INTO t_ICItem (FItemID, FNumber, FName, FModel, FUnitGroupID, FUnitID, FTrack,
    FISBatchManager, FIsKFPeriod, FIsSerialNumMgr, FCalDate) VALUES
  (1001, '01.001', N'车架', N'26寸', 1, 101, 76, 0, 0, 0, '20260401'),
  (1002, '01.002', N'车轮', N'26寸', 1, 101, 76, 0, 0, 0, '20260401'),
  (1003, '01.003', N'链条', N'9速', 1, 101, 76, 0, 0, 0, '20260401'),
  (1004, '02.001', N'山地车', N'26寸9速', 2, 103, 76, 0, 0, 0, '20260401'),
  (1005, '03.001', N'头盔', N'均码', 1, 101, 78, 0, 0, 0, '20260401'),
  (1006, '03.002', N'润滑油', '120ml', 3, 104, 78, 1, 1, 0, '20260401'),
  (1007, '02.002', N'电助力车', '48V', 2, 103, 76, 0, 0, 1, '20260401'),
  (1008, '01.004', N'进口钛合金管', 'TC4', 4, 106, 80, 1, 0, 0, '20260401'),
  (1009, '01.005', N'内胎', N'26寸', 1, 101, 76, 0, 0, 0, '20260401')
INSERT INTO t_AuxItem (FItemID, FNumber, FName) VALUES
  (7001, '01', N'红色'),
  (7002, '02', N'蓝色')
INSERT INTO t_Barcode (FItemID, FIndex, FUnitID, FCoefficient, FBarcode) VALUES
  (1002, 1, 101, 1, '6900000010021'),
  (1002, 2, 102, 12, '6900000010022'),
  (1005, 1, 101, 1, '6900000010051'),
  (1006, 1, 104, 1, '6900000010061'),
  (1006, 2, 105, 24, '6900000010062')
GO

-- Stocks: the main stock and the shop, and goods held for others (type 502).
INSERT INTO t_Stock (FItemID, FNumber, FName, FTypeID) VALUES
  (2001, '01', N'主仓库', 500),
  (2002, '02', N'门店仓', 500),
  (2003, '03', N'代管仓', 502)
GO

-- Partners.
INSERT INTO t_ClientType (FItemID, FNumber, FName, FCoefficient) VALUES
  (4001, '01', N'零售客户', 1),
  (4002, '02', N'批发客户', 0.9)
INSERT INTO t_Organization (FItemID, FNumber, FName, FTypeID, FCreditAmount, FCurComeGoBalance,
    FCurReceAmount, FCurPrepAmount, FPrepCheckAmount, FUnPrepCheckAmount, FIntent) VALUES
  (5001, '01', N'绿野骑行俱乐部', 4001, 100000, 12000, 12000, 500, 0, 500, 0),
  (5002, '02', N'城东车行', 4002, 20000, 18500, 18500, 0, 0, 0, 0),
  (5003, '03', N'零售散客', 0, 0, 0, 0, 0, 0, 0, 1)
INSERT INTO t_Supplier (FItemID, FNumber, FName, FCreditAmount, FCurComeGoBalance, FCurReceAmount) VALUES
  (6001, '01', N'华南车架厂', 80000, 9450, 9450),
  (6002, '02', N'津港化工', 0, 0, 0),
  (6003, '03', N'远洋进出口公司', 50000, 2805, 2805)
GO

-- Limit prices, and the prices of the latest bills.
INSERT INTO T_ItemPrice (FItemID, FUnitID, FXSLimitPrice, FCGLimitPrice, FLatestInPrice,
    FLowestInPrice) VALUES
  (1001, 101, 0, 310, 300, 290),
  (1002, 101, 0, 85, 80, 78),
  (1002, 102, 0, 960, 900, 890),
  (1003, 101, 55, 50, 45, 44),
  (1004, 103, 800, 0, 520, 505),
  (1005, 101, 90, 0, 60, 58),
  (1006, 104, 20, 16, 15, 14),
  (1006, 105, 0, 384, 336, 336),
  (1007, 103, 3000, 0, 2100, 2050),
  (1008, 106, 150, 120, 110, 108),
  (1009, 101, 10, 9, 8, 7.5)
GO

-- Opening stock, before the first bill.
INSERT INTO ICInvInitial (FItemID, FStockID, FBatchNo, FAuxPropID, FKFPeriod, FKFDate,
    FPeriodDate, FQty, FPrice, FBal) VALUES
  (1001, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 40, 300, 12000),
  (1002, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 120, 80, 9600),
  (1003, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 50, 45, 2250),
  (1004, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 10, 520, 5200),
  (1004, 2002, '', 0, 0, '1900-01-01', '1900-01-01', 5, 520, 2600),
  (1005, 2002, '', 0, 0, '1900-01-01', '1900-01-01', 30, 60, 1800),
  (1005, 2002, '', 7001, 0, '1900-01-01', '1900-01-01', 10, 62, 620),
  (1005, 2003, '', 0, 0, '1900-01-01', '1900-01-01', 4, 60, 240),
  (1006, 2001, 'RH2601', 0, 365, '2026-01-10', '2027-01-10', 48, 15, 720),
  (1007, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 6, 2100, 12600),
  (1008, 2001, 'TC4-001', 0, 0, '1900-01-01', '1900-01-01', 25.5, 110, 2805),
  (1009, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 200, 8, 1600)
GO

-- Stock on hand: the opening stock and the ten chains of the one bill that is audited already.
INSERT INTO T_CC_Inventory (FItemID, FStockID, FBatchNo, FAuxPropID, FKFPeriod, FKFDate,
    FPeriodDate, FQty, FBal) VALUES
  (1001, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 40, 12000),
  (1002, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 120, 9600),
  (1003, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 60, 2700),
  (1004, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 10, 5200),
  (1004, 2002, '', 0, 0, '1900-01-01', '1900-01-01', 5, 2600),
  (1005, 2002, '', 0, 0, '1900-01-01', '1900-01-01', 30, 1800),
  (1005, 2002, '', 7001, 0, '1900-01-01', '1900-01-01', 10, 620),
  (1005, 2003, '', 0, 0, '1900-01-01', '1900-01-01', 4, 240),
  (1006, 2001, 'RH2601', 0, 365, '2026-01-10', '2027-01-10', 48, 720),
  (1007, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 6, 12600),
  (1008, 2001, 'TC4-001', 0, 0, '1900-01-01', '1900-01-01', 25.5, 2805),
  (1009, 2001, '', 0, 0, '1900-01-01', '1900-01-01', 200, 1600)
INSERT INTO T_CC_Stock (FItemID, FStockID, FBatchNo, FKFDate, FKFPeriod, FPeriodDate, FQty) VALUES
  (1006, 2001, 'RH2601', '20260110', 365, '20270110', 48)
GO

-- Purchase, audited already; what is owed for it is overdue.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount, FStatus, FCheckerID, FCheckDate, FUnCheckAmount,
    FSettleLimitDate, FNoInvoiceAmt) VALUES
  (101, 1020002, 2011, 'CG260301', '20260302', '20260302 09:30:00', 0, 6001, 16390, 450, 1, 16388, '20260302 16:00:00', 450, '20260310', 450)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (101, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 10, 10, 45, 45, 45, 50.85, 450, 0, 0)
GO

-- Purchase order.
INSERT INTO t_CG_Order (FID, FClassTypeID, FBillNo, FDate, FSaveDate, FSupplyID, FBillerID,
    FAllAmount) VALUES
  (102, 1020001, 'CD260301', '20260303', '20260303 09:00:00', 6001, 16390, 10400)
INSERT INTO t_CG_OrderEntry (FID, FEntryID, FIndex, FItemID, FUnitID, FShowUnitID, FCoefficient,
    FQty, FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount) VALUES
  (102, 1, 1, 1001, 101, 101, 1, 20, 20, 295, 295, 295, 333.35, 5900),
  (102, 2, 2, 1002, 101, 102, 12, 60, 5, 900, 900, 75, 1017, 4500)
GO

-- Sales order.
INSERT INTO t_XS_Order (FID, FClassTypeID, FBillNo, FDate, FSaveDate, FCustID, FBillerID,
    FAllAmount) VALUES
  (103, 1030001, 'XD260301', '20260303', '20260303 09:00:00', 5001, 16390, 4500)
INSERT INTO t_XS_OrderEntry (FID, FEntryID, FIndex, FItemID, FUnitID, FShowUnitID, FCoefficient,
    FQty, FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FInTotalQty) VALUES
  (103, 1, 1, 1004, 103, 103, 1, 4, 4, 880, 880, 880, 994.4, 3520, 4),
  (103, 2, 2, 1005, 101, 101, 1, 10, 10, 98, 98, 98, 110.74, 980, 10)
GO

-- Purchase of what was ordered: one row in base units, one in boxes.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (104, 1020002, 2011, 'CG260302', '20260305', '20260305 09:30:00', 0, 6001, 16390, 10400)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (104, 1, 1, 1001, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 20, 20, 295, 295, 295, 333.35, 5900, 0, 0),
  (104, 2, 2, 1002, 0, '', 0, 2001, 0, NULL, NULL, 101, 102, 12, 60, 5, 900, 900, 75, 1017, 4500, 0, 0)
GO

-- Purchase of a new batch with a shelf life.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (105, 1020002, 2011, 'CG260303', '20260306', '20260306 09:30:00', 0, 6002, 16390, 672)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (105, 1, 1, 1006, 0, 'RH2603', 0, 2001, 365, '20260301', '20270301', 104, 105, 24, 48, 2, 336, 336, 14, 379.68, 672, 0, 0)
GO

-- Purchase return.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (106, 1020002, 2012, 'CT260301', '20260307', '20260307 09:30:00', 0, 6001, 16390, 590)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (106, 1, 1, 1001, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 2, 2, 295, 295, 295, 333.35, 590, 0, 0)
GO

-- Purchase at an estimated price, the invoice being still to come.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (107, 1020003, 2030, 'CU260301', '20260307', '20260307 09:30:00', 0, 6003, 16390, 1080)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (107, 1, 1, 1008, 0, 'TC4-002', 0, 2001, 0, NULL, NULL, 106, 106, 1, 10, 10, 108, 108, 108, 122.04, 1080, 0, 0)
GO

-- Purchase whose earlier estimate is reversed: bill 109 belongs to it and goes with it.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (108, 1020002, 2013, 'CG260304', '20260309', '20260309 09:30:00', 0, 6003, 16390, 896)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (108, 1, 1, 1008, 0, 'TC4-001', 0, 2001, 0, NULL, NULL, 106, 106, 1, 8, 8, 112, 112, 112, 126.56, 896, 0, 0)
GO

-- The reversal of the estimate, made by the system.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (109, 1020003, 2032, 'CU260302', '20260309', '20260309 09:30:00', 0, 6003, 16390, 864)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (109, 1, 1, 1008, 0, 'TC4-001', 0, 2001, 0, NULL, NULL, 106, 106, 1, 8, 8, 108, 108, 108, 122.04, 864, 0, 0)
INSERT INTO ICRelations (FGroupNo, FClassTypeID, FID) VALUES
  (1, 1020002, 108),
  (1, 1020003, 109)
GO

-- Purchase rebate in goods.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (110, 1020004, 2042, 'CF260301', '20260310', '20260310 09:30:00', 0, 6001, 16390, 96)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (110, 1, 1, 1009, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 12, 12, 8, 8, 8, 9.04, 96, 0, 0)
GO

-- Purchase rebate in money: lowers the value of what lies in stock.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (111, 1020004, 2040, 'CF260302', '20260310', '20260310 09:30:00', 0, 6001, 16390, 200)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (111, 1, 1, 1001, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 0, 0, 0, 0, 0, 0, -200, 0, 0)
GO

-- Sale, partly paid in advance.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount, FNeutralizeAmount) VALUES
  (112, 1030002, 3001, 'XS260301', '20260310', '20260310 09:30:00', 5001, 0, 16390, 3424, 500)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (112, 1, 1, 1004, 0, '', 2002, 0, 0, NULL, NULL, 103, 103, 1, 3, 3, 880, 880, 880, 994.4, 2640, 520, 1560),
  (112, 2, 2, 1005, 0, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 6, 6, 98, 98, 98, 110.74, 588, 60, 360),
  (112, 3, 3, 1005, 7001, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 2, 2, 98, 98, 98, 110.74, 196, 62, 124)
INSERT INTO ICCheckInfo (FID, FSourceClassTypeID2, FCurCheckAmount) VALUES
  (112, 1050001, 500)
GO

-- Sale of an item with a serial number.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (113, 1030002, 3001, 'XS260302', '20260311', '20260311 09:30:00', 5003, 0, 16390, 3280)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (113, 1, 1, 1007, 0, '', 2001, 0, 0, NULL, NULL, 103, 103, 1, 1, 1, 3280, 3280, 3280, 3706.4, 3280, 2100, 2100)
INSERT INTO t_SerialNumList (FBillID, FBillIndexID, FItemID, FStockID, FSerialNo, FNote,
    FClassTypeID, FStatus) VALUES
  (0, 0, 1007, 2001, 'DZ2601001', N'期初', 0, 1),
  (0, 0, 1007, 2001, 'DZ2601002', N'期初', 0, 1),
  (0, 0, 1007, 2001, 'DZ2601003', N'期初', 0, 1),
  (0, 0, 1007, 2001, 'DZ2601004', N'期初', 0, 1),
  (0, 0, 1007, 2001, 'DZ2601005', N'期初', 0, 1),
  (0, 0, 1007, 2001, 'DZ2601006', N'期初', 0, 1),
  (113, 1, 1007, 2001, 'DZ2601001', '', 1030002, 0)
GO

-- Sales return.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (114, 1030002, 3002, 'XT260301', '20260312', '20260312 09:30:00', 5001, 0, 16390, 98)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (114, 1, 1, 1005, 0, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 1, 1, 98, 98, 98, 110.74, 98, 60, 60)
GO

-- Goods on consignment.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (115, 1030003, 3010, 'WT260301', '20260312', '20260312 09:30:00', 5002, 0, 16390, 190)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (115, 1, 1, 1005, 0, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 2, 2, 95, 95, 95, 107.35, 190, 60, 120)
GO

-- Sales rebate in goods.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (116, 1030004, 3022, 'XF260301', '20260312', '20260312 09:30:00', 5001, 0, 16390, 120)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (116, 1, 1, 1005, 0, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 2, 2, 60, 60, 60, 67.8, 120, 0, 0)
GO

-- Other receipt.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (117, 1040001, 0, 'QR260301', '20260313', '20260313 09:30:00', 0, 6001, 16390, 220)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (117, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 5, 5, 44, 44, 44, 49.72, 220, 0, 0)
GO

-- Other issue.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (118, 1040002, 0, 'QC260301', '20260313', '20260313 09:30:00', 5001, 0, 16390, 80)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (118, 1, 1, 1009, 0, '', 2001, 0, 0, NULL, NULL, 101, 101, 1, 10, 10, 8, 8, 8, 9.04, 80, 0, 0)
GO

-- Stock-check gain.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (119, 1040003, 0, 'PY260301', '20260313', '20260313 09:30:00', 0, 0, 16390, 24)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount, FProfitLossQty) VALUES
  (119, 1, 1, 1009, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 3, 3, 8, 8, 8, 9.04, 24, 0, 0, 3)
GO

-- Stock-check loss.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (120, 1040004, 0, 'PK260301', '20260313', '20260313 09:30:00', 0, 0, 16390, 90)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount, FProfitLossQty) VALUES
  (120, 1, 1, 1003, 0, '', 2001, 0, 0, NULL, NULL, 101, 101, 1, 2, 2, 45, 45, 45, 50.85, 90, 0, 0, 2)
GO

-- Assembly: two bicycles out of frames, wheels and chains.
INSERT INTO T_CC_ZZCX (FID, FClassTypeID, FBillNo, FDate, FSaveDate, FBillerID) VALUES
  (121, 1040005, 'ZZ260301', '20260314', '20260314 14:00:00', 16390)
INSERT INTO T_CC_ZZCX_Entry (FID, FEntryID, FIndex, FItemID, FDCStockID, FUnitID, FShowUnitID,
    FCoefficient, FQty, FShowQty, FPrice, FAmount) VALUES
  (121, 1, 1, 1004, 2001, 103, 103, 1, 2, 2, 505, 1010)
INSERT INTO T_CC_ZZCX_Entry2 (FID, FEntryID, FIndex, FItemID, FSCStockID, FUnitID, FShowUnitID,
    FCoefficient, FQty, FShowQty, FPrice, FAmount) VALUES
  (121, 1, 1, 1001, 2001, 101, 101, 1, 2, 2, 300, 600),
  (121, 2, 2, 1002, 2001, 101, 101, 1, 4, 4, 80, 320),
  (121, 3, 3, 1003, 2001, 101, 101, 1, 2, 2, 45, 90)
GO

-- Disassembly: one bicycle back into its parts.
INSERT INTO T_CC_ZZCX (FID, FClassTypeID, FBillNo, FDate, FSaveDate, FBillerID) VALUES
  (122, 1040006, 'CX260301', '20260314', '20260314 14:00:00', 16390)
INSERT INTO T_CC_ZZCX_Entry (FID, FEntryID, FIndex, FItemID, FDCStockID, FUnitID, FShowUnitID,
    FCoefficient, FQty, FShowQty, FPrice, FAmount) VALUES
  (122, 1, 1, 1004, 2001, 103, 103, 1, 1, 1, 520, 520)
INSERT INTO T_CC_ZZCX_Entry2 (FID, FEntryID, FIndex, FItemID, FSCStockID, FUnitID, FShowUnitID,
    FCoefficient, FQty, FShowQty, FPrice, FAmount) VALUES
  (122, 1, 1, 1001, 2001, 101, 101, 1, 1, 1, 300, 300),
  (122, 2, 2, 1002, 2001, 101, 101, 1, 2, 2, 80, 160),
  (122, 3, 3, 1003, 2001, 101, 101, 1, 1, 1, 60, 60)
GO

-- Transfer from the main stock to the shop.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (123, 1040007, 0, 'DB260301', '20260314', '20260314 09:30:00', 0, 0, 16390, 1220)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (123, 1, 1, 1004, 0, '', 2001, 2002, 0, NULL, NULL, 103, 103, 1, 2, 2, 520, 520, 520, 587.6, 1040, 520, 1040),
  (123, 2, 2, 1006, 0, 'RH2601', 2001, 2002, 365, '20260110', '20270110', 104, 104, 1, 12, 12, 15, 15, 15, 16.95, 180, 15, 180)
GO

-- Price adjustment: raises the value of what lies in stock.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (124, 1040008, 0, 'TJ260301', '20260314', '20260314 09:30:00', 0, 0, 16390, 50)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (124, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 0, 0, 0, 0, 0, 0, 50, 0, 0)
GO

-- To be refused: a sale in the rejected state.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount, FRejected) VALUES
  (131, 1030002, 3001, 'XS260303', '20260311', '20260311 09:30:00', 5001, 0, 16390, 880, 1)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (131, 1, 1, 1004, 0, '', 2002, 0, 0, NULL, NULL, 103, 103, 1, 1, 1, 880, 880, 880, 994.4, 880, 520, 520)
GO

-- To be refused: a sales order in the rejected state.
INSERT INTO t_XS_Order (FID, FClassTypeID, FBillNo, FDate, FSaveDate, FCustID, FBillerID,
    FAllAmount, FRejected) VALUES
  (132, 1030001, 'XD260302', '20260311', '20260311 09:00:00', 5001, 16390, 880, 1)
INSERT INTO t_XS_OrderEntry (FID, FEntryID, FIndex, FItemID, FUnitID, FShowUnitID, FCoefficient,
    FQty, FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FInTotalQty) VALUES
  (132, 1, 1, 1004, 103, 103, 1, 1, 1, 880, 880, 880, 994.4, 880, 1)
GO

-- To be refused: no serial number was given.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (133, 1030002, 3001, 'XS260304', '20260311', '20260311 09:30:00', 5001, 0, 16390, 3280)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (133, 1, 1, 1007, 0, '', 2001, 0, 0, NULL, NULL, 103, 103, 1, 1, 1, 3280, 3280, 3280, 3706.4, 3280, 2100, 2100)
GO

-- To be refused: more than lies in stock.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (134, 1030002, 3001, 'XS260305', '20260312', '20260312 09:30:00', 5001, 0, 16390, 14985)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (134, 1, 1, 1009, 0, '', 2001, 0, 0, NULL, NULL, 101, 101, 1, 999, 999, 15, 15, 15, 16.95, 14985, 8, 7992)
GO

-- To be refused: more than lies in stock of an item valued by specific identification.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (135, 1030002, 3001, 'XS260306', '20260312', '20260312 09:30:00', 5001, 0, 16390, 18000)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (135, 1, 1, 1008, 0, 'TC4-001', 2001, 0, 0, NULL, NULL, 106, 106, 1, 100, 100, 180, 180, 180, 203.4, 18000, 110, 11000)
GO

-- To be refused: dated before the current period.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (136, 1020002, 2011, 'CG260201', '20260220', '20260220 09:30:00', 0, 6001, 16390, 270)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (136, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 6, 6, 45, 45, 45, 50.85, 270, 0, 0)
GO

-- To be refused: made by the user who is to audit it.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (137, 1020002, 2011, 'CG260305', '20260313', '20260313 09:30:00', 0, 6001, 16394, 270)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (137, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 6, 6, 45, 45, 45, 50.85, 270, 0, 0)
GO

-- To be refused: beyond the customer's credit line.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (138, 1030002, 3001, 'XS260307', '20260313', '20260313 09:30:00', 5002, 0, 16390, 2550)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (138, 1, 1, 1004, 0, '', 2001, 0, 0, NULL, NULL, 103, 103, 1, 3, 3, 850, 850, 850, 960.5, 2550, 520, 1560)
GO

-- To be refused: below the limit price.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (139, 1030002, 3001, 'XS260308', '20260313', '20260313 09:30:00', 5001, 0, 16390, 100)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (139, 1, 1, 1005, 0, '', 2002, 0, 0, NULL, NULL, 101, 101, 1, 2, 2, 50, 50, 50, 56.5, 100, 60, 120)
GO

-- To be refused: a row without a price.
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FSaveDate, FCustID,
    FSupplyID, FBillerID, FAllAmount) VALUES
  (140, 1040001, 0, 'QR260302', '20260314', '20260314 09:30:00', 0, 6001, 16390, 44)
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FAuxPropID, FBatchNo, FSCStockID,
    FDCStockID, FKFPeriod, FKFDate, FPeriodDate, FUnitID, FShowUnitID, FCoefficient, FQty,
    FShowQty, FPrice, FPriceDiscount, FBasePrice, FIncludeTaxPrice, FAmount, FCostPrice,
    FCostAmount) VALUES
  (140, 1, 1, 1003, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 1, 1, 44, 44, 44, 49.72, 44, 0, 0),
  (140, 2, 2, 1009, 0, '', 0, 2001, 0, NULL, NULL, 101, 101, 1, 5, 5, 0, 0, 0, 0, 0, 0, 0)
GO

-- A list that assembly bills are started from.
INSERT INTO T_CC_Templet (FID, FBillNo, FName) VALUES
  (1, 'MB001', N'山地车组装清单')
INSERT INTO T_CC_TempletEntry (FID, FEntryID, FItemID, FUnitID, FQty) VALUES
  (1, 1, 1001, 101, 1),
  (1, 2, 1002, 101, 2),
  (1, 3, 1003, 101, 1)
GO
