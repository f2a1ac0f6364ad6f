-- Documents of the inventory module that receivables and payables read. FVchInterID
-- is the voucher made for the document (0 or NULL: none; -1: none is to be made),
-- FCussentAcctID its control account, FArapStatus bit 1: audited for receivables or
-- payables.

-- Sales invoices.
create table ICSale (
    FInterID int not null primary key,
    FClassTypeID int not null,
    FBillNo nvarchar(80) not null,
    FDate datetime not null,
    FFincDate datetime not null,
    FYear int not null,
    FPeriod int not null,
    FCustID int not null default 0,
    FDeptID int not null default 0,
    FEmpID int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FSaleStyle int not null default 0,
    FAcctID int null default 0,
    FCussentAcctID int null default 0,
    FArapStatus int not null default 0,
    FVchInterID int null default 0
)
GO
create index idx_ICSale_FYear on ICSale (FYear, FPeriod)
GO

-- Lines of sales invoices: FAmount in the invoice's currency, FStdAmount in local
-- currency.
create table ICSaleEntry (
    FInterID int not null,
    FEntryID int not null,
    FItemID int not null default 0,
    FQty decimal(28,10) not null default 0,
    FPrice decimal(28,10) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FStdAmount decimal(28,4) not null default 0,
    primary key (FInterID, FEntryID)
)
GO

-- Purchase invoices.
create table ICPurchase (
    FInterID int not null primary key,
    FClassTypeID int not null,
    FBillNo nvarchar(80) not null,
    FDate datetime not null,
    FFincDate datetime not null,
    FYear int not null,
    FPeriod int not null,
    FSupplyID int not null default 0,
    FDeptID int not null default 0,
    FEmpID int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FPOStyle int not null default 0,
    FAcctID int null default 0,
    FCussentAcctID int null default 0,
    FArapStatus int not null default 0,
    FVchInterID int null default 0
)
GO
create index idx_ICPurchase_FYear on ICPurchase (FYear, FPeriod)
GO

-- Lines of purchase invoices, columns as for sales.
create table ICPurchaseEntry (
    FInterID int not null,
    FEntryID int not null,
    FItemID int not null default 0,
    FQty decimal(28,10) not null default 0,
    FPrice decimal(28,10) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FStdAmount decimal(28,4) not null default 0,
    primary key (FInterID, FEntryID)
)
GO

-- Expense invoices: FTranType 77 purchase, 78 expense of a kind in FInvType. FPOStyle
-- and FSaleStyle name entries of t_SubMessage.
create table ICExpenses (
    FInterID int not null primary key,
    FBillNo nvarchar(80) not null,
    FDate datetime not null,
    FTranType int not null,
    FPOStyle int not null default 0,
    FSaleStyle int not null default 0,
    FInvType int null default 0,
    FSupplyID int not null default 0,
    FCurrencyID int not null default 1
)
GO

-- Inventory receipts: FTranType 1 purchase, 5 outsourced processing; 21 is a sales
-- delivery. FCancellation 1: void.
create table ICStockBill (
    FInterID int not null primary key,
    FTranType int not null,
    FClassTypeID int not null default 0,
    FBillNo nvarchar(80) not null,
    FDate datetime not null,
    FSupplyID int not null default 0,
    FDeptID int not null default 0,
    FEmpID int not null default 0,
    FCussentAcctID int null default 0,
    FVchInterID int null default 0,
    FCancellation smallint not null default 0
)
GO
create index idx_ICStockBill_FTranType on ICStockBill (FTranType, FDate)
GO

-- Lines of inventory receipts, in local currency: FAmount the estimated cost of the
-- goods, FProcessCost the estimated cost of the processing.
create table ICStockBillEntry (
    FInterID int not null,
    FEntryID int not null,
    FItemID int not null default 0,
    FQty decimal(28,10) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FProcessCost decimal(28,4) not null default 0,
    primary key (FInterID, FEntryID)
)
GO

-- Receipts of subcontracted work from the shop floor; FBillType 0: a receipt.
create table ICShop_SubcIn (
    FInterID int not null primary key,
    FBillType int not null default 0,
    FBillNo nvarchar(80) not null,
    FDate datetime not null,
    FSupplierID int not null default 0,
    FDeptID int not null default 0,
    FEmpID int not null default 0,
    FAcctID int null default 0,
    FVchInterID int null default 0,
    FCancellation smallint not null default 0
)
GO

-- Lines of subcontract receipts: what passed inspection and its cost.
create table ICShop_SubcInEntry (
    FInterID int not null,
    FEntryID int not null,
    FItemID int not null default 0,
    FBasePassQty decimal(28,10) not null default 0,
    FAmount decimal(28,4) not null default 0,
    primary key (FInterID, FEntryID)
)
GO

-- Matches of receipts with invoices. FIBTag 1: the receipt's side of the match,
-- FIBInterID and FEntryID naming its line; 4: the receipt is left out of estimates.
-- FEquityHook 1: matched in full. FYear and FPeriod: the period of the match.
create table ICHookRelations (
    FID int not null primary key,
    FIBTag int not null,
    FTranType int not null default 0,
    FIBInterID int not null,
    FEntryID int not null default 0,
    FHookQty decimal(28,10) not null default 0,
    FHookAmount decimal(28,4) not null default 0,
    FEquityHook int not null default 0,
    FYear int not null,
    FPeriod int not null
)
GO
create index idx_ICHookRelations_FIBInterID on ICHookRelations (FIBInterID, FIBTag)
GO

-- Which document got an estimate voucher when: FTranType 4000 estimate, -4000 its
-- reversal, 5 and 301 the same for outsourced processing. FSCBillInterID names the
-- document.
create table t_MakeVouchTemp (
    FID int not null primary key,
    FSCBillInterID int not null,
    FTranType int not null,
    FYear int not null,
    FPeriod int not null,
    FVoucherID int not null default 0
)
GO
create index idx_t_MakeVouchTemp_FSCBillInterID on t_MakeVouchTemp (FSCBillInterID)
GO
