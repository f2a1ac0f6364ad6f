-- Accounts, item classes, departments, employees and document types of the
-- demonstration sets. An account's id is its number, so that account lists read well.

-- Control accounts are kept by customer (detail 1) or supplier (detail 2).
insert into t_Account (FAccountID, FNumber, FName, FName_CHT, FName_EN, FDC, FDetailID, FControlSystem, FIsBank) values
    (1002, '1002', N'银行存款', N'銀行存款', N'Bank deposits', 1, 0, 0, 1),
    (1121, '1121', N'应收票据', N'應收票據', N'Bills receivable', 1, 0, 0, 0),
    (1122, '1122', N'应收账款', N'應收帳款', N'Accounts receivable', 1, 1, 1, 0),
    (1123, '1123', N'预付账款', N'預付帳款', N'Payments in advance', 1, 2, 2, 0),
    (1221, '1221', N'其他应收款', N'其他應收款', N'Other receivables', 1, 1, 1, 0),
    (1231, '1231', N'坏账准备', N'壞帳準備', N'Allowance for bad debts', -1, 0, 0, 0),
    (1405, '1405', N'库存商品', N'庫存商品', N'Merchandise', 1, 0, 0, 0),
    (2201, '2201', N'应付票据', N'應付票據', N'Bills payable', -1, 0, 0, 0),
    (2202, '2202', N'应付账款', N'應付帳款', N'Accounts payable', -1, 2, 2, 0),
    (2203, '2203', N'预收账款', N'預收帳款', N'Receipts in advance', -1, 1, 1, 0),
    (2204, '2204', N'暂估应付账款', N'暫估應付帳款', N'Estimated payables', -1, 2, 2, 0),
    (2205, '2205', N'暂估应付加工费', N'暫估應付加工費', N'Estimated processing fees', -1, 2, 2, 0),
    (2221, '2221', N'应交税费', N'應交稅費', N'Taxes payable', -1, 0, 0, 0),
    (2241, '2241', N'其他应付款', N'其他應付款', N'Other payables', -1, 2, 2, 0),
    (4104, '4104', N'利润分配', N'利潤分配', N'Retained earnings', -1, 0, 0, 0),
    (6001, '6001', N'主营业务收入', N'主營業務收入', N'Revenue', -1, 0, 0, 0),
    (6051, '6051', N'其他业务收入', N'其他業務收入', N'Other income', -1, 0, 0, 0),
    (6602, '6602', N'管理费用', N'管理費用', N'Administrative expenses', 1, 0, 0, 0)
GO

insert into t_ItemDetailV (FDetailID, FItemClassID, FItemID) values
    (0, 0, 0), (1, 1, -1), (2, 8, -1)
GO

insert into t_VoucherGroup (FGroupID, FName, FName_CHT, FName_EN) values
    (1, N'记', N'記', N'Journal'), (2, N'收', N'收', N'Receipt'), (3, N'付', N'付', N'Payment')
GO

insert into t_ItemClass (FItemClassID, FNumber, FName, FName_CHT, FName_EN, FSqlTableName) values
    (1, '001', N'客户', N'客戶', N'Customer', 't_Organization'),
    (2, '002', N'部门', N'部門', N'Department', 't_Department'),
    (3, '003', N'职员', N'職員', N'Employee', 't_Emp'),
    (4, '004', N'物料', N'物料', N'Material', ''),
    (8, '008', N'供应商', N'供應商', N'Supplier', 't_Supplier'),
    (3001, '3001', N'股东', N'股東', N'Shareholder', 't_Item_3001')
GO

insert into t_Item (FItemID, FItemClassID, FNumber, FName, FName_CHT, FName_EN) values
    (101, 2, '01', N'销售部', N'銷售部', N'Sales'),
    (102, 2, '02', N'采购部', N'採購部', N'Purchasing'),
    (201, 3, '001', N'王芳', N'王芳', N'Wang Fang'),
    (202, 3, '002', N'李强', N'李強', N'Li Qiang'),
    (203, 3, '003', N'陈静', N'陳靜', N'Chen Jing'),
    (301, 4, 'M01', N'钢板', N'鋼板', N'Steel plate'),
    (302, 4, 'M02', N'铜线', N'銅線', N'Copper wire'),
    (303, 4, 'M03', N'轴承', N'軸承', N'Bearing'),
    (401, 3001, 'S01', N'张伟', N'張偉', N'Zhang Wei')
GO

insert into t_Department (FItemID, FNumber, FName, FName_CHT, FName_EN,
                          FPreArAcctID, FPreApAcctID, FOtherArAcctID, FOtherApAcctID) values
    (101, '01', N'销售部', N'銷售部', N'Sales', 2203, 1123, 1221, 2241),
    (102, '02', N'采购部', N'採購部', N'Purchasing', 2203, 1123, 1221, 2241)
GO

insert into t_Emp (FItemID, FNumber, FName, FName_CHT, FName_EN, FDepartmentID,
                   FPreArAcctID, FPreApAcctID, FOtherArAcctID, FOtherApAcctID) values
    (201, '001', N'王芳', N'王芳', N'Wang Fang', 101, 2203, 1123, 1221, 2241),
    (202, '002', N'李强', N'李強', N'Li Qiang', 101, 2203, 1123, 1221, 2241),
    (203, '003', N'陈静', N'陳靜', N'Chen Jing', 102, 2203, 1123, 1221, 2241)
GO

insert into t_Item_3001 (FItemID, FNumber, FName, FName_CHT, FName_EN,
                         FPreArAcctID, FPreApAcctID, FOtherArAcctID, FOtherApAcctID) values
    (401, 'S01', N'张伟', N'張偉', N'Zhang Wei', 2203, 1123, 1221, 2241)
GO

insert into t_SubMessage (FInterID, FTypeID, FID, FName, FName_CHT, FName_EN) values
    (100, 101, 'FXF01', N'现销', N'現銷', N'Cash sale'),
    (101, 101, 'FXF02', N'赊销', N'賒銷', N'Sale on credit'),
    (251, 162, 'PO01', N'现购', N'現購', N'Cash purchase'),
    (252, 162, 'PO02', N'赊购', N'賒購', N'Purchase on credit'),
    (20301, 104, 'XF01', N'应付费用发票', N'應付費用發票', N'Expense invoice payable'),
    (20302, 104, 'XF02', N'应收费用发票', N'應收費用發票', N'Expense invoice receivable')
GO

insert into t_rp_BillType (FID, FName, FName_CHT, FName_EN, FRP, FType, FIsInit, FAccountID) values
    (1000000, N'销售增值税发票', N'銷售增值稅發票', N'Sales VAT invoice', 1, 3, 0, 1122),
    (1000002, N'销售普通发票', N'銷售普通發票', N'Sales invoice', 1, 3, 0, 1122),
    (1000003, N'采购增值税发票', N'採購增值稅發票', N'Purchase VAT invoice', 0, 4, 0, 2202),
    (1000004, N'采购普通发票', N'採購普通發票', N'Purchase invoice', 0, 4, 0, 2202),
    (1000005, N'收款单', N'收款單', N'Receipt', 1, 5, 0, 1122),
    (1000014, N'预收单', N'預收單', N'Receipt in advance', 1, 5, 0, 2203),
    (1000015, N'应收退款单', N'應收退款單', N'Refund to customer', 1, 5, 0, 1122),
    (1000016, N'付款单', N'付款單', N'Payment', 0, 6, 0, 2202),
    (1000017, N'应付退款单', N'應付退款單', N'Refund from supplier', 0, 6, 0, 2202),
    (1000018, N'预付单', N'預付單', N'Payment in advance', 0, 6, 0, 1123),
    (1000021, N'其他应收单', N'其他應收單', N'Other receivable', 1, 1, 0, 1221),
    (1000022, N'其他应付单', N'其他應付單', N'Other payable', 0, 2, 0, 2241),
    (1000500, N'期初销售增值税发票', N'期初銷售增值稅發票', N'Initial sales VAT invoice', 1, 3, 1, 1122),
    (1000501, N'期初销售普通发票', N'期初銷售普通發票', N'Initial sales invoice', 1, 3, 1, 1122),
    (1000502, N'期初采购增值税发票', N'期初採購增值稅發票', N'Initial purchase VAT invoice', 0, 4, 1, 2202),
    (1000503, N'期初采购普通发票', N'期初採購普通發票', N'Initial purchase invoice', 0, 4, 1, 2202),
    (1000510, N'期初其他应收单', N'期初其他應收單', N'Initial other receivable', 1, 1, 1, 1221),
    (1000511, N'期初其他应付单', N'期初其他應付單', N'Initial other payable', 0, 2, 1, 2241),
    (1000520, N'期初预收单', N'期初預收單', N'Initial receipt in advance', 1, 5, 1, 2203),
    (1000521, N'期初预付单', N'期初預付單', N'Initial payment in advance', 0, 6, 1, 1123)
GO

insert into ICTransactionType (FID, FName, FName_CHT, FName_EN) values
    (1, N'外购入库', N'外購入庫', N'Purchase receipt'),
    (5, N'委外加工入库', N'委外加工入庫', N'Outsourced-processing receipt'),
    (77, N'采购费用发票', N'採購費用發票', N'Purchase expense invoice'),
    (78, N'费用发票', N'費用發票', N'Expense invoice')
GO

insert into t_AccessSwitch (FUserID, FUsed) values (0, 0)
GO
