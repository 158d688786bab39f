-- What every ERP database holds from the start: the settings of the inventory module and the
-- accounting periods of the current year.
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES ('IC', 'CurrentYear', '2026')
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES ('IC', 'CurrentPeriod', '3')
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES ('IC', 'UnderStock', '0')
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES ('IC', 'CalculateType', '0')
INSERT INTO t_SystemProfile (FCategory, FKey, FValue) VALUES ('General', 'SingleMan', '1')
GO
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 1, '20260101', '20260131')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 2, '20260201', '20260228')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 3, '20260301', '20260331')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 4, '20260401', '20260430')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 5, '20260501', '20260531')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 6, '20260601', '20260630')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 7, '20260701', '20260731')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 8, '20260801', '20260831')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 9, '20260901', '20260930')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 10, '20261001', '20261031')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 11, '20261101', '20261130')
INSERT INTO t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) VALUES (2026, 12, '20261201', '20261231')
GO
