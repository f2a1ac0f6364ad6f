-- Basic data: accounts, items of every class, document types, lists of choices.

-- Ledger accounts. FDC is the side of the balance (1 debit, -1 credit). FCurrencyID
-- 0 keeps all currencies, 1 the local one only, otherwise that one. FDetailID names
-- the item classes the account is kept by (t_ItemDetailV; 0: none). FControlSystem
-- ties the account to receivables (1) or payables (2); 0: posted to freely.
create table t_Account (
    FAccountID int not null primary key,
    FNumber varchar(80) not null,
    FName nvarchar(120) not null default '',
    FName_CHT nvarchar(120) not null default '',
    FName_EN nvarchar(120) not null default '',
    FLevel smallint not null default 1,
    FParentID int not null default 0,
    FDetail bit not null default 1,
    FGroupID int not null default 0,
    FDC smallint not null default 1,
    FCurrencyID int not null default 0,
    FDetailID int not null default 0,
    FControlSystem int null default 0,
    FIsBank bit not null default 0,
    FDelete bit not null default 0
)
GO
create unique index idx_t_Account_FNumber on t_Account (FNumber)
GO

-- Item classes and the table that keeps what is particular to each. 1 customers,
-- 2 departments, 3 employees, 4 materials, 8 suppliers, from 3001 on the user's own.
create table t_ItemClass (
    FItemClassID int not null primary key,
    FNumber varchar(20) not null default '',
    FName nvarchar(40) not null default '',
    FName_CHT nvarchar(40) not null default '',
    FName_EN nvarchar(40) not null default '',
    FSqlTableName varchar(50) null default ''
)
GO

-- Every item of every class. FDetail 0 marks a heading that takes no postings.
create table t_Item (
    FItemID int not null primary key,
    FItemClassID int not null,
    FNumber varchar(80) not null,
    FName nvarchar(255) not null default '',
    FName_CHT nvarchar(255) not null default '',
    FName_EN nvarchar(255) not null default '',
    FParentID int not null default 0,
    FLevel smallint not null default 1,
    FDetail bit not null default 1,
    FDeleted smallint not null default 0
)
GO
create unique index idx_t_Item_FItemClassID on t_Item (FItemClassID, FNumber)
GO

-- Which items make up a detail combination. An account's own FDetailID has one row a
-- class it is kept by, with FItemID -1; a combination that postings use has one row
-- an item. Combination 0 (no detail) has one row without class and item.
create table t_ItemDetailV (
    FDetailID int not null,
    FItemClassID int not null,
    FItemID int not null,
    primary key (FDetailID, FItemClassID, FItemID)
)
GO
create index idx_t_ItemDetailV_FItemID on t_ItemDetailV (FItemID, FDetailID)
GO

-- Customers (item class 1) with the control accounts proposed on their documents.
create table t_Organization (
    FItemID int not null primary key,
    FNumber varchar(80) null default '',
    FName nvarchar(255) null default '',
    FName_CHT nvarchar(255) null default '',
    FName_EN nvarchar(255) null default '',
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FARAccountID int null default 0,
    FAPAccountID int null default 0,
    FPreAcctID int null default 0,
    FPreArAcctID int null default 0,
    FPreApAcctID int null default 0,
    FOtherArAcctID int null default 0,
    FOtherApAcctID int null default 0,
    FPayTaxAcctID int null default 0
)
GO

-- Suppliers (item class 8), columns as for customers.
create table t_Supplier (
    FItemID int not null primary key,
    FNumber varchar(80) null default '',
    FName nvarchar(255) null default '',
    FName_CHT nvarchar(255) null default '',
    FName_EN nvarchar(255) null default '',
    FDepartment int not null default 0,
    FEmployee int not null default 0,
    FCurrencyID int not null default 1,
    FARAccountID int null default 0,
    FAPAccountID int null default 0,
    FPreAcctID int null default 0,
    FPreArAcctID int null default 0,
    FPreApAcctID int null default 0,
    FOtherArAcctID int null default 0,
    FOtherApAcctID int null default 0,
    FPayTaxAcctID int null default 0
)
GO

-- Departments (item class 2) with the accounts of what they owe or are owed.
create table t_Department (
    FItemID int not null primary key,
    FNumber varchar(80) null default '',
    FName nvarchar(255) null default '',
    FName_CHT nvarchar(255) null default '',
    FName_EN nvarchar(255) null default '',
    FPreArAcctID int null default 0,
    FPreApAcctID int null default 0,
    FOtherArAcctID int null default 0,
    FOtherApAcctID int null default 0
)
GO

-- Employees (item class 3), columns as for departments. Item 0 is "no employee".
create table t_Emp (
    FItemID int not null primary key,
    FNumber varchar(80) null default '',
    FName nvarchar(255) null default '',
    FName_CHT nvarchar(255) null default '',
    FName_EN nvarchar(255) null default '',
    FDepartmentID int not null default 0,
    FPreArAcctID int null default 0,
    FPreApAcctID int null default 0,
    FOtherArAcctID int null default 0,
    FOtherApAcctID int null default 0
)
GO

-- Shareholders: the user's own item class 3001, columns as for departments.
create table t_Item_3001 (
    FItemID int not null primary key,
    FNumber varchar(80) null default '',
    FName nvarchar(255) null default '',
    FName_CHT nvarchar(255) null default '',
    FName_EN nvarchar(255) null default '',
    FPreArAcctID int null default 0,
    FPreApAcctID int null default 0,
    FOtherArAcctID int null default 0,
    FOtherApAcctID int null default 0
)
GO

-- Lists of choices, one row an entry: FTypeID names the list, FID is the code within
-- it. 101 ways of selling, 162 ways of purchasing, 104 kinds of expense invoice.
create table t_SubMessage (
    FInterID int not null primary key,
    FTypeID int not null,
    FID varchar(30) not null default '',
    FName nvarchar(80) not null default '',
    FName_CHT nvarchar(80) not null default '',
    FName_EN nvarchar(80) not null default ''
)
GO

-- Document types of receivables (FRP 1) and payables (0). FType groups them: 1 and 2
-- other receivables and payables, 3 and 4 invoices, 5 and 6 receipts and payments;
-- FIsInit marks the types of initial documents. FAccountID is the account proposed
-- when the item has none.
create table t_rp_BillType (
    FID int not null primary key,
    FName nvarchar(80) not null default '',
    FName_CHT nvarchar(80) not null default '',
    FName_EN nvarchar(80) not null default '',
    FRP smallint not null default 1,
    FType int not null default 0,
    FIsInit bit not null default 0,
    FAccountID int null default 0
)
GO

-- Transaction types of the inventory module.
create table ICTransactionType (
    FID int not null primary key,
    FName nvarchar(80) not null default '',
    FName_CHT nvarchar(80) not null default '',
    FName_EN nvarchar(80) not null default ''
)
GO
