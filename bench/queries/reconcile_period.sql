-- The four steps of the detail period check of receivables, 2009-03, all currencies together:
-- two work tables, the amounts of receivables, those of the ledger, and the rows to show.
-- Numbers that differ in case are one number, as on the server.
create or replace temp table AmtCheck (
    FID int, FYear int, FPeriod int, FCurrencyID int, FCurrencyName varchar, FAcctID int,
    FAcctNumber varchar collate nocase, FAcctName varchar, FItemClassID int,
    FItemClassNumber varchar collate nocase,
    FItemClassName varchar, FAmountDecimal int, {columns}, FSort int, FSumSort int);

create or replace temp table AmtDetail (
    FID int, FYear int, FPeriod int, FCurrencyID int, FAcctID int,
    FAcctNumber varchar collate nocase, FItemClassID int,
    FItemClassNumber varchar collate nocase, FClassTypeID int, FBillID int, FType int,
    FDC int, {columns});

insert into AmtDetail
select row_number() over (order by t1.FNumber, t10.FNumber), 2009, 3, 0, t1.FAccountID,
       t1.FNumber, t10.FItemID, t10.FNumber, 0, 0, 0, 0, {zeros}
from t_Account t1, t_Item t10
where t1.FAccountID in (1122, 1221, 2203) and t10.FItemClassID = 1 and t10.FDetail;

update AmtDetail v1
set FArpAmountFor = u1.FAmountFor, FArpAmount = u1.FAmount,
    FArpDebitAmountFor = u1.FDebitFor, FArpDebitAmount = u1.FDebit,
    FArpCreditAmountFor = u1.FCreditFor, FArpCreditAmount = u1.FCredit,
    FArpBegAmountFor = u1.FBegAmountFor, FArpBegAmount = u1.FBegAmount
from (select FCustomer, v1.FAccountID,
             sum(FBeginBalanceFor) as FBegAmountFor, sum(FBeginBalance) as FBegAmount,
             sum(FDebitFor) as FDebitFor, sum(FDebit) as FDebit,
             sum(FCreditFor) as FCreditFor, sum(FCredit) as FCredit,
             sum(FEndBalanceFor) as FAmountFor, sum(FEndBalance) as FAmount
      from t_rp_ContactBal v1 join t_Account t1 on v1.FAccountID = t1.FAccountID
      where v1.FItemClassID = 1 and v1.FAccountID in (1122, 1221, 2203) and v1.FRP = 1
        and v1.FYear = 2009 and v1.FPeriod = 3
      group by FCustomer, v1.FAccountID) u1
where v1.FAcctID = u1.FAccountID and v1.FItemClassID = u1.FCustomer;

update AmtDetail
set FArpAmountFor = FArpBegAmountFor - FArpCreditAmountFor + FArpDebitAmountFor,
    FArpAmount = FArpBegAmount - FArpCreditAmount + FArpDebitAmount;

update AmtDetail v1
set FGLAmountFor = u1.FEndFor, FGLAmount = u1.FEnd, FGLBegAmountFor = u1.FBegFor,
    FGLBegAmount = u1.FBeg, FGLDebitAmountFor = u1.FDebitFor, FGLDebitAmount = u1.FDebit,
    FGLCreditAmountFor = u1.FCreditFor, FGLCreditAmount = u1.FCredit
from (select v1.FAcctID, v1.FItemClassID, sum(FEndBalanceFor) as FEndFor, sum(FEndBalance) as FEnd,
             sum(FBeginBalanceFor) as FBegFor, sum(FBeginBalance) as FBeg,
             sum(FDebitFor) as FDebitFor, sum(FDebit) as FDebit,
             sum(FCreditFor) as FCreditFor, sum(FCredit) as FCredit
      from AmtDetail v1
      join t_ItemDetailV s1 on v1.FItemClassID = s1.FItemID
      join t_Balance u1 on u1.FDetailID = s1.FDetailID and v1.FAcctID = u1.FAccountID
      join t_Account t10 on u1.FAccountID = t10.FAccountID
      join t_ItemDetailV ai on t10.FDetailID = ai.FDetailID and ai.FItemClassID = 1
      where u1.FCurrencyID = 0 and u1.FYear = 2009 and u1.FPeriod = 3
      group by v1.FAcctID, v1.FItemClassID) u1
where v1.FAcctID = u1.FAcctID and v1.FItemClassID = u1.FItemClassID;

update AmtDetail
set FDiffAmountFor = FGLAmountFor - FArpAmountFor, FDiffAmount = FGLAmount - FArpAmount,
    FDiffBegAmountFor = FGLBegAmountFor - FArpBegAmountFor,
    FDiffBegAmount = FGLBegAmount - FArpBegAmount,
    FDiffDebitAmountFor = FGLDebitAmountFor - FArpDebitAmountFor,
    FDiffDebitAmount = FGLDebitAmount - FArpDebitAmount,
    FDiffCreditAmountFor = FGLCreditAmountFor - FArpCreditAmountFor,
    FDiffCreditAmount = FGLCreditAmount - FArpCreditAmount;

insert into AmtCheck
select row_number() over (order by FAcctNumber, FItemClassNumber, FSumSort), FYear, FPeriod, 0,
       '', 0, FAcctNumber, '', 0, FItemClassNumber, '', 2, {amounts}, 0, FSumSort
from (select FYear, FPeriod, FAcctNumber, FItemClassNumber, {sums}, 0 as FSumSort
      from AmtDetail group by FYear, FPeriod, FAcctNumber, FItemClassNumber
      union
      select FYear, FPeriod, FAcctNumber, '', {sums}, 101
      from AmtDetail group by FYear, FPeriod, FAcctNumber);

update AmtCheck set FAcctNumber = FAcctNumber || '(小计)' where FSumSort = 101;

update AmtCheck v1
set FAcctID = coalesce(u1.FAccountID, 0), FAcctName = coalesce(u1.AccountName, ''),
    FItemClassID = coalesce(u1.FItemID, 0), FItemClassName = coalesce(u1.ItemName, ''),
    FAmountDecimal = coalesce(u1.FScale, 2), FCurrencyName = coalesce(u1.CurrencyName, '')
from (select v1.FID, t1.FAccountID, t1.FName as AccountName, t10.FItemID, t10.FName as ItemName,
             t9.FScale, t9.FName as CurrencyName
      from AmtCheck v1
      left join t_Account t1 on v1.FAcctNumber = t1.FNumber
      left join (select * from t_Item where FItemClassID = 1) t10
        on v1.FItemClassNumber = t10.FNumber
      left join (select * from t_Currency where FCurrencyID = 1) t9
        on t9.FCurrencyID = v1.FCurrencyID + 1) u1
where v1.FID = u1.FID;
