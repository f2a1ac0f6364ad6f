-- Documents of receivables and payables, what they add up to and how they were
-- settled. In all of them FRP is 1 for receivables and 0 for payables, amounts ending
-- in For are in the document's currency and the others in local currency, and bit 1
-- of FStatus means audited.

-- Other receivables and payables. FSource 4 and 8: made from an expense invoice,
-- whose FInterID is FSourceID. FCheckStatus: 0 open, 1 settled, 2 settled in part.
create table t_rp_ARPBill (
    FBillID int not null primary key,
    FClassTypeID int not null,
    FNumber nvarchar(80) not null,
    FDate datetime not null,
    FFincDate datetime not null,
    FYear int not null,
    FPeriod int not null,
    FRP smallint not null,
    FItemClassID int not null default 1,
    FCustomer int not null default 0,
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FAccountID int null default 0,
    FStatus int not null default 0,
    FVoucherID int null default 0,
    FSource int not null default 0,
    FSourceID int not null default 0,
    FCheckStatus int null default 0
)
GO
create index idx_t_rp_ARPBill_FYear on t_rp_ARPBill (FYear, FPeriod, FRP)
GO

-- Receipts and payments. FPre: 0 ordinary, 1 in advance, -1 refund. A document that
-- the cash module sent carries its class there in FClassTypeID_CN (1006004 receipt,
-- 1006002 payment) and the day it was sent in FTransDate_CN; FConfirm 1 once
-- receivables or payables has confirmed it.
create table t_rp_NewReceiveBill (
    FBillID int not null primary key,
    FClassTypeID int not null,
    FNumber nvarchar(80) not null,
    FDate datetime not null,
    FFincDate datetime not null,
    FYear int not null,
    FPeriod int not null,
    FRP smallint not null,
    FPre smallint not null default 0,
    FItemClassID int not null default 1,
    FCustomer int not null default 0,
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FStatus int not null default 0,
    FVoucherID int null default 0,
    FClassTypeID_CN int not null default 0,
    FTransDate_CN datetime null,
    FConfirm smallint not null default 1
)
GO
create index idx_t_rp_NewReceiveBill_FYear on t_rp_NewReceiveBill (FYear, FPeriod, FRP)
GO

-- Lines of receipts and payments: what is settled on which control account.
create table t_rp_ARBillOfSH (
    FBillID int not null,
    FIndex int not null,
    FAccountID int null default 0,
    FSettleAmountFor decimal(28,4) not null default 0,
    FSettleAmount decimal(28,4) not null default 0,
    primary key (FBillID, FIndex)
)
GO

-- One contact record a document: the sub-ledger of receivables and payables. FType:
-- 1 and 2 other receivable and payable, 3 and 4 sales and purchase invoice, 5 and 6
-- receipt and payment, 8 bad debt, 9 transfer, 10 returned bill. The document is
-- FRPBillID for receivables' and payables' own documents and FInvoiceID for invoices
-- of the inventory module (FQ8Import 1); FInvoiceType 3 and 4 mark invoices. FStatus
-- bit 16: not subject to audit. FVoucherID is 0 without voucher, never NULL: checks
-- compare vouchers with the whole column.
create table t_rp_Contact (
    FID int not null primary key,
    FType int not null,
    FRP smallint not null,
    FPre smallint not null default 0,
    FIsInit bit not null default 0,
    FYear int not null,
    FPeriod int not null,
    FDate datetime not null,
    FFincDate datetime not null,
    FNumber nvarchar(80) not null,
    FRPBillID int not null default 0,
    FInvoiceID int not null default 0,
    FInvoiceType int not null default 0,
    FQ8Import bit not null default 0,
    FItemClassID int not null default 1,
    FCustomer int not null default 0,
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FAccountID int null default 0,
    FStatus int not null default 0,
    FVoucherID int not null default 0
)
GO
create index idx_t_rp_Contact_FYear on t_rp_Contact (FYear, FPeriod, FRP)
GO
create index idx_t_rp_Contact_FRPBillID on t_rp_Contact (FRPBillID, FType)
GO
create index idx_t_rp_Contact_FInvoiceID on t_rp_Contact (FInvoiceID, FType)
GO
create index idx_t_rp_Contact_FVoucherID on t_rp_Contact (FVoucherID)
GO
create index idx_t_rp_Contact_FFincDate on t_rp_Contact (FFincDate)
GO

-- Balances of the contact records by period. On both sides a debit makes the open
-- amount larger and a credit makes it smaller: end = begin + debit - credit. FAccountID
-- 0: documents without account, and advances offset against invoices, a debit and a
-- credit alike; what an offset moves between accounts its settlement record tells.
create table t_rp_ContactBal (
    FYear int not null,
    FPeriod int not null,
    FRP smallint not null,
    FItemClassID int not null default 1,
    FCustomer int not null,
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FAccountID int not null default 0,
    FCurrencyID int not null default 1,
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
create index idx_t_rp_ContactBal_FYear on t_rp_ContactBal (FYear, FPeriod, FRP, FAccountID, FCustomer)
GO

-- Initial documents, entered when receivables or payables were taken into use. FType
-- as in t_rp_Contact, plus 15 and 16 for initial receipts and payments in advance,
-- which lower the balance as 5 and 6 do.
create table t_rp_BegData (
    FInterID int not null primary key,
    FClassTypeID int not null,
    FType int not null,
    FRP smallint not null,
    FBillNo nvarchar(80) null,
    FDate datetime not null,
    FItemClassID int not null default 1,
    FComID int not null default 0,
    FDepID int not null default 0,
    FEmpID int not null default 0,
    FCurrencyID int not null default 1,
    FExchangeRate decimal(28,10) not null default 1,
    FAccountID int null default 0
)
GO

-- Lines of initial documents.
create table t_rp_BegDataEntry (
    FInterID int not null,
    FEntryID int not null,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    primary key (FInterID, FEntryID)
)
GO

-- Bills of exchange, received (FRP 1) or issued (0).
create table t_rp_Bill (
    FBillID int not null primary key,
    FBillNo nvarchar(80) not null,
    FRP smallint not null,
    FSignDate datetime not null,
    FDueDate datetime not null,
    FItemClassID int not null default 1,
    FCustomer int not null default 0,
    FCurrencyID int not null default 1,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FReceiveBillID int not null default 0       -- the receipt or payment it came with
)
GO

-- Bills received and passed on to a creditor: FType 1 endorsement, 2 its return.
create table t_rp_Bill_Endorse (
    FID int not null primary key,
    FBillID int not null,
    FType int not null default 1,
    FDate datetime not null,
    FCurrencyID int not null default 1,
    FAmount decimal(28,4) not null default 0,
    FAccountID int not null default 0,
    FVoucherID int not null default 0
)
GO

-- Bills received and sold to a bank before they are due.
create table t_rp_Bill_Discount (
    FID int not null primary key,
    FBillID int not null,
    FDate datetime not null,
    FCurrencyID int not null default 1,
    FDiscountAmount decimal(28,4) not null default 0,
    FAccountID int not null default 0,
    FVoucherID int not null default 0
)
GO

-- Bills received and transferred for value.
create table t_rp_Bill_Transfer (
    FID int not null primary key,
    FBillID int not null,
    FDate datetime not null,
    FCurrencyID int not null default 1,
    FExportAmount decimal(28,4) not null default 0,
    FVoucherID int not null default 0
)
GO

-- Bills collected or paid when due.
create table t_rp_Bill_Settle (
    FID int not null primary key,
    FBillID int not null,
    FDate datetime not null,
    FCurrencyID int not null default 1,
    FAccountID int not null default 0,
    FAmountFor decimal(28,4) not null default 0,
    FAmount decimal(28,4) not null default 0,
    FVoucherID int not null default 0
)
GO

-- Settlements, one row a contact record taking part; rows of one settlement share
-- FID. FType is the contact record's type, with 10 added for initial documents.
-- FCheckType 1: the settlement itself moves an amount between accounts. FTransfer 1:
-- a transfer, FTransferID its number, 0 when an advance is offset. FZXID > 0: a
-- write-off against another document, FARToAR 1 within the side and 0 across sides.
-- FUnTread 1: a bill of exchange was returned unpaid.
create table t_rp_NewCheckInfo (
    FInterID int not null primary key,
    FID int not null,
    FContactID int not null,
    FBillID int not null default 0,
    FType int not null default 0,
    FIsInit bit not null default 0,
    FRP smallint not null,
    FCheckType int not null default 0,
    FCheckDate datetime not null,
    FItemClassID int not null default 1,
    FCustomer int not null default 0,
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FTransfer smallint not null default 0,
    FTransferID int not null default 0,
    FARToAR smallint not null default -1,
    FZXID int not null default 0,
    FUnTread smallint not null default 0,
    FVoucherID int not null default 0,
    FExplanation nvarchar(255) not null default ''
)
GO
create index idx_t_rp_NewCheckInfo_FID on t_rp_NewCheckInfo (FID, FContactID)
GO
create index idx_t_rp_NewCheckInfo_FCheckDate on t_rp_NewCheckInfo (FCheckDate, FRP)
GO

-- Amounts of settlements, one row a document entry settled.
create table t_rp_CheckEntry (
    FID int not null,
    FContactID int not null,
    FEntryID int not null default 0,
    FBillID int not null default 0,
    FType int not null default 0,
    FIsInit bit not null default 0,
    FCheckAmountFor decimal(28,4) not null default 0,
    FCheckAmount decimal(28,4) not null default 0,
    primary key (FID, FContactID, FEntryID)
)
GO
