-- Before deletion

Select IsNull(FStatus,0) From t_CC_StockBill Where FClassTypeID=1040001 And FID=7
  > SELECT ifnull(s1."FStatus",?1)
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FID" = ?3))

Declare @Same int 
Select @Same=IsNull(FValue,0) From t_systemprofile Where FCategory='IC' And FKey='EditSelfBill' 
Select @Same,FBillerID From t_CC_StockBill Where FClassTypeID= 1040001And FID=7
  > SELECT t_conv(ifnull(s1."FValue",t_conv(?1,8596226091)),45096966)
    FROM main."t_SystemProfile" AS s1
    WHERE ((s1."FCategory" = ?2)
    AND (s1."FKey" = ?3))
  > SELECT ?1,s1."FBillerID"
    FROM main."T_CC_StockBill" AS s1
    WHERE ((s1."FClassTypeID" = ?2)
    AND (s1."FID" = ?3))

Set NoCount On     Declare @Year int,@Period int,@Date DateTime 
SELECT @Year = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentYear' 
SELECT @Period = CONVERT(INT, FValue) FROM t_SystemProfile WHERE FCategory = 'IC' AND FKey = 'CurrentPeriod' 
Select @Date=FDate From t_CC_StockBill Where FClassTypeID=1040001 And FID=7
SELECT Convert(DateTime,FStartDate,102),Convert(DateTime,FEndDate) From t_PeriodDate 
WHERE FYear = @Year And FPeriod = @Period And @Date>=FStartDate  -- And @Date<FEndDate 
Set NoCount Off 
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
  > SELECT s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = ?1)
    AND (s1."FPeriod" = ?2)
    AND (?3 >= s1."FStartDate"))

update T_CC_StockBill set FDate='2026-02-28 23:00:00'
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FDate"=t_conv(?1,1099566154372)

update T_CC_StockBill set FDate='2026-05-01'
  > UPDATE main."T_CC_StockBill" AS s1
    SET "FDate"=t_conv(?1,1099566154084)

-- After saving

update t_Organization set FIntent=0 where FItemID=4
  > UPDATE main."t_Organization" AS s1
    SET "FIntent"=?1
    WHERE (s1."FItemID" = ?2)

select FItemID from t_Organization where FIntent=1
  > SELECT s1."FItemID"
    FROM main."t_Organization" AS s1
    WHERE (s1."FIntent" = ?1)

-- Templates

Select 1 From T_CC_Templet  where FID=3
  > SELECT ?1
    FROM main."T_CC_Templet" AS s1
    WHERE (s1."FID" = ?2)

Delete From T_CC_Templet where FID=3
  > DELETE
    FROM main."T_CC_Templet" AS s1
    WHERE (s1."FID" = ?1)

Delete From T_CC_TempletEntry where FID=3
  > DELETE
    FROM main."T_CC_TempletEntry" AS s1
    WHERE (s1."FID" = ?1)

select FID from T_CC_TempletEntry
  > SELECT s1."FID"
    FROM main."T_CC_TempletEntry" AS s1

