-- The general ledger: vouchers and balances.

-- Voucher words (receipts, payments, transfers). A voucher is known by its word and
-- its number within the period.
create table t_VoucherGroup (
    FGroupID int not null primary key,
    FName nvarchar(20) not null default '',
    FName_CHT nvarchar(20) not null default '',
    FName_EN nvarchar(20) not null default '',
    FLimitMulti bit not null default 0
)
GO

-- Vouchers. FInternalInd says which module made it: ar, ap, Industry (inventory);
-- NULL when it was keyed into the ledger by hand.
create table t_Voucher (
    FVoucherID int not null primary key,
    FDate datetime not null,
    FYear int not null,
    FPeriod int not null,
    FGroupID int not null,
    FNumber int not null,
    FExplanation nvarchar(255) not null default '',
    FEntryCount int not null default 0,
    FDebitTotal decimal(28,4) not null default 0,
    FCreditTotal decimal(28,4) not null default 0,
    FInternalInd varchar(10) null,
    FChecked bit not null default 0,
    FPosted bit not null default 0
)
GO
create index idx_t_Voucher_FYear on t_Voucher (FYear, FPeriod, FGroupID, FNumber)
GO

-- Lines of vouchers. FDC 1 debit, 0 credit; amounts are never negative for that
-- reason alone. FDetailID is the combination of items posted to (t_ItemDetailV).
create table t_VoucherEntry (
    FVoucherID int not null,
    FEntryID int not null,
    FExplanation nvarchar(255) not null default '',
    FAccountID int not null,
    FDetailID int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FDC int not null default 1,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    primary key (FVoucherID, FEntryID)
)
GO
create index idx_t_VoucherEntry_FAccountID on t_VoucherEntry (FAccountID, FVoucherID)
GO

-- Account balances of posted vouchers by period, detail combination and currency.
-- Debit balances are positive, credit balances negative. FDetailID 0 is the account
-- as a whole, FCurrencyID 0 all currencies together; in the rows of currency 0 the
-- columns ending in For add up the currencies as they are, as receivables and
-- payables do when asked for all currencies.
create table t_Balance (
    FYear int not null,
    FPeriod int not null,
    FAccountID int not null,
    FDetailID int not null default 0,
    FCurrencyID int not null default 0,
    FBeginBalanceFor decimal(28,4) not null default 0,
    FDebitFor decimal(28,4) not null default 0,
    FCreditFor decimal(28,4) not null default 0,
    FEndBalanceFor decimal(28,4) not null default 0,
    FBeginBalance decimal(28,4) not null default 0,
    FDebit decimal(28,4) not null default 0,
    FCredit decimal(28,4) not null default 0,
    FEndBalance decimal(28,4) not null default 0
)
GO
create index idx_t_Balance_FYear on t_Balance (FYear, FPeriod, FAccountID, FDetailID, FCurrencyID)
GO
create index idx_t_Balance_FDetailID on t_Balance (FDetailID, FYear, FPeriod)
GO
