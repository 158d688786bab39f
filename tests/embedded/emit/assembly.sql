-- Gates, audit and the state before deletion

Select FStatus,FVoucherID,FDate,FBillerID From T_CC_ZZCX where FID=3
  > SELECT s1."FStatus",s1."FVoucherID",s1."FDate",s1."FBillerID"
    FROM main."T_CC_ZZCX" AS s1
    WHERE (s1."FID" = ?1)

Select FStatus,FVoucherID,Fdate From T_CC_ZZCX where FID=3
  > SELECT s1."FStatus",s1."FVoucherID",s1."FDate"
    FROM main."T_CC_ZZCX" AS s1
    WHERE (s1."FID" = ?1)

Update T_CC_ZZCX set FCheckerID=16394,FCheckDate=GetDate(),FStatus=1  where FID=3
  > UPDATE main."T_CC_ZZCX" AS s1
    SET "FCheckerID"=?1,"FCheckDate"=t_getdate(),"FStatus"=?2
    WHERE (s1."FID" = ?3)

update T_CC_ZZCX set FClassTypeID=1040007,FID=7
  > UPDATE main."T_CC_ZZCX" AS s1
    SET "FClassTypeID"=?1,"FID"=?2

Declare @Same int,@Year int,@Period int,@BegDate DateTime,@EndDate DateTime 
Select @Same=IsNull(FValue,0) From t_systemprofile Where FCategory='IC' And FKey='EditSelfBill' 
SELECT @Year =CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' 
SELECT @BegDate=CONVERT(DATETIME, FStartDate),@EndDate=CONVERT(DATETIME, FEndDate) FROM t_PeriodDate WHERE FYear = @Year AND FPeriod = @Period 
Select FBillNo,IsNull(FStatus,0) As FStatus,FDate,FBillerID,@Same As FSelf,@BegDate As FBegDate,@EndDate As FEndDate From T_CC_ZZCX 
Where FClassTypeID=1040007 And FID=7
  > SELECT t_conv(ifnull(s1."FValue",t_conv(?1,8596226091)),45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?2)
    AND (s1."FKey" = ?3))
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT t_conv(s1."FValue",45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?1)
    AND (s1."FKey" = ?2))
  > SELECT s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = ?1)
    AND (s1."FPeriod" = ?2))
  > SELECT s1."FBillNo",ifnull(s1."FStatus",?1),s1."FDate",s1."FBillerID",?2,?3,?4
    FROM main."T_CC_ZZCX" AS s1
    WHERE ((s1."FClassTypeID" = ?5)
    AND (s1."FID" = ?6))

