#include <gmock/gmock.h>

#include "demo/account_set.h"

namespace velmora::cli::demo {
namespace {

using testing::IsEmpty;

/// A rule that the books keep whatever was planted: the query lists what breaks it.
struct Rule {
  const char* name;
  const char* violations;
};

constexpr const char* kVouchersBalance =
    "select FVoucherID from t_VoucherEntry group by FVoucherID "
    "having sum(case when FDC = 1 then FAmount else -FAmount end) <> 0";

constexpr const char* kVoucherHeads =
    "select v.FVoucherID from t_Voucher v inner join "
    "(select FVoucherID, sum(FDC * FAmount) as FDebit, count(*) as FEntries from t_VoucherEntry "
    "group by FVoucherID) e on v.FVoucherID = e.FVoucherID "
    "where v.FDebitTotal <> e.FDebit or v.FCreditTotal <> e.FDebit or v.FEntryCount <> e.FEntries";

constexpr const char* kVoucherNumbers =
    "select FYear, FPeriod, FGroupID from t_Voucher group by FYear, FPeriod, FGroupID "
    "having count(*) <> max(FNumber) or min(FNumber) <> 1";

constexpr const char* kBalancesFollowVouchers =
    "select b.FYear, b.FPeriod, b.FAccountID, b.FDetailID, b.FCurrencyID from t_Balance b "
    "left join (select v.FYear, v.FPeriod, e.FAccountID, e.FDetailID, e.FCurrencyID, "
    "sum(e.FDC * e.FAmountFor) as FDebitFor, sum((1 - e.FDC) * e.FAmount) as FCredit "
    "from t_Voucher v inner join t_VoucherEntry e on v.FVoucherID = e.FVoucherID "
    "where v.FPosted = 1 "
    "group by v.FYear, v.FPeriod, e.FAccountID, e.FDetailID, e.FCurrencyID) m "
    "on b.FYear = m.FYear and b.FPeriod = m.FPeriod and b.FAccountID = m.FAccountID "
    "and b.FDetailID = m.FDetailID and b.FCurrencyID = m.FCurrencyID "
    "where b.FCurrencyID > 0 and b.FDetailID > 0 "
    "and (b.FDebitFor <> isnull(m.FDebitFor, 0) or b.FCredit <> isnull(m.FCredit, 0))";

constexpr const char* kOneRowABalance =
    "select FYear, FPeriod, FAccountID, FDetailID as FOwner, FCurrencyID from t_Balance "
    "group by FYear, FPeriod, FAccountID, FDetailID, FCurrencyID having count(*) > 1 union all "
    "select FYear, FPeriod, FAccountID, FCustomer, FCurrencyID from t_rp_ContactBal "
    "group by FYear, FPeriod, FAccountID, FCustomer, FCurrencyID having count(*) > 1";

constexpr const char* kTrialBalance =
    "select FYear, FPeriod from t_Balance where FDetailID = 0 and FCurrencyID = 0 "
    "group by FYear, FPeriod "
    "having sum(FBeginBalance) <> 0 or sum(FEndBalance) <> 0 or sum(FDebit) <> sum(FCredit)";

constexpr const char* kBalancesRoll =
    "select b.FAccountID, b.FYear, b.FPeriod from t_Balance b inner join t_Balance n "
    "on n.FAccountID = b.FAccountID and n.FDetailID = b.FDetailID "
    "and n.FCurrencyID = b.FCurrencyID "
    "and n.FYear * 12 + n.FPeriod = b.FYear * 12 + b.FPeriod + 1 "
    "where n.FBeginBalance <> b.FEndBalance or n.FBeginBalanceFor <> b.FEndBalanceFor "
    "or b.FEndBalance <> b.FBeginBalance + b.FDebit - b.FCredit";

constexpr const char* kTotalsOfDetail =
    "select FYear, FPeriod, FAccountID, FCurrencyID from t_Balance "
    "where FAccountID in (1122, 1123, 1221, 2202, 2203, 2204, 2205, 2241) "
    "group by FYear, FPeriod, FAccountID, FCurrencyID "
    "having sum(case when FDetailID = 0 then FEndBalance else -FEndBalance end) <> 0 "
    "or sum(case when FDetailID = 0 then FDebitFor else -FDebitFor end) <> 0";

constexpr const char* kInvoiceLines =
    "select c.FID from t_rp_Contact c inner join "
    "(select FInterID, sum(FAmount) as FAmount, sum(FStdAmount) as FStdAmount from ICSaleEntry "
    "group by FInterID) e on c.FInvoiceID = e.FInterID and c.FType = 3 and c.FIsInit = 0 "
    "where c.FAmountFor <> e.FAmount or c.FAmount <> e.FStdAmount";

// An estimate's voucher carries the cost of the receipt that its record names.
constexpr const char* kEstimateVouchers =
    "select r.FID from t_MakeVouchTemp r inner join t_Voucher v on r.FVoucherID = v.FVoucherID "
    "inner join ICStockBill b on r.FSCBillInterID = b.FInterID inner join "
    "(select FInterID, sum(FAmount) as FAmount, sum(FProcessCost) as FProcessCost "
    "from ICStockBillEntry group by FInterID) e on b.FInterID = e.FInterID "
    "where v.FYear <> r.FYear or v.FPeriod <> r.FPeriod "
    "or v.FDebitTotal <> (case when r.FTranType in (-4000, 301) then -1 else 1 end) * "
    "(case when b.FTranType = 5 then e.FProcessCost else e.FAmount end)";

constexpr const char* kKnownPartners =
    "select c.FID from t_rp_Contact c left join t_Item i on c.FCustomer = i.FItemID "
    "and c.FItemClassID = i.FItemClassID where i.FItemID is null";

class Consistency : public testing::TestWithParam<Rule> {};

TEST_P(Consistency, HoldsInEverySet) {
  EXPECT_THAT(smallSet().rows(GetParam().violations), IsEmpty());
  EXPECT_THAT(generatedSet().rows(GetParam().violations), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Books, Consistency,
    testing::Values(Rule{"VouchersBalance", kVouchersBalance}, Rule{"VoucherHeads", kVoucherHeads},
                    Rule{"VoucherNumbers", kVoucherNumbers},
                    Rule{"BalancesFollowVouchers", kBalancesFollowVouchers},
                    Rule{"OneRowABalance", kOneRowABalance}, Rule{"TrialBalance", kTrialBalance},
                    Rule{"BalancesRoll", kBalancesRoll}, Rule{"TotalsOfDetail", kTotalsOfDetail},
                    Rule{"InvoiceLines", kInvoiceLines},
                    Rule{"EstimateVouchers", kEstimateVouchers},
                    Rule{"KnownPartners", kKnownPartners}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace velmora::cli::demo
