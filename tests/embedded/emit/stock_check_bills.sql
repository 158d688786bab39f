-- State, audit and notes

Select FStatus,FVoucherID,FDate,FBillerID From T_CC_StockBill where FID =7
  > SELECT s1."FStatus",s1."FVoucherID",s1."FDate",s1."FBillerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE (s1."FID" = ?1)

Update T_CC_StockBill set FStatus=1,FCheckerID=16394,FCheckDate= getdate() where FID= 7

  > UPDATE main."T_CC_StockBill" AS s1
    SET "FStatus"=?1,"FCheckerID"=?2,"FCheckDate"=t_getdate()
    WHERE (s1."FID" = ?3)

select FStatus,FCheckerID,FCheckDate from T_CC_StockBill
  > SELECT s1."FStatus",s1."FCheckerID",s1."FCheckDate"
    FROM main."T_CC_StockBill" AS s1

Update T_CC_StockBill set FStatus=0,FCheckerID=0,FCheckDate=NULL where FID= 7

  > UPDATE main."T_CC_StockBill" AS s1
    SET "FStatus"=?1,"FCheckerID"=?2,"FCheckDate"=NULL
    WHERE (s1."FID" = ?3)

 Update t_CC_StockBillEntry Set FNote='first' Where FID=7And FEntryID=1
 Update t_CC_StockBillEntry Set FNote='第二' Where FID=7And FEntryID=2

  > UPDATE main."T_CC_StockBillEntry" AS s1
    SET "FNote"=?1
    WHERE ((s1."FID" = ?2)
    AND (s1."FEntryID" = ?3))
  > UPDATE main."T_CC_StockBillEntry" AS s1
    SET "FNote"=?1
    WHERE ((s1."FID" = ?2)
    AND (s1."FEntryID" = ?3))

select FID,FEntryID,FNote from T_CC_StockBillEntry order by FID,FEntryID
  > SELECT s1."FID",s1."FEntryID",s1."FNote"
    FROM main."T_CC_StockBillEntry" AS s1
    ORDER BY 1,2

 Update t_CC_StockBillEntry Set FNote='it's' Where FID=7And FEntryID=1

  > error 102

