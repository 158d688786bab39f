-- Shelf life of batches

Update v1 
 Set v1.FKFDate=i.FKFDate,v1.FKFPeriod=i.FKFPeriod,v1.FPeriodDate=i.FPeriodDate 
 From t_CC_StockBillEntry v1 
 Inner Join t_ICItem t ON t.FItemID=v1.FItemID And t.FIsKFPeriod=1 
 Inner Join (Select * From (Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From T_CC_Stock Where IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From T_CC_Stock_batchno Where IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From vw_cc_Receive Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' 
 Union Select FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate From vw_cc_Send Where IsNull(FStatus,0)>0 And IsNull(FBatchNo,'')<>'' 
 )t Group By FItemID,FStockID,FBatchNo,FKFDate,FKFPeriod,FPeriodDate) i ON i.FItemID=v1.FItemID And i.FBatchNo=v1.FBatchNo And i.FStockID=v1.FDCStockID 
 Where v1.FID = 7 And ISNUll(v1.FBatchNo,'')<>'' 
  > UPDATE main."T_CC_StockBillEntry" AS u
    SET "FKFDate"=q.c0,"FKFPeriod"=q.c1,"FPeriodDate"=q.c2
    FROM (SELECT s1.rowid AS r,s20.c3 AS c0,s20.c4 AS c1,s20.c5 AS c2
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_ICItem" AS s2
    ON ((s2."FItemID" = s1."FItemID")
    AND (s2."FIsKFPeriod" = ?16))
    JOIN (SELECT s19.c0 AS c0,s19.c1 AS c1,s19.c2 AS c2,s19.c3 AS c3,s19.c4 AS c4,s19.c5 AS c5
    FROM (SELECT s3."FItemID" AS c0,s3."FStockID" AS c1,s3."FBatchNo" AS c2,s3."FKFDate" AS c3,s3."FKFPeriod" AS c4,s3."FPeriodDate" AS c5
    FROM main."T_CC_Stock" AS s3
    WHERE ((s3."FItemID" IN (SELECT s21."FItemID"
    FROM main."T_CC_StockBillEntry" AS s21
    WHERE ((s21."FID" = ?1)
    AND (ifnull(s21."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (ifnull(s3."FBatchNo",?4) COLLATE tsql <> ?5))
    UNION SELECT s4."FItemID" AS c0,s4."FStockID" AS c1,s4."FBatchNo" AS c2,s4."FKFDate" AS c3,s4."FKFPeriod" AS c4,s4."FPeriodDate" AS c5
    FROM main."T_CC_Stock_batchno" AS s4
    WHERE ((s4."FItemID" IN (SELECT s22."FItemID"
    FROM main."T_CC_StockBillEntry" AS s22
    WHERE ((s22."FID" = ?1)
    AND (ifnull(s22."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (ifnull(s4."FBatchNo",?6) COLLATE tsql <> ?7))
    UNION SELECT s11.c6 AS c0,s11.c8 AS c1,s11.c10 COLLATE tsql AS c2,s11.c12 AS c3,s11.c11 AS c4,s11.c13 AS c5
    FROM (SELECT s5."FID" AS c0,s6."FEntryID" AS c1,s5."FClassTypeID" AS c2,s5."FBillTypeID" AS c3,s5."FStatus" AS c4,s5."FDate" AS c5,s6."FItemID" AS c6,s6."FShowUnitID" AS c7,CASE WHEN (s5."FBillTypeID" IN (3002,3004,3011)) THEN s6."FSCStockID" ELSE s6."FDCStockID" END AS c8,s6."FAuxPropID" AS c9,s6."FBatchNo" AS c10,s6."FKFPeriod" AS c11,s6."FKFDate" AS c12,s6."FPeriodDate" AS c13,s6."FQty" AS c14
    FROM main."T_CC_StockBill" AS s5
    JOIN main."T_CC_StockBillEntry" AS s6
    ON (s5."FID" = s6."FID")
    WHERE ((s6."FItemID" IN (SELECT s23."FItemID"
    FROM main."T_CC_StockBillEntry" AS s23
    WHERE ((s23."FID" = ?1)
    AND (ifnull(s23."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (((s5."FBillTypeID" IN (3002,3004,3011))
    AND (s6."FSCStockID" <> 0))
    OR ((s5."FBillTypeID" NOT IN (2012,2031,2032,3002,3004,3011))
    AND (s6."FDCStockID" <> 0))))
    UNION ALL SELECT s7."FID" AS c0,s8."FEntryID" AS c1,s7."FClassTypeID" AS c2,s7."FBillTypeID" AS c3,s7."FStatus" AS c4,s7."FDate" AS c5,s8."FItemID" AS c6,s8."FShowUnitID" AS c7,s8."FDCStockID" AS c8,s8."FAuxPropID" AS c9,s8."FBatchNo" AS c10,s8."FKFPeriod" AS c11,s8."FProDate" AS c12,s8."FExpDate" AS c13,s8."FQty" AS c14
    FROM main."T_CC_ZZCX" AS s7
    JOIN main."T_CC_ZZCX_Entry" AS s8
    ON (s7."FID" = s8."FID")
    WHERE ((s8."FItemID" IN (SELECT s24."FItemID"
    FROM main."T_CC_StockBillEntry" AS s24
    WHERE ((s24."FID" = ?1)
    AND (ifnull(s24."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (s7."FClassTypeID" = 1040005))
    UNION ALL SELECT s9."FID" AS c0,s10."FEntryID" AS c1,s9."FClassTypeID" AS c2,s9."FBillTypeID" AS c3,s9."FStatus" AS c4,s9."FDate" AS c5,s10."FItemID" AS c6,s10."FShowUnitID" AS c7,s10."FSCStockID" AS c8,s10."FAuxPropID" AS c9,s10."FBatchNo" AS c10,s10."FKFPeriod" AS c11,s10."FProDate" AS c12,s10."FExpDate" AS c13,s10."FQty" AS c14
    FROM main."T_CC_ZZCX" AS s9
    JOIN main."T_CC_ZZCX_Entry2" AS s10
    ON (s9."FID" = s10."FID")
    WHERE ((s10."FItemID" IN (SELECT s25."FItemID"
    FROM main."T_CC_StockBillEntry" AS s25
    WHERE ((s25."FID" = ?1)
    AND (ifnull(s25."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (s9."FClassTypeID" = 1040006))) AS s11
    WHERE ((ifnull(s11.c4,?8) > ?9)
    AND (ifnull(s11.c10,?10) COLLATE tsql <> ?11))
    UNION SELECT s18.c6 AS c0,s18.c8 AS c1,s18.c10 COLLATE tsql AS c2,s18.c12 AS c3,s18.c11 AS c4,s18.c13 AS c5
    FROM (SELECT s12."FID" AS c0,s13."FEntryID" AS c1,s12."FClassTypeID" AS c2,s12."FBillTypeID" AS c3,s12."FStatus" AS c4,s12."FDate" AS c5,s13."FItemID" AS c6,s13."FShowUnitID" AS c7,CASE WHEN (s12."FBillTypeID" IN (2012,2031,2032)) THEN s13."FDCStockID" ELSE s13."FSCStockID" END AS c8,s13."FAuxPropID" AS c9,s13."FBatchNo" AS c10,s13."FKFPeriod" AS c11,s13."FKFDate" AS c12,s13."FPeriodDate" AS c13,CASE WHEN (s12."FClassTypeID" = 1040004) THEN t_mul_decimal(s13."FProfitLossQty",s13."FCoefficient",319615626) ELSE t_conv(s13."FQty",81821491535) END AS c14
    FROM main."T_CC_StockBill" AS s12
    JOIN main."T_CC_StockBillEntry" AS s13
    ON (s12."FID" = s13."FID")
    WHERE ((s13."FItemID" IN (SELECT s26."FItemID"
    FROM main."T_CC_StockBillEntry" AS s26
    WHERE ((s26."FID" = ?1)
    AND (ifnull(s26."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (((s12."FBillTypeID" IN (2012,2031,2032))
    AND (s13."FDCStockID" <> 0))
    OR ((s12."FBillTypeID" NOT IN (2012,2031,2032,3002,3004,3011))
    AND (s13."FSCStockID" <> 0))))
    UNION ALL SELECT s14."FID" AS c0,s15."FEntryID" AS c1,s14."FClassTypeID" AS c2,s14."FBillTypeID" AS c3,s14."FStatus" AS c4,s14."FDate" AS c5,s15."FItemID" AS c6,s15."FShowUnitID" AS c7,s15."FSCStockID" AS c8,s15."FAuxPropID" AS c9,s15."FBatchNo" AS c10,s15."FKFPeriod" AS c11,s15."FProDate" AS c12,s15."FExpDate" AS c13,t_conv(s15."FQty",81821491535) AS c14
    FROM main."T_CC_ZZCX" AS s14
    JOIN main."T_CC_ZZCX_Entry2" AS s15
    ON (s14."FID" = s15."FID")
    WHERE ((s15."FItemID" IN (SELECT s27."FItemID"
    FROM main."T_CC_StockBillEntry" AS s27
    WHERE ((s27."FID" = ?1)
    AND (ifnull(s27."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (s14."FClassTypeID" = 1040005))
    UNION ALL SELECT s16."FID" AS c0,s17."FEntryID" AS c1,s16."FClassTypeID" AS c2,s16."FBillTypeID" AS c3,s16."FStatus" AS c4,s16."FDate" AS c5,s17."FItemID" AS c6,s17."FShowUnitID" AS c7,s17."FDCStockID" AS c8,s17."FAuxPropID" AS c9,s17."FBatchNo" AS c10,s17."FKFPeriod" AS c11,s17."FProDate" AS c12,s17."FExpDate" AS c13,t_conv(s17."FQty",81821491535) AS c14
    FROM main."T_CC_ZZCX" AS s16
    JOIN main."T_CC_ZZCX_Entry" AS s17
    ON (s16."FID" = s17."FID")
    WHERE ((s17."FItemID" IN (SELECT s28."FItemID"
    FROM main."T_CC_StockBillEntry" AS s28
    WHERE ((s28."FID" = ?1)
    AND (ifnull(s28."FBatchNo",?2) COLLATE tsql <> ?3))))
    AND (s16."FClassTypeID" = 1040006))) AS s18
    WHERE ((ifnull(s18.c4,?12) > ?13)
    AND (ifnull(s18.c10,?14) COLLATE tsql <> ?15))) AS s19
    GROUP BY s19.c0,s19.c1,s19.c2 COLLATE tsql,s19.c3,s19.c4,s19.c5) AS s20
    ON ((s20.c0 = s1."FItemID")
    AND (s20.c2 COLLATE tsql = s1."FBatchNo")
    AND (s20.c1 = s1."FDCStockID"))
    WHERE ((s1."FID" = ?1)
    AND (ifnull(s1."FBatchNo",?2) COLLATE tsql <> ?3))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid

select FEntryID,FKFDate,FKFPeriod,FPeriodDate from T_CC_StockBillEntry where FID=7 order by FEntryID
  > SELECT s1."FEntryID",s1."FKFDate",s1."FKFPeriod",s1."FPeriodDate"
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE (s1."FID" = ?1)
    ORDER BY 1

-- Cost as price

Update v1 
 Set v1.FPrice=v1.FCostPrice,v1.FAmount=v1.FCostAmount 
 From t_CC_StockBillEntry v1 
 Inner Join t_CC_StockBill v2 ON v1.FID=v2.FID And v2.FBillTypeID = 1 
 Where v1.FID = 7 
  > UPDATE main."T_CC_StockBillEntry" AS s1
    SET "FPrice"=s1."FCostPrice","FAmount"=s1."FCostAmount"
    FROM main."T_CC_StockBill" AS s2
    WHERE ((s1."FID" = s2."FID")
    AND (s2."FBillTypeID" = ?1))
    AND (s1."FID" = ?2)

select FID,FPrice,FAmount from T_CC_StockBillEntry order by FID
  > SELECT s1."FID",s1."FPrice",s1."FAmount"
    FROM main."T_CC_StockBillEntry" AS s1
    ORDER BY 1

update T_CC_StockBill set FBillTypeID=0
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FBillTypeID"=?1

update T_CC_StockBillEntry set FPrice=0
  > UPDATE main."T_CC_StockBillEntry" AS s1
    SET "FPrice"=?1

select FPrice from T_CC_StockBillEntry where FID=7
  > SELECT s1."FPrice"
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE (s1."FID" = ?1)

-- Before deletion

Declare @Same int,@Year int,@Period int,@BegDate DateTime,@EndDate DateTime 
Select @Same=IsNull(FValue,0) From t_systemprofile Where FCategory='IC' And FKey='EditSelfBill' 
SELECT @Year =CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' 
SELECT @BegDate=CONVERT(DATETIME, FStartDate),@EndDate=CONVERT(DATETIME, FEndDate) FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period 
Select FBillNo,IsNull(FStatus,0) As FStatus,FDate,FBillerID,@Same As FSelf,@BegDate As FBegDate,@EndDate As FEndDate From t_CC_StockBill 
Where FClassTypeID=1040007 And FID=7
  > SELECT t_conv(ifnull(s1."FValue",t_conv(?1,8596226091)),45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?2)
    AND (s1."FKey" = ?3))
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = ?1)
    AND (s1."FPeriod" = ?2))
  > SELECT s1."FBillNo",ifnull(s1."FStatus",?1),s1."FDate",s1."FBillerID",?2,?3,?4
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?5)
    AND (s1."FID" = ?6))

Delete FromT_CC_StockBill where FID=7
  > error 208

-- Actions

Select FStatus,FVoucherID From T_CC_StockBill where FID=7
  > SELECT s1."FStatus",s1."FVoucherID"
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

Update T_CC_StockBill set FCheckerID=2,FCheckDate=GetDate(),FStatus=1  where FID=7
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=t_getdate(),"FStatus"=?2
    WHERE (s1."FID" = ?3)

select FCheckerID,FStatus from T_CC_StockBill
  > SELECT s1."FCheckerID",s1."FStatus"
    FROM main."T_CC_StockBill" AS s1

Update T_CC_StockBill set FCheckerID=0,FCheckDate=Null,FStatus=0  where FID=7
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=NULL,"FStatus"=?2
    WHERE (s1."FID" = ?3)

select FCheckerID,FCheckDate,FStatus from T_CC_StockBill
  > SELECT s1."FCheckerID",s1."FCheckDate",s1."FStatus"
    FROM main."T_CC_StockBill" AS s1

