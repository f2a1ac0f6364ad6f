-- Contact records whose voucher lies in another period.
select t1.FDate, t1.FNumber as FBillNO,
       case when t1.FType = 1 then '其他应收单' when t1.FType = 2 then '其他应付单'
            when t1.FType = 3 then '销售发票' when t1.FType = 4 then '采购发票'
            when t1.FType = 5 and t1.FPre = 0 then '收款单'
            when t1.FType = 6 and t1.FPre = 0 then '付款单'
            when t1.FType = 5 and t1.FPre = 1 then '预收单'
            when t1.FType = 6 and t1.FPre = 1 then '预付单'
            when t1.FType = 5 and t1.FPre = -1 then '应收退款单'
            when t1.FType = 6 and t1.FPre = -1 then '应付退款单'
            when t1.FType = 8 then '坏账' when t1.FType = 9 then '转账单据' else '单据' end as FType,
       t1.FID, t2.FVoucherID, '单据期间与对应凭证不一致' as FErrInfo
from t_rp_contact t1
join t_voucher t2 on t1.FVoucherID = t2.FVoucherID
where (t1.FPeriod <> t2.FPeriod or t1.FYear <> t2.FYear)
  and t1.FIsInit = 0 and t1.FYear = {year} and t1.FPeriod = {period} and t1.FRP = 1
