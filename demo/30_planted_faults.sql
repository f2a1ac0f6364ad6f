-- Faults in settings and basic data, for the checks of initial data and of accounts to
-- find. No document, balance or account is touched, so that neither the closing check
-- nor the reconciliation with the ledger sees them.

-- Nobody has entered the company's name.
delete from t_RP_SystemProfile where FKey = 'FCompanyName'
GO

-- Document types that nobody has given an account yet, and nobody uses.
insert into t_rp_BillType (FID, FName, FName_CHT, FName_EN, FRP, FType, FIsInit, FAccountID) values
    (1000600, N'押金收款单', N'押金收款單', N'Deposit receipt', 1, 5, 0, 0),
    (1000601, N'押金付款单', N'押金付款單', N'Deposit payment', 0, 6, 0, 0)
GO

-- Initial documents begun and left: without account and without lines, one of them even
-- without number. Their ids are beyond those of the generated ones.
insert into t_rp_BegData (FInterID, FClassTypeID, FType, FRP, FBillNo, FDate, FItemClassID, FComID, FAccountID) values
    (2000000001, 1000501, 3, 1, 'YSQC900001', '2007-12-31', 1, 1001, 0),
    (2000000002, 1000510, 1, 1, null, '2007-12-31', 1, 1002, null),
    (2000000003, 1000503, 4, 0, 'YFQC900001', '2007-12-31', 8, 50000001, 0)
GO

-- Accounts of items: one missing, one that no sub-system controls, one that does not
-- exist. Customers and suppliers at fault are entered with the others.
update t_Department set FPreApAcctID = null where FItemID = 102
update t_Emp set FOtherArAcctID = 1405 where FItemID = 203
update t_Item_3001 set FPreArAcctID = 9999 where FItemID = 401
GO

-- Item classes that may owe or be owed, one without its table and one whose table has
-- no accounts.
insert into t_ItemClass (FItemClassID, FNumber, FName, FName_CHT, FName_EN, FSqlTableName) values
    (3002, '3002', N'关联公司', N'關聯公司', N'Affiliate', 't_Item_3002'),
    (3003, '3003', N'项目', N'項目', N'Project', 't_Item')
insert into t_RP_SystemProfile (FCategory, FKey, FValue) values
    ('ARP', 'FItemClassAR3002', N'关联公司'), ('ARP', 'FItemClassAP3003', N'项目')
GO
