-- Statements as the rules send them, with values spliced in: odd blanks, run-together words and
-- spellings are as sent. Batches are separated by GO.
Select FRejected From t_XS_Order Where FClassTypeID=1030001 And FID='1001'
GO
Select FRejected From t_CC_StockBill Where FClassTypeID=1030002 And FID='1001'
GO
Select FValue from t_systemprofile Where Fcategory='IC' AND FKEY='UnderStock'
GO
select top 1 ti.FName,tcsben.FIndex,tcsb.FBillNo from t_cc_stockbillentry tcsben left join t_SerialNumList tsn on tsn.FBillID=tcsben.FID and tsn.FBillIndexID=tcsben.FIndex and tsn.FItemID=tcsben.FItemID and tsn.FStockID=tcsben.FSCStockID left join t_icitem ti on ti.FItemID=tcsben.FItemID left join t_cc_stockbill tcsb on tcsb.FID=tcsben.FID where tcsben.FID='1001' and ti.FIsSerialNumMgr=1 and isnull(tsn.FID,0)=0
GO
delete from t_cc_bal where FClassTypeID=1020002 and FID=1001
GO
delete from ICSpeedBal where FClassTypeID=1020002 and FID=1001
GO
delete from #TavTempBill
GO
Update t_Supplier Set FCurReceAmount=IsNull(FCurReceAmount,0)+(-1250.5)
Where FItemID=77
GO
 Select FSourceClassTypeID2,FCurCheckAmount from ICCheckInfo where fid=1001
GO
 Update t_Supplier Set FUnPrepCheckAmount=FUnPrepCheckAmount-(100.25) , FPrepCheckAmount=FPrepCheckAmount+(100.25) Where FItemID=77
GO
Update  a set a.FXSOrderQty=a.FXSOrderQty+(1*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty-(1*b.FQty/a.FCoefficient) from t_XS_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_XS_OrderEntry where FID=1001 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 1001
GO
Update  a set a.FCgOrderQty=a.FCgOrderQty+(-1*b.FQty/a.FCoefficient),a.FBaseCgOrderQty=a.FBaseCgOrderQty+(-1*b.FQty),a.FInTotalQty=a.FInTotalQty+(-1*b.FQty/a.FCoefficient),a.FBaseInTotalQty=a.FBaseInTotalQty+(-1*b.FQty) from t_CG_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_CG_OrderEntry where FID=1001 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 1001
GO
Update T_CC_StockBill set FCheckerID=16394,FCheckDate=GetDate(),FStatus=1  where FID=1001
Update v1 Set v1.FCheckerID=v2.FCheckerID,v1.FCheckDate=v2.FCheckDate,v1.FStatus=v2.FStatus 
From t_CC_StockBill v1 Inner Join ICRelations r1 On v1.FClassTypeID=r1.FClassTypeID And v1.FID=r1.FID 
Inner Join ICRelations r2 On r1.FGroupNo=r2.FGroupNo 
Inner Join t_CC_StockBill v2 On v2.FClassTypeID=r2.FClassTypeID And v2.FID=r2.FID 
Where v2.FClassTypeID=1020002 And v1.FBillTypeID=2032 And v2.FID=1001
GO
Update T_CC_ZZCX set FCheckerID=0,FCheckDate=Null,FStatus=0  where FID=1001
GO
Update  t_cc_stockbill set FNoInvoiceAmt = FAllAmount where FID=1001 And FBillTypeID=2011
GO
Update t_cc_stockbill set FInvoiceSatus=0, FInvoiceAmt=0, FNoInvoiceAmt=0 where FID=1001 And FBillTypeID=2011
Delete from t_CC_InvoiceFlow where FID=1001 And FBillTypeID=2011
GO
Delete From t_LatestPrice Where FCustID=0 and FSupplyID=0 and FItemID IN (Select FItemID From t_CC_StockBillEntry Where FID=1001)
 Insert Into t_LatestPrice (FCustID,FSupplyID,FItemID,FUnitID,FDate,FCheckDate)  Select 0,0,FItemID,max(FShowUnitID) ,(select FDate from t_CC_StockBill where Fid=1001),getdate() From t_CC_StockBillEntry Where FID=1001 Group By FItemID
GO
Delete t From t_LatestPrice t inner join t_CC_StockBillEntry te on t.FItemID=te.FItemID and t.FUnitID=te.FShowUnitID Where t.FCustID = 7 And te.FID = 1001 And te.FPrice > 0
update t_LatestPrice set FIsLast=0 Where FCustID=7 And FItemID IN (Select FItemID From t_CC_StockBillEntry Where FID=1001 And FPrice>0)
Insert Into t_LatestPrice (FCustID,FSupplyID,FItemID,FPrice,FIncludeTaxPrice,FDiscountRate,FUnitID,FDate,FCheckDate) Select 7,0,FItemID,Max(FPrice),Max(FIncludeTaxPrice),Min(FDiscountRate),FShowUnitID ,(select FDate from t_CC_StockBill where Fid=1001 ),getdate()From t_CC_StockBillEntry Where FID=1001 And FPrice>0 Group By FItemID,FShowUnitID
GO
Insert Into t_LatestPrice (FSupplyID,FCustID,FItemID,FPrice,FIncludeTaxPrice,FDiscountRate,FUnitID,FDate,FCheckDate) Select 7,0,FItemID,Min(FPrice), 0 ,Max(FDiscountRate),FShowUnitID ,(select FDate from t_CG_Order where Fid=1001 ),getdate()From t_CG_OrderEntry Where FID=1001 And FPrice>0 Group By FItemID,FShowUnitID
GO
if   object_id('tempdb.dbo.#TavTempBill')   is   not   null drop   table   [dbo].[#TavTempBill]
GO
SET NOCOUNT ON
CREATE TABLE #TavTempBill
(FBrNo VARCHAR(10) NOT NULL DEFAULT(''),
 FInterID INT NOT NULL DEFAULT(0),
 FEntryID INT NOT NULL DEFAULT(0),
 FTranType INT NOT NULL DEFAULT(0),
 FItemID INT NOT NULL DEFAULT(0),
 FShowUnitID INT NOT NULL DEFAULT(0),
 FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),
 FAuxPropID INT NOT NULL DEFAULT(0),
 FStockID INT NOT NULL DEFAULT(0),
 FStockPlaceID INT NOT NULL DEFAULT(0),
 FKFPeriod INT NOT NULL DEFAULT(0),
 FKFDate VARCHAR(20) NOT NULL DEFAULT(''),
 FQty DECIMAL(28,10) NOT NULL DEFAULT(0),
 FShowQty DECIMAL(28,10) NOT NULL DEFAULT(0),
 FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),
 FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),
 FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),
 FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT('') 
)
GO
 Update t1 
 SET t1.FKFDate=u1.FKFDate,t1.FKFPeriod=u1.FKFPeriod,t1.FPeriodDate=u1.FPeriodDate 
 FROM T_CC_Inventory t1 Inner Join t_ICItem ti On ((t1.FItemID = ti.FItemID And (ti.FTrack = 80)) or (t1.FItemID = ti.FItemID And (ti.FTrack <> 80 AND ti.FISBatchManager = 1))) 
 INNER JOIN #TavTempBill u1
 ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo 
    AND t1.FStockID=u1.FStockID 
    AND t1.FBatchNoIndex = u1.FBatchNoIndex 
 Update t1
 SET t1.FQty=t1.FQty+u1.FQty,t1.FSecQty=t1.FSecQty+u1.FSecQty,t1.FBal=t1.FBal+u1.FBal
 FROM T_CC_Inventory t1 INNER JOIN
 (SELECT FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,FBatchNoIndex
         ,SUM(FQty) AS FQty,SUM(FSecQty) AS FSecQty,Round(IsNull(SUM(FQty*FPrice),0),2) AS FBal
  FROM #TavTempBill
  GROUP BY FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,FBatchNoIndex
 ) u1
 ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID
    AND t1.FStockID=u1.FStockID 
    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND t1.FPeriodDate=u1.FPeriodDate
    AND t1.FBatchNoIndex = u1.FBatchNoIndex 
 Delete u1
 FROM T_CC_Inventory t1 INNER JOIN #TavTempBill u1
 ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID
    AND t1.FStockID=u1.FStockID 
    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND t1.FPeriodDate=u1.FPeriodDate
    AND t1.FBatchNoIndex = u1.FBatchNoIndex
 INSERT INTO T_CC_Inventory(FBrNo,FItemID,FAuxPropID,FBatchNo,FStockID,FKFPeriod,FKFDate,FQty,FBal,FSecQty,FLockQty,FPeriodDate,FBatchNoIndex)
 SELECT '',u.FItemID,u.FAuxPropID,u.FBatchNo,u.FStockID,u.FKFPeriod,u.FKFDate,SUM(u.FQty) AS FQty,Round(IsNull(SUM(FQty*FPrice),0),2),
 SUM(u.FSecQty) AS FSecQty,0,U.FPeriodDate,u.FBatchNoIndex FROM #TavTempBill u
 GROUP BY u.FItemID,u.FBatchNo,u.FAuxPropID,u.FStockID,u.FKFPeriod,u.FKFDate,u.FPeriodDate,u.FBatchNoIndex 
GO
 update T_CC_Inventory set FSecQty = 0 where abs(FQty) <= 0.000000001 and abs(FSecQty) >= 0.000000001 
GO
 declare @temp_inv table(FItemID int,FBatchNo varchar(255),FDCStockID int ,FAuxPropID int ) insert into @temp_inv(FItemID ,FBatchNo,FDCStockID  ,FAuxPropID) SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_StockBillEntry t1 with(nolock) JOIN T_CC_StockBill t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1  Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry2 t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID DELETE t1 FROM T_CC_Inventory t1 Left Join @temp_inv u1 on t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FStockID=u1.FDCStockID and t1.FAuxPropID=u1.FAuxPropID WHERE t1.FQty=0 And t1.Fbal=0 and u1.FItemID is null
GO
INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,FShowUnitID,Fprice,FBatchNoIndex)
 SELECT '',u1.FID,u1.FEntryID,0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FSCStockID ,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FKFDate ,120),'1900-01-01'),10) AS FKFDate,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FPeriodDate ,120),'1900-01-01'),10) AS FPeriodDate,
-1*u1.FProfitLossQty*u1.FCoefficient AS FQty,-1*u1.FProfitLossQty AS FShowQty,-1*u1.FProfitLossSecQty AS FSecQty,u1.FShowUnitID AS FShowUnitID,u1.FCostPrice/u1.FCoefficient,(CASE WHEN /*u3.FTrack = 80*/u3.FTrack = -1 AND ((1 = 1 AND -1 = 1) OR (1 = -1 AND -1 = -1)) AND (u2.FClassTypeID = 1020002 OR u2.FClassTypeID = 1020003 OR u2.FClassTypeID = 1040001 OR u2.FClassTypeID = 1040003 OR u2.FClassTypeID = 1040005 OR u2.FClassTypeID = 1040006 OR u2.FClassTypeID = 1040007 OR u2.FClassTypeID = 1040008 OR u2.FClassTypeID = 1080001 OR u2.FClassTypeID = 1080002) THEN SUBSTRING(CAST(u1.FID AS varchar) + '000000000000',0,12) + SUBSTRING(cast(u1.FEntryID AS varchar) + '000000000000000000',0,18) ELSE u1.FBatchNoIndex END) AS FBatchNoIndex
 FROM T_CC_StockBillEntry u1 Inner Join T_CC_StockBill u2 On u1.FID=u2.FID 
 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 
 WHERE u1.FID=1001
GO
Select FStatus,0 as FVoucherID,FDate,FBillerID From t_XS_Order where FID=1001
GO
Select FStatus, FVoucherID,FDate,FBillerID From T_CC_StockBill where FID=1001
GO
 select  FIndex from  T_CC_ZZCX_Entry2 a 
 inner join t_ICItem i on a.FItemID=i.FItemID 
 inner join t_Stock ts on a.FSCStockID=ts.FItemID 
 where a.FPrice=0 and ts.FTypeID=500 and FID = 1001
GO
select FIndex from  T_CC_StockBillEntry a 
 inner join t_ICItem i on a.FItemID=i.FItemID 
 inner join t_Stock ts on a.FDCStockID=ts.FItemID 
 where a.FPrice=0 and ts.FTypeID=500 and FID = 1001
 And a.FID Not In(select FID from T_CC_StockBill where FBillTypeID=1 )
GO
Select top 1 FID From t_CC_StockBillEntry Where FClassID_SRC=1030001 And FID_SRC=1001
GO
Select top 1 FID From t_RP_RBillEntry Where FSourceClassTypeID=1030002 And FSourceBillID=1001
Union All 
Select top 1 FID From t_RP_CheckBillEntry1 Where FSourceClassTypeID=1030002 And FSourceBillID=1001
Union All 
Select top 1 FID From t_RP_CheckBillEntry2 Where FSourceClassTypeID=1030002 And FSourceBillID=1001

GO
Select top 1 FID from t_CC_StockBillEntry Where FClassID_SRC=1090001 and FID=1001
GO
Select FStatus,FCheckerID From T_CC_StockBill where FID=1001 and FStatus <> 0 and FCheckerID = 16394
GO
if object_id('tempdb.dbo.#TavTempBill0622') is not null drop table [dbo].[#TavTempBill0622] 
CREATE TABLE #TavTempBill0622 (FItemID INT NOT NULL DEFAULT(0), FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''), FAuxPropID INT NOT NULL DEFAULT(0), FStockID INT NOT NULL DEFAULT(0), FKFPeriod INT NOT NULL DEFAULT(0), FKFDate VARCHAR(20) NOT NULL DEFAULT(''), FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''), FQty DECIMAL(28,10) NOT NULL DEFAULT(0), FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0), FPrice DECIMAL(28,10) NOT NULL DEFAULT(0), FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT(''), FClassTypeID int not null default(0))
GO
INSERT INTO #TavTempBill0622 values(101,'B-1',0,3,0, '1900-01-01','1900-01-01' ,-12.5,0,3.3333333333,'',1040007)
INSERT INTO #TavTempBill0622 values(102,'',0,3,30, '2026-03-01','2026-03-31' ,1,0,0.5,'',1040007)
GO
INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,Fprice,FBatchNoIndex)
 SELECT '','1001','',0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FStockID ,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 u1.FKFDate AS FKFDate,
 u1.FPeriodDate  AS FPeriodDate,
u1.FQty AS FQty,u1.FSecQty AS FSecQty,u1.FPrice, u1.FBatchNoIndex  AS FBatchNoIndex
 FROM  #TavTempBill0622 u1 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 
GO
SELECT M1.FNUMBER,M1.FNAME,M1.FMODEL,M1.Ftrack,S1.FNAME AS STOCKNAME,
 (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(TT1.SUMQTY,0)) AS STOCKQTY, (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(TT1.SUMQTY,0))/N1.FCoefficient AS STOCKSHOWQTY,
 (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)-ISNULL(TT1.SUMQTY,0)) AS DIFFQTY,T1.SUMQTY,T1.SUMSHOWQTY,Y1.FNUMBER AS AUXNUMBER,Y1.FNAME AS AUXNAME,T1.*
 From 
(SELECT t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,t.FPeriodDate,sum(FQTY) AS STOCKSUMQTY from ( select  t.FITEMID,t.FSTOCKID,t.FAUXPROPID,FBATCHNO= (case when t_ICItem.FTrack = 78 AND dbo.t_ICItem.FISBatchManager = 0 then '' else t.FBATCHNO END), t.FKFPeriod,t.FKFDATE,t.FPeriodDate,ISNULL(t.FQTY,0) as FQTY from T_CC_Inventory t inner join t_ICItem  on t.FItemID=t_ICItem.FItemID ) t GROUP BY t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,t.FPeriodDate ) STOCK 
 RIGHT OUTER JOIN
 (SELECT FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate,ISNULL(SUM(FQTY),0) AS SUMQTY,ISNULL(SUM(FSHOWQTY),0) AS SUMSHOWQTY FROM #TavTempBill
 GROUP BY FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate) T1
 ON STOCK.FITEMID=T1.FITEMID AND STOCK.FSTOCKID=T1.FStockID AND STOCK.FAUXPROPID=T1.FAUXPROPID
 AND STOCK.FBATCHNO=T1.FBATCHNO AND STOCK.FKFPeriod=T1.FKFPeriod AND STOCK.FKFDATE=T1.FKFDATE AND STOCK.FPeriodDate=T1.FPeriodDate
 LEFT OUTER JOIN T_STOCK S1 ON T1.FStockID=S1.FITEMID
 LEFT OUTER JOIN T_ICITEM M1 ON T1.FITEMID=M1.FITEMID
 LEFT OUTER JOIN t_auxItem Y1 ON T1.FAUXPROPID=Y1.FITEMID
 LEFT JOIN VW_UNIT N1 ON T1.FITEMID=N1.FSRCITEMID AND T1.FShowUnitID=N1.FItemID
 LEFT JOIN
 (SELECT FITEMID,FUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate,ISNULL(SUM(FQTY),0) AS SUMQTY,0 AS SUMSHOWQTY 
 FROM vw_cc_Send_audit where fstatus = 0 and fid not in (select FInterID from #TavTempBill ) 
 and ( 
   (FbillTypeID IN (3010, 3001, 3022) OR FClassTypeID IN (1040002, 1040004, 1040007, 1080001, 1080002)) or  
   (FClassTypeID IN (1040005, 1040006)) or  
 (FClassTypeID = 1030002 and FbillTypeID in(3010)) 
 ) 
 GROUP BY FITEMID,FUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate) TT1
 ON T1.FITEMID=TT1.FITEMID AND T1.FSTOCKID=ISNULL(TT1.FStockID,0) AND T1.FAUXPROPID=ISNULL(TT1.FAUXPROPID,0)
 AND T1.FBATCHNO=ISNULL(TT1.FBATCHNO,'') AND T1.FKFPeriod=ISNULL(TT1.FKFPeriod,0) AND T1.FKFDATE=ISNULL(TT1.FKFDATE, '1900-01-01') AND T1.FPeriodDate=ISNULL(TT1.FPeriodDate, '1900-01-01')
 LEFT OUTER JOIN T_STOCK SS1 ON TT1.FStockID=SS1.FITEMID
 LEFT OUTER JOIN T_ICITEM MM1 ON TT1.FITEMID=MM1.FITEMID
 LEFT OUTER JOIN t_auxItem YY1 ON TT1.FAUXPROPID=YY1.FITEMID
 LEFT JOIN VW_UNIT NN1 ON TT1.FITEMID=NN1.FSRCITEMID AND TT1.FUnitID=NN1.FItemID
 WHERE (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)-ISNULL(TT1.SUMQTY,0))<0
GO
Select IsNull(FCreditAmount,0) as FCreditAmount,IsNull(FCurComeGoBalance,0) as FCurComeGoBalance  from  t_Organization  Where FItemID=7
GO
Select 'X' from t_cc_stockbill where FClassTypeID = 1030002 AND FBillTypeID IN (3001,3002) and FUnCheckAmount > 0 AND FSettleLimitDate < getdate() 
and FCustID=7 and FStatus>0
GO
Select IsNUll(FCheckerID,0),IsNUll(FVoucherID,0) from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1001
GO
Set NoCount On   Declare @Same int
Select @Same=FValue From t_systemprofile Where FCategory='General' And FKey like 'SingleMan' 
Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1001
Set NoCount Off 
GO
Set NoCount On     Declare @Year int,@Period int,@Date DateTime 
SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod'
Select @Date=FDate From t_CC_StockBill Where FClassTypeID=1020002 And FID=1001
SELECT * FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period And DateDiff(Day,FStartDate,@Date)>=0 
GO
Select v.FBillNO From t_CC_StockBill v Inner Join  t_CC_StockBillEntry u On v.FID=u.FID 
Where u.FClassID_SRC=1020002 And FID_SRC=1001
GO
Select IsNull(v2.FVoucherID,0) From t_CC_StockBill v1 
Inner Join ICRelations r1 On r1.FID=v1.FID And r1.FClassTypeID=v1.FClassTypeID 
Inner Join ICRelations r2 On r2.FGroupNo=r1.FGroupNo 
Inner Join t_CC_StockBill v2 On v2.FID=r2.FID And v2.FClassTypeID=r2.FClassTypeID 
Where v2.FBillTypeID=2032 And v1.FID=1001
GO
Select FSourceBillId from t_rp_pBillEntry 
Where FSourceClassTypeID=1020002 And FSourceBillID=1001
Union
Select FSourceBillId from t_rp_CheckBillEntry1 
Where FSourceClassTypeID=1020002 And FSourceBillID=1001
Union
Select FSourceBillId from t_rp_CheckBillEntry2 
Where FSourceClassTypeID=1020002 And FSourceBillID=1001
GO
select top 1 1 from t_cc_stockbill where (FInvoiceAmt<>0) and FID=1001 and FClassTypeID=1020002
GO
select Isnull(f.FCoefficient,1) as FCoefficient from t_organization d left join t_ClientType f on d.FTypeID=f.Fitemid where d.FItemID=7
GO
Select 3 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1.1 as FCoefficient,  a.FXSLimitPrice*1.1 as ActLimitPrice, 12.5as FPrice,  12.5 - Isnull(a.FXSLimitPrice,0)*1.1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=5 And Isnull(a.FXSLimitPrice,0)>=0 And 12.5 < Isnull(a.FXSLimitPrice,0)*1.1
GO
Select 3 as FIndex, b.FName, a.FPrice*12 as LimitPrice,1 as FCoefficient,  a.FPrice*12*1 as ActLimitPrice, 12as FPrice,  12 - a.FPrice*12*1 as DiffPrice From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID where a.FItemID=101 and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On a.FItemID=b.FItemID Where b.FItemID=101 And a.FPrice*12>=0 And 12 < a.FPrice*12*1
GO
Select 3 as FIndex, b.FName, a.FCGLimitPrice as LimitPrice, 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, 0.5as FPrice,0.5 - Isnull(a.FCGLimitPrice,0) as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID  inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=5 And Isnull(a.FCGLimitPrice,0)>0 And 0.5 > Isnull(a.FCGLimitPrice,0) 
GO
Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice, Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_stock ts on a.FSCStockID = ts.FItemID AND ts.FTypeID <> 502  inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=1001
 order by a.Findex
GO
Select a.Findex, c.Fname,b.FPrice*a.FCoefficient as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.FBaseprice,0) as Fprice,  Isnull(a.FBaseprice,0)-b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as DiffPrice From t_cc_stockbillentry a inner join t_cc_stockbill e on a.Fid=e.Fid Inner Join (select aa.FItemID,case when sum(aa.FQty)=0 then 0 Else sum(aa.FBal)/sum(aa.FQty) End as FPrice from T_CC_Inventory aa inner join t_stock bb on aa.FStockID=bb.FItemID where bb.FTypeID<>502 group by aa.FItemID) b On a.FitemID=b.FItemID Inner Join t_icItem c On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid Where Isnull(a.FBaseprice, 0)>=0 and Isnull(a.FBaseprice, 0) < Isnull(b.FBasePrice, 0)*a.FCoefficient * Isnull(f.FCoefficient, 1)  And b.FBasePrice*Isnull(f.FCoefficient,1) >0 And a.FID=1001 order by a.Findex
GO
Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient, b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.Fprice, 0) as FPrice, IsNull(a.Fprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From t_cg_orderentry AS a  Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID  Where IsNull(a.Fprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0  And a.FID=1001 order by a.Findex
GO
Select 3 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1 as FCoefficient,  a.FXSLimitPrice*1 as ActLimitPrice, 12.5/tb.FCoefficient as FPrice,  12.5/tb.FCoefficient - Isnull(a.FXSLimitPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 5 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FXSLimitPrice,0)>=0 And 12.5/tb.FCoefficient < Isnull(a.FXSLimitPrice,0)*1
GO
Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null)insert into #DATA(FItemID,FUnitID,FPrice)
select a.FItemID,b.FUnitID,MIN(a.FPrice) from  ICInvInitial a
inner join t_icitem b on a.FItemID=b.FItemID
inner join t_stock c on a.FStockID=c.FItemID
where c.FTypeID<>502 and a.FItemID=101 and b.FUnitID=5
group by a.FItemID,b.FUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPriceDiscount) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=5
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and b.FItemID=101 and b.FShowUnitID=5
group by b.FItemID,b.FShowUnitID
select FItemID,FUnitID,MIN(FPrice) as FPrice from #DATA where FItemID=101 and FUnitID=5 group by FItemID,FUnitID
Drop table #DATA
GO
Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null,FDate datetime null)
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPriceDiscount,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID=101 and b.FShowUnitID=5
order by a.FSaveDate desc
select top 1 FItemID,FUnitID,FPrice as FPrice from #DATA where FItemID=101 and FUnitID=5 order by FDate desc

GO
Drop table #DATA
GO
Select u.FItemID,u.FSCStockID As FStockID,u.FBatchNo Into #TempNegItem 
From t_CC_StockBillEntry u Inner Join t_CC_StockBIll v On v.FID=u.FID 
Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)
Inner Join t_Stock s On u.FSCStockID=s.FItemID And s.FTypeID<>502 
Where IsNull(v.FStatus,0)=0 And u.FID In(0,1001,1002)

If Object_ID('temp..#TempItemID') Is Not Null Drop Table #TempItemID 
Create Table #TempItemID(FItemID int) 

Declare @StockID int,@ItemID int,@BatchNo varchar(80),@Price Decimal(28,10) 
Declare MyCur Cursor  For 
Select * From #TempNegItem  
Open MyCur   

Fetch next From MyCur Into @ItemID,@StockID,@BatchNo 
While @@Fetch_Status=0 
Begin 
  Exec sp_GetLastCost @StockID,@ItemID,@BatchNo,@Price Output 
  If IsNull(@Price,0)<=0  Insert Into #TempItemID Values(@ItemID)  
  Fetch next From MyCur Into @ItemID,@StockID,@BatchNo 
End 
Close MyCur 
DealLocate MyCur 
GO
Set NOCount On 
Select Distinct t.FItemID,i.FNumber,i.FName,IsNull(i.FModel,'') As FModel From #TempItemID t Inner Join t_ICItem i On t.FItemID=i.FItemID 
Drop Table #TempNegItem   Drop Table #TempItemID     Set NOCount Off 
GO
If Object_ID('tempdb.dbo.#tempFlag') Is Not Null Drop Table #tempFlag 
Select * Into #tempFlag  From (
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=1001
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry2 u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=1001 ) As a 
Update i Set i.FCalDate=t.FDate From t_ICItem i Inner Join #TempFlag t On i.FItemID=t.FItemID
Where DateDiff(Day,i.FCalDate,t.FDate)<0 
Declare @Type int,@Str varchar(2000) 
Select  @Type=FValue From t_Systemprofile Where FCategory='IC' And FKey ='CalculateType'
Set @Str='Update f Set f.FLastDate=t.FDate,f.FID=t.FID ' + char(13) 
Set @Str=@Str+ ' From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo'  
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
if @Type=1 Set @Str=@Str+ ' Select Distinct t.FStockID,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Else Set @Str=@Str+ ' Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Exec(@str) 
Drop Table #tempFlag 
GO
Update f Set f.FLastDate=t.FDate,f.FID=t.FID  From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo And f.FStockID=t.FStockID  Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And DateDiff(D,t.FDate,f.FLastDate)=0 Delete t From #tempFlag t Inner Join ICCalFlag f ON f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo   Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<=f.FID And DateDiff(D,t.FDate,f.FLastDate)=0 Insert Into ICCalFlag(FStockID,FItemID,FTrack,FBatchNo,FlastDate,FID)  Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID From #tempFlag t Inner Join t_ICItem i On t.FItemID=i.FItemID
GO
Select FStartDate,FEndDate from t_PeriodDate where FYear='2026' And FPeriod=3
GO
Select FStatus,FVoucherID From T_CC_StockBill  where FID=1001
GO
Delete From T_CC_StockBill where FID=1001
GO
update t_SerialNumList set FCanDeleteFlag = 1 where FBillID=1001
GO
select FID from t_SerialNumList where FItemID=101 and FSerialNo='A001'  and FBillID=1001 and FStockID=3 and FAuxPropID=0
GO
insert into t_SerialNumList(FBillID,FBillIndexID,FItemID,FStockID,FAuxPropID,FSerialNo,FNote,FClassTypeID,FStatus) values (1001,1,101,3,0,'A001','x',1040007,0)
GO
update t_SerialNumList set FBillIndexID = 1,FStockID = 3,FAuxPropID = 0,FNote = 'x',FClassTypeID = 1040007,FStatus = 1, FCanDeleteFlag = 0where FID=12
GO
delete from t_SerialNumList where FCanDeleteFlag = 1 and FBillID=1001
GO
select 1 from t_serialnumlist a inner join (select max(fid) as fid,fitemid,fserialno from t_serialnumlist where fbillid=1001 group by fitemid,fserialno) b on a.fitemid=b.fitemid and a.fserialno=b.fserialno where a.fid>b.fid and fbillid>0 
GO
Delete FromT_CC_ZZCX where FID=1001
GO
Update v1 
 Set v1.FKFDate=i.FKFDate,v1.FKFPeriod=i.FKFPeriod,v1.FPeriodDate=i.FPeriodDate 
 From t_CC_StockBillEntry v1 
 Inner Join t_ICItem t ON t.FItemID=v1.FItemID And t.FIsKFPeriod=1 
 Inner Join (Select * From (Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From T_CC_Stock Where IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From T_CC_Stock_batchno Where IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From vw_cc_Receive Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From vw_cc_Send Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' 
 )t Group By FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate) i ON i.FItemID=v1.FItemID And i.FBatchNo=v1.FBatchNo And i.FStockID=v1.FDCStockID 
 Where v1.FID = 1001 And ISNUll(v1.FBatchNo,'')<>'' 
GO
Declare @Same int,@Year int,@Period int,@BegDate DateTime,@EndDate DateTime 
Select @Same=IsNull(FValue,0) From t_systemprofile Where FCategory='IC' And FKey='EditSelfBill' 
SELECT @Year =CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' 
SELECT @BegDate=CONVERT(DATETIME, FStartDate),@EndDate=CONVERT(DATETIME, FEndDate) FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period 
Select FBillNo,IsNull(FStatus,0) As FStatus,FDate,FBillerID,@Same As FSelf,@BegDate As FBegDate,@EndDate As FEndDate From t_CC_StockBill 
Where FClassTypeID=1040007 And FID=1001
GO
Update T_CC_StockBill set FStatus=1,FCheckerID=16394,FCheckDate= getdate() where FID= 1001

GO
 Update t_CC_StockBillEntry Set FNote='first' Where FID=1001And FEntryID=1
 Update t_CC_StockBillEntry Set FNote='second' Where FID=1001And FEntryID=2

GO
Declare @Same int 
Select @Same=IsNull(FValue,0) From t_systemprofile Where FCategory='IC' And FKey='EditSelfBill' 
Select @Same,FBillerID From t_CC_StockBill Where FClassTypeID= 1040001And FID=1001
GO
Set NoCount On     Declare @Year int,@Period int,@Date DateTime 
SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' 
Select @Date=FDate From t_CC_StockBill Where FClassTypeID=1040001 And FID=1001
SELECT Convert(DateTime,FStartDate,102),Convert(DateTime,FEndDate) From t_PeriodDate 
WHERE FYear = @Year And FPeriod = @Period And @Date>=FStartDate  -- And @Date<FEndDate 
Set NoCount Off 
GO
Select 1 From T_CC_Templet  where FID=1001
GO
update t_Organization set FIntent=0 where FItemID=7
