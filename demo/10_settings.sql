-- Settings, calendar and currencies of the demonstration sets: receivables, payables,
-- inventory and ledger started in 2008-01 and stand at 2009-03. 30_planted_faults.sql
-- takes the company's name away.

insert into t_RP_SystemProfile (FCategory, FKey, FValue) values
    ('ARP', 'FCompanyName', N'示例贸易有限公司'),
    ('ARP', 'FCheckAccount', '1'),
    ('ARP', 'FARUseYear', '2008'), ('ARP', 'FARUsePeriod', '1'),
    ('ARP', 'FAPUseYear', '2008'), ('ARP', 'FAPUsePeriod', '1'),
    ('ARP', 'FARCurYear', '2009'), ('ARP', 'FARCurPeriod', '3'),
    ('ARP', 'FAPCurYear', '2009'), ('ARP', 'FAPCurPeriod', '3'),
    ('ARP', 'FARNeedMakeVoucher', '1'), ('ARP', 'FAPNeedMakeVoucher', '1'),
    ('ARP', 'FARCloseNeedAudit', '1'), ('ARP', 'FAPCloseNeedAudit', '1'),
    ('ARP', 'FARPreNeedVoucher', '1'), ('ARP', 'FAPPreNeedVoucher', '1'),
    ('ARP', 'FItemClassAR3001', N'股东'), ('ARP', 'FItemClassAP3001', N'股东')
GO

insert into t_SystemProfile (FCategory, FKey, FValue) values
    ('GL', 'StartYear', '2008'), ('GL', 'StartPeriod', '1'), ('GL', 'Closed', '1'),
    ('GL', 'CurrentYear', '2009'), ('GL', 'CurrentPeriod', '3'),
    ('IC', 'startyear', '2008'), ('IC', 'StartPeriod', '1'),
    ('IC', 'CurrentYear', '2009'), ('IC', 'CurrentPeriod', '3'),
    ('IC', 'MakeZanGuVoucher', '0')
GO

insert into t_PeriodDate (FYear, FPeriod, FStartDate, FEndDate) values
    (2008, 1, '2008-01-01', '2008-01-31'), (2008, 2, '2008-02-01', '2008-02-29'),
    (2008, 3, '2008-03-01', '2008-03-31'), (2008, 4, '2008-04-01', '2008-04-30'),
    (2008, 5, '2008-05-01', '2008-05-31'), (2008, 6, '2008-06-01', '2008-06-30'),
    (2008, 7, '2008-07-01', '2008-07-31'), (2008, 8, '2008-08-01', '2008-08-31'),
    (2008, 9, '2008-09-01', '2008-09-30'), (2008, 10, '2008-10-01', '2008-10-31'),
    (2008, 11, '2008-11-01', '2008-11-30'), (2008, 12, '2008-12-01', '2008-12-31'),
    (2009, 1, '2009-01-01', '2009-01-31'), (2009, 2, '2009-02-01', '2009-02-28'),
    (2009, 3, '2009-03-01', '2009-03-31'), (2009, 4, '2009-04-01', '2009-04-30'),
    (2009, 5, '2009-05-01', '2009-05-31'), (2009, 6, '2009-06-01', '2009-06-30'),
    (2009, 7, '2009-07-01', '2009-07-31'), (2009, 8, '2009-08-01', '2009-08-31'),
    (2009, 9, '2009-09-01', '2009-09-30'), (2009, 10, '2009-10-01', '2009-10-31'),
    (2009, 11, '2009-11-01', '2009-11-30'), (2009, 12, '2009-12-01', '2009-12-31')
GO

insert into t_Currency (FCurrencyID, FNumber, FName, FName_CHT, FName_EN, FExchangeRate, FScale) values
    (0, '*', N'综合本位币', N'綜合本位幣', N'All currencies', 1, 2),
    (1, 'RMB', N'人民币', N'人民幣', N'RMB', 1, 2),
    (2, 'HKD', N'港币', N'港幣', N'HKD', 0.8814, 2),
    (3, 'USD', N'美元', N'美元', N'USD', 6.8275, 2)
GO
