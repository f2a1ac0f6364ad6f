-- A new account set: the start periods of payables and, later, of the ledger are set;
-- nothing else has been entered yet.

insert into t_RP_SystemProfile (FCategory, FKey, FValue) values
    ('ARP', 'FAPUseYear', '2008'), ('ARP', 'FAPUsePeriod', '1')
GO

insert into t_SystemProfile (FCategory, FKey, FValue) values
    ('GL', 'StartYear', '2008'), ('GL', 'StartPeriod', '3')
GO
