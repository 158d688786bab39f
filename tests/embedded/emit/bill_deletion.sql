-- Gate and deletion

Select FStatus,FVoucherID From T_CC_StockBill  where FID=1
  > SELECT s1."FStatus",s1."FVoucherID"
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

Delete From T_CC_StockBill where FID=1
  > DELETE
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

Delete From T_CC_StockBillEntry where FID=1
  > DELETE
    FROM main."T_CC_StockBillEntry" AS s1
    WHERE (s1."FID" = ?1)

select count(*) from T_CC_StockBillEntry
  > SELECT count(*)
    FROM main."T_CC_StockBillEntry" AS s1

