-- Bills past their deadline

Select 'X' from t_cc_stockbill where FClassTypeID = 1020002 AND FBillTypeID IN (2011,2013) and FUnCheckAmount > 0 AND FSettleLimitDate < getdate() 
and FSupplyID=3
  > SELECT ?1
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FBillTypeID" IN (?3,?4))
    AND (t_cmp_decimal(s1."FUnCheckAmount",?5,318829194) > 0)
    AND (s1."FSettleLimitDate" < t_getdate())
    AND (s1."FSupplyID" = ?6))

Select 'X' from t_cc_stockbill where FClassTypeID = 1030002 AND FBillTypeID IN (3001,3002) and FUnCheckAmount > 0 AND FSettleLimitDate < getdate() 
and FCustID=4 and FStatus>0
  > SELECT ?1
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FBillTypeID" IN (?3,?4))
    AND (t_cmp_decimal(s1."FUnCheckAmount",?5,318829194) > 0)
    AND (s1."FSettleLimitDate" < t_getdate())
    AND (s1."FCustID" = ?6)
    AND (s1."FStatus" > ?7))

