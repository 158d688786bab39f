-- Head queries

Select FStatus, FVoucherID,FDate,FBillerID From T_CC_StockBill where FID=1
  > SELECT s1."FStatus",s1."FVoucherID",s1."FDate",s1."FBillerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

Select FStatus,0 as FVoucherID,FDate,FBillerID From t_XS_Order where FID=2
  > SELECT s1."FStatus",?1,s1."FDate",s1."FBillerID"
    FROM main."t_XS_Order" AS s1
    WHERE (s1."FID" = ?2)

Select FStatus, FVoucherID,FDate,FBillerID From t_XS_Order where FID=2
  > error 207

Select FStatus, FVoucherID,FDate,FBillerID From T_None where FID=2
  > error 208

-- Rows without a price

select FIndex from  T_CC_StockBillEntry a 
 inner join t_ICItem i on a.FItemID=i.FItemID 
 inner join t_Stock ts on a.FDCStockID=ts.FItemID 
 where a.FPrice=0 and ts.FTypeID=500 and FID = 2

  > SELECT s1."FIndex"
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s1."FPrice" = ?1)
    AND (s3."FTypeID" = ?2)
    AND (s1."FID" = ?3))

select FIndex from  T_CC_StockBillEntry a 
 inner join t_ICItem i on a.FItemID=i.FItemID 
 inner join t_Stock ts on a.FDCStockID=ts.FItemID 
 where a.FPrice=0 and ts.FTypeID=500 and FID = 1
 And a.FID Not In(select FID from T_CC_StockBill where FBillTypeID=1 )
  > SELECT s1."FIndex"
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FDCStockID" = s3."FItemID")
    WHERE ((s1."FPrice" = ?1)
    AND (s3."FTypeID" = ?2)
    AND (s1."FID" = ?3)
    AND (s1."FID" NOT IN (SELECT s4."FID"
    FROM main."T_CC_StockBill" AS s4
    WHERE (s4."FBillTypeID" = ?4))))

 select  FIndex from  T_CC_ZZCX_Entry2 a 
 inner join t_ICItem i on a.FItemID=i.FItemID 
 inner join t_Stock ts on a.FSCStockID=ts.FItemID 
 where a.FPrice=0 and ts.FTypeID=500 and FID = 8
  > SELECT s1."FIndex"
    FROM main."T_CC_ZZCX_Entry2" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_Stock" AS s3
    ON (s1."FSCStockID" = s3."FItemID")
    WHERE ((s1."FPrice" = ?1)
    AND (s3."FTypeID" = ?2)
    AND (s1."FID" = ?3))

-- Bills further down

Select top 1 FID From t_CC_StockBillEntry Where FClassID_SRC=1030001 And FID_SRC=5
  > SELECT s1."FID"
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE ((s1."FClassID_SRC" = ?1)
    AND (s1."FID_SRC" = ?2))
    LIMIT 1

Select top 1 FID From t_RP_RBillEntry Where FSourceClassTypeID=1030002 And FSourceBillID=6
Union All 
Select top 1 FID From t_RP_CheckBillEntry1 Where FSourceClassTypeID=1030002 And FSourceBillID=6
Union All 
Select top 1 FID From t_RP_CheckBillEntry2 Where FSourceClassTypeID=1030002 And FSourceBillID=6

  > SELECT c0
    FROM (SELECT s1."FID" AS c0
    FROM main."t_RP_RBillEntry" AS s1
    WHERE ((s1."FSourceClassTypeID" = ?1)
    AND (s1."FSourceBillID" = ?2))
    LIMIT 1)
    UNION ALL SELECT c0
    FROM (SELECT s2."FID" AS c0
    FROM main."t_RP_CheckBillEntry1" AS s2
    WHERE ((s2."FSourceClassTypeID" = ?3)
    AND (s2."FSourceBillID" = ?4))
    LIMIT 1)
    UNION ALL SELECT c0
    FROM (SELECT s3."FID" AS c0
    FROM main."t_RP_CheckBillEntry2" AS s3
    WHERE ((s3."FSourceClassTypeID" = ?5)
    AND (s3."FSourceBillID" = ?6))
    LIMIT 1)

Select top 1 FID from t_CC_StockBillEntry Where FClassID_SRC=1090001 and FID=23
  > SELECT s1."FID"
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE ((s1."FClassID_SRC" = ?1)
    AND (s1."FID" = ?2))
    LIMIT 1

-- Who audited

Select FStatus,FCheckerID From T_CC_StockBill where FID=1 and FStatus <> 0 and FCheckerID = 16394
  > SELECT s1."FStatus",s1."FCheckerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FID" = ?1)
    AND (s1."FStatus" <> ?2)
    AND (s1."FCheckerID" = ?3))

