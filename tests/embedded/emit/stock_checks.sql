-- Lines that would go below zero

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

SELECT M1.FNUMBER,M1.FNAME,M1.FMODEL,M1.Ftrack,S1.FNAME AS STOCKNAME,
 ISNULL(STOCK.STOCKSUMQTY,0) AS STOCKQTY,ISNULL(STOCK.STOCKSUMQTY,0)/N1.FCoefficient AS STOCKSHOWQTY,
 (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)) AS DIFFQTY,T1.SUMQTY,T1.SUMSHOWQTY,Y1.FNUMBER AS AUXNUMBER,Y1.FNAME AS AUXNAME,T1.*
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
 WHERE ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)<0

  > SELECT s8."FNumber",s8."FName",s8."FModel",s8."FTrack",s7."FName",ifnull(s4.c7,?1),t_div_decimal(ifnull(s4.c7,?2),s12.c4,319615626),t_sub_decimal(ifnull(s4.c7,?3),ifnull(s6.c8,?4),320139914),s6.c8,s6.c9,s9."FNumber",s9."FName",s6.c0,s6.c1,s6.c2,s6.c3,s6.c4,s6.c5,s6.c6,s6.c7,s6.c8,s6.c9
    FROM (SELECT s5."FItemID" AS c0,s5."FShowUnitID" AS c1,s5."FStockID" AS c2,s5."FAuxPropID" AS c3,s5."FBatchNo" AS c4,s5."FKFPeriod" AS c5,s5."FKFDate" AS c6,s5."FPeriodDate" AS c7,ifnull(t_sum_decimal(s5."FQty"),?9) AS c8,ifnull(t_sum_decimal(s5."FShowQty"),?10) AS c9
    FROM temp."t1" AS s5
    GROUP BY s5."FItemID",s5."FShowUnitID",s5."FStockID",s5."FAuxPropID",s5."FBatchNo",s5."FKFPeriod",s5."FKFDate",s5."FPeriodDate") AS s6 LEFT
    JOIN (SELECT s3.c0 AS c0,s3.c1 AS c1,s3.c2 AS c2,s3.c3 AS c3,s3.c4 AS c4,s3.c5 AS c5,s3.c6 AS c6,t_sum_decimal(s3.c7) AS c7
    FROM (SELECT s1."FItemID" AS c0,s1."FStockID" AS c1,s1."FAuxPropID" AS c2,CASE WHEN ((s2."FTrack" = ?5)
    AND (s2."FISBatchManager" = ?6)) THEN ?7 ELSE s1."FBatchNo" END AS c3,s1."FKFPeriod" AS c4,s1."FKFDate" AS c5,s1."FPeriodDate" AS c6,ifnull(s1."FQty",?8) AS c7
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    WHERE (s1."FItemID" IN (SELECT s13.c0
    FROM (SELECT s14."FItemID" AS c0,s14."FShowUnitID" AS c1,s14."FStockID" AS c2,s14."FAuxPropID" AS c3,s14."FBatchNo" AS c4,s14."FKFPeriod" AS c5,s14."FKFDate" AS c6,s14."FPeriodDate" AS c7,ifnull(t_sum_decimal(s14."FQty"),?9) AS c8,ifnull(t_sum_decimal(s14."FShowQty"),?10) AS c9
    FROM temp."t1" AS s14
    GROUP BY s14."FItemID",s14."FShowUnitID",s14."FStockID",s14."FAuxPropID",s14."FBatchNo",s14."FKFPeriod",s14."FKFDate",s14."FPeriodDate") AS s13))) AS s3
    GROUP BY s3.c0,s3.c1,s3.c2,s3.c3 COLLATE tsql,s3.c4,s3.c5 COLLATE tsql,s3.c6 COLLATE tsql) AS s4
    ON ((s4.c0 = s6.c0)
    AND (s4.c1 = s6.c2)
    AND (s4.c2 = s6.c3)
    AND (s4.c3 COLLATE tsql = s6.c4)
    AND (s4.c4 = s6.c5)
    AND (s4.c5 COLLATE tsql = s6.c6)
    AND (s4.c6 COLLATE tsql = s6.c7)) LEFT
    JOIN main."t_Stock" AS s7
    ON (s6.c2 = s7."FItemID") LEFT
    JOIN main."t_ICItem" AS s8
    ON (s6.c0 = s8."FItemID") LEFT
    JOIN main."t_AuxItem" AS s9
    ON (s6.c3 = s9."FItemID") LEFT
    JOIN (SELECT s10."FItemID" AS c0,s11."FMeasureUnitID" AS c1,s11."FNumber" AS c2,s11."FName" AS c3,s11."FCoefficient" AS c4
    FROM main."t_ICItem" AS s10
    JOIN main."t_MeasureUnit" AS s11
    ON (s10."FUnitGroupID" = s11."FUnitGroupID")
    WHERE (s11."FCoefficient" <> t_conv(0,60480815147))) AS s12
    ON ((s6.c0 = s12.c0)
    AND (s6.c1 = s12.c1))
    WHERE (t_cmp_decimal(t_sub_decimal(ifnull(s4.c7,?11),ifnull(s6.c8,?12),320139914),?13,318829194) < 0)

-- Unaudited issues count as well

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

  > SELECT s8."FNumber",s8."FName",s8."FModel",s8."FTrack",s7."FName",t_sub_decimal(ifnull(s4.c7,?1),ifnull(s22.c8,?2),319615370),t_div_decimal(t_sub_decimal(ifnull(s4.c7,?3),ifnull(s22.c8,?4),319615370),s12.c4,319615622),t_sub_decimal(t_sub_decimal(ifnull(s4.c7,?5),ifnull(s6.c8,?6),320139914),ifnull(s22.c8,?7),319615370),s6.c8,s6.c9,s9."FNumber",s9."FName",s6.c0,s6.c1,s6.c2,s6.c3,s6.c4,s6.c5,s6.c6,s6.c7,s6.c8,s6.c9
    FROM (SELECT s5."FItemID" AS c0,s5."FShowUnitID" AS c1,s5."FStockID" AS c2,s5."FAuxPropID" AS c3,s5."FBatchNo" AS c4,s5."FKFPeriod" AS c5,s5."FKFDate" AS c6,s5."FPeriodDate" AS c7,ifnull(t_sum_decimal(s5."FQty"),?10) AS c8,ifnull(t_sum_decimal(s5."FShowQty"),?11) AS c9
    FROM temp."t1" AS s5
    GROUP BY s5."FItemID",s5."FShowUnitID",s5."FStockID",s5."FAuxPropID",s5."FBatchNo",s5."FKFPeriod",s5."FKFDate",s5."FPeriodDate") AS s6 LEFT
    JOIN (SELECT s3.c0 AS c0,s3.c1 AS c1,s3.c2 AS c2,s3.c3 AS c3,s3.c4 AS c4,s3.c5 AS c5,s3.c6 AS c6,t_sum_decimal(s3.c7) AS c7
    FROM (SELECT s1."FItemID" AS c0,s1."FStockID" AS c1,s1."FAuxPropID" AS c2,CASE WHEN ((s2."FTrack" = ?25)
    AND (s2."FISBatchManager" = ?26)) THEN ?27 ELSE s1."FBatchNo" END AS c3,s1."FKFPeriod" AS c4,s1."FKFDate" AS c5,s1."FPeriodDate" AS c6,ifnull(s1."FQty",?28) AS c7
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    WHERE (s1."FItemID" IN (SELECT s29.c0
    FROM (SELECT s30."FItemID" AS c0,s30."FShowUnitID" AS c1,s30."FStockID" AS c2,s30."FAuxPropID" AS c3,s30."FBatchNo" AS c4,s30."FKFPeriod" AS c5,s30."FKFDate" AS c6,s30."FPeriodDate" AS c7,ifnull(t_sum_decimal(s30."FQty"),?10) AS c8,ifnull(t_sum_decimal(s30."FShowQty"),?11) AS c9
    FROM temp."t1" AS s30
    GROUP BY s30."FItemID",s30."FShowUnitID",s30."FStockID",s30."FAuxPropID",s30."FBatchNo",s30."FKFPeriod",s30."FKFDate",s30."FPeriodDate") AS s29))) AS s3
    GROUP BY s3.c0,s3.c1,s3.c2,s3.c3 COLLATE tsql,s3.c4,s3.c5 COLLATE tsql,s3.c6 COLLATE tsql) AS s4
    ON ((s4.c0 = s6.c0)
    AND (s4.c1 = s6.c2)
    AND (s4.c2 = s6.c3)
    AND (s4.c3 COLLATE tsql = s6.c4)
    AND (s4.c4 = s6.c5)
    AND (s4.c5 COLLATE tsql = s6.c6)
    AND (s4.c6 COLLATE tsql = s6.c7)) LEFT
    JOIN main."t_Stock" AS s7
    ON (s6.c2 = s7."FItemID") LEFT
    JOIN main."t_ICItem" AS s8
    ON (s6.c0 = s8."FItemID") LEFT
    JOIN main."t_AuxItem" AS s9
    ON (s6.c3 = s9."FItemID") LEFT
    JOIN (SELECT s10."FItemID" AS c0,s11."FMeasureUnitID" AS c1,s11."FNumber" AS c2,s11."FName" AS c3,s11."FCoefficient" AS c4
    FROM main."t_ICItem" AS s10
    JOIN main."t_MeasureUnit" AS s11
    ON (s10."FUnitGroupID" = s11."FUnitGroupID")
    WHERE (s11."FCoefficient" <> t_conv(0,60480815147))) AS s12
    ON ((s6.c0 = s12.c0)
    AND (s6.c1 = s12.c1)) LEFT
    JOIN (SELECT s20.c6 AS c0,s20.c7 AS c1,s20.c8 AS c2,s20.c9 AS c3,s20.c10 AS c4,s20.c11 AS c5,s20.c12 AS c6,s20.c13 AS c7,ifnull(t_sum_decimal(s20.c14),?8) AS c8,?9 AS c9
    FROM (SELECT s19.c0 AS c0,s19.c1 AS c1,s19.c2 AS c2,s19.c3 AS c3,s19.c4 AS c4,s19.c5 AS c5,s19.c6 AS c6,s19.c7 AS c7,s19.c8 AS c8,s19.c9 AS c9,s19.c10 AS c10,s19.c11 AS c11,s19.c12 AS c12,s19.c13 AS c13,s19.c14 AS c14
    FROM (SELECT s13."FID" AS c0,s14."FEntryID" AS c1,s13."FClassTypeID" AS c2,s13."FBillTypeID" AS c3,s13."FStatus" AS c4,s13."FDate" AS c5,s14."FItemID" AS c6,s14."FShowUnitID" AS c7,CASE WHEN (s13."FBillTypeID" IN (2012,2031,2032)) THEN s14."FDCStockID" ELSE s14."FSCStockID" END AS c8,s14."FAuxPropID" AS c9,s14."FBatchNo" AS c10,s14."FKFPeriod" AS c11,s14."FKFDate" AS c12,s14."FPeriodDate" AS c13,CASE WHEN (s13."FClassTypeID" = 1040004) THEN t_mul_decimal(s14."FProfitLossQty",s14."FCoefficient",319615626) ELSE t_conv(s14."FQty",81821491535) END AS c14
    FROM main."T_CC_StockBill" AS s13
    JOIN main."T_CC_StockBillEntry" AS s14
    ON (s13."FID" = s14."FID")
    WHERE ((s14."FItemID" IN (SELECT s31.c0
    FROM (SELECT s32."FItemID" AS c0,s32."FShowUnitID" AS c1,s32."FStockID" AS c2,s32."FAuxPropID" AS c3,s32."FBatchNo" AS c4,s32."FKFPeriod" AS c5,s32."FKFDate" AS c6,s32."FPeriodDate" AS c7,ifnull(t_sum_decimal(s32."FQty"),?10) AS c8,ifnull(t_sum_decimal(s32."FShowQty"),?11) AS c9
    FROM temp."t1" AS s32
    GROUP BY s32."FItemID",s32."FShowUnitID",s32."FStockID",s32."FAuxPropID",s32."FBatchNo",s32."FKFPeriod",s32."FKFDate",s32."FPeriodDate") AS s31))
    AND (((s13."FBillTypeID" IN (2012,2031,2032))
    AND (s14."FDCStockID" <> 0))
    OR ((s13."FBillTypeID" NOT IN (2012,2031,2032,3002,3004,3011))
    AND (s14."FSCStockID" <> 0))))
    UNION ALL SELECT s15."FID" AS c0,s16."FEntryID" AS c1,s15."FClassTypeID" AS c2,s15."FBillTypeID" AS c3,s15."FStatus" AS c4,s15."FDate" AS c5,s16."FItemID" AS c6,s16."FShowUnitID" AS c7,s16."FSCStockID" AS c8,s16."FAuxPropID" AS c9,s16."FBatchNo" AS c10,s16."FKFPeriod" AS c11,s16."FProDate" AS c12,s16."FExpDate" AS c13,t_conv(s16."FQty",81821491535) AS c14
    FROM main."T_CC_ZZCX" AS s15
    JOIN main."T_CC_ZZCX_Entry2" AS s16
    ON (s15."FID" = s16."FID")
    WHERE ((s16."FItemID" IN (SELECT s33.c0
    FROM (SELECT s34."FItemID" AS c0,s34."FShowUnitID" AS c1,s34."FStockID" AS c2,s34."FAuxPropID" AS c3,s34."FBatchNo" AS c4,s34."FKFPeriod" AS c5,s34."FKFDate" AS c6,s34."FPeriodDate" AS c7,ifnull(t_sum_decimal(s34."FQty"),?10) AS c8,ifnull(t_sum_decimal(s34."FShowQty"),?11) AS c9
    FROM temp."t1" AS s34
    GROUP BY s34."FItemID",s34."FShowUnitID",s34."FStockID",s34."FAuxPropID",s34."FBatchNo",s34."FKFPeriod",s34."FKFDate",s34."FPeriodDate") AS s33))
    AND (s15."FClassTypeID" = 1040005))
    UNION ALL SELECT s17."FID" AS c0,s18."FEntryID" AS c1,s17."FClassTypeID" AS c2,s17."FBillTypeID" AS c3,s17."FStatus" AS c4,s17."FDate" AS c5,s18."FItemID" AS c6,s18."FShowUnitID" AS c7,s18."FDCStockID" AS c8,s18."FAuxPropID" AS c9,s18."FBatchNo" AS c10,s18."FKFPeriod" AS c11,s18."FProDate" AS c12,s18."FExpDate" AS c13,t_conv(s18."FQty",81821491535) AS c14
    FROM main."T_CC_ZZCX" AS s17
    JOIN main."T_CC_ZZCX_Entry" AS s18
    ON (s17."FID" = s18."FID")
    WHERE ((s18."FItemID" IN (SELECT s35.c0
    FROM (SELECT s36."FItemID" AS c0,s36."FShowUnitID" AS c1,s36."FStockID" AS c2,s36."FAuxPropID" AS c3,s36."FBatchNo" AS c4,s36."FKFPeriod" AS c5,s36."FKFDate" AS c6,s36."FPeriodDate" AS c7,ifnull(t_sum_decimal(s36."FQty"),?10) AS c8,ifnull(t_sum_decimal(s36."FShowQty"),?11) AS c9
    FROM temp."t1" AS s36
    GROUP BY s36."FItemID",s36."FShowUnitID",s36."FStockID",s36."FAuxPropID",s36."FBatchNo",s36."FKFPeriod",s36."FKFDate",s36."FPeriodDate") AS s35))
    AND (s17."FClassTypeID" = 1040006))) AS s19) AS s20
    WHERE ((s20.c4 = ?12)
    AND (s20.c0 NOT IN (SELECT s21."FInterID"
    FROM temp."t1" AS s21))
    AND (((s20.c3 IN (?13,?14,?15))
    OR (s20.c2 IN (?16,?17,?18,?19,?20)))
    OR (s20.c2 IN (?21,?22))
    OR ((s20.c2 = ?23)
    AND (s20.c3 IN (?24)))))
    GROUP BY s20.c6,s20.c7,s20.c8,s20.c9,s20.c10 COLLATE tsql,s20.c11,s20.c12,s20.c13) AS s22
    ON ((s6.c0 = s22.c0)
    AND (s6.c2 = ifnull(s22.c2,?29))
    AND (s6.c3 = ifnull(s22.c3,?30))
    AND (s6.c4 COLLATE tsql = ifnull(s22.c4,?31))
    AND (s6.c5 = ifnull(s22.c5,?32))
    AND (t_conv(s6.c6,54526628) = ifnull(s22.c6,t_conv(?33,54526308)))
    AND (t_conv(s6.c7,54526628) = ifnull(s22.c7,t_conv(?34,54526308)))) LEFT
    JOIN main."t_Stock" AS s23
    ON (s22.c2 = s23."FItemID") LEFT
    JOIN main."t_ICItem" AS s24
    ON (s22.c0 = s24."FItemID") LEFT
    JOIN main."t_AuxItem" AS s25
    ON (s22.c3 = s25."FItemID") LEFT
    JOIN (SELECT s26."FItemID" AS c0,s27."FMeasureUnitID" AS c1,s27."FNumber" AS c2,s27."FName" AS c3,s27."FCoefficient" AS c4
    FROM main."t_ICItem" AS s26
    JOIN main."t_MeasureUnit" AS s27
    ON (s26."FUnitGroupID" = s27."FUnitGroupID")
    WHERE (s27."FCoefficient" <> t_conv(0,60480815147))) AS s28
    ON ((s22.c0 = s28.c0)
    AND (s22.c1 = s28.c1))
    WHERE (t_cmp_decimal(t_sub_decimal(t_sub_decimal(ifnull(s4.c7,?35),ifnull(s6.c8,?36),320139914),ifnull(s22.c8,?37),319615370),?38,318828934) < 0)

update T_CC_StockBill set FStatus=1 where FID=8
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FStatus"=?1
    WHERE (s1."FID" = ?2)

-- Lines of a bill that is being saved

if object_id('tempdb.dbo.#TavTempBill0622') is not null drop table [dbo].[#TavTempBill0622] 
CREATE TABLE #TavTempBill0622(FItemID INT NOT NULL DEFAULT(0),FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),FAuxPropID INT NOT NULL DEFAULT(0),FStockID INT NOT NULL DEFAULT(0),FKFPeriod INT NOT NULL DEFAULT(0),FKFDate VARCHAR(20) NOT NULL DEFAULT(''),FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),FQty DECIMAL(28,10) NOT NULL DEFAULT(0),FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT(''),FClassTypeID int not null default(0))
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > CREATE TABLE temp."t2"("FItemID" INTEGER NOT NULL DEFAULT 0,"FBatchNo" TEXT COLLATE tsql NOT NULL DEFAULT '',"FAuxPropID" INTEGER NOT NULL DEFAULT 0,"FStockID" INTEGER NOT NULL DEFAULT 0,"FKFPeriod" INTEGER NOT NULL DEFAULT 0,"FKFDate" TEXT COLLATE tsql NOT NULL DEFAULT '',"FPeriodDate" TEXT COLLATE tsql NOT NULL DEFAULT '',"FQty" INTEGER NOT NULL DEFAULT 0,"FSecQty" INTEGER NOT NULL DEFAULT 0,"FPrice" INTEGER NOT NULL DEFAULT 0,"FBatchNoIndex" TEXT COLLATE tsql NOT NULL DEFAULT '',"FClassTypeID" INTEGER NOT NULL DEFAULT 0);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t2',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > COMMIT

INSERT INTO #TavTempBill(FBrNo,FInterID,FEntryID,FTranType,FItemID,FBatchNo,
FAuxPropID,FStockID,FStockPlaceID,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,Fprice,FBatchNoIndex)
 SELECT '','7','',0 AS FTranType,u1.FItemID,ISNULL(u1.FBatchNo,'') AS FBatchNo,
 u1.FAuxPropID,ISNULL(u1.FStockID ,0) AS FDCStockID,0 AS FDCSPID,u1.FKFPeriod ,
 u1.FKFDate AS FKFDate,
 u1.FPeriodDate  AS FPeriodDate,
u1.FQty AS FQty,u1.FSecQty AS FSecQty,u1.FPrice, u1.FBatchNoIndex  AS FBatchNoIndex
 FROM  #TavTempBill0622 u1 Inner Join t_icItem u3 On u1.FItemID=u3.FItemID 

  > INSERT INTO temp."t1"("FBrNo","FInterID","FEntryID","FTranType","FItemID","FBatchNo","FAuxPropID","FStockID","FStockPlaceID","FKFPeriod","FKFDate","FPeriodDate","FQty","FSecQty","FPrice","FBatchNoIndex") SELECT ?1,t_conv(?2,1099556716612),t_conv(?3,1099556716612),?4,s1."FItemID",ifnull(s1."FBatchNo",?5),s1."FAuxPropID",ifnull(s1."FStockID",?6),?7,s1."FKFPeriod",s1."FKFDate",s1."FPeriodDate",s1."FQty",s1."FSecQty",s1."FPrice",s1."FBatchNoIndex"
    FROM temp."t2" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")

select FInterID,FEntryID,FItemID,FStockID,FQty,FPrice,FShowQty from #TavTempBill
  > SELECT s1."FInterID",s1."FEntryID",s1."FItemID",s1."FStockID",s1."FQty",s1."FPrice",s1."FShowQty"
    FROM temp."t1" AS s1

if object_id('tempdb.dbo.#TavTempBill0622') is not null drop table [dbo].[#TavTempBill0622] 
CREATE TABLE #TavTempBill0622(FItemID INT NOT NULL DEFAULT(0),FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),FAuxPropID INT NOT NULL DEFAULT(0),FStockID INT NOT NULL DEFAULT(0),FKFPeriod INT NOT NULL DEFAULT(0),FKFDate VARCHAR(20) NOT NULL DEFAULT(''),FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),FQty DECIMAL(28,10) NOT NULL DEFAULT(0),FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT(''),FClassTypeID int not null default(0))
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > DELETE
    FROM temp."t2"
  > COMMIT
  > BEGIN
  > COMMIT

select * from #TavTempBill0622
  > SELECT s1."FItemID",s1."FBatchNo",s1."FAuxPropID",s1."FStockID",s1."FKFPeriod",s1."FKFDate",s1."FPeriodDate",s1."FQty",s1."FSecQty",s1."FPrice",s1."FBatchNoIndex",s1."FClassTypeID"
    FROM temp."t2" AS s1

