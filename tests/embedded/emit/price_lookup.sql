-- The lowest price

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null)insert into #DATA(FItemID,FUnitID,FPrice)
select a.FItemID,b.FUnitID,MIN(a.FPrice) from  ICInvInitial a
inner join t_icitem b on a.FItemID=b.FItemID
inner join t_stock c on a.FStockID=c.FItemID
where c.FTypeID<>502 and a.FItemID=101 and b.FUnitID=11
group by a.FItemID,b.FUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPriceDiscount) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
select FItemID,FUnitID,MIN(FPrice) as FPrice from #DATA where FItemID=101 and FUnitID=11 group by FItemID,FUnitID
Drop table #DATA
  > BEGIN
  > CREATE TABLE temp."t1"("FItemID" INTEGER,"FUnitID" INTEGER,"FPrice" INTEGER);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > COMMIT
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s2."FUnitID",t_min_decimal(s1."FPrice")
    FROM main."ICInvInitial" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FStockID" = s3."FItemID")
    WHERE ((s3."FTypeID" <> ?1)
    AND (s1."FItemID" = ?2)
    AND (s2."FUnitID" = ?3))
    GROUP BY s1."FItemID",s2."FUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPriceDiscount")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" NOT IN (?3,?4,?5))
    AND (s3."FTypeID" <> ?6)
    AND (s1."FItemID" = ?7)
    AND (s1."FShowUnitID" = ?8))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1,?2))
    AND (s2."FStatus" = ?3)
    AND (s2."FBillTypeID" NOT IN (?4,?5,?6))
    AND (s3."FTypeID" <> ?7)
    AND (s1."FItemID" = ?8)
    AND (s1."FShowUnitID" = ?9))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    JOIN main."t_Stock" AS s4
    ON (s1."FSCStockID" = s4."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" = ?3)
    AND (s3."FTypeID" <> ?4)
    AND (s4."FTypeID" = ?5)
    AND (s1."FItemID" = ?6)
    AND (s1."FShowUnitID" = ?7))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > SELECT s1."FItemID",s1."FUnitID",t_min_decimal(s1."FPrice")
    FROM temp."t1" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FUnitID" = ?2))
    GROUP BY s1."FItemID",s1."FUnitID"
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null)insert into #DATA(FItemID,FUnitID,FPrice)
select a.FItemID,b.FUnitID,MIN(a.FPrice) from  ICInvInitial a
inner join t_icitem b on a.FItemID=b.FItemID
inner join t_stock c on a.FStockID=c.FItemID
where c.FTypeID<>502 and a.FItemID=101 and b.FUnitID=11
group by a.FItemID,b.FUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPriceDiscount) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
select FItemID,FUnitID,MIN(FPrice) as FPrice from #DATA where FItemID=101 and FUnitID=11 group by FItemID,FUnitID
Drop table #DATA
  > BEGIN
  > COMMIT
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s2."FUnitID",t_min_decimal(s1."FPrice")
    FROM main."ICInvInitial" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FStockID" = s3."FItemID")
    WHERE ((s3."FTypeID" <> ?1)
    AND (s1."FItemID" = ?2)
    AND (s2."FUnitID" = ?3))
    GROUP BY s1."FItemID",s2."FUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPriceDiscount")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" NOT IN (?3,?4,?5))
    AND (s3."FTypeID" <> ?6)
    AND (s1."FItemID" = ?7)
    AND (s1."FShowUnitID" = ?8))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1,?2))
    AND (s2."FStatus" = ?3)
    AND (s2."FBillTypeID" NOT IN (?4,?5,?6))
    AND (s3."FTypeID" <> ?7)
    AND (s1."FItemID" = ?8)
    AND (s1."FShowUnitID" = ?9))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    JOIN main."t_Stock" AS s4
    ON (s1."FSCStockID" = s4."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" = ?3)
    AND (s3."FTypeID" <> ?4)
    AND (s4."FTypeID" = ?5)
    AND (s1."FItemID" = ?6)
    AND (s1."FShowUnitID" = ?7))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > SELECT s1."FItemID",s1."FUnitID",t_min_decimal(s1."FPrice")
    FROM temp."t1" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FUnitID" = ?2))
    GROUP BY s1."FItemID",s1."FUnitID"
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null)insert into #DATA(FItemID,FUnitID,FPrice)
select a.FItemID,b.FUnitID,MIN(a.FPrice) from  ICInvInitial a
inner join t_icitem b on a.FItemID=b.FItemID
inner join t_stock c on a.FStockID=c.FItemID
where c.FTypeID<>502 and a.FItemID=101 and b.FUnitID=11
group by a.FItemID,b.FUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPriceDiscount) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
insert into #DATA(FItemID,FUnitID,FPrice)
select b.FItemID,b.FShowUnitID,MIN(b.FPrice) from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and b.FItemID=101 and b.FShowUnitID=11
group by b.FItemID,b.FShowUnitID
select FItemID,FUnitID,MIN(FPrice) as FPrice from #DATA where FItemID=101 and FUnitID=11 group by FItemID,FUnitID
Drop table #DATA
  > BEGIN
  > COMMIT
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s2."FUnitID",t_min_decimal(s1."FPrice")
    FROM main."ICInvInitial" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FStockID" = s3."FItemID")
    WHERE ((s3."FTypeID" <> ?1)
    AND (s1."FItemID" = ?2)
    AND (s2."FUnitID" = ?3))
    GROUP BY s1."FItemID",s2."FUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPriceDiscount")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" NOT IN (?3,?4,?5))
    AND (s3."FTypeID" <> ?6)
    AND (s1."FItemID" = ?7)
    AND (s1."FShowUnitID" = ?8))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1,?2))
    AND (s2."FStatus" = ?3)
    AND (s2."FBillTypeID" NOT IN (?4,?5,?6))
    AND (s3."FTypeID" <> ?7)
    AND (s1."FItemID" = ?8)
    AND (s1."FShowUnitID" = ?9))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice") SELECT s1."FItemID",s1."FShowUnitID",t_min_decimal(s1."FPrice")
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" = ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    GROUP BY s1."FItemID",s1."FShowUnitID"
  > SELECT s1."FItemID",s1."FUnitID",t_min_decimal(s1."FPrice")
    FROM temp."t1" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FUnitID" = ?2))
    GROUP BY s1."FItemID",s1."FUnitID"
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

update T_CC_StockBillEntry set FSCStockID=9 where FID=4
  > UPDATE main."T_CC_StockBillEntry" AS s1
    SET "FSCStockID"=?1
    WHERE (s1."FID" = ?2)

select case when object_id('tempdb..#DATA') is null then 1 else 0 end
  > SELECT CASE WHEN (s_object_id(?1) IS NULL) THEN ?2 ELSE ?3 END

-- The latest price

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null,FDate datetime null)insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPriceDiscount,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
select top 1 FItemID,FUnitID,FPrice as FPrice from #DATA where FItemID=101 and FUnitID=11 order by FDate desc

  > BEGIN
  > CREATE TABLE temp."t1"("FItemID" INTEGER,"FUnitID" INTEGER,"FPrice" INTEGER,"FDate" INTEGER);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > COMMIT
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPriceDiscount" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" NOT IN (?3,?4,?5))
    AND (s3."FTypeID" <> ?6)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?7)
    AND (s1."FShowUnitID" = ?8))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1,?2))
    AND (s2."FStatus" = ?3)
    AND (s2."FBillTypeID" NOT IN (?4,?5,?6))
    AND (s3."FTypeID" <> ?7)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?8)
    AND (s1."FShowUnitID" = ?9))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s5.c0,s5.c1,s5.c2,s5.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    JOIN main."t_Stock" AS s4
    ON (s1."FSCStockID" = s4."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" = ?3)
    AND (s3."FTypeID" <> ?4)
    AND (s4."FTypeID" = ?5)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?6)
    AND (s1."FShowUnitID" = ?7))
    ORDER BY 4 DESC
    LIMIT 1) AS s5
  > SELECT s1."FItemID",s1."FUnitID",s1."FPrice"
    FROM temp."t1" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FUnitID" = ?2))
    ORDER BY s1."FDate" DESC
    LIMIT 1

select a.FItemID,b.FUnitID,a.FPrice from  ICInvInitial a
inner join t_icitem b on a.FItemID=b.FItemID
inner join t_stock c on a.FStockID=c.FItemID
where c.FTypeID<>502 and a.FItemID=101 and b.FUnitID=11

  > SELECT s1."FItemID",s2."FUnitID",s1."FPrice"
    FROM main."ICInvInitial" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FStockID" = s3."FItemID")
    WHERE ((s3."FTypeID" <> ?1)
    AND (s1."FItemID" = ?2)
    AND (s2."FUnitID" = ?3))

Drop table #DATA
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null,FDate datetime null)insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPriceDiscount,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
select top 1 FItemID,FUnitID,FPrice as FPrice from #DATA where FItemID=101 and FUnitID=11 order by FDate desc

  > BEGIN
  > COMMIT
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPriceDiscount" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" NOT IN (?3,?4,?5))
    AND (s3."FTypeID" <> ?6)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?7)
    AND (s1."FShowUnitID" = ?8))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1,?2))
    AND (s2."FStatus" = ?3)
    AND (s2."FBillTypeID" NOT IN (?4,?5,?6))
    AND (s3."FTypeID" <> ?7)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?8)
    AND (s1."FShowUnitID" = ?9))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s4.c0,s4.c1,s4.c2,s4.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s3."FTypeID" <> ?3)
    AND (s1."FItemID" = ?4)
    AND (s1."FShowUnitID" = ?5))
    ORDER BY 4 DESC
    LIMIT 1) AS s4
  > INSERT INTO temp."t1"("FItemID","FUnitID","FPrice","FDate") SELECT s5.c0,s5.c1,s5.c2,s5.c3
    FROM (SELECT s1."FItemID" AS c0,s1."FShowUnitID" AS c1,s1."FPrice" AS c2,s2."FSaveDate" AS c3
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    JOIN main."t_Stock" AS s4
    ON (s1."FSCStockID" = s4."FItemID")
    WHERE ((s2."FClassTypeID" IN (?1))
    AND (s2."FStatus" = ?2)
    AND (s2."FBillTypeID" = ?3)
    AND (s3."FTypeID" <> ?4)
    AND (s4."FTypeID" = ?5)
    AND (s2."FSaveDate" IS NOT NULL)
    AND (s1."FItemID" = ?6)
    AND (s1."FShowUnitID" = ?7))
    ORDER BY 4 DESC
    LIMIT 1) AS s5
  > SELECT s1."FItemID",s1."FUnitID",s1."FPrice"
    FROM temp."t1" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FUnitID" = ?2))
    ORDER BY s1."FDate" DESC
    LIMIT 1

Set NoCount On 
Create Table #DATA (FItemID int Null, FUnitID int Null,FPrice decimal(28, 10) null,FDate datetime null)insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPriceDiscount,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020002) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1020003,1040001) and a.FStatus=1 and a.FBillTypeID not in (2012,2031,2032) and c.FTypeID<>502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID
where FClassTypeID in (1040005) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from T_CC_ZZCX_Entry2 b inner join
T_CC_ZZCX a on a.FID=b.FID inner join t_stock c on b.FSCStockID=c.FItemID
where FClassTypeID in (1040006) and a.FStatus=1  and c.FTypeID<>502 and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
insert into #DATA(FItemID,FUnitID,FPrice,FDate)
select top 1 b.FItemID,b.FShowUnitID,b.FPrice,a.FSaveDate from t_cc_StockbillEntry b inner join
t_cc_Stockbill a on a.FID=b.FID inner join t_stock c on b.FDCStockID=c.FItemID inner join t_stock d on b.FSCStockID=d.FItemID 
where FClassTypeID in (1040007) and a.FStatus=1 and a.FBillTypeID=0 and c.FTypeID<>502 and d.FTypeID=502 and a.FSaveDate is not null and b.FItemID= 101 and b.FShowUnitID=11
order by a.FSaveDate desc
select top 1 FItemID,FUnitID,FPrice as FPrice from #DATA where FItemID=101 and FUnitID=11 order by FDate desc

  > BEGIN
  > SELECT name,seq
    FROM main.sqlite_sequence
  > ROLLBACK
  > SELECT name,seq
    FROM main.sqlite_sequence
  > error 2714

Drop table #DATA
  > BEGIN
  > SELECT name,seq
    FROM main.sqlite_sequence
  > ROLLBACK
  > DELETE
    FROM temp."t1"
  > SELECT name,seq
    FROM main.sqlite_sequence
  > error 3701

-- Items that would leave at no cost

Select u.FItemID,u.FSCStockID As FStockID,u.FBatchNo Into #TempNegItem 
From t_CC_StockBillEntry u Inner Join t_CC_StockBIll v On v.FID=u.FID 
Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)
Inner Join t_Stock s On u.FSCStockID=s.FItemID And s.FTypeID<>502 
Where IsNull(v.FStatus,0)=0 And u.FID In(0,1,2)

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
  > BEGIN
  > CREATE TABLE temp."t1"("FItemID" INTEGER NOT NULL,"FStockID" INTEGER,"FBatchNo" TEXT COLLATE tsql);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t1',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > SAVEPOINT change
  > INSERT INTO temp."t1"("FItemID","FStockID","FBatchNo") SELECT s1."FItemID",s1."FSCStockID",s1."FBatchNo"
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_ICItem" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s3."FTrack" IN (?1,?2)))
    JOIN main."t_Stock" AS s4
    ON ((s1."FSCStockID" = s4."FItemID")
    AND (s4."FTypeID" <> ?3))
    WHERE ((ifnull(s2."FStatus",?4) = ?5)
    AND (s1."FID" IN (?6,?7,?8)))
  > RELEASE change
  > COMMIT
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > CREATE TABLE temp."t2"("FItemID" INTEGER);
  > INSERT INTO temp.sqlite_stat1
    VALUES('t2',NULL,'20');
  > ANALYZE temp.sqlite_schema;
  > -- SELECT tbl,idx,stat
    FROM 'temp'.sqlite_stat1
  > COMMIT
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > INSERT INTO temp."t2"("FItemID")
    VALUES(?1)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > INSERT INTO temp."t2"("FItemID")
    VALUES(?1)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)

Set NOCount On 
Select Distinct t.FItemID,i.FNumber,i.FName,IsNull(i.FModel,'') As FModel From #TempItemID t Inner Join t_ICItem i On t.FItemID=i.FItemID 
Drop Table #TempNegItem   Drop Table #TempItemID     Set NOCount Off 
  > SELECT DISTINCT s1."FItemID",s2."FNumber",s2."FName",ifnull(s2."FModel",?1) COLLATE tsql
    FROM temp."t2" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
  > BEGIN
  > DELETE
    FROM temp."t1"
  > COMMIT
  > BEGIN
  > DELETE
    FROM temp."t2"
  > COMMIT

Select u.FItemID,u.FSCStockID As FStockID,u.FBatchNo Into #TempNegItem 
From t_CC_StockBillEntry u Inner Join t_CC_StockBIll v On v.FID=u.FID 
Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)
Inner Join t_Stock s On u.FSCStockID=s.FItemID And s.FTypeID<>502 
Where IsNull(v.FStatus,0)=0 And u.FID In(0,1,2)

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
  > BEGIN
  > SAVEPOINT change
  > INSERT INTO temp."t1"("FItemID","FStockID","FBatchNo") SELECT s1."FItemID",s1."FSCStockID",s1."FBatchNo"
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_ICItem" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s3."FTrack" IN (?1,?2)))
    JOIN main."t_Stock" AS s4
    ON ((s1."FSCStockID" = s4."FItemID")
    AND (s4."FTypeID" <> ?3))
    WHERE ((ifnull(s2."FStatus",?4) = ?5)
    AND (s1."FID" IN (?6,?7,?8)))
  > RELEASE change
  > COMMIT
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > COMMIT
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)
  > SELECT NULL
  > SELECT t_conv(t_div_decimal(t_conv(t_sum_decimal(s1."FBal"),60480893263),t_conv(t_sum_decimal(s1."FQty"),60480893263),320139914),60480893263)
    FROM main."T_CC_Inventory" AS s1
    WHERE ((s1."FStockID" = ?1)
    AND (s1."FItemID" = ?2)
    AND (s1."FBatchNo" = ?3))
    HAVING (t_sum_decimal(s1."FQty") <> t_conv(0,81955651627))
  > SELECT (t_cmp_decimal(ifnull(?1,?2),?3,318829194) <= 0)
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)

Select u.FItemID,u.FDCStockID As FStockID,u.FBatchNo Into #TempNegItem 
From t_CC_ZZCX_Entry u Inner Join t_CC_ZZCX v On v.FID=u.FID 
Inner Join t_ICItem i On u.FItemID=i.FItemID And i.FTrack IN(76,80)
Inner Join t_Stock s On u.FDCStockID=s.FItemID And s.FTypeID<>502 
Where IsNull(v.FStatus,0)=0 And u.FID In(0)

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
  > BEGIN
  > SAVEPOINT change
  > INSERT INTO temp."t1"("FItemID","FStockID","FBatchNo") SELECT s1."FItemID",s1."FDCStockID",s1."FBatchNo"
    FROM main."T_CC_ZZCX_Entry" AS s1
    JOIN main."T_CC_ZZCX" AS s2
    ON (s2."FID" = s1."FID")
    JOIN main."t_ICItem" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s3."FTrack" IN (?1,?2)))
    JOIN main."t_Stock" AS s4
    ON ((s1."FDCStockID" = s4."FItemID")
    AND (s4."FTypeID" <> ?3))
    WHERE ((ifnull(s2."FStatus",?4) = ?5)
    AND (s1."FID" IN (?6)))
  > RELEASE change
  > COMMIT
  > SELECT (s_object_id(?1) IS NOT NULL)
  > BEGIN
  > COMMIT
  > SELECT s1."FItemID",s1."FStockID",s1."FBatchNo",s1.rowid
    FROM temp."t1" AS s1
    WHERE (s1.rowid > ?1)
    ORDER BY s1.rowid
  > SELECT (?1 = ?2)

