-- The dates of a period

Select FStartDate,FEndDate from t_PeriodDate where FYear='2026' And FPeriod=3
  > SELECT s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = t_conv(?1,45216804))
    AND (s1."FPeriod" = ?2))

Select FStartDate,FEndDate from t_PeriodDate where FYear='x' And FPeriod=3
  > SELECT s1."FStartDate",s1."FEndDate"
    FROM main."t_PeriodDate" AS s1
    WHERE ((s1."FYear" = t_conv(?1,45216804))
    AND (s1."FPeriod" = ?2))
  > error 245

