-- State queries

Select IsNUll(FCheckerID,0) from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1
  > SELECT ifnull(s1."FCheckerID",?1)
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FID" = ?3))

Select IsNUll(FCheckerID,0),IsNUll(FVoucherID,0) from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1
  > SELECT ifnull(s1."FCheckerID",?1),ifnull(s1."FVoucherID",?2)
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?3)
    AND (s1."FID" = ?4))

-- Who made the bill

Set NoCount On   Declare @Same int
Select @Same=FValue From t_systemprofile Where FCategory='General' And FKey= 'SingleMan' 
Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1
Set NoCount Off 
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT ?1,s1."FBillerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FID" = ?3))

Set NoCount On   Declare @Same int
Select @Same=FValue From t_systemprofile Where FCategory='General' And FKey like 'SingleMan' 
Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1
Set NoCount Off 
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (t_like(s1."FKey",?2)))
  > SELECT ?1,s1."FBillerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FID" = ?3))

update t_SystemProfile set FValue='' where FKey='SingleMan'
  > UPDATE main."t_SystemProfile" AS s1
    SET "FValue"=?1
    WHERE (s1."FKey" = ?2)

delete t_SystemProfile where FKey='SingleMan'
  > DELETE
    FROM main."t_SystemProfile" AS s1
    WHERE (s1."FKey" = ?1)

Set NoCount On   Declare @Same int
Select @Same=FValue From t_systemprofile Where FCategory='General' And FKey= 'SingleMan' 
Select @Same As FSame,FBillerID from t_CC_StockBIll Where FClassTypeID=1020002 And FID=1
Set NoCount Off 
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > error 245

-- The period of the bill

Set NoCount On     Declare @Year int,@Period int,@Date DateTime 
SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod'
Select @Date=FDate From t_CC_StockBill Where FClassTypeID=1020002 And FID=1
SELECT * FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period And DateDiff(Day,FStartDate,@Date)>=0 
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT s1."FDate"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = ?2))
  > SELECT s1."FYear",s1."FPeriod",s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = ?1)
    AND (s1."FPeriod" = ?2)
    AND (t_datediff(4,s1."FStartDate",?3) >= ?4))

-- Bills made from this one

Select v.FBillNO From t_CC_StockBill v Inner Join  t_CC_StockBillEntry u On v.FID=u.FID 
Where u.FClassID_SRC=1020002 And FID_SRC=1
  > SELECT s1."FBillNo"
    FROM main."T_CC_StockBill" AS s1
    JOIN main."T_CC_StockBillEntry" AS s2
    ON (s1."FID" = s2."FID")
    WHERE ((s2."FClassID_SRC" = ?1)
    AND (s2."FID_SRC" = ?2))

-- Vouchers of the reversing bill

Select IsNull(v2.FVoucherID,0) From t_CC_StockBill v1 
Inner Join ICRelations r1 On r1.FID=v1.FID And r1.FClassTypeID=v1.FClassTypeID 
Inner Join ICRelations r2 On r2.FGroupNo=r1.FGroupNo 
Inner Join t_CC_StockBill v2 On v2.FID=r2.FID And v2.FClassTypeID=r2.FClassTypeID 
Where v2.FBillTypeID=2032 And v1.FID=1
  > SELECT ifnull(s4."FVoucherID",?1)
    FROM main."T_CC_StockBill" AS s1
    JOIN main."ICRelations" AS s2
    ON ((s2."FID" = s1."FID")
    AND (s2."FClassTypeID" = s1."FClassTypeID"))
    JOIN main."ICRelations" AS s3
    ON (s3."FGroupNo" = s2."FGroupNo")
    JOIN main."T_CC_StockBill" AS s4
    ON ((s4."FID" = s3."FID")
    AND (s4."FClassTypeID" = s3."FClassTypeID"))
    WHERE ((s4."FBillTypeID" = ?2)
    AND (s1."FID" = ?3))

-- Payments and settlements

Select FSourceBillId from t_rp_pBillEntry 
Where FSourceClassTypeID=1020002 And FSourceBillID=1
Union
Select FSourceBillId from t_rp_CheckBillEntry1 
Where FSourceClassTypeID=1020002 And FSourceBillID=1
Union
Select FSourceBillId from t_rp_CheckBillEntry2 
Where FSourceClassTypeID=1020002 And FSourceBillID=1
  > SELECT s1."FSourceBillID" AS c0
    FROM main."t_RP_PBillEntry" AS s1
    WHERE ((s1."FSourceClassTypeID" = ?1)
    AND (s1."FSourceBillID" = ?2))
    UNION SELECT s2."FSourceBillID" AS c0
    FROM main."t_RP_CheckBillEntry1" AS s2
    WHERE ((s2."FSourceClassTypeID" = ?3)
    AND (s2."FSourceBillID" = ?4))
    UNION SELECT s3."FSourceBillID" AS c0
    FROM main."t_RP_CheckBillEntry2" AS s3
    WHERE ((s3."FSourceClassTypeID" = ?5)
    AND (s3."FSourceBillID" = ?6))

Select FSourceBillId from t_rp_rBillEntry 
Where FSourceClassTypeID=1030004 And FSourceBillID=1
Union
Select FSourceBillId from t_rp_CheckBillEntry1 
Where FSourceClassTypeID=1030004 And FSourceBillID=1
Union
Select FSourceBillId from t_rp_CheckBillEntry2 
Where FSourceClassTypeID=1030004 And FSourceBillID=1
  > SELECT s1."FSourceBillID" AS c0
    FROM main."t_RP_RBillEntry" AS s1
    WHERE ((s1."FSourceClassTypeID" = ?1)
    AND (s1."FSourceBillID" = ?2))
    UNION SELECT s2."FSourceBillID" AS c0
    FROM main."t_RP_CheckBillEntry1" AS s2
    WHERE ((s2."FSourceClassTypeID" = ?3)
    AND (s2."FSourceBillID" = ?4))
    UNION SELECT s3."FSourceBillID" AS c0
    FROM main."t_RP_CheckBillEntry2" AS s3
    WHERE ((s3."FSourceClassTypeID" = ?5)
    AND (s3."FSourceBillID" = ?6))

-- Invoices

select top 1 1 from t_cc_stockbill where (FInvoiceAmt<>0) and FID=1 and FClassTypeID=1030002
  > SELECT ?1
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FInvoiceAmt" <> ?2)
    AND (s1."FID" = ?3)
    AND (s1."FClassTypeID" = ?4))
    LIMIT 1

