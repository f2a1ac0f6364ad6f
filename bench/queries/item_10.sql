-- Sales invoices whose financial period differs from that of their contact record.
select v1.FDate, u1.FName as FType, v1.FBillNo, v1.FCurrencyID,
       coalesce(v1.FAcctID, 0) as FAccountID, v2.FAmount, v2.FAmountFor,
       '物流单据的财务期间和应收应付系统不一致,可以通过重新审核来处理。' as FErrInfo
from ICSale v1
join t_rp_contact v2 on v1.FInterID = v2.FInvoiceID and v2.FQ8Import = 1 and v2.FType = 3
join (select v1.FInterID, u1.FYear, u1.FPeriod
      from ICSale v1
      join t_PeriodDate u1 on v1.FFincDate >= u1.FStartDate and v1.FFincDate <= u1.FEndDate
      where v1.FYear = {year} and v1.FPeriod = {period}) v3 on v1.FInterID = v3.FInterID
join t_rp_billtype u1 on v1.FClassTypeID = u1.FID
join t_Currency t10 on v1.FCurrencyID = t10.FCurrencyID
where v1.FPeriod <> v2.FPeriod or v1.FYear <> v2.FYear
   or v1.FPeriod <> v3.FPeriod or v3.FPeriod <> v2.FPeriod
