-- The coefficient of a customer

select Isnull(f.FCoefficient,1) as FCoefficient from t_organization d left join t_ClientType f on d.FTypeID=f.Fitemid where d.FItemID=4
  > SELECT ifnull(s2."FCoefficient",?1)
    FROM main."t_Organization" AS s1 LEFT
    JOIN main."t_ClientType" AS s2
    ON (s1."FTypeID" = s2."FItemID")
    WHERE (s1."FItemID" = ?2)

-- One line against the sales limits

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,0.9 as FCoefficient,  a.FXSLimitPrice*0.9 as ActLimitPrice, 8.99as FPrice, 8.99 - Isnull(a.FXSLimitPrice,0)*0.9 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FXSLimitPrice,0)>=0 And 8.99 < Isnull(a.FXSLimitPrice,0)*0.9
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253161546),?4,t_sub_decimal(?5,t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253161546),261550786)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?8)
    AND (s1."FUnitID" = ?9)
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(?12,t_mul_decimal(ifnull(s1."FXSLimitPrice",?13),?14,253161546),318829259) < 0))

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,0.9 as FCoefficient,  a.FXSLimitPrice*0.9 as ActLimitPrice, 9as FPrice, 9 - Isnull(a.FXSLimitPrice,0)*0.9 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FXSLimitPrice,0)>=0 And 9 < Isnull(a.FXSLimitPrice,0)*0.9
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253161546),?4,t_sub_decimal(?5,t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253161546),261550784)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?8)
    AND (s1."FUnitID" = ?9)
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(?12,t_mul_decimal(ifnull(s1."FXSLimitPrice",?13),?14,253161546),318829259) < 0))

Select 3 as FIndex, b.FName,a.FLatestInPrice as LimitPrice,1 as FCoefficient,  a.FLatestInPrice*1 as ActLimitPrice, 7.5as FPrice, 7.5 - Isnull(a.FLatestInPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FLatestInPrice,0)>=0 And 7.5 < Isnull(a.FLatestInPrice,0)*1
  > SELECT ?1,s2."FName",s1."FLatestInPrice",?2,t_mul_decimal(s1."FLatestInPrice",?3,253030410),?4,t_sub_decimal(?5,t_mul_decimal(ifnull(s1."FLatestInPrice",?6),?7,253030410),261419649)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?8)
    AND (s1."FUnitID" = ?9)
    AND (t_cmp_decimal(ifnull(s1."FLatestInPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(?12,t_mul_decimal(ifnull(s1."FLatestInPrice",?13),?14,253030410),318829194) < 0))

Select 3 as FIndex, b.FName,a.FLowestInPrice as LimitPrice,1 as FCoefficient,  a.FLowestInPrice*1 as ActLimitPrice, 7.5as FPrice, 7.5 - Isnull(a.FLowestInPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FLowestInPrice,0)>=0 And 7.5 < Isnull(a.FLowestInPrice,0)*1
  > SELECT ?1,s2."FName",s1."FLowestInPrice",?2,t_mul_decimal(s1."FLowestInPrice",?3,253030410),?4,t_sub_decimal(?5,t_mul_decimal(ifnull(s1."FLowestInPrice",?6),?7,253030410),261419649)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?8)
    AND (s1."FUnitID" = ?9)
    AND (t_cmp_decimal(ifnull(s1."FLowestInPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(?12,t_mul_decimal(ifnull(s1."FLowestInPrice",?13),?14,253030410),318829194) < 0))

Select 1 as FIndex, b.FName,a.FXSLimitPrice as LimitPrice,1 as FCoefficient,  a.FXSLimitPrice*1 as ActLimitPrice, 0as FPrice, 0 - Isnull(a.FXSLimitPrice,0)*1 as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=12 And Isnull(a.FXSLimitPrice,0)>=0 And 0 < Isnull(a.FXSLimitPrice,0)*1
  > SELECT ?1,s2."FName",s1."FXSLimitPrice",?2,t_mul_decimal(s1."FXSLimitPrice",?3,253030410),?4,t_sub_decimal(?5,t_mul_decimal(ifnull(s1."FXSLimitPrice",?6),?7,253030410),261419648)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?8)
    AND (s1."FUnitID" = ?9)
    AND (t_cmp_decimal(ifnull(s1."FXSLimitPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(?12,t_mul_decimal(ifnull(s1."FXSLimitPrice",?13),?14,253030410),318829194) < 0))

-- One line against the average cost

Select 1 as FIndex, b.FName, a.FPrice*2 as LimitPrice,1 as FCoefficient,  a.FPrice*2*1 as ActLimitPrice, 9.5as FPrice, 9.5 - a.FPrice*2*1 as DiffPrice From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID where a.FItemID=101 and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On a.FItemID=b.FItemID Where b.FItemID=101 And a.FPrice*2>=0 And 9.5 < a.FPrice*2*1
  > SELECT ?1,s4."FName",t_mul_decimal(s3.c1,?2,319614982),?3,t_mul_decimal(t_mul_decimal(s3.c1,?4,319614982),?5,319614982),?6,t_sub_decimal(?7,t_mul_decimal(t_mul_decimal(s3.c1,?8,319614982),?9,319614982),319615361)
    FROM (SELECT s1."FItemID" AS c0,CASE WHEN (t_sum_decimal(s1."FQty") = ?10) THEN ?11 ELSE t_div_decimal(t_sum_decimal(s1."FBal"),t_sum_decimal(s1."FQty"),319615626) END AS c1
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_Stock" AS s2
    ON (s1."FStockID" = s2."FItemID")
    WHERE ((s1."FItemID" IN (SELECT s5."FItemID"
    FROM main."t_ICItem" AS s5
    WHERE (s5."FItemID" = ?12)))
    AND (s1."FItemID" = ?13)
    AND (s2."FTypeID" <> ?14))
    GROUP BY s1."FItemID") AS s3
    JOIN main."t_ICItem" AS s4
    ON (s3.c0 = s4."FItemID")
    WHERE ((s4."FItemID" = ?12)
    AND (t_cmp_decimal(t_mul_decimal(s3.c1,?15,319614982),?16,318828934) >= 0)
    AND (t_cmp_decimal(?17,t_mul_decimal(t_mul_decimal(s3.c1,?18,319614982),?19,319614982),318828934) < 0))

Select 1 as FIndex, b.FName, a.FPrice*2 as LimitPrice,1 as FCoefficient,  a.FPrice*2*1 as ActLimitPrice, 10as FPrice, 10 - a.FPrice*2*1 as DiffPrice From (select a.FItemID,case when sum(a.FQty)=0 then 0 Else sum(a.FBal)/sum(a.FQty) End as FPrice from T_CC_Inventory a inner join t_stock b on FStockID=b.FItemID where a.FItemID=101 and b.FTypeID<>502 group by a.FItemID) a Inner Join t_icItem b On a.FItemID=b.FItemID Where b.FItemID=101 And a.FPrice*2>=0 And 10 < a.FPrice*2*1
  > SELECT ?1,s4."FName",t_mul_decimal(s3.c1,?2,319614982),?3,t_mul_decimal(t_mul_decimal(s3.c1,?4,319614982),?5,319614982),?6,t_sub_decimal(?7,t_mul_decimal(t_mul_decimal(s3.c1,?8,319614982),?9,319614982),319615360)
    FROM (SELECT s1."FItemID" AS c0,CASE WHEN (t_sum_decimal(s1."FQty") = ?10) THEN ?11 ELSE t_div_decimal(t_sum_decimal(s1."FBal"),t_sum_decimal(s1."FQty"),319615626) END AS c1
    FROM main."T_CC_Inventory" AS s1
    JOIN main."t_Stock" AS s2
    ON (s1."FStockID" = s2."FItemID")
    WHERE ((s1."FItemID" IN (SELECT s5."FItemID"
    FROM main."t_ICItem" AS s5
    WHERE (s5."FItemID" = ?12)))
    AND (s1."FItemID" = ?13)
    AND (s2."FTypeID" <> ?14))
    GROUP BY s1."FItemID") AS s3
    JOIN main."t_ICItem" AS s4
    ON (s3.c0 = s4."FItemID")
    WHERE ((s4."FItemID" = ?12)
    AND (t_cmp_decimal(t_mul_decimal(s3.c1,?15,319614982),?16,318828934) >= 0)
    AND (t_cmp_decimal(?17,t_mul_decimal(t_mul_decimal(s3.c1,?18,319614982),?19,319614982),318828934) < 0))

-- One line against the purchase limit

Select 4 as FIndex, b.FName, a.FCGLimitPrice as LimitPrice, 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, 20.5as FPrice,20.5 - Isnull(a.FCGLimitPrice,0) as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID  inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FCGLimitPrice,0)>0 And 20.5 > Isnull(a.FCGLimitPrice,0) 
  > SELECT ?1,s2."FName",s1."FCGLimitPrice",?2,t_mul_decimal(s1."FCGLimitPrice",?3,253030410),?4,t_sub_decimal(?5,ifnull(s1."FCGLimitPrice",?6),244642433)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?7)
    AND (s1."FUnitID" = ?8)
    AND (t_cmp_decimal(ifnull(s1."FCGLimitPrice",?9),?10,318829194) > 0)
    AND (t_cmp_decimal(?11,ifnull(s1."FCGLimitPrice",?12),318829194) > 0))

Select 4 as FIndex, b.FName, a.FCGLimitPrice as LimitPrice, 1 as FCoefficient, a.FCGLimitPrice*1 as ActLimitPrice, 20as FPrice,20 - Isnull(a.FCGLimitPrice,0) as DiffPrice From T_ItemPrice a Inner Join t_icItem b On a.FItemID=b.FItemID  inner join t_MeasureUnit c on a.FUnitID=c.FMeasureUnitID Where b.FItemID=101 and a.FUnitID=11 And Isnull(a.FCGLimitPrice,0)>0 And 20 > Isnull(a.FCGLimitPrice,0) 
  > SELECT ?1,s2."FName",s1."FCGLimitPrice",?2,t_mul_decimal(s1."FCGLimitPrice",?3,253030410),?4,t_sub_decimal(?5,ifnull(s1."FCGLimitPrice",?6),244642432)
    FROM main."T_ItemPrice" AS s1
    JOIN main."t_ICItem" AS s2
    ON (s1."FItemID" = s2."FItemID")
    JOIN main."t_MeasureUnit" AS s3
    ON (s1."FUnitID" = s3."FMeasureUnitID")
    WHERE ((s2."FItemID" = ?7)
    AND (s1."FUnitID" = ?8)
    AND (t_cmp_decimal(ifnull(s1."FCGLimitPrice",?9),?10,318829194) > 0)
    AND (t_cmp_decimal(?11,ifnull(s1."FCGLimitPrice",?12),318829194) > 0))

-- A bill against the sales limits

Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice, Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=7
 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FXSLimitPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FXSLimitPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FPrice",?6),t_mul_decimal(ifnull(s3."FXSLimitPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FShowUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    JOIN main."t_Organization" AS s5
    ON (s2."FCustID" = s5."FItemID") LEFT
    JOIN main."t_ClientType" AS s6
    ON (s5."FTypeID" = s6."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?9),?10,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?11),t_mul_decimal(ifnull(s3."FXSLimitPrice",?12),ifnull(s6."FCoefficient",?13),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s3."FXSLimitPrice",?14),ifnull(s6."FCoefficient",?15),319615626),?16,318828934) > 0)
    AND (s1."FID" = ?17))
    ORDER BY 1

Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice, Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_stock ts on a.FSCStockID = ts.FItemID AND ts.FTypeID <> 502  inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=7
 order by a.Findex
  > SELECT s1."FIndex",s5."FName",ifnull(s4."FXSLimitPrice",?1),ifnull(s7."FCoefficient",?2),t_mul_decimal(ifnull(s4."FXSLimitPrice",?3),ifnull(s7."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FPrice",?6),t_mul_decimal(ifnull(s4."FXSLimitPrice",?7),ifnull(s7."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_Stock" AS s2
    ON ((s1."FSCStockID" = s2."FItemID")
    AND (s2."FTypeID" <> ?9))
    JOIN main."T_CC_StockBill" AS s3
    ON (s1."FID" = s3."FID") LEFT
    JOIN main."T_ItemPrice" AS s4
    ON ((s1."FItemID" = s4."FItemID")
    AND (s1."FShowUnitID" = s4."FUnitID"))
    JOIN main."t_ICItem" AS s5
    ON (s1."FItemID" = s5."FItemID")
    JOIN main."t_Organization" AS s6
    ON (s3."FCustID" = s6."FItemID") LEFT
    JOIN main."t_ClientType" AS s7
    ON (s6."FTypeID" = s7."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?12),t_mul_decimal(ifnull(s4."FXSLimitPrice",?13),ifnull(s7."FCoefficient",?14),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s4."FXSLimitPrice",?15),ifnull(s7."FCoefficient",?16),319615626),?17,318828934) > 0)
    AND (s1."FID" = ?18))
    ORDER BY 1

Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice, Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.FPriceDiscount,0) as Fprice, Isnull(a.FPriceDiscount,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_stock ts on a.FSCStockID = ts.FItemID AND ts.FTypeID <> 502  inner join t_cc_stockbill e on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.FPriceDiscount, 0)>=0 and Isnull(a.FPriceDiscount, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=7
 order by a.Findex
  > SELECT s1."FIndex",s5."FName",ifnull(s4."FXSLimitPrice",?1),ifnull(s7."FCoefficient",?2),t_mul_decimal(ifnull(s4."FXSLimitPrice",?3),ifnull(s7."FCoefficient",?4),319615626),ifnull(s1."FPriceDiscount",?5),t_sub_decimal(ifnull(s1."FPriceDiscount",?6),t_mul_decimal(ifnull(s4."FXSLimitPrice",?7),ifnull(s7."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_Stock" AS s2
    ON ((s1."FSCStockID" = s2."FItemID")
    AND (s2."FTypeID" <> ?9))
    JOIN main."T_CC_StockBill" AS s3
    ON (s1."FID" = s3."FID") LEFT
    JOIN main."T_ItemPrice" AS s4
    ON ((s1."FItemID" = s4."FItemID")
    AND (s1."FShowUnitID" = s4."FUnitID"))
    JOIN main."t_ICItem" AS s5
    ON (s1."FItemID" = s5."FItemID")
    JOIN main."t_Organization" AS s6
    ON (s3."FCustID" = s6."FItemID") LEFT
    JOIN main."t_ClientType" AS s7
    ON (s6."FTypeID" = s7."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPriceDiscount",?10),?11,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPriceDiscount",?12),t_mul_decimal(ifnull(s4."FXSLimitPrice",?13),ifnull(s7."FCoefficient",?14),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s4."FXSLimitPrice",?15),ifnull(s7."FCoefficient",?16),319615626),?17,318828934) > 0)
    AND (s1."FID" = ?18))
    ORDER BY 1

Select a.Findex, c.Fname,Isnull(b.FLatestInPrice,0) as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FLatestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_cc_stockbill e
 on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLatestInPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FLatestInPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=7
 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FLatestInPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FLatestInPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FPrice",?6),t_mul_decimal(ifnull(s3."FLatestInPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FShowUnitID" = s3."FUnitID"))
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

Select a.Findex, c.Fname,Isnull(b.FLowestInPrice,0) as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FLowestInPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_cc_stockbill e
 on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FLowestInPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FLowestInPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=8
 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FLowestInPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FLowestInPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FPrice",?6),t_mul_decimal(ifnull(s3."FLowestInPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FShowUnitID" = s3."FUnitID"))
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

Select a.Findex, c.Fname,Isnull(b.FXSLimitPrice,0) as LimitPrice, Isnull(f.FCoefficient,1) as FCoefficient, Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice, Isnull(a.Fprice,0)-Isnull(b.FXSLimitPrice,0)*Isnull(f.FCoefficient,1) as DiffPrice
 From t_xs_orderentry a  inner join t_xs_order e on a.Fid=e.Fid Left Outer Join T_ItemPrice b
 On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) 
 And Isnull(b.FXSLimitPrice, 0) * Isnull(f.FCoefficient, 1) >0
 And a.FID=7
 order by a.Findex
  > SELECT s1."FIndex",s4."FName",ifnull(s3."FXSLimitPrice",?1),ifnull(s6."FCoefficient",?2),t_mul_decimal(ifnull(s3."FXSLimitPrice",?3),ifnull(s6."FCoefficient",?4),319615626),ifnull(s1."FPrice",?5),t_sub_decimal(ifnull(s1."FPrice",?6),t_mul_decimal(ifnull(s3."FXSLimitPrice",?7),ifnull(s6."FCoefficient",?8),319615626),319615370)
    FROM main."t_XS_OrderEntry" AS s1
    JOIN main."t_XS_Order" AS s2
    ON (s1."FID" = s2."FID") LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FShowUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    JOIN main."t_Organization" AS s5
    ON (s2."FCustID" = s5."FItemID") LEFT
    JOIN main."t_ClientType" AS s6
    ON (s5."FTypeID" = s6."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?9),?10,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?11),t_mul_decimal(ifnull(s3."FXSLimitPrice",?12),ifnull(s6."FCoefficient",?13),319615626),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(ifnull(s3."FXSLimitPrice",?14),ifnull(s6."FCoefficient",?15),319615626),?16,318828934) > 0)
    AND (s1."FID" = ?17))
    ORDER BY 1

-- A bill against the average cost

Select a.Findex, c.Fname,b.FPrice*a.FCoefficient as LimitPrice , Isnull(f.FCoefficient,1) as FCoefficient, b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as ActLimitPrice,Isnull(a.Fprice,0) as Fprice,  Isnull(a.Fprice,0)-b.FPrice*a.FCoefficient*Isnull(f.FCoefficient,1) as DiffPrice
 From t_cc_stockbillentry a  inner join t_cc_stockbill e
 on a.Fid=e.Fid Inner Join (select aa.FItemID,case when sum(aa.FQty)=0 then 0 Else sum(aa.FBal)/sum(aa.FQty) End as FPrice from T_CC_Inventory aa inner join t_stock bb on aa.FStockID=bb.FItemID where bb.FTypeID<>502 group by aa.FItemID) b
 On a.FitemID=b.FItemID Inner Join t_icItem c
 On a.FitemID=c.FItemID Inner Join t_organization d On e.FCustID=d.FItemID
 Left Outer Join t_ClientType f on d.FTypeID=f.Fitemid
 Where Isnull(a.Fprice, 0)>=0 and Isnull(a.Fprice, 0) < Isnull(b.FPrice, 0)*a.FCoefficient * Isnull(f.FCoefficient, 1) 
 And b.FPrice*Isnull(f.FCoefficient,1) >0
 And a.FID=8
 order by a.Findex
  > SELECT s1."FIndex",s6."FName",t_mul_decimal(s5.c1,s1."FCoefficient",319615622),ifnull(s8."FCoefficient",?1),t_mul_decimal(t_mul_decimal(s5.c1,s1."FCoefficient",319615622),ifnull(s8."FCoefficient",?2),319615622),ifnull(s1."FPrice",?3),t_sub_decimal(ifnull(s1."FPrice",?4),t_mul_decimal(t_mul_decimal(s5.c1,s1."FCoefficient",319615622),ifnull(s8."FCoefficient",?5),319615622),319615370)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."T_CC_StockBill" AS s2
    ON (s1."FID" = s2."FID")
    JOIN (SELECT s3."FItemID" AS c0,CASE WHEN (t_sum_decimal(s3."FQty") = ?6) THEN ?7 ELSE t_div_decimal(t_sum_decimal(s3."FBal"),t_sum_decimal(s3."FQty"),319615626) END AS c1
    FROM main."T_CC_Inventory" AS s3
    JOIN main."t_Stock" AS s4
    ON (s3."FStockID" = s4."FItemID")
    WHERE ((s3."FItemID" IN (SELECT s9."FItemID"
    FROM main."T_CC_StockBillEntry" AS s9
    WHERE ((t_cmp_decimal(ifnull(s9."FPrice",?8),?9,318829194) >= 0)
    AND (s9."FID" = ?10))))
    AND (s4."FTypeID" <> ?11))
    GROUP BY s3."FItemID") AS s5
    ON (s1."FItemID" = s5.c0)
    JOIN main."t_ICItem" AS s6
    ON (s1."FItemID" = s6."FItemID")
    JOIN main."t_Organization" AS s7
    ON (s2."FCustID" = s7."FItemID") LEFT
    JOIN main."t_ClientType" AS s8
    ON (s7."FTypeID" = s8."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?8),?9,318829194) >= 0)
    AND (t_cmp_decimal(ifnull(s1."FPrice",?12),t_mul_decimal(t_mul_decimal(ifnull(s5.c1,?13),s1."FCoefficient",319615622),ifnull(s8."FCoefficient",?14),319615622),318828938) < 0)
    AND (t_cmp_decimal(t_mul_decimal(s5.c1,ifnull(s8."FCoefficient",?15),319615622),?16,318828934) > 0)
    AND (s1."FID" = ?10))
    ORDER BY 1

-- A bill against the purchase limit

Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient, b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.Fprice, 0) as FPrice, IsNull(a.Fprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From t_cc_stockbillentry AS a  Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID  Where IsNull(a.Fprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0  And a.FID=8 order by a.Findex
  > SELECT s1."FIndex",s3."FName",s2."FCGLimitPrice",?1,t_mul_decimal(s2."FCGLimitPrice",?2,253030410),ifnull(s1."FPrice",?3),t_sub_decimal(ifnull(s1."FPrice",?4),ifnull(s2."FCGLimitPrice",?5),244642442)
    FROM main."T_CC_StockBillEntry" AS s1 LEFT
    JOIN main."T_ItemPrice" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FShowUnitID" = s2."FUnitID"))
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?6),ifnull(s2."FCGLimitPrice",?7),318829194) > 0)
    AND (t_cmp_decimal(ifnull(s2."FCGLimitPrice",?8),?9,318829194) > 0)
    AND (s1."FID" = ?10))
    ORDER BY 1

Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient, b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.Fprice, 0) as FPrice, IsNull(a.Fprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From t_cc_stockbillentry AS a  inner join t_stock ts on a.FSCStockID = ts.FItemID AND ts.FTypeID <> 502  Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID  Where IsNull(a.Fprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0  And a.FID=8 order by a.Findex
  > SELECT s1."FIndex",s4."FName",s3."FCGLimitPrice",?1,t_mul_decimal(s3."FCGLimitPrice",?2,253030410),ifnull(s1."FPrice",?3),t_sub_decimal(ifnull(s1."FPrice",?4),ifnull(s3."FCGLimitPrice",?5),244642442)
    FROM main."T_CC_StockBillEntry" AS s1
    JOIN main."t_Stock" AS s2
    ON ((s1."FSCStockID" = s2."FItemID")
    AND (s2."FTypeID" <> ?6)) LEFT
    JOIN main."T_ItemPrice" AS s3
    ON ((s1."FItemID" = s3."FItemID")
    AND (s1."FShowUnitID" = s3."FUnitID"))
    JOIN main."t_ICItem" AS s4
    ON (s1."FItemID" = s4."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?7),ifnull(s3."FCGLimitPrice",?8),318829194) > 0)
    AND (t_cmp_decimal(ifnull(s3."FCGLimitPrice",?9),?10,318829194) > 0)
    AND (s1."FID" = ?11))
    ORDER BY 1

Select  a.Findex,c.Fname, b.FCGLimitPrice as LimitPrice,1 as FCoefficient, b.FCGLimitPrice*1 as ActLimitPrice,IsNull(a.Fprice, 0) as FPrice, IsNull(a.Fprice, 0) - Isnull(b.FCGLimitPrice,0) as DiffPrice From t_cg_orderentry AS a  Left Outer Join T_ItemPrice b On a.FitemID=b.FItemID and a.FShowUnitID=b.FUnitID Inner Join t_icItem c On a.FitemID=c.FItemID  Where IsNull(a.Fprice, 0) >  Isnull(b.FCGLimitPrice,0) And Isnull(b.FCGLimitPrice,0)>0  And a.FID=8 order by a.Findex
  > SELECT s1."FIndex",s3."FName",s2."FCGLimitPrice",?1,t_mul_decimal(s2."FCGLimitPrice",?2,253030410),ifnull(s1."FPrice",?3),t_sub_decimal(ifnull(s1."FPrice",?4),ifnull(s2."FCGLimitPrice",?5),244642442)
    FROM main."t_CG_OrderEntry" AS s1 LEFT
    JOIN main."T_ItemPrice" AS s2
    ON ((s1."FItemID" = s2."FItemID")
    AND (s1."FShowUnitID" = s2."FUnitID"))
    JOIN main."t_ICItem" AS s3
    ON (s1."FItemID" = s3."FItemID")
    WHERE ((t_cmp_decimal(ifnull(s1."FPrice",?6),ifnull(s2."FCGLimitPrice",?7),318829194) > 0)
    AND (t_cmp_decimal(ifnull(s2."FCGLimitPrice",?8),?9,318829194) > 0)
    AND (s1."FID" = ?10))
    ORDER BY 1

