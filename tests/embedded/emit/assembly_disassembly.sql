-- Gates and actions

Select FStatus,FVoucherID From T_CC_ZZCX where FID=3
  > SELECT s1."FStatus",s1."FVoucherID"
    FROM main."T_CC_ZZCX" AS s1
    WHERE (s1."FID" = ?1)

Update T_CC_ZZCX set FCheckerID=16394,FCheckDate=GetDate(),FStatus=1  where FID=3
  > UPDATE main."T_CC_ZZCX" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=t_getdate(),"FStatus"=?2
    WHERE (s1."FID" = ?3)

select FCheckerID,FCheckDate,FStatus from T_CC_ZZCX
  > SELECT s1."FCheckerID",s1."FCheckDate",s1."FStatus"
    FROM main."T_CC_ZZCX" AS s1

Update T_CC_ZZCX set FCheckerID=0,FCheckDate=Null,FStatus=0  where FID=3
  > UPDATE main."T_CC_ZZCX" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=NULL,"FStatus"=?2
    WHERE (s1."FID" = ?3)

Delete FromT_CC_ZZCX where FID=3
  > error 208

select count(*) from T_CC_ZZCX
  > SELECT count(*)
    FROM main."T_CC_ZZCX" AS s1

