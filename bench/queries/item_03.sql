-- Invoices, documents, receipts of receivables without voucher.
select v1.FDate, u1.FName as FType, v1.FBillNo, v1.FCurrencyID,
       coalesce(v1.FAcctID, 0) as FAccountID, v2.FAmount, v2.FAmountFor, '没有生成凭证' as FErrInfo
from ICSale v1
join (select v1.FInterID, sum(v2.FStdAmount) as FAmount, sum(v2.FAmount) as FAmountFor
      from ICSale v1
      join ICSaleEntry v2 on v1.FInterID = v2.FInterID
      join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
      where coalesce(v1.FVchInterID, 0) <= 0 and v1.FArapStatus & 1 = 1
        and v1.FYear = {year} and v1.FPeriod = {period}
      group by v1.FInterID) v2 on v1.FInterID = v2.FInterID
join t_rp_billtype u1 on v1.FClassTypeID = u1.FID
join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
union
select v1.FDate, u1.FName, v1.FNumber, v1.FCurrencyID, coalesce(v1.FAccountID, 0),
       v1.FAmount, v1.FAmountFor, '没有生成凭证'
from t_rp_arpbill v1
join t_rp_billtype u1 on v1.FClassTypeID = u1.FID
join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
where v1.FRP = 1 and v1.FStatus & 1 = 1 and coalesce(v1.FVoucherID, 0) <= 0
  and v1.FYear = {year} and v1.FPeriod = {period}
union
select v1.FDate, u1.FName, v1.FNumber, v1.FCurrencyID, v2.FAccountID, v2.FAmount, v2.FAmountFor,
       '没有生成凭证'
from t_rp_newreceivebill v1
join (select v1.FBillID, coalesce(v2.FAccountID, 0) as FAccountID,
             sum(v2.FSettleAmount) as FAmount, sum(v2.FSettleAmountFor) as FAmountFor
      from t_rp_newreceivebill v1
      join t_rp_ARBillOfSH v2 on v1.FBillID = v2.FBillID
      join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
      where v1.FRP = 1 and v1.FStatus & 1 = 1 and coalesce(v1.FVoucherID, 0) <= 0
        and v1.FYear = {year} and v1.FPeriod = {period}
      group by v1.FBillID, coalesce(v2.FAccountID, 0)) v2 on v1.FBillID = v2.FBillID
join t_rp_billtype u1 on v1.FClassTypeID = u1.FID
order by all nulls first
