-- Unaudited documents of receivables.
select v1.FDate, v1.FNumber as FBillNO, t10.FCurrencyID, v1.FAmount, v1.FAmountFor,
       case v1.FType
         when 1 then '应收单' when 2 then '应付单' when 3 then '销售发票' when 4 then '采购发票'
         when 5 then case v1.FPre when -1 then '应收退款单' when 0 then '收款单' when 1 then '预收单' end
         when 6 then case v1.FPre when -1 then '应付退款单' when 0 then '付款单' when 1 then '预付单' end
       end as FType,
       '单据没有审核' as FErrInfo
from t_RP_Contact v1
join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
where v1.FStatus & 1 = 0 and v1.FStatus & 16 = 0
  and v1.FRP = 1 and v1.FYear = {year} and v1.FPeriod = {period}
