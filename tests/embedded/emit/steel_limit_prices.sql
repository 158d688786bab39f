-- One line, price by bar code

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1 as FCoefficient,  a.FXSLimitPrice*1 as ActLimitPrice, 99/tb.FCoefficient as FPrice, 99/tb.FCoefficient - Isnull(a.FXSLimitPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FXSLimitPrice,0)>=0 And 99/tb.FCoefficient < Isnull(a.FXSLimitPrice,0)*1
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253030410),t_div_decimal(?4,s6.c0,322237056),t_sub_decimal(t_div_decimal(?5,s6.c0,322237056),t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253030410),321188506)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID") LEFT
    JOIN (SELECT CASE WHEN (s4."FCoefficient" = ?8) THEN ?9 ELSE s4."FCoefficient" END AS c0,s4."FItemID" AS c1
    FROM main."t_Barcode" AS s4
    JOIN main."t_ICItem" AS s5
    ON ((s5."FItemID" = s4."FItemID")
    AND (s4."FUnitID" = ?10))) AS s6
    ON (s2."FItemID" = s6.c1)
    WHERE ((s2."FItemID" = ?11)
    AND (s1."FUnitID" = s2."FUnitID")
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?12),?13,318829194) >= 0)
    AND (t_cmp_decimal(t_div_decimal(?14,s6.c0,322237056),t_mul_decimal(ifnull(s1."FXSLimitPrice",?15),?16,253030410),318829210) < 0))

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1 as FCoefficient,  a.FXSLimitPrice*1 as ActLimitPrice, 100/tb.FCoefficient as FPrice, 100/tb.FCoefficient - Isnull(a.FXSLimitPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FXSLimitPrice,0)>=0 And 100/tb.FCoefficient < Isnull(a.FXSLimitPrice,0)*1
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253030410),t_div_decimal(?4,s6.c0,322105984),t_sub_decimal(t_div_decimal(?5,s6.c0,322105984),t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253030410),321188505)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID") LEFT
    JOIN (SELECT CASE WHEN (s4."FCoefficient" = ?8) THEN ?9 ELSE s4."FCoefficient" END AS c0,s4."FItemID" AS c1
    FROM main."t_Barcode" AS s4
    JOIN main."t_ICItem" AS s5
    ON ((s5."FItemID" = s4."FItemID")
    AND (s4."FUnitID" = ?10))) AS s6
    ON (s2."FItemID" = s6.c1)
    WHERE ((s2."FItemID" = ?11)
    AND (s1."FUnitID" = s2."FUnitID")
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?12),?13,318829194) >= 0)
    AND (t_cmp_decimal(t_div_decimal(?14,s6.c0,322105984),t_mul_decimal(ifnull(s1."FXSLimitPrice",?15),?16,253030410),318829209) < 0))

update t_Barcode set FCoefficient=0
  > UPDATE main."t_Barcode" AS s1
    SET "FCoefficient"=?1

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1 as FCoefficient,  a.FXSLimitPrice*1 as ActLimitPrice, 9.5/tb.FCoefficient as FPrice, 9.5/tb.FCoefficient - Isnull(a.FXSLimitPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FXSLimitPrice,0)>=0 And 9.5/tb.FCoefficient < Isnull(a.FXSLimitPrice,0)*1
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253030410),t_div_decimal(?4,s6.c0,322368129),t_sub_decimal(t_div_decimal(?5,s6.c0,322368129),t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253030410),321188507)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID") LEFT
    JOIN (SELECT CASE WHEN (s4."FCoefficient" = ?8) THEN ?9 ELSE s4."FCoefficient" END AS c0,s4."FItemID" AS c1
    FROM main."t_Barcode" AS s4
    JOIN main."t_ICItem" AS s5
    ON ((s5."FItemID" = s4."FItemID")
    AND (s4."FUnitID" = ?10))) AS s6
    ON (s2."FItemID" = s6.c1)
    WHERE ((s2."FItemID" = ?11)
    AND (s1."FUnitID" = s2."FUnitID")
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?12),?13,318829194) >= 0)
    AND (t_cmp_decimal(t_div_decimal(?14,s6.c0,322368129),t_mul_decimal(ifnull(s1."FXSLimitPrice",?15),?16,253030410),318829211) < 0))

-- One line against average cost and latest price

Select 1 as FIndex, b.FName, a.FPrice*2 /tb.FCoefficient as LimitPrice,1 as FCoefficient,  a.FPrice*2*1 /tb.FCoefficient as ActLimitPrice, 9 /tb.FCoefficient as FPrice, 9 - a.FPrice*2*1 as DiffPrice From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID where a.FItemID=101 and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On a.FItemID=b.FItemID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 And a.FPrice*2>=0 And 9 < a.FPrice*2*1
  > SELECT ?1,s4."FName",t_div_decimal(t_mul_decimal(s3.c1,?2,319614982),s7.c0,319615622),?3,t_div_decimal(t_mul_decimal(t_mul_decimal(s3.c1,?4,319614982),?5,319614982),s7.c0,319615622),t_div_decimal(?6,s7.c0,322368128),t_sub_decimal(?7,t_mul_decimal(t_mul_decimal(s3.c1,?8,319614982),?9,319614982),319615360)
    FROM (SELECT s1."FItemID" AS c0,CASE WHEN (t_sum_decimal(s1."FQty") = ?13) THEN ?14 ELSE t_div_decimal(t_sum_decimal(s1."FBal"),t_sum_decimal(s1."FQty"),319615626) END AS c1
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_Stock" AS s2
    ON (s1."FStockID" = s2."FItemID")
    WHERE ((s1."FItemID" IN (SELECT s8."FItemID"
    FROM main."t_ICItem" AS s8
    WHERE (s8."FItemID" = ?15)))
    AND (s1."FItemID" = ?16)
    AND (s2."FTypeID" <> ?17))
    GROUP BY s1."FItemID") AS s3
    JOIN main."t_ICItem" AS s4
    ON (s3.c0 = s4."FItemID") LEFT
    JOIN (SELECT CASE WHEN (s5."FCoefficient" = ?10) THEN ?11 ELSE s5."FCoefficient" END AS c0,s5."FItemID" AS c1
    FROM main."t_Barcode" AS s5
    JOIN main."t_ICItem" AS s6
    ON ((s6."FItemID" = s5."FItemID")
    AND (s5."FUnitID" = ?12))) AS s7
    ON (s4."FItemID" = s7.c1)
    WHERE ((s4."FItemID" = ?15)
    AND (t_cmp_decimal(t_mul_decimal(s3.c1,?18,319614982),?19,318828934) >= 0)
    AND (t_cmp_decimal(?20,t_mul_decimal(t_mul_decimal(s3.c1,?21,319614982),?22,319614982),318828934) < 0))

Select 1 as FIndex, b.FName,a.FLatestInPrice as LimitPrice,1 as FCoefficient,  a.FLatestInPrice*1 as ActLimitPrice, 7 as FPrice, 7/tb.FCoefficient - Isnull(a.FLatestInPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FLatestInPrice,0)>=0 And 7 < Isnull(a.FLatestInPrice,0)*1
  > SELECT ?1,s2."FName",s1."FLatestInPrice",?2,t_mul_decimal(s1."FLatestInPrice",?3,253030410),?4,t_sub_decimal(t_div_decimal(?5,s6.c0,322368128),t_mul_decimal(ifnull(s1."FLatestInPrice",?6),?7,253030410),321188507)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID") LEFT
    JOIN (SELECT CASE WHEN (s4."FCoefficient" = ?8) THEN ?9 ELSE s4."FCoefficient" END AS c0,s4."FItemID" AS c1
    FROM main."t_Barcode" AS s4
    JOIN main."t_ICItem" AS s5
    ON ((s5."FItemID" = s4."FItemID")
    AND (s4."FUnitID" = ?10))) AS s6
    ON (s2."FItemID" = s6.c1)
    WHERE ((s2."FItemID" = ?11)
    AND (s1."FUnitID" = s2."FUnitID")
    AND (t_cmp_decimal(ifnull(s1."FLatestInPrice",?12),?13,318829194) >= 0)
    AND (t_cmp_decimal(?14,t_mul_decimal(ifnull(s1."FLatestInPrice",?15),?16,253030410),318829194) < 0))

-- The lowest price in line mode is no statement

Select 1 as FIndex, b.FName,a.FLowestInPrice as LimitPrice,1 as FCoefficient,  a.FLowestInPrice*1 as ActLimitPrice, 7 as FPrice, 7/tb.FCoefficient - Isnull(a.FLowestInPrice,0)*1 as DiffPrice  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FLowestInPrice,0)>=0 And 7 < Isnull(a.FLowestInPrice,0)*1
  > error 156

-- One line against the purchase limit

Select 1 as FIndex, b.FName, a.FCGLimitPrice as LimitPrice, 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, 201/tb.FCoefficient as FPrice,201/tb.FCoefficient - Isnull(a.FCGLimitPrice,0) as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID  inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID  left join (select (case when a.FCoefficient=0 then 1 else a.FCoefficient end )as FCoefficient,a.FItemID from t_barcode a inner join t_icitem  b on b.FItemID =a.FItemID and a.FIndex=1 and a.FUnitID= 12 ) tb on b.FItemID=tb.FItemID 
Where b.FItemID=101 and a.FUnitID=b.FUnitID And Isnull(a.FCGLimitPrice,0)>0 And 201/tb.FCoefficient > Isnull(a.FCGLimitPrice,0)  
  > SELECT ?1,s2."FName",s1."FCGLimitPrice",?2,t_mul_decimal(s1."FCGLimitPrice",?3,253030410),t_div_decimal(?4,s6.c0,322105984),t_sub_decimal(t_div_decimal(?5,s6.c0,322105984),ifnull(s1."FCGLimitPrice",?6),321450649)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID") LEFT
    JOIN (SELECT CASE WHEN (s4."FCoefficient" = ?7) THEN ?8 ELSE s4."FCoefficient" END AS c0,s4."FItemID" AS c1
    FROM main."t_Barcode" AS s4
    JOIN main."t_ICItem" AS s5
    ON ((s5."FItemID" = s4."FItemID")
    AND (s4."FIndex" = ?9)
    AND (s4."FUnitID" = ?10))) AS s6
    ON (s2."FItemID" = s6.c1)
    WHERE ((s2."FItemID" = ?11)
    AND (s1."FUnitID" = s2."FUnitID")
    AND (t_cmp_decimal(ifnull(s1."FCGLimitPrice",?12),?13,318829194) > 0)
    AND (t_cmp_decimal(t_div_decimal(?14,s6.c0,322105984),ifnull(s1."FCGLimitPrice",?15),318829209) > 0))

-- A bill

Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.FBaseprice,0) as Fprice, Isnull(a.FBaseprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice From t_cc_stockbillentry a inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid Where Isnull(a.FBaseprice, 0)>=0 and Isnull(a.FBaseprice, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1)  And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0 And a.FID=7 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FXSLimitPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FXSLimitPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FBasePrice",?5),t_sub_decimal(ifnull(s1."FBasePrice",?6),t_mul_decimal(ifnull(s3."FXSLimitPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    JOIN main."t_Organization" AS s5
    ON (s2."FCustID" = s5."FItemID") LEFT
    JOIN main."t_ClientType" AS s6
    ON (s5."FTypeID" = s6."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FBasePrice",?9),?10,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FBasePrice",?11),t_mul_decimal(ifnull(s3."FXSLimitPrice",?12),ifnull(s6."FCoefficient",?13),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s3."FXSLimitPrice",?14),ifnull(s6."FCoefficient",?15),319615626),?16,318828934) > 0)
    AND (s1."FID" = ?17))
    ORDER BY 1

Select a.Findex, c.Fname,Isnull(b.FLatestInPrice,0) as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.FBaseprice,0)-Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice From t_cc_stockbillentry a inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLatestInPrice, 0) * Isnull(f.FCoefficient, 1)  And Isnull(b.FLatestInPrice, 0) * Isnull(f.FCoefficient, 1) >0 And a.FID=7 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FLatestInPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FLatestInPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FBasePrice",?6),t_mul_decimal(ifnull(s3."FLatestInPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    JOIN main."t_Organization" AS s5
    ON (s2."FCustID" = s5."FItemID") LEFT
    JOIN main."t_ClientType" AS s6
    ON (s5."FTypeID" = s6."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?9),?10,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?11),t_mul_decimal(ifnull(s3."FLatestInPrice",?12),ifnull(s6."FCoefficient",?13),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s3."FLatestInPrice",?14),ifnull(s6."FCoefficient",?15),319615626),?16,318828934) > 0)
    AND (s1."FID" = ?17))
    ORDER BY 1

Select a.Findex, c.Fname,Isnull(b.FLowestInPrice,0) as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.FBaseprice,0) as Fprice, Isnull(a.FBaseprice,0)-Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice From t_cc_stockbillentry a inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLowestInPrice, 0) * Isnull(f.FCoefficient, 1)  And Isnull(b.FLowestInPrice, 0) * Isnull(f.FCoefficient, 1) >0 And a.FID=7 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FLowestInPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FLowestInPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FBasePrice",?5),t_sub_decimal(ifnull(s1."FBasePrice",?6),t_mul_decimal(ifnull(s3."FLowestInPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    JOIN main."t_Organization" AS s5
    ON (s2."FCustID" = s5."FItemID") LEFT
    JOIN main."t_ClientType" AS s6
    ON (s5."FTypeID" = s6."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?9),?10,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?11),t_mul_decimal(ifnull(s3."FLowestInPrice",?12),ifnull(s6."FCoefficient",?13),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s3."FLowestInPrice",?14),ifnull(s6."FCoefficient",?15),319615626),?16,318828934) > 0)
    AND (s1."FID" = ?17))
    ORDER BY 1

Select a.Findex, c.Fname,b.FPrice*a.FCoefficient as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.FBaseprice,0) as Fprice,  Isnull(a.FBaseprice,0)-b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as DiffPrice From t_cc_stockbillentry a inner join t_cc_stockbill e on a.Fid=e.Fid Inner Join (select aa.FItemID,case when sum(aa.FQty)=0 then 0 Else sum(aa.FBal)/sum(aa.FQty) End as FPrice from T_CC_Inventory aa inner join t_stock bb on aa.FStockID=bb.FItemID where bb.FTypeID<>502 group by aa.FItemID) b On a.FitemID=b.FItemID Inner Join t_icItem c On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid Where Isnull(a.FBaseprice, 0)>=0 and Isnull(a.FBaseprice, 0) < Isnull(b.FBasePrice, 0)*a.FCoefficient * Isnull(f.FCoefficient, 1)  And b.FBasePrice*Isnull(f.FCoefficient,1) >0 And a.FID=7 order by a.Findex
  > error 207

Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient, b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.FBaseprice, 0) as FPrice, IsNull(a.FBaseprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From t_cc_stockbillentry a Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID  Where IsNull(a.FBaseprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0  And a.FID=8 order by a.Findex
  > SELECT s1."FIndex",s3."FName",s2."FCGLimitPrice",?1,t_mul_decimal(s2."FCGLimitPrice",?2,253030410),ifnull(s1."FBasePrice",?3),t_sub_decimal(ifnull(s1."FBasePrice",?4),ifnull(s2."FCGLimitPrice",?5),244642442)
    FROM main."T_CC_StockBillEntry" AS s1 LEFT
    JOIN main."T_ItemPrice" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FUnitID" = s2."FUnitID"))
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FBasePrice",?6),ifnull(s2."FCGLimitPrice",?7),318829194) > 0)
    AND (t_cmp_decimal(ifnull(s2."FCGLimitPrice",?8),?9,318829194) > 0)
    AND (s1."FID" = ?10))
    ORDER BY 1

