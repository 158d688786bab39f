-- Credit line and balance

Select IsNull(FCreditAmount,0) as FCreditAmount,IsNull(FCurComeGoBalance,0) as FCurComeGoBalance  from  t_Supplier  Where FItemID=3
  > SELECT ifnull(s1."FCreditAmount",?1),ifnull(s1."FCurComeGoBalance",?2)
    FROM main."t_Supplier" AS s1
    WHERE (s1."FItemID" = ?3)

Select IsNull(FCreditAmount,0) as FCreditAmount,IsNull(FCurComeGoBalance,0) as FCurComeGoBalance  from  t_Organization  Where FItemID=4
  > SELECT ifnull(s1."FCreditAmount",?1),ifnull(s1."FCurComeGoBalance",?2)
    FROM main."t_Organization" AS s1
    WHERE (s1."FItemID" = ?3)

