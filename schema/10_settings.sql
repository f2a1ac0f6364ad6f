-- Settings of the account set: what every module reads before it looks at a document.

-- Settings of the modules other than receivables and payables, one row a key:
-- category GL (general ledger) with StartYear, StartPeriod, CurrentYear,
-- CurrentPeriod, Closed; category IC (inventory) with startyear, StartPeriod,
-- CurrentYear, CurrentPeriod, MakeZanGuVoucher.
create table t_SystemProfile (
    FCategory varchar(30) not null,
    FKey varchar(50) not null,
    FValue nvarchar(255) null default '',
    primary key (FCategory, FKey)
)
GO

-- Settings of receivables and payables, category ARP. Keys beginning with FAR
-- belong to receivables, with FAP to payables: FARCurYear, FARCurPeriod (current
-- period), FARUseYear, FARUsePeriod (first period in use), FARNeedMakeVoucher,
-- FARCloseNeedAudit, FARPreNeedVoucher; FCheckAccount and FCompanyName serve both.
-- A key FItemClassAR or FItemClassAP followed by digits names a further item class
-- that may owe or be owed.
create table t_RP_SystemProfile (
    FCategory varchar(30) not null,
    FKey varchar(50) not null,
    FValue nvarchar(255) null default '',
    primary key (FCategory, FKey)
)
GO

-- The accounting calendar: first and last day of every period.
create table t_PeriodDate (
    FYear int not null,
    FPeriod int not null,
    FStartDate datetime not null,
    FEndDate datetime not null,
    primary key (FYear, FPeriod)
)
GO

-- Currencies. 1 is the local currency; 0 stands for all currencies together and is
-- kept so that balance rows over all currencies have a currency of their own.
create table t_Currency (
    FCurrencyID int not null primary key,
    FNumber varchar(10) not null,
    FName nvarchar(40) not null default '',
    FName_CHT nvarchar(40) not null default '',
    FName_EN nvarchar(40) not null default '',
    FOperator varchar(1) not null default '*',             -- local = amount * rate
    FExchangeRate decimal(28,10) not null default 1,    -- local units for one
    FScale smallint null default 2,                     -- decimals of an amount
    FFixRate smallint not null default 1,
    FDeleted smallint not null default 0
)
GO
