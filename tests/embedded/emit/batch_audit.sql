-- The setting of negative stock

Select FValue from t_systemprofile where Fcategory='IC' AND FKEY='UnderStock'
  > SELECT s1."FValue"
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))

-- Rejected bills

Select FRejected From t_XS_Order Where FClassTypeID=1030001 And FID='5'
  > SELECT s1."FRejected"
    FROM main."t_XS_Order" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = t_conv(?2,45216804)))

Select FRejected From t_CC_StockBill Where FClassTypeID=1030002 And FID='6'
  > SELECT s1."FRejected"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = t_conv(?2,45216804)))

Select FRejected From t_XS_Order Where FClassTypeID=1030001 And FID='x'
  > SELECT s1."FRejected"
    FROM main."t_XS_Order" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = t_conv(?2,45216804)))
  > error 245

-- Lines without a serial number

select top 1 ti.FName,tcsben.FIndex,tcsb.FBillNo from t_cc_stockbillentry tcsben left join t_SerialNumList tsn on tsn.FBillID=tcsben.FID and tsn.FBillIndexID=tcsben.FIndex and tsn.FItemID=tcsben.FItemID and tsn.FStockID=tcsben.FSCStockID left join t_icitem ti on ti.FItemID=tcsben.FItemID left join t_cc_stockbill tcsb on tcsb.FID=tcsben.FID where tcsben.FID='6' and ti.FIsSerialNumMgr=1 and isnull(tsn.FID,0)=0
  > SELECT s3."FName",s1."FIndex",s4."FBillNo"
    FROM main."T_CC_StockBillEntry" AS s1 LEFT
    JOIN main."t_SerialNumList" AS s2
    ON ((s2."FBillID" = s1."FID")
    AND (s2."FBillIndexID" = s1."FIndex")
    AND (s2."FItemID" = s1."FItemID")
    AND (s2."FStockID" = s1."FSCStockID")) LEFT
    JOIN main."t_ICItem" AS s3
    ON (s3."FItemID" = s1."FItemID") LEFT
    JOIN main."T_CC_StockBill" AS s4
    ON (s4."FID" = s1."FID")
    WHERE ((s1."FID" = t_conv(?1,45216804))
    AND (s3."FIsSerialNumMgr" = ?2)
    AND (ifnull(s2."FID",?3) = ?4))
    LIMIT 1

-- Balances of partners and prepayments

Update t_Supplier Set FCurReceAmount=IsNull(FCurReceAmount,0)+(100.01)
Where FItemID=3
  > UPDATE main."t_Supplier" AS s1
    SET "FCurReceAmount"=t_conv(t_add_decimal(ifnull(s1."FCurReceAmount",?1),?2,244641930),1159992502607)
    WHERE (s1."FItemID" = ?3)

select FCurReceAmount from t_Supplier
  > SELECT s1."FCurReceAmount"
    FROM main."t_Supplier" AS s1

Update t_Organization Set FCurReceAmount=IsNull(FCurReceAmount,0)+(-3)
Where FItemID=4
  > UPDATE main."t_Organization" AS s1
    SET "FCurReceAmount"=t_conv(t_add_decimal(ifnull(s1."FCurReceAmount",?1),t_neg_int(?2),244641802),1159992502607)
    WHERE (s1."FItemID" = ?3)

 Select FSourceClassTypeID2,FCurCheckAmount from ICCheckInfo where fid=9
  > SELECT s1."FSourceClassTypeID2",s1."FCurCheckAmount"
    FROM main."ICCheckInfo" AS s1
    WHERE (s1."FID" = ?1)

 Update t_Organization Set FUnPrepCheckAmount=FUnPrepCheckAmount-(2.5) , FPrepCheckAmount=FPrepCheckAmount+(2.5) Where FItemID=4
  > UPDATE main."t_Organization" AS s1
    SET "FUnPrepCheckAmount"=t_conv(t_sub_decimal(s1."FUnPrepCheckAmount",?1,244641866),1159992502607),"FPrepCheckAmount"=t_conv(t_add_decimal(s1."FPrepCheckAmount",?2,244641866),1159992502607)
    WHERE (s1."FItemID" = ?3)

 Update t_Organization Set FCurPrepAmount=FCurPrepAmount-(2.5) Where FItemID=4
  > UPDATE main."t_Organization" AS s1
    SET "FCurPrepAmount"=t_conv(t_sub_decimal(s1."FCurPrepAmount",?1,244641866),1159992502607)
    WHERE (s1."FItemID" = ?2)

select FCurReceAmount,FUnPrepCheckAmount,FPrepCheckAmount,FCurPrepAmount from t_Organization
  > SELECT s1."FCurReceAmount",s1."FUnPrepCheckAmount",s1."FPrepCheckAmount",s1."FCurPrepAmount"
    FROM main."t_Organization" AS s1

-- Order quantities, summed per item and written to each of its lines

Update  a set a.FXSOrderQty=a.FXSOrderQty+(1*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty-(1*b.FQty/a.FCoefficient) from t_XS_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_XS_OrderEntry where FID=5 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 5
  > UPDATE main."t_XS_OrderEntry" AS u
    SET "FXSOrderQty"=q.c0,"FInTotalQty"=q.c1
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FXSOrderQty",t_div_decimal(t_mul_decimal(?1,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c0,t_conv(t_sub_decimal(s1."FInTotalQty",t_div_decimal(t_mul_decimal(?2,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c1
    FROM main."t_XS_OrderEntry" AS s1 LEFT
    JOIN (SELECT s2."FItemID" AS c0,s2."FAuxPropID" AS c1,t_sum_decimal(s2."FQty") AS c2
    FROM main."t_XS_OrderEntry" AS s2
    WHERE ((s2."FItemID" IN (SELECT s4."FItemID"
    FROM main."t_XS_OrderEntry" AS s4
    WHERE (s4."FID" = ?3)))
    AND (s2."FID" = ?4))
    GROUP BY s2."FItemID",s2."FAuxPropID") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FAuxPropID" = s3.c1))
    WHERE (s1."FID" = ?3)) AS q
    WHERE q.r=u.rowid

select FXSOrderQty,FInTotalQty,FBaseXSOrderQty from t_XS_OrderEntry where FID=5 order by FEntryID
  > SELECT s1."FXSOrderQty",s1."FInTotalQty",s1."FBaseXSOrderQty"
    FROM main."t_XS_OrderEntry" AS s1
    WHERE (s1."FID" = ?1)
    ORDER BY s1."FEntryID"

Update  a set a.FXSOrderQty=a.FXSOrderQty+(-1*b.FQty/a.FCoefficient),a.FBaseXSOrderQty=a.FBaseXSOrderQty+(-1*b.FQty),a.FInTotalQty=a.FInTotalQty-(-1*b.FQty/a.FCoefficient),a.FBaseInTotalQty=a.FBaseInTotalQty-(-1*b.FQty) from t_XS_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_XS_OrderEntry where FID=5 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 5
  > UPDATE main."t_XS_OrderEntry" AS u
    SET "FXSOrderQty"=q.c0,"FBaseXSOrderQty"=q.c1,"FInTotalQty"=q.c2,"FBaseInTotalQty"=q.c3
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FXSOrderQty",t_neg_decimal(t_div_decimal(t_mul_decimal(?1,s3.c2,319877760),s1."FCoefficient",319615624)),319615370),1159992520911) AS c0,t_conv(t_add_decimal(s1."FBaseXSOrderQty",t_neg_decimal(t_mul_decimal(?2,s3.c2,319877760)),319877642),1159992520975) AS c1,t_conv(t_sub_decimal(s1."FInTotalQty",t_neg_decimal(t_div_decimal(t_mul_decimal(?3,s3.c2,319877760),s1."FCoefficient",319615624)),319615370),1159992520911) AS c2,t_conv(t_sub_decimal(s1."FBaseInTotalQty",t_neg_decimal(t_mul_decimal(?4,s3.c2,319877760)),319877642),1159992520975) AS c3
    FROM main."t_XS_OrderEntry" AS s1 LEFT
    JOIN (SELECT s2."FItemID" AS c0,s2."FAuxPropID" AS c1,t_sum_decimal(s2."FQty") AS c2
    FROM main."t_XS_OrderEntry" AS s2
    WHERE ((s2."FItemID" IN (SELECT s4."FItemID"
    FROM main."t_XS_OrderEntry" AS s4
    WHERE (s4."FID" = ?5)))
    AND (s2."FID" = ?6))
    GROUP BY s2."FItemID",s2."FAuxPropID") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FAuxPropID" = s3.c1))
    WHERE (s1."FID" = ?5)) AS q
    WHERE q.r=u.rowid

select FXSOrderQty,FInTotalQty,FBaseXSOrderQty,FBaseInTotalQty from t_XS_OrderEntry where FID=5 order by FEntryID
  > SELECT s1."FXSOrderQty",s1."FInTotalQty",s1."FBaseXSOrderQty",s1."FBaseInTotalQty"
    FROM main."t_XS_OrderEntry" AS s1
    WHERE (s1."FID" = ?1)
    ORDER BY s1."FEntryID"

Update  a set a.FCgOrderQty=a.FCgOrderQty+(1*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty+(1*b.FQty/a.FCoefficient) from t_CG_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_CG_OrderEntry where FID=5 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 5
  > UPDATE main."t_CG_OrderEntry" AS u
    SET "FCgOrderQty"=q.c0,"FInTotalQty"=q.c1
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FCgOrderQty",t_div_decimal(t_mul_decimal(?1,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c0,t_conv(t_add_decimal(s1."FInTotalQty",t_div_decimal(t_mul_decimal(?2,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c1
    FROM main."t_CG_OrderEntry" AS s1 LEFT
    JOIN (SELECT s2."FItemID" AS c0,s2."FAuxPropID" AS c1,t_sum_decimal(s2."FQty") AS c2
    FROM main."t_CG_OrderEntry" AS s2
    WHERE ((s2."FItemID" IN (SELECT s4."FItemID"
    FROM main."t_CG_OrderEntry" AS s4
    WHERE (s4."FID" = ?3)))
    AND (s2."FID" = ?4))
    GROUP BY s2."FItemID",s2."FAuxPropID") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FAuxPropID" = s3.c1))
    WHERE (s1."FID" = ?3)) AS q
    WHERE q.r=u.rowid

Update  a set a.FCgOrderQty=a.FCgOrderQty+(1*b.FQty/a.FCoefficient),a.FBaseCgOrderQty=a.FBaseCgOrderQty+(1*b.FQty),a.FInTotalQty=a.FInTotalQty+(1*b.FQty/a.FCoefficient),a.FBaseInTotalQty=a.FBaseInTotalQty+(1*b.FQty) from t_CG_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_CG_OrderEntry where FID=5 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 5
  > UPDATE main."t_CG_OrderEntry" AS u
    SET "FCgOrderQty"=q.c0,"FBaseCgOrderQty"=q.c1,"FInTotalQty"=q.c2,"FBaseInTotalQty"=q.c3
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FCgOrderQty",t_div_decimal(t_mul_decimal(?1,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c0,t_conv(t_add_decimal(s1."FBaseCgOrderQty",t_mul_decimal(?2,s3.c2,319877760),319877642),1159992520975) AS c1,t_conv(t_add_decimal(s1."FInTotalQty",t_div_decimal(t_mul_decimal(?3,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c2,t_conv(t_add_decimal(s1."FBaseInTotalQty",t_mul_decimal(?4,s3.c2,319877760),319877642),1159992520975) AS c3
    FROM main."t_CG_OrderEntry" AS s1 LEFT
    JOIN (SELECT s2."FItemID" AS c0,s2."FAuxPropID" AS c1,t_sum_decimal(s2."FQty") AS c2
    FROM main."t_CG_OrderEntry" AS s2
    WHERE ((s2."FItemID" IN (SELECT s4."FItemID"
    FROM main."t_CG_OrderEntry" AS s4
    WHERE (s4."FID" = ?5)))
    AND (s2."FID" = ?6))
    GROUP BY s2."FItemID",s2."FAuxPropID") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FAuxPropID" = s3.c1))
    WHERE (s1."FID" = ?5)) AS q
    WHERE q.r=u.rowid

select FCgOrderQty,FInTotalQty,FBaseCgOrderQty,FBaseInTotalQty from t_CG_OrderEntry order by FEntryID
  > SELECT s1."FCgOrderQty",s1."FInTotalQty",s1."FBaseCgOrderQty",s1."FBaseInTotalQty"
    FROM main."t_CG_OrderEntry" AS s1
    ORDER BY s1."FEntryID"

select FXSOrderQty from t_XS_OrderEntry where FID=6
  > SELECT s1."FXSOrderQty"
    FROM main."t_XS_OrderEntry" AS s1
    WHERE (s1."FID" = ?1)

update t_XS_OrderEntry set FCoefficient=0 where FEntryID=2
  > UPDATE main."t_XS_OrderEntry" AS s1
    SET "FCoefficient"=?1
    WHERE (s1."FEntryID" = ?2)

Update  a set a.FXSOrderQty=a.FXSOrderQty+(1*b.FQty/a.FCoefficient),a.FInTotalQty=a.FInTotalQty-(1*b.FQty/a.FCoefficient) from t_XS_OrderEntry a left join (select FItemID,FAuxPropID,sum(FQty) as FQty from t_XS_OrderEntry where FID=5 group by FItemID,FAuxPropID) b on a.FItemid=b.FItemid and a.FAuxPropID=b.FAuxPropID Where a.FID= 5
  > UPDATE main."t_XS_OrderEntry" AS u
    SET "FXSOrderQty"=q.c0,"FInTotalQty"=q.c1
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FXSOrderQty",t_div_decimal(t_mul_decimal(?1,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c0,t_conv(t_sub_decimal(s1."FInTotalQty",t_div_decimal(t_mul_decimal(?2,s3.c2,319877760),s1."FCoefficient",319615624),319615370),1159992520911) AS c1
    FROM main."t_XS_OrderEntry" AS s1 LEFT
    JOIN (SELECT s2."FItemID" AS c0,s2."FAuxPropID" AS c1,t_sum_decimal(s2."FQty") AS c2
    FROM main."t_XS_OrderEntry" AS s2
    WHERE ((s2."FItemID" IN (SELECT s4."FItemID"
    FROM main."t_XS_OrderEntry" AS s4
    WHERE (s4."FID" = ?3)))
    AND (s2."FID" = ?4))
    GROUP BY s2."FItemID",s2."FAuxPropID") AS s3
    ON ((s1."FItemID" = s3.c0)
    AND (s1."FAuxPropID" = s3.c1))
    WHERE (s1."FID" = ?3)) AS q
    WHERE q.r=u.rowid
  > error 8134

select FXSOrderQty from t_XS_OrderEntry where FID=5 order by FEntryID
  > SELECT s1."FXSOrderQty"
    FROM main."t_XS_OrderEntry" AS s1
    WHERE (s1."FID" = ?1)
    ORDER BY s1."FEntryID"

-- The status of the head, and of the bills that follow it

Update T_CC_StockBill set FCheckerID=16394,FCheckDate=GetDate(),FStatus=1  where FID=11
Update v1 Set v1.FCheckerID=v2.FCheckerID,v1.FCheckDate=v2.FCheckDate,v1.FStatus=v2.FStatus 
From t_CC_StockBill v1 Inner Join ICRelations r1 On v1.FClassTypeID=r1.FClassTypeID And v1.FID=r1.FID 
Inner Join ICRelations r2 On r1.FGroupNo=r2.FGroupNo 
Inner Join t_CC_StockBill v2 On v2.FClassTypeID=r2.FClassTypeID And v2.FID=r2.FID 
Where v2.FClassTypeID=1020002 And v1.FBillTypeID=2032 And v2.FID=11
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=t_getdate(),"FStatus"=?2
    WHERE (s1."FID" = ?3)
  > UPDATE main."T_CC_StockBill" AS u
    SET "FCheckerID"=q.c0,"FCheckDate"=q.c1,"FStatus"=q.c2
    FROM (SELECT s1.rowid AS r,s4."FCheckerID" AS c0,s4."FCheckDate" AS c1,s4."FStatus" AS c2
    FROM main."T_CC_StockBill" AS s1
    JOIN main."ICRelations" AS s2
    ON ((s1."FClassTypeID" = s2."FClassTypeID")
    AND (s1."FID" = s2."FID"))
    JOIN main."ICRelations" AS s3
    ON (s2."FGroupNo" = s3."FGroupNo")
    JOIN main."T_CC_StockBill" AS s4
    ON ((s4."FClassTypeID" = s3."FClassTypeID")
    AND (s4."FID" = s3."FID"))
    WHERE ((s4."FClassTypeID" = ?1)
    AND (s1."FBillTypeID" = ?2)
    AND (s4."FID" = ?3))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid

select FID,FCheckerID,FCheckDate,FStatus from T_CC_StockBill order by FID
  > SELECT s1."FID",s1."FCheckerID",s1."FCheckDate",s1."FStatus"
    FROM main."T_CC_StockBill" AS s1
    ORDER BY 1

Update T_CC_StockBill set FCheckerID=0,FCheckDate=Null,FStatus=0  where FID=11

  > UPDATE main."T_CC_StockBill" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=NULL,"FStatus"=?2
    WHERE (s1."FID" = ?3)

select FCheckerID,FCheckDate,FStatus from T_CC_StockBill where FID=11
  > SELECT s1."FCheckerID",s1."FCheckDate",s1."FStatus"
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

-- Amounts of invoices

Update  t_cc_stockbill set FNoInvoiceAmt = FAllAmount where FID=11 And FBillTypeID=3001
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FNoInvoiceAmt"=s1."FAllAmount"
    WHERE ((s1."FID" = ?1)
    AND (s1."FBillTypeID" = ?2))

select FNoInvoiceAmt from T_CC_StockBill
  > SELECT s1."FNoInvoiceAmt"
    FROM main."T_CC_StockBill" AS s1

Update t_cc_stockbill set FInvoiceSatus=0, FInvoiceAmt=0, FNoInvoiceAmt=0 where FID=11 And FBillTypeID=3001
Delete from t_CC_InvoiceFlow where FID=11 And FBillTypeID=3001
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FInvoiceSatus"=?1,"FInvoiceAmt"=?2,"FNoInvoiceAmt"=?3
    WHERE ((s1."FID" = ?4)
    AND (s1."FBillTypeID" = ?5))
  > DELETE
    FROM main."t_CC_InvoiceFlow" AS s1
    WHERE ((s1."FID" = ?1)
    AND (s1."FBillTypeID" = ?2))

select FInvoiceSatus,FInvoiceAmt,FNoInvoiceAmt from T_CC_StockBill
  > SELECT s1."FInvoiceSatus",s1."FInvoiceAmt",s1."FNoInvoiceAmt"
    FROM main."T_CC_StockBill" AS s1

select FBillTypeID from t_CC_InvoiceFlow
  > SELECT s1."FBillTypeID"
    FROM main."t_CC_InvoiceFlow" AS s1

-- Balances of the un-audited bill

delete from t_cc_bal where FClassTypeID=1030002 and FID=7
  > DELETE
    FROM main."t_CC_Bal" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = ?2))

delete from ICSpeedBal where FClassTypeID=1030002 and FID=7
  > DELETE
    FROM main."ICSpeedBal" AS s1
    WHERE ((s1."FClassTypeID" = ?1)
    AND (s1."FID" = ?2))

select FID from t_CC_Bal
  > SELECT s1."FID"
    FROM main."t_CC_Bal" AS s1

select count(*) from ICSpeedBal
  > SELECT count(*)
    FROM main."ICSpeedBal" AS s1

-- Latest prices without a partner

Delete From t_LatestPrice Where FCustID=0 and FSupplyID=0 and FItemID IN (Select FItemID From T_CC_StockBillEntry where FID=7)
  > DELETE
    FROM main."t_LatestPrice" AS s1
    WHERE ((s1."FCustID" = ?1)
    AND (s1."FSupplyID" = ?2)
    AND (s1."FItemID" IN (SELECT s2."FItemID"
    FROM main."T_CC_StockBillEntry" AS s2
    WHERE (s2."FID" = ?3))))

 Insert Into t_LatestPrice (FCustID,FSupplyID,FItemID,FUnitID,FDate,FCheckDate)  Select 0,0,FItemID,max(FShowUnitID) ,(select FDate from T_CC_StockBill where Fid=7),getdate() From T_CC_StockBillEntry where FID=7 Group By FItemID
  > INSERT INTO main."t_LatestPrice"("FCustID","FSupplyID","FItemID","FUnitID","FDate","FCheckDate") SELECT ?1,?2,s1."FItemID",max(s1."FShowUnitID"),(SELECT s2."FDate"
    FROM main."T_CC_StockBill" AS s2
    WHERE (s2."FID" = ?3)),t_getdate()
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE (s1."FID" = ?4)
    GROUP BY s1."FItemID"

select FItemID,FUnitID,FPrice,FDate,FCheckDate,FIsLast from t_LatestPrice order by FItemID
  > SELECT s1."FItemID",s1."FUnitID",s1."FPrice",s1."FDate",s1."FCheckDate",s1."FIsLast"
    FROM main."t_LatestPrice" AS s1
    ORDER BY 1

-- Latest prices of a partner

Delete t From t_LatestPrice t inner join t_CC_StockBillEntry te on t.FItemID=te.FItemID and t.FUnitID=te.FShowUnitID
Where t.FCustID = 4 And te.FID = 7 And te.FPrice > 0
  > DELETE
    FROM main."t_LatestPrice"
    WHERE rowid IN (SELECT s1.rowid
    FROM main."t_LatestPrice" AS s1
    JOIN main."T_CC_StockBillEntry" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FUnitID" = s2."FShowUnitID"))
    WHERE ((s1."FCustID" = ?1)
    AND (s2."FID" = ?2)
    AND (t_cmp_decimal(s2."FPrice",?3,318829194) > 0)))

update t_LatestPrice set FIsLast=0 Where FCustID=4 And FItemID IN (Select FItemID From T_CC_StockBillEntry Where FID=7 And FPrice>0)
  > UPDATE main."t_LatestPrice" AS s1
    SET "FIsLast"=?1
    WHERE ((s1."FCustID" = ?2)
    AND (s1."FItemID" IN (SELECT s2."FItemID"
    FROM main."T_CC_StockBillEntry" AS s2
    WHERE ((s2."FID" = ?3)
    AND (t_cmp_decimal(s2."FPrice",?4,318829194) > 0)))))

Insert Into t_LatestPrice (FCustID,FSupplyID,FItemID,FPrice,FIncludeTaxPrice,FDiscountRate,FUnitID,FDate,FCheckDate) Select 4,0,FItemID,Max(FPrice),Max(FIncludeTaxPrice),Min(FDiscountRate),FShowUnitID ,(select FDate from T_CC_StockBill where Fid=7 ),getdate()
From T_CC_StockBillEntry where FID=7 And FPrice>0 Group By FItemID,FShowUnitID
  > INSERT INTO main."t_LatestPrice"("FCustID","FSupplyID","FItemID","FPrice","FIncludeTaxPrice","FDiscountRate","FUnitID","FDate","FCheckDate") SELECT ?1,?2,s1."FItemID",t_max_decimal(s1."FPrice"),t_max_decimal(s1."FIncludeTaxPrice"),t_min_decimal(s1."FDiscountRate"),s1."FShowUnitID",(SELECT s2."FDate"
    FROM main."T_CC_StockBill" AS s2
    WHERE (s2."FID" = ?3)),t_getdate()
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE ((s1."FID" = ?4)
    AND (t_cmp_decimal(s1."FPrice",?5,318829194) > 0))
    GROUP BY s1."FItemID",s1."FShowUnitID"

select FCustID,FItemID,FUnitID,FPrice,FIncludeTaxPrice,FDiscountRate,FIsLast from t_LatestPrice order by FCustID,FUnitID
  > SELECT s1."FCustID",s1."FItemID",s1."FUnitID",s1."FPrice",s1."FIncludeTaxPrice",s1."FDiscountRate",s1."FIsLast"
    FROM main."t_LatestPrice" AS s1
    ORDER BY 1,3

Insert Into t_LatestPrice (FSupplyID,FCustID,FItemID,FPrice,FIncludeTaxPrice,FDiscountRate,FUnitID,FDate,FCheckDate) Select 3,0,FItemID,Min(FPrice), 0 ,Max(FDiscountRate),FShowUnitID ,(select FDate from T_CC_StockBill where Fid=7 ),getdate()
From T_CC_StockBillEntry where FID=7 And FPrice>0 Group By FItemID,FShowUnitID
  > INSERT INTO main."t_LatestPrice"("FSupplyID","FCustID","FItemID","FPrice","FIncludeTaxPrice","FDiscountRate","FUnitID","FDate","FCheckDate") SELECT ?1,?2,s1."FItemID",t_min_decimal(s1."FPrice"),?3,t_max_decimal(s1."FDiscountRate"),s1."FShowUnitID",(SELECT s2."FDate"
    FROM main."T_CC_StockBill" AS s2
    WHERE (s2."FID" = ?4)),t_getdate()
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE ((s1."FID" = ?5)
    AND (t_cmp_decimal(s1."FPrice",?6,318829194) > 0))
    GROUP BY s1."FItemID",s1."FShowUnitID"

select FPrice,FIncludeTaxPrice,FDiscountRate from t_LatestPrice where FSupplyID=3
  > SELECT s1."FPrice",s1."FIncludeTaxPrice",s1."FDiscountRate"
    FROM main."t_LatestPrice" AS s1
    WHERE (s1."FSupplyID" = ?1)

-- The procedure for bills that move value only

declare @m nvarchar(255) exec sp_UpdateInventoryForFLTJ @ClassTypeID=1020004,@billTypeID=2040,@FID=7,@AuditOrUnAddit=-1,@ErrorMessage=@m output select @m
  > SELECT ?1
  > SELECT ?1
  > SELECT ?1
  > SELECT t_neg_int(?1)
  > SELECT ''
  > UPDATE main."T_CC_Inventory" AS u
    SET "FBal"=q.c0
    FROM (SELECT s1.rowid AS r,t_conv(t_add_decimal(s1."FBal",s4.c8,320139914),1159992521039) AS c0
    FROM main."T_CC_Inventory" AS s1
    JOIN (SELECT s3.c0 AS c0,s3.c1 AS c1,s3.c2 AS c2,s3.c3 AS c3,s3.c4 AS c4,s3.c5 AS c5,s3.c6 AS c6,s3.c7 AS c7,t_sum_decimal(s3.c8) AS c8
    FROM (SELECT s2."FItemID" AS c0,CASE WHEN (?1 IN (1030004,1040002)) THEN s2."FSCStockID" ELSE s2."FDCStockID" END AS c1,ifnull(s2."FBatchNo",'') AS c2,s2."FAuxPropID" AS c3,s2."FKFPeriod" AS c4,t_left(ifnull(t_conv(s2."FKFDate",263883499503668),'1900-01-01'),10) AS c5,t_left(ifnull(t_conv(s2."FPeriodDate",263883499503668),'1900-01-01'),10) AS c6,s2."FBatchNoIndex" AS c7,CASE WHEN (?2 = t_neg_int(1)) THEN t_neg_decimal(ifnull(s2."FAmount",t_conv(0,60480815147))) ELSE ifnull(s2."FAmount",t_conv(0,60480815147)) END AS c8
    FROM main."T_CC_StockBillEntry" AS s2
    WHERE (s2."FID" = ?3)) AS s3
    GROUP BY s3.c0,s3.c1,s3.c2 COLLATE tsql,s3.c3,s3.c4,s3.c5 COLLATE tsql,s3.c6 COLLATE tsql,s3.c7 COLLATE tsql) AS s4
    ON ((s1."FItemID" = s4.c0)
    AND (s1."FStockID" = s4.c1)
    AND (s1."FBatchNo" = s4.c2)
    AND (s1."FAuxPropID" = s4.c3)
    AND (s1."FKFPeriod" = s4.c4)
    AND (s1."FKFDate" = s4.c5)
    AND (s1."FPeriodDate" = s4.c6)
    AND (s1."FBatchNoIndex" = s4.c7))
    GROUP BY s1.rowid) AS q
    WHERE q.r=u.rowid
  > SELECT ?1

select FBal from T_CC_Inventory order by FStockID
  > SELECT s1."FBal"
    FROM main."T_CC_Inventory" AS s1
    ORDER BY s1."FStockID"

