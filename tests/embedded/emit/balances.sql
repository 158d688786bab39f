-- Costing dates and flags

If Object_ID('tempdb.dbo.#tempFlag') Is Not Null Drop Table #tempFlag 
Select * Into #tempFlag  From (
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry2 u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=5 ) As a 
Update i Set i.FCalDate=t.FDate From t_ICItem i Inner Join #TempFlag t On i.FItemID=t.FItemID
Where DateDiff(Day,i.FCalDate,t.FDate)<0 
Declare @Type int,@Str varchar(2000) 
Select  @Type=FValue From t_Systemprofile Where FCategory='IC' And FKey ='CalculateType'
Set @Str='Update f Set f.FLastDate=t.FDate,f.FID=t.FID ' + char(13) 
Set @Str=@Str+ ' From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo'  
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Delete t From #tempFlag t Inner Join ICCalFlag f ON f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo  ' 
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<=f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Insert Into ICCalFlag(FStockID,FItemID,FTrack,FBatchNo,FlastDate,FID) ' + char(13) 
if @Type=1 Set @Str=@Str+ ' Select Distinct t.FStockID,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Else Set @Str=@Str+ ' Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Set @Str=@Str+ ' From #tempFlag t Inner Join t_ICItem i On t.FItemID=i.FItemID' + char(13) 
Exec(@str) 
Drop Table #tempFlag 
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > CREATE TABLE temp."t1"("FDate" INTEGER,"FStockID" INTEGER,"FItemID" INTEGER NOT NULL,"FBatchNo" TEXT COLLATE tsql,"FID" INTEGER NOT NULL);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > INSERT INTO temp."t1"("FDate","FStockID","FItemID","FBatchNo","FID") SELECT s13.c0,s13.c1,s13.c2,s13.c3,s13.c4
    FROM (SELECT s1."FDate" AS c0,s2."FDCStockID" AS c1,s2."FItemID" AS c2,s2."FBatchNo" AS c3,s1."FID" AS c4
    FROM main."T_CC_StockBill" AS s1
    JOIN main."T_CC_StockBillEntry" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_Stock" AS s3
    ON ((s3."FItemID" = s2."FDCStockID")
    AND (s3."FTypeID" <> ?1))
    WHERE (s1."FID" = ?2)
    UNION ALL SELECT s4."FDate" AS c0,s5."FSCStockID" AS c1,s5."FItemID" AS c2,s5."FBatchNo" AS c3,s4."FID" AS c4
    FROM main."T_CC_StockBill" AS s4
    JOIN main."T_CC_StockBillEntry" AS s5
    ON (s4."FID" = s5."FID")
    JOIN main."t_Stock" AS s6
    ON ((s6."FItemID" = s5."FSCStockID")
    AND (s6."FTypeID" <> ?3))
    WHERE (s4."FID" = ?4)
    UNION ALL SELECT s7."FDate" AS c0,s8."FDCStockID" AS c1,s8."FItemID" AS c2,s8."FBatchNo" AS c3,s7."FID" AS c4
    FROM main."T_CC_ZZCX" AS s7
    JOIN main."T_CC_ZZCX_Entry" AS s8
    ON (s7."FID" = s8."FID")
    JOIN main."t_Stock" AS s9
    ON ((s9."FItemID" = s8."FDCStockID")
    AND (s9."FTypeID" <> ?5))
    WHERE (s7."FID" = ?6)
    UNION ALL SELECT s10."FDate" AS c0,s11."FSCStockID" AS c1,s11."FItemID" AS c2,s11."FBatchNo" AS c3,s10."FID" AS c4
    FROM main."T_CC_ZZCX" AS s10
    JOIN main."T_CC_ZZCX_Entry2" AS s11
    ON (s10."FID" = s11."FID")
    JOIN main."t_Stock" AS s12
    ON ((s12."FItemID" = s11."FSCStockID")
    AND (s12."FTypeID" <> ?7))
    WHERE (s10."FID" = ?8)) AS s13
  > COMMIT
  > UPDATE main."t_ICItem" AS u
    SET "FCalDate"=q.c0
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0
    FROM main."t_ICItem" AS s1
    JOIN temp."t1" AS s2
    ON (s1."FItemID" = s2."FItemID")
    WHERE (t_datediff(4,s1."FCalDate",s2."FDate") < ?1)
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT (?1 || t_char(?2))
  > SELECT t_conv((?1 || ?2),67146679620)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679780)
  > SELECT t_conv((?1 || ?2),67146679972)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679812)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679076)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146678788)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146678788)
  > SELECT ?1
  > UPDATE main."ICCalFlag" AS u
    SET "FLastDate"=q.c0,"FID"=q.c1
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0,s2."FID" AS c1
    FROM main."ICCalFlag" AS s1
    JOIN temp."t1" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FBatchNo" = s2."FBatchNo"))
    WHERE ((t_datediff(4,s2."FDate",s1."FLastDate") > ?1)
    OR ((s2."FID" < s1."FID")
    AND (t_datediff(4,s2."FDate",s1."FLastDate") = ?2)))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > DELETE
    FROM temp."t1"
    WHERE rowid IN (SELECT s1.rowid
    FROM temp."t1" AS s1
    JOIN main."ICCalFlag" AS s2
    ON ((s2."FItemID" = s1."FItemID")
    AND (s2."FBatchNo" = s1."FBatchNo"))
    WHERE ((t_datediff(4,s1."FDate",s2."FLastDate") > ?1)
    OR ((s1."FID" <= s2."FID")
    AND (t_datediff(4,s1."FDate",s2."FLastDate") = ?2))))
  > INSERT INTO main."ICCalFlag"("FStockID","FItemID","FTrack","FBatchNo","FLastDate","FID") SELECT s3.c0,s3.c1,s3.c2,s3.c3,s3.c4,s3.c5
    FROM (SELECT DISTINCT ?1 AS c0,s1."FItemID" AS c1,s2."FTrack" AS c2,s1."FBatchNo" AS c3,s1."FDate" AS c4,s1."FID" AS c5
    FROM temp."t1" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")) AS s3
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

select FItemID,FCalDate from t_ICItem order by FItemID
  > SELECT s1."FItemID",s1."FCalDate"
    FROM main."t_ICItem" AS s1
    ORDER BY 1

select FStockID,FItemID,FTrack,FBatchNo,FLastDate,FID from ICCalFlag order by FItemID,FLastDate,FStockID
  > SELECT s1."FStockID",s1."FItemID",s1."FTrack",s1."FBatchNo",s1."FLastDate",s1."FID"
    FROM main."ICCalFlag" AS s1
    ORDER BY 2,5,1

If Object_ID('tempdb.dbo.#tempFlag') Is Not Null Drop Table #tempFlag 
Select * Into #tempFlag  From (
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=4
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=4
     Union All 
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=4
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry2 u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=4 ) As a 
Update i Set i.FCalDate=t.FDate From t_ICItem i Inner Join #TempFlag t On i.FItemID=t.FItemID
Where DateDiff(Day,i.FCalDate,t.FDate)<0 
Declare @Type int,@Str varchar(2000) 
Select  @Type=FValue From t_Systemprofile Where FCategory='IC' And FKey ='CalculateType'
Set @Str='Update f Set f.FLastDate=t.FDate,f.FID=t.FID ' + char(13) 
Set @Str=@Str+ ' From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo'  
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Delete t From #tempFlag t Inner Join ICCalFlag f ON f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo  ' 
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<=f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Insert Into ICCalFlag(FStockID,FItemID,FTrack,FBatchNo,FlastDate,FID) ' + char(13) 
if @Type=1 Set @Str=@Str+ ' Select Distinct t.FStockID,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Else Set @Str=@Str+ ' Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Set @Str=@Str+ ' From #tempFlag t Inner Join t_ICItem i On t.FItemID=i.FItemID' + char(13) 
Exec(@str) 
Drop Table #tempFlag 
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > INSERT INTO temp."t1"("FDate","FStockID","FItemID","FBatchNo","FID") SELECT s13.c0,s13.c1,s13.c2,s13.c3,s13.c4
    FROM (SELECT s1."FDate" AS c0,s2."FDCStockID" AS c1,s2."FItemID" AS c2,s2."FBatchNo" AS c3,s1."FID" AS c4
    FROM main."T_CC_StockBill" AS s1
    JOIN main."T_CC_StockBillEntry" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_Stock" AS s3
    ON ((s3."FItemID" = s2."FDCStockID")
    AND (s3."FTypeID" <> ?1))
    WHERE (s1."FID" = ?2)
    UNION ALL SELECT s4."FDate" AS c0,s5."FSCStockID" AS c1,s5."FItemID" AS c2,s5."FBatchNo" AS c3,s4."FID" AS c4
    FROM main."T_CC_StockBill" AS s4
    JOIN main."T_CC_StockBillEntry" AS s5
    ON (s4."FID" = s5."FID")
    JOIN main."t_Stock" AS s6
    ON ((s6."FItemID" = s5."FSCStockID")
    AND (s6."FTypeID" <> ?3))
    WHERE (s4."FID" = ?4)
    UNION ALL SELECT s7."FDate" AS c0,s8."FDCStockID" AS c1,s8."FItemID" AS c2,s8."FBatchNo" AS c3,s7."FID" AS c4
    FROM main."T_CC_ZZCX" AS s7
    JOIN main."T_CC_ZZCX_Entry" AS s8
    ON (s7."FID" = s8."FID")
    JOIN main."t_Stock" AS s9
    ON ((s9."FItemID" = s8."FDCStockID")
    AND (s9."FTypeID" <> ?5))
    WHERE (s7."FID" = ?6)
    UNION ALL SELECT s10."FDate" AS c0,s11."FSCStockID" AS c1,s11."FItemID" AS c2,s11."FBatchNo" AS c3,s10."FID" AS c4
    FROM main."T_CC_ZZCX" AS s10
    JOIN main."T_CC_ZZCX_Entry2" AS s11
    ON (s10."FID" = s11."FID")
    JOIN main."t_Stock" AS s12
    ON ((s12."FItemID" = s11."FSCStockID")
    AND (s12."FTypeID" <> ?7))
    WHERE (s10."FID" = ?8)) AS s13
  > COMMIT
  > UPDATE main."t_ICItem" AS u
    SET "FCalDate"=q.c0
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0
    FROM main."t_ICItem" AS s1
    JOIN temp."t1" AS s2
    ON (s1."FItemID" = s2."FItemID")
    WHERE (t_datediff(4,s1."FCalDate",s2."FDate") < ?1)
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT (?1 || t_char(?2))
  > SELECT t_conv((?1 || ?2),67146679620)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679780)
  > SELECT t_conv((?1 || ?2),67146679972)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679812)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679076)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146678788)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146678788)
  > SELECT ?1
  > UPDATE main."ICCalFlag" AS u
    SET "FLastDate"=q.c0,"FID"=q.c1
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0,s2."FID" AS c1
    FROM main."ICCalFlag" AS s1
    JOIN temp."t1" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FBatchNo" = s2."FBatchNo"))
    WHERE ((t_datediff(4,s2."FDate",s1."FLastDate") > ?1)
    OR ((s2."FID" < s1."FID")
    AND (t_datediff(4,s2."FDate",s1."FLastDate") = ?2)))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > DELETE
    FROM temp."t1"
    WHERE rowid IN (SELECT s1.rowid
    FROM temp."t1" AS s1
    JOIN main."ICCalFlag" AS s2
    ON ((s2."FItemID" = s1."FItemID")
    AND (s2."FBatchNo" = s1."FBatchNo"))
    WHERE ((t_datediff(4,s1."FDate",s2."FLastDate") > ?1)
    OR ((s1."FID" <= s2."FID")
    AND (t_datediff(4,s1."FDate",s2."FLastDate") = ?2))))
  > INSERT INTO main."ICCalFlag"("FStockID","FItemID","FTrack","FBatchNo","FLastDate","FID") SELECT s3.c0,s3.c1,s3.c2,s3.c3,s3.c4,s3.c5
    FROM (SELECT DISTINCT ?1 AS c0,s1."FItemID" AS c1,s2."FTrack" AS c2,s1."FBatchNo" AS c3,s1."FDate" AS c4,s1."FID" AS c5
    FROM temp."t1" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")) AS s3
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

select FCalDate from t_ICItem where FItemID=102
  > SELECT s1."FCalDate"
    FROM main."t_ICItem" AS s1
    WHERE (s1."FItemID" = ?1)

-- Costing per stock

update t_SystemProfile set FValue='1' where FKey='CalculateType'
  > UPDATE main."t_SystemProfile" AS s1
    SET "FValue"=?1
    WHERE (s1."FKey" = ?2)

If Object_ID('tempdb.dbo.#tempFlag') Is Not Null Drop Table #tempFlag 
Select * Into #tempFlag  From (
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_StockBill v Inner Join t_CC_StockBillEntry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FDCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FDCStockID And s.FTypeID<>502 
     Where v.FID=5
     Union All 
     Select v.FDate,u.FSCStockID FStockID,u.FItemID,u.FBatchNo,v.FID 
     From t_CC_ZZCX v Inner Join t_CC_ZZCX_Entry2 u On v.FID=u.FID 
     Inner Join t_Stock s On s.FItemID=u.FSCStockID And s.FTypeID<>502 
     Where v.FID=5 ) As a 
Update i Set i.FCalDate=t.FDate From t_ICItem i Inner Join #TempFlag t On i.FItemID=t.FItemID
Where DateDiff(Day,i.FCalDate,t.FDate)<0 
Declare @Type int,@Str varchar(2000) 
Select  @Type=FValue From t_Systemprofile Where FCategory='IC' And FKey ='CalculateType'
Set @Str='Update f Set f.FLastDate=t.FDate,f.FID=t.FID ' + char(13) 
Set @Str=@Str+ ' From ICCalFlag f Inner Join #tempFlag t On f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo'  
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Delete t From #tempFlag t Inner Join ICCalFlag f ON f.FItemID=t.FItemID And f.FBatchNo=t.FBatchNo  ' 
if @Type=1 Set @Str=@Str+ ' And f.FStockID=t.FStockID ' + char(13) 
Set @Str=@Str+ ' Where DateDiff(D,t.FDate,f.FLastDate)>0 Or t.FID<=f.FID And DateDiff(D,t.FDate,f.FLastDate)=0' + char(13) 
Set @Str=@Str+ ' Insert Into ICCalFlag(FStockID,FItemID,FTrack,FBatchNo,FlastDate,FID) ' + char(13) 
if @Type=1 Set @Str=@Str+ ' Select Distinct t.FStockID,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Else Set @Str=@Str+ ' Select Distinct 0,t.FItemID,i.FTrack,t.FBatchNo,t.FDate,t.FID' + char(13) 
Set @Str=@Str+ ' From #tempFlag t Inner Join t_ICItem i On t.FItemID=i.FItemID' + char(13) 
Exec(@str) 
Drop Table #tempFlag 
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > CREATE TABLE temp."t1"("FDate" INTEGER,"FStockID" INTEGER,"FItemID" INTEGER NOT NULL,"FBatchNo" TEXT COLLATE tsql,"FID" INTEGER NOT NULL);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > INSERT INTO temp."t1"("FDate","FStockID","FItemID","FBatchNo","FID") SELECT s13.c0,s13.c1,s13.c2,s13.c3,s13.c4
    FROM (SELECT s1."FDate" AS c0,s2."FDCStockID" AS c1,s2."FItemID" AS c2,s2."FBatchNo" AS c3,s1."FID" AS c4
    FROM main."T_CC_StockBill" AS s1
    JOIN main."T_CC_StockBillEntry" AS s2
    ON (s1."FID" = s2."FID")
    JOIN main."t_Stock" AS s3
    ON ((s3."FItemID" = s2."FDCStockID")
    AND (s3."FTypeID" <> ?1))
    WHERE (s1."FID" = ?2)
    UNION ALL SELECT s4."FDate" AS c0,s5."FSCStockID" AS c1,s5."FItemID" AS c2,s5."FBatchNo" AS c3,s4."FID" AS c4
    FROM main."T_CC_StockBill" AS s4
    JOIN main."T_CC_StockBillEntry" AS s5
    ON (s4."FID" = s5."FID")
    JOIN main."t_Stock" AS s6
    ON ((s6."FItemID" = s5."FSCStockID")
    AND (s6."FTypeID" <> ?3))
    WHERE (s4."FID" = ?4)
    UNION ALL SELECT s7."FDate" AS c0,s8."FDCStockID" AS c1,s8."FItemID" AS c2,s8."FBatchNo" AS c3,s7."FID" AS c4
    FROM main."T_CC_ZZCX" AS s7
    JOIN main."T_CC_ZZCX_Entry" AS s8
    ON (s7."FID" = s8."FID")
    JOIN main."t_Stock" AS s9
    ON ((s9."FItemID" = s8."FDCStockID")
    AND (s9."FTypeID" <> ?5))
    WHERE (s7."FID" = ?6)
    UNION ALL SELECT s10."FDate" AS c0,s11."FSCStockID" AS c1,s11."FItemID" AS c2,s11."FBatchNo" AS c3,s10."FID" AS c4
    FROM main."T_CC_ZZCX" AS s10
    JOIN main."T_CC_ZZCX_Entry2" AS s11
    ON (s10."FID" = s11."FID")
    JOIN main."t_Stock" AS s12
    ON ((s12."FItemID" = s11."FSCStockID")
    AND (s12."FTypeID" <> ?7))
    WHERE (s10."FID" = ?8)) AS s13
  > COMMIT
  > UPDATE main."t_ICItem" AS u
    SET "FCalDate"=q.c0
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0
    FROM main."t_ICItem" AS s1
    JOIN temp."t1" AS s2
    ON (s1."FItemID" = s2."FItemID")
    WHERE (t_datediff(4,s1."FCalDate",s2."FDate") < ?1)
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT (?1 || t_char(?2))
  > SELECT t_conv((?1 || ?2),67146679620)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146677668)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679780)
  > SELECT t_conv((?1 || ?2),67146679972)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146677668)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679812)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679076)
  > SELECT (?1 = ?2)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146679076)
  > SELECT t_conv(((?1 || ?2) || t_char(?3)),67146678788)
  > SELECT ?1
  > UPDATE main."ICCalFlag" AS u
    SET "FLastDate"=q.c0,"FID"=q.c1
    FROM (SELECT s1.rowid AS r,s2."FDate" AS c0,s2."FID" AS c1
    FROM main."ICCalFlag" AS s1
    JOIN temp."t1" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FBatchNo" = s2."FBatchNo")
    AND (s1."FStockID" = s2."FStockID"))
    WHERE ((t_datediff(4,s2."FDate",s1."FLastDate") > ?1)
    OR ((s2."FID" < s1."FID")
    AND (t_datediff(4,s2."FDate",s1."FLastDate") = ?2)))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > DELETE
    FROM temp."t1"
    WHERE rowid IN (SELECT s1.rowid
    FROM temp."t1" AS s1
    JOIN main."ICCalFlag" AS s2
    ON ((s2."FItemID" = s1."FItemID")
    AND (s2."FBatchNo" = s1."FBatchNo")
    AND (s2."FStockID" = s1."FStockID"))
    WHERE ((t_datediff(4,s1."FDate",s2."FLastDate") > ?1)
    OR ((s1."FID" <= s2."FID")
    AND (t_datediff(4,s1."FDate",s2."FLastDate") = ?2))))
  > INSERT INTO main."ICCalFlag"("FStockID","FItemID","FTrack","FBatchNo","FLastDate","FID") SELECT s3.c0,s3.c1,s3.c2,s3.c3,s3.c4,s3.c5
    FROM (SELECT DISTINCT s1."FStockID" AS c0,s1."FItemID" AS c1,s2."FTrack" AS c2,s1."FBatchNo" AS c3,s1."FDate" AS c4,s1."FID" AS c5
    FROM temp."t1" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")) AS s3
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

