-- The temporary table is made, dropped and made again

if   object_id('tempdb.dbo.#TavTempBill')   is   not   null drop   table   [dbo].[#TavTempBill]
  > SELECT (s_object_id(?1) IS NOT NULL)

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

  > BEGIN
  > CREATE TABLE temp."t1"("FBrNo" TEXT COLLATE tsql NOT NULL DEFAULT '',"FInterID" INTEGER NOT NULL DEFAULT 0,"FEntryID" INTEGER NOT NULL DEFAULT 0,"FTranType" INTEGER NOT NULL DEFAULT 0,"FItemID" INTEGER NOT NULL DEFAULT 0,"FShowUnitID" INTEGER NOT NULL DEFAULT 0,"FBatchNo" TEXT COLLATE tsql NOT NULL DEFAULT '',"FAuxPropID" INTEGER NOT NULL DEFAULT 0,"FStockID" INTEGER NOT NULL DEFAULT 0,"FStockPlaceID" INTEGER NOT NULL DEFAULT 0,"FKFPeriod" INTEGER NOT NULL DEFAULT 0,"FKFDate" TEXT COLLATE tsql NOT NULL DEFAULT '',"FQty" INTEGER NOT NULL DEFAULT 0,"FShowQty" INTEGER NOT NULL DEFAULT 0,"FSecQty" INTEGER NOT NULL DEFAULT 0,"FPrice" INTEGER NOT NULL DEFAULT 0,"FPeriodDate" TEXT COLLATE tsql NOT NULL DEFAULT '',"FBatchNoIndex" TEXT COLLATE tsql NOT NULL DEFAULT '');
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > COMMIT

if   object_id('tempdb.dbo.#TavTempBill')   is   not   null drop   table   [dbo].[#TavTempBill]
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

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

  > BEGIN
  > COMMIT

select * from #TavTempBill
  > SELECT s1."FBrNo",s1."FInterID",s1."FEntryID",s1."FTranType",s1."FItemID",s1."FShowUnitID",s1."FBatchNo",s1."FAuxPropID",s1."FStockID",s1."FStockPlaceID",s1."FKFPeriod",s1."FKFDate",s1."FQty",s1."FShowQty",s1."FSecQty",s1."FPrice",s1."FPeriodDate",s1."FBatchNoIndex"
    FROM temp."t1" AS s1

-- Filling from a bill: signs, dates as text, price of the base unit

INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,FShowUnitID,Fprice,FBatchNoIndex)
 SELECT '',u1.FID,u1.FEntryID,0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FDCStockID,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FKFDate ,120),'1900-01-01'),10) AS FKFDate,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FPeriodDate ,120),'1900-01-01'),10) AS FPeriodDate,
1*u1.FQty AS FQty,1*u1.FShowQty AS FShowQty,1*u1.FSecQty AS FSecQty,u1.FShowUnitID AS FShowUnitID,FPrice/u1.FCoefficient,(CASE WHEN /*u3.FTrack = 80*/u3.FTrack = -1 AND ((1 = 1 AND 1 = 1) OR (1 = -1 AND 1 = -1)) AND (u2.FClassTypeID = 1020002 OR u2.FClassTypeID = 1020003 OR u2.FClassTypeID = 1040001 OR u2.FClassTypeID = 1040003 OR u2.FClassTypeID = 1040005 OR u2.FClassTypeID = 1040006 OR u2.FClassTypeID = 1040007 OR u2.FClassTypeID = 1040008 OR u2.FClassTypeID = 1080001 OR u2.FClassTypeID = 1080002) THEN SUBSTRING(CAST(u1.FID AS varchar) + '000000000000',0,12) + SUBSTRING(cast(u1.FEntryID AS varchar) + '000000000000000000',0,18) ELSE u1.FBatchNoIndex END) AS FBatchNoIndex
 FROM T_CC_StockBillEntry u1 Inner Join T_CC_StockBill u2 On u1.FID=u2.FID 
 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 
 WHERE u1.FID=7
  > INSERT INTO temp."t1"("FBrNo","FInterID","FEntryID","FTranType","FItemID","FBatchNo","FAuxPropID","FStockID","FStockPlaceID","FKFPeriod","FKFDate","FPeriodDate","FQty","FShowQty","FSecQty","FShowUnitID","FPrice","FBatchNoIndex") SELECT ?1,s1."FID",s1."FEntryID",?2,s1."FItemID",ifnull(s1."FBatchNo",?3),s1."FAuxPropID",ifnull(s1."FDCStockID",?4),?5,s1."FKFPeriod",t_left(ifnull(t_conv(s1."FKFDate",263883499503668),?6),?7),t_left(ifnull(t_conv(s1."FPeriodDate",263883499503668),?8),?9),t_conv(t_mul_decimal(?10,s1."FQty",253031040),1159992504655),t_conv(t_mul_decimal(?11,s1."FShowQty",253031040),1159992504655),t_conv(t_mul_decimal(?12,s1."FSecQty",253031040),1159992504655),s1."FShowUnitID",t_conv(t_div_decimal(s1."FPrice",s1."FCoefficient",320139914),1159992521039),t_conv(CASE WHEN ((s3."FTrack" = t_neg_int(?13))
    AND (((?14 = ?15)
    AND (?16 = ?17))
    OR ((?18 = t_neg_int(?19))
    AND (?20 = t_neg_int(?21))))
    AND ((s2."FClassTypeID" = ?22)
    OR (s2."FClassTypeID" = ?23)
    OR (s2."FClassTypeID" = ?24)
    OR (s2."FClassTypeID" = ?25)
    OR (s2."FClassTypeID" = ?26)
    OR (s2."FClassTypeID" = ?27)
    OR (s2."FClassTypeID" = ?28)
    OR (s2."FClassTypeID" = ?29)
    OR (s2."FClassTypeID" = ?30)
    OR (s2."FClassTypeID" = ?31))) THEN (t_substring((t_conv(s1."FID",1044381739) || ?32),?33,?34) || t_substring((t_conv(s1."FEntryID",1044381739) || ?35),?36,?37)) ELSE s1."FBatchNoIndex" END,1100556012390,'tempdb.dbo.#TavTempBill','FBatchNoIndex')
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE (s1."FID" = ?38)

select FInterID,FEntryID,FItemID,FBatchNo,FStockID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,FShowUnitID,FPrice,FBatchNoIndex from #TavTempBill order by FEntryID
  > SELECT s1."FInterID",s1."FEntryID",s1."FItemID",s1."FBatchNo",s1."FStockID",s1."FKFPeriod",s1."FKFDate",s1."FPeriodDate",s1."FQty",s1."FShowQty",s1."FSecQty",s1."FShowUnitID",s1."FPrice",s1."FBatchNoIndex"
    FROM temp."t1" AS s1
    ORDER BY 2

delete from #TavTempBill
  > DELETE
    FROM temp."t1" AS s1

INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,FShowUnitID,Fprice,FBatchNoIndex)
 SELECT '',u1.FID,u1.FEntryID,0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FSCStockID,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FKFDate ,120),'1900-01-01'),10) AS FKFDate,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FPeriodDate ,120),'1900-01-01'),10) AS FPeriodDate,
-1*u1.FProfitLossQty*u1.FCoefficient AS FQty,-1*u1.FProfitLossQty AS FShowQty,-1*u1.FProfitLossSecQty AS FSecQty,u1.FShowUnitID AS FShowUnitID,u1.FCostPrice/u1.FCoefficient,(CASE WHEN /*u3.FTrack = 80*/u3.FTrack = -1 AND ((-1 = 1 AND -1 = 1) OR (-1 = -1 AND -1 = -1)) AND (u2.FClassTypeID = 1020002 OR u2.FClassTypeID = 1020003 OR u2.FClassTypeID = 1040001 OR u2.FClassTypeID = 1040003 OR u2.FClassTypeID = 1040005 OR u2.FClassTypeID = 1040006 OR u2.FClassTypeID = 1040007 OR u2.FClassTypeID = 1040008 OR u2.FClassTypeID = 1080001 OR u2.FClassTypeID = 1080002) THEN SUBSTRING(CAST(u1.FID AS varchar) + '000000000000',0,12) + SUBSTRING(cast(u1.FEntryID AS varchar) + '000000000000000000',0,18) ELSE u1.FBatchNoIndex END) AS FBatchNoIndex
 FROM T_CC_StockBillEntry u1 Inner Join T_CC_StockBill u2 On u1.FID=u2.FID 
 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 
 WHERE u1.FID=7
  > INSERT INTO temp."t1"("FBrNo","FInterID","FEntryID","FTranType","FItemID","FBatchNo","FAuxPropID","FStockID","FStockPlaceID","FKFPeriod","FKFDate","FPeriodDate","FQty","FShowQty","FSecQty","FShowUnitID","FPrice","FBatchNoIndex") SELECT ?1,s1."FID",s1."FEntryID",?2,s1."FItemID",ifnull(s1."FBatchNo",?3),s1."FAuxPropID",ifnull(s1."FSCStockID",?4),?5,s1."FKFPeriod",t_left(ifnull(t_conv(s1."FKFDate",263883499503668),?6),?7),t_left(ifnull(t_conv(s1."FPeriodDate",263883499503668),?8),?9),t_conv(t_neg_decimal(t_mul_decimal(t_mul_decimal(?10,s1."FProfitLossQty",253031040),s1."FCoefficient",319615626)),1159992520911),t_conv(t_neg_decimal(t_mul_decimal(?11,s1."FProfitLossQty",253031040)),1159992504655),t_conv(t_neg_decimal(t_mul_decimal(?12,s1."FProfitLossSecQty",253031040)),1159992504655),s1."FShowUnitID",t_conv(t_div_decimal(s1."FCostPrice",s1."FCoefficient",320139914),1159992521039),t_conv(CASE WHEN ((s3."FTrack" = t_neg_int(?13))
    AND (((t_neg_int(?14) = ?15)
    AND (t_neg_int(?16) = ?17))
    OR ((t_neg_int(?18) = t_neg_int(?19))
    AND (t_neg_int(?20) = t_neg_int(?21))))
    AND ((s2."FClassTypeID" = ?22)
    OR (s2."FClassTypeID" = ?23)
    OR (s2."FClassTypeID" = ?24)
    OR (s2."FClassTypeID" = ?25)
    OR (s2."FClassTypeID" = ?26)
    OR (s2."FClassTypeID" = ?27)
    OR (s2."FClassTypeID" = ?28)
    OR (s2."FClassTypeID" = ?29)
    OR (s2."FClassTypeID" = ?30)
    OR (s2."FClassTypeID" = ?31))) THEN (t_substring((t_conv(s1."FID",1044381739) || ?32),?33,?34) || t_substring((t_conv(s1."FEntryID",1044381739) || ?35),?36,?37)) ELSE s1."FBatchNoIndex" END,1100556012390,'tempdb.dbo.#TavTempBill','FBatchNoIndex')
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE (s1."FID" = ?38)

select FStockID,FQty,FShowQty,FPrice from #TavTempBill order by FEntryID
  > SELECT s1."FStockID",s1."FQty",s1."FShowQty",s1."FPrice"
    FROM temp."t1" AS s1
    ORDER BY s1."FEntryID"

-- An item tracked by method -1 gets its batch index from bill and row

select FBatchNoIndex,len(FBatchNoIndex) from #TavTempBill
  > SELECT s1."FBatchNoIndex",t_len(s1."FBatchNoIndex")
    FROM temp."t1" AS s1

-- Filling from an assembly bill

INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FShowQty,FSecQty,FShowUnitID,Fprice,FBatchNoIndex)
 SELECT '',u1.FID,u1.FEntryID,0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FSCStockID,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FProDate ,120),'1900-01-01'),10) AS FKFDate,
 LEFT(ISNULL(CONVERT(VARCHAR(20),u1.FExpDate ,120),'1900-01-01'),10) AS FPeriodDate,
-1*u1.FQty AS FQty,-1*u1.FShowQty AS FShowQty,-1*u1.FSecQty AS FSecQty,u1.FShowUnitID AS FShowUnitID,FPrice/u1.FCoefficient,(CASE WHEN /*u3.FTrack = 80*/u3.FTrack = -1 AND ((1 = 1 AND -1 = 1) OR (1 = -1 AND -1 = -1)) AND (u2.FClassTypeID = 1020002 OR u2.FClassTypeID = 1020003 OR u2.FClassTypeID = 1040001 OR u2.FClassTypeID = 1040003 OR u2.FClassTypeID = 1040005 OR u2.FClassTypeID = 1040006 OR u2.FClassTypeID = 1040007 OR u2.FClassTypeID = 1040008 OR u2.FClassTypeID = 1080001 OR u2.FClassTypeID = 1080002) THEN SUBSTRING(CAST(u1.FID AS varchar) + '000000000000',0,12) + SUBSTRING(cast(u1.FEntryID AS varchar) + '000000000000000000',0,18) ELSE u1.FBatchNoIndex END) AS FBatchNoIndex
 FROM T_CC_ZZCX_Entry2 u1 Inner Join T_CC_ZZCX u2 On u1.FID=u2.FID 
 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 
 WHERE u1.FID=8
  > INSERT INTO temp."t1"("FBrNo","FInterID","FEntryID","FTranType","FItemID","FBatchNo","FAuxPropID","FStockID","FStockPlaceID","FKFPeriod","FKFDate","FPeriodDate","FQty","FShowQty","FSecQty","FShowUnitID","FPrice","FBatchNoIndex") SELECT ?1,s1."FID",s1."FEntryID",?2,s1."FItemID",ifnull(s1."FBatchNo",?3),s1."FAuxPropID",ifnull(s1."FSCStockID",?4),?5,s1."FKFPeriod",t_left(ifnull(t_conv(s1."FProDate",263883499503668),?6),?7),t_left(ifnull(t_conv(s1."FExpDate",263883499503668),?8),?9),t_conv(t_neg_decimal(t_mul_decimal(?10,s1."FQty",253031040)),1159992504655),t_conv(t_neg_decimal(t_mul_decimal(?11,s1."FShowQty",253031040)),1159992504655),t_conv(t_neg_decimal(t_mul_decimal(?12,s1."FSecQty",253031040)),1159992504655),s1."FShowUnitID",t_conv(t_div_decimal(s1."FPrice",s1."FCoefficient",320139914),1159992521039),t_conv(CASE WHEN ((s3."FTrack" = t_neg_int(?13))
    AND (((?14 = ?15)
    AND (t_neg_int(?16) = ?17))
    OR ((?18 = t_neg_int(?19))
    AND (t_neg_int(?20) = t_neg_int(?21))))
    AND ((s2."FClassTypeID" = ?22)
    OR (s2."FClassTypeID" = ?23)
    OR (s2."FClassTypeID" = ?24)
    OR (s2."FClassTypeID" = ?25)
    OR (s2."FClassTypeID" = ?26)
    OR (s2."FClassTypeID" = ?27)
    OR (s2."FClassTypeID" = ?28)
    OR (s2."FClassTypeID" = ?29)
    OR (s2."FClassTypeID" = ?30)
    OR (s2."FClassTypeID" = ?31))) THEN (t_substring((t_conv(s1."FID",1044381739) || ?32),?33,?34) || t_substring((t_conv(s1."FEntryID",1044381739) || ?35),?36,?37)) ELSE s1."FBatchNoIndex" END,1100556012390,'tempdb.dbo.#TavTempBill','FBatchNoIndex')
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE (s1."FID" = ?38)

select FStockID,FKFDate,FPeriodDate,FQty,FShowQty,FPrice from #TavTempBill
  > SELECT s1."FStockID",s1."FKFDate",s1."FPeriodDate",s1."FQty",s1."FShowQty",s1."FPrice"
    FROM temp."t1" AS s1

-- Applying: existing rows grow, the rest become new rows, what was applied is gone

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

  > UPDATE main."T_CC_Inventory" AS u
    SET "FKFDate"=q.c0,"FKFPeriod"=q.c1,"FPeriodDate"=q.c2
    FROM (SELECT s1.rowid AS r,s3."FKFDate" AS c0,s3."FKFPeriod" AS c1,s3."FPeriodDate" AS c2
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_ICItem" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND ((s2."FTrack" = ?1)
    OR ((s2."FTrack" <> ?2)
    AND (s2."FISBatchManager" = ?3))))
    JOIN temp."t1" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FBatchNo" = s3."FBatchNo")
    AND (s1."FStockID" = s3."FStockID")
    AND (s1."FBatchNoIndex" = s3."FBatchNoIndex"))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > UPDATE main."T_CC_Inventory" AS u
    SET "FQty"=q.c0,"FSecQty"=q.c1,"FBal"=q.c2
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FQty",s3.c8,320139914),1159992521039) AS c0,t_conv(t_add_decimal(s1."FSecQty",s3.c9,320139914),1159992521039) AS c1,t_conv(t_add_decimal(s1."FBal",s3.c10,319615370),1159992520911) AS c2
    FROM main."T_CC_Inventory" AS s1
    JOIN (SELECT s2."FItemID" AS c0,s2."FBatchNo" AS c1,s2."FAuxPropID" AS c2,s2."FStockID" AS c3,s2."FKFPeriod" AS c4,s2."FKFDate" AS c5,s2."FPeriodDate" AS c6,s2."FBatchNoIndex" AS c7,t_sum_decimal(s2."FQty") AS c8,t_sum_decimal(s2."FSecQty") AS c9,t_round_decimal(ifnull(t_sum_decimal(t_mul_decimal(s2."FQty",s2."FPrice",319615626)),?1),?2,0,319614982) AS c10
    FROM temp."t1" AS s2
    GROUP BY s2."FItemID",s2."FBatchNo",s2."FAuxPropID",s2."FStockID",s2."FKFPeriod",s2."FKFDate",s2."FPeriodDate",s2."FBatchNoIndex") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FBatchNo" = s3.c1)
    AND (s1."FAuxPropID" = s3.c2)
    AND (s1."FStockID" = s3.c3)
    AND (s1."FKFPeriod" = s3.c4)
    AND (s1."FKFDate" = s3.c5)
    AND (s1."FPeriodDate" = s3.c6)
    AND (s1."FBatchNoIndex" = s3.c7))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > DELETE
    FROM temp."t1"
    WHERE rowid IN (SELECT s2.rowid
    FROM main."T_CC_Inventory" AS s1
    JOIN temp."t1" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FBatchNo" = s2."FBatchNo")
    AND (s1."FAuxPropID" = s2."FAuxPropID")
    AND (s1."FStockID" = s2."FStockID")
    AND (s1."FKFPeriod" = s2."FKFPeriod")
    AND (s1."FKFDate" = s2."FKFDate")
    AND (s1."FPeriodDate" = s2."FPeriodDate")
    AND (s1."FBatchNoIndex" = s2."FBatchNoIndex")))
  > INSERT INTO main."T_CC_Inventory"("FBrNo","FItemID","FAuxPropID","FBatchNo","FStockID","FKFPeriod","FKFDate","FQty","FBal","FSecQty","FLockQty","FPeriodDate","FBatchNoIndex") SELECT ?1,s1."FItemID",s1."FAuxPropID",s1."FBatchNo",s1."FStockID",s1."FKFPeriod",s1."FKFDate",t_conv(t_sum_decimal(s1."FQty"),1159992521039),t_conv(t_round_decimal(ifnull(t_sum_decimal(t_mul_decimal(s1."FQty",s1."FPrice",319615626)),?2),?3,0,319614982),1159992520911),t_conv(t_sum_decimal(s1."FSecQty"),1159992521039),?4,s1."FPeriodDate",s1."FBatchNoIndex"
    FROM temp."t1" AS s1
    GROUP BY s1."FItemID",s1."FBatchNo",s1."FAuxPropID",s1."FStockID",s1."FKFPeriod",s1."FKFDate",s1."FPeriodDate",s1."FBatchNoIndex"

select FItemID,FStockID,FBatchNo,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,FBal,FLockQty from T_CC_Inventory order by FItemID,FStockID,FBatchNo
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1."FKFPeriod",s1."FKFDate",s1."FPeriodDate",s1."FQty",s1."FSecQty",s1."FBal",s1."FLockQty"
    FROM main."T_CC_Inventory" AS s1
    ORDER BY 1,2,3 COLLATE tsql

select FItemID,FStockID,FQty from #TavTempBill order by FQty
  > SELECT s1."FItemID",s1."FStockID",s1."FQty"
    FROM temp."t1" AS s1
    ORDER BY t_order_decimal(s1."FQty"),s1."FQty"

-- Applying nothing changes nothing

select FItemID,FQty from T_CC_Inventory
  > SELECT s1."FItemID",s1."FQty"
    FROM main."T_CC_Inventory" AS s1

-- Cleaning: second quantities of empty rows, then empty rows that no audited bill names

 update T_CC_Inventory set FSecQty = 0 where abs(FQty) <= 0.000000001 and abs(FSecQty) >= 0.000000001 
  > UPDATE main."T_CC_Inventory" AS s1
    SET "FSecQty"=?1
    WHERE ((t_cmp_decimal(t_abs_decimal(s1."FQty"),?2,318829194) <= 0)
    AND (t_cmp_decimal(t_abs_decimal(s1."FSecQty"),?3,318829194) >= 0)
    AND (s1."FSecQty"<>0
    AND s1."FQty">=-10
    AND s1."FQty"<=10))

select FItemID,FStockID,FSecQty from T_CC_Inventory order by FItemID,FStockID
  > SELECT s1."FItemID",s1."FStockID",s1."FSecQty"
    FROM main."T_CC_Inventory" AS s1
    ORDER BY 1,2

 declare @temp_inv table(FItemID int,FBatchNo varchar(255),FDCStockID int ,FAuxPropID int ) insert into @temp_inv(FItemID ,FBatchNo,FDCStockID  ,FAuxPropID) SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_StockBillEntry t1 with(nolock) JOIN T_CC_StockBill t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1  Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry2 t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID DELETE t1 FROM T_CC_Inventory t1 Left Join @temp_inv u1 on t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FStockID=u1.FDCStockID and t1.FAuxPropID=u1.FAuxPropID WHERE t1.FQty=0 And t1.Fbal=0 and u1.FItemID is null
  > CREATE TABLE temp."t1"("FItemID" INTEGER,"FBatchNo" TEXT COLLATE tsql,"FDCStockID" INTEGER,"FAuxPropID" INTEGER);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > DELETE
    FROM main."T_CC_Inventory" AS s8
    WHERE ((s8."FQty" = ?1)
    AND (s8."FBal" = ?2)
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID")
    WHERE (((s8."FItemID" = s1."FItemID")
    AND (s8."FBatchNo" = s1."FBatchNo")
    AND (s8."FStockID" = s1."FDCStockID")
    AND (s8."FAuxPropID" = s1."FAuxPropID"))
    AND (s2."FStatus" = ?3))))
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_ZZCX_Entry" AS s3
    JOIN main."T_CC_ZZCX" AS s4
    ON (s3."FID" = s4."FID")
    WHERE (((s8."FItemID" = s3."FItemID")
    AND (s8."FBatchNo" = s3."FBatchNo")
    AND (s8."FStockID" = s3."FDCStockID")
    AND (s8."FAuxPropID" = s3."FAuxPropID"))
    AND (s4."FStatus" = ?4))))
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_ZZCX_Entry2" AS s5
    JOIN main."T_CC_ZZCX" AS s6
    ON (s5."FID" = s6."FID")
    WHERE (((s8."FItemID" = s5."FItemID")
    AND (s8."FBatchNo" = s5."FBatchNo")
    AND (s8."FStockID" = s5."FSCStockID")
    AND (s8."FAuxPropID" = s5."FAuxPropID"))
    AND (s6."FStatus" = ?5))))
    AND (s8."FQty"=0))
  > DELETE
    FROM temp."t1"

select FItemID,FStockID from T_CC_Inventory order by FItemID,FStockID
  > SELECT s1."FItemID",s1."FStockID"
    FROM main."T_CC_Inventory" AS s1
    ORDER BY 1,2

update T_CC_ZZCX set FStatus=0
  > UPDATE main."T_CC_ZZCX" AS s1
    SET "FStatus"=?1

 declare @temp_inv table(FItemID int,FBatchNo varchar(255),FDCStockID int ,FAuxPropID int ) insert into @temp_inv(FItemID ,FBatchNo,FDCStockID  ,FAuxPropID) SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_StockBillEntry t1 with(nolock) JOIN T_CC_StockBill t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1  Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID Union All SELECT t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID FROM T_CC_ZZCX_Entry2 t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID WHERE FStatus=1 Group by t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID DELETE t1 FROM T_CC_Inventory t1 Left Join @temp_inv u1 on t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FStockID=u1.FDCStockID and t1.FAuxPropID=u1.FAuxPropID WHERE t1.FQty=0 And t1.Fbal=0 and u1.FItemID is null
  > DELETE
    FROM main."T_CC_Inventory" AS s8
    WHERE ((s8."FQty" = ?1)
    AND (s8."FBal" = ?2)
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID")
    WHERE (((s8."FItemID" = s1."FItemID")
    AND (s8."FBatchNo" = s1."FBatchNo")
    AND (s8."FStockID" = s1."FDCStockID")
    AND (s8."FAuxPropID" = s1."FAuxPropID"))
    AND (s2."FStatus" = ?3))))
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_ZZCX_Entry" AS s3
    JOIN main."T_CC_ZZCX" AS s4
    ON (s3."FID" = s4."FID")
    WHERE (((s8."FItemID" = s3."FItemID")
    AND (s8."FBatchNo" = s3."FBatchNo")
    AND (s8."FStockID" = s3."FDCStockID")
    AND (s8."FAuxPropID" = s3."FAuxPropID"))
    AND (s4."FStatus" = ?4))))
    AND (NOT EXISTS(SELECT 1
    FROM main."T_CC_ZZCX_Entry2" AS s5
    JOIN main."T_CC_ZZCX" AS s6
    ON (s5."FID" = s6."FID")
    WHERE (((s8."FItemID" = s5."FItemID")
    AND (s8."FBatchNo" = s5."FBatchNo")
    AND (s8."FStockID" = s5."FSCStockID")
    AND (s8."FAuxPropID" = s5."FAuxPropID"))
    AND (s6."FStatus" = ?5))))
    AND (s8."FQty"=0))
  > DELETE
    FROM temp."t1"

