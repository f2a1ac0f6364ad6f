// Settlements that move amounts which the contact balances do not carry.

#include "checks/amount/amount_filter.h"
#include "checks/amount/query_builders.h"
#include "common/periods.h"
#include "common/sql_lines.h"
#include "common/system_profile.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

bool advancesNeedNoVoucher(ado::Connection& connection, bool arSubSystem) {
  const std::string query = std::string("select 1 from t_rp_Systemprofile where FKey='F") +
                            (arSubSystem ? "AR" : "AP") + "PreNeedVoucher' and FValue=0";
  return !connection.Execute(query)->EOF_();
}

/// The settled amount where the record's type is one of `types`.
std::string amountOf(const char* amount, const char* types, const char* column) {
  return std::string("case when b.FType in (") + types + ") then " + amount + " else 0 end " +
         column;
}

constexpr const char* kReceipts = "5,6,15,16";
constexpr const char* kBills = "1,2,3,4,11,12,13,14";

std::string copiedEntries(bool arSubSystem) {
  SqlLines sql;
  sql.line("SELECT b.FCheckDate FDate, b.FCheckDate FFincDate, b.FExplanation FBillTypeName,")
      .line(" ''+ CAST(b.FID AS nvarchar(20)) FBillNo, null FDetailTypeName,")
      .line(
          " v1.FName+'-'+CAST(v.FNumber AS nvarchar(20)) FVoucherNo, null FNote, null FContractNo,")
      .line(" t2.FName FDeptName, t3.FName FEmpName,")
      .line(" 0 FClassTypeID, 0 FTranType, 0 FInterID, 0 FImport, 0 FBillID, a.FType FType,")
      .line(" case when a.FIsinit=1 and a.FType in (5,6) then 1 else isnull(c.FPre,-2) end FPre,")
      .line(
          " t4.FYear FYear, t4.FPeriod FPeriod, b.FCurrencyID FCurrencyID, b.FCustomer FCustomer,")
      .line(" b.FRP Frp, b.FItemClassID ItemClassID, t1.FNumber ItemNo, 1 FStatus,")
      .line(
          " case when a.FIsinit=0 then case when a.FType in (1,2) then e.FAccountID"
          " when a.FType=3 then f.FCussentAcctID when a.FType=4 then g.FCussentAcctID"
          " when a.FType in (5,6) then d.FAccountID end else h.FAccountID end FAccountID,")
      .line(" " + amountOf("a.FCheckAmountFor", kReceipts, "FRpAmountFor,"))
      .line(" " + amountOf("a.FCheckAmount", kReceipts, "FRpAmount,"))
      .line(" " + amountOf("a.FCheckAmountFor", kBills, "FMustRpAmountFor,"))
      .line(" " + amountOf("a.FCheckAmount", kBills, "FMustRpAmount,"))
      .line(" 0 FDiscountAmountFor, 0 FDiscountAmount, 0 FSumSort,")
      .line(
          " case when b.FType in (5,6,15,16) then a.FCheckAmountFor else "
          "-1*(a.FCheckAmountFor) end FEndBalanceFor,")
      .line(
          " case when b.FType in (5,6,15,16) then a.FCheckAmount else "
          "-1*(a.FCheckAmount) end FEndBalance")
      .line("INTO #tempCheckInfo")
      .line("FROM t_rp_checkentry a")
      .line(" LEFT JOIN t_rp_newCheckInfo b on a.FID=b.FID and a.FContactID=b.FContactID")
      .line(
          " LEFT JOIN t_rp_newReceivebill c on a.FBillID=c.FBillID  and a.FType in(5,6,15,16) "
          "and a.FIsinit=0")
      .line(
          " LEFT JOIN t_rp_arbillofsh  d on a.FBillID=d.FBillID and a.FEntryID=d.FIndex and "
          "a.FType in(5,6,15,16) and a.FIsinit=0 ")
      .line(" LEFT JOIN t_rp_arpbill e on b.FBillID=e.FBillID")
      .line(" LEFT JOIN ICSale f on b.FBillID=f.FInterID")
      .line(" LEFT JOIN ICPurchase g on b.FBillID=g.FInterID")
      .line(" LEFT JOIN t_rp_begdata h on b.FBillID=h.FInterID")
      .line(" LEFT JOIN t_voucher v on b.FVoucherID=v.FVoucherID")
      .line(" LEFT JOIN t_VoucherGroup v1 on v.FGroupID=v1.FGroupID")
      .line(" LEFT JOIN t_Item t1 on b.FCustomer=t1.FItemID")
      .line(" LEFT JOIN t_Item t2 on b.FDepartment=t2.FItemID")
      .line(" LEFT JOIN t_Item t3 on b.FEmployee=t3.FItemID")
      .line(
          " LEFT JOIN t_PeriodDate t4 on b.FCheckDate>=t4.FStartDate and "
          "b.FCheckDate<=t4.FEndDate")
      .line(std::string(" WHERE b.FCheckType = 1 AND B.FRP=") + (arSubSystem ? "1" : "0"));
  return sql.text();
}

/// The branch's two parts: settlements before the period and within it.
class Branch {
 public:
  Branch(const Dictionary& dFilter, bool arSubSystem, std::int32_t periodsOfYear)
      : filter_(dFilter),
        arSubSystem_(arSubSystem),
        yearLength_(std::to_string(periodsOfYear)),
        period_(std::to_string(dFilter.Value("BYear").toInt32() * periodsOfYear +
                               dFilter.Value("BPeriod").toInt32())),
        firstItem_(dFilter.Value("BItemNumber").toText()),
        lastItem_(dFilter.Value("EItemNumber").toText()) {}

  std::string text() const { return before() + "\r\nUnion All\r\n" + within(); }

 private:
  std::string before() const {
    SqlLines sql;
    sql.line(" SELECT " + filter_.year + " FYear," + filter_.period + " FPeriod ," + rowColumns())
        .line(" SUM(FEndBalanceFor) fbegamountfor , SUM(FEndBalance) fbegamount,")
        .line(" 0 FCreditFor , 0 FCredit  ,")
        .line(" 0 fdebitfor , 0 fdebit ,")
        .line(" SUM(FEndBalanceFor) FAmountFor , SUM(FEndBalance) FAmount")
        .line(sources())
        .line(" WHERE K.FYear*" + yearLength_ + "+K.FPeriod<" + period_ + conditions())
        .line(" Group By K.FYear , K.FPeriod, K.FCustomer,t2.FAccountID" + currencyGroup());
    return sql.text();
  }

  std::string within() const {
    const char* receipts = "SUM(FRpAmountFor) fdebitfor , SUM(FRpAmount) fdebit ,";
    const char* bills = "SUM(FMustRpAmountFor) FCreditFor , SUM(FMustRpAmount) FCredit  ,";
    const char* billsFirst = "SUM(FMustRpAmountFor) fdebitfor , SUM(FMustRpAmount) fdebit ,";
    const char* receiptsThen = "SUM(FRpAmountFor) FCreditFor , SUM(FRpAmount) FCredit  ,";
    SqlLines sql;
    sql.line(" SELECT K.FYear,K.FPeriod ," + rowColumns())
        .line(" 0 fbegamountfor , 0 fbegamount,")
        .line(std::string(" ") + (filter_.bArp ? receipts : billsFirst))
        .line(std::string(" ") + (filter_.bArp ? bills : receiptsThen))
        .line(" SUM(FEndBalanceFor) FAmountFor , SUM(FEndBalance) FAmount")
        .line(sources())
        .line(" WHERE K.FYear=" + filter_.year + " And K.FPeriod=" + filter_.period + conditions())
        .line(std::string(" And k.Frp=") + (arSubSystem_ ? "1" : "0") +
              " and K.ItemClassID=" + filter_.itemClass)
        .line(" Group By K.FYear , K.FPeriod, K.FCustomer,t2.FAccountID,t2.FDC" + currencyGroup());
    return sql.text();
  }

  std::string rowColumns() const {
    return std::string(filter_.bShowDetail ? "K.FCustomer " : " 0 ") +
           " as FItemClassID,t2.FAccountID," + (filter_.bChkForAdjust ? "k.FCurrencyID," : "");
  }

  static std::string sources() {
    return " FROM #tempCheckInfo K\r\n LEFT JOIN t_Account t2 on K.FAccountID=t2.FAccountID";
  }

  std::string conditions() const {
    std::string text;
    if (!firstItem_.empty()) text += " And K.ItemNo>='" + firstItem_ + "'";
    if (!lastItem_.empty()) text += " And K.ItemNo<='" + lastItem_ + "'";
    if (filter_.currencyId > 0) text += " And K.FCurrencyID=" + filter_.currency;
    return text + " And t2.FAccountID IN (" + filter_.accounts + ")";
  }

  std::string currencyGroup() const { return filter_.bChkForAdjust ? ",k.FCurrencyID" : ""; }

  AmountFilter filter_;
  bool arSubSystem_;
  std::string yearLength_, period_, firstItem_, lastItem_;
};

}  // namespace

void GetCheckInfoSql(const CDataSource& dataSource, ado::Connection& connection,
                     Dictionary& dFilter) {
  const bool arSubSystem = IsArSubSystem(dataSource);
  if (advancesNeedNoVoucher(connection, arSubSystem)) {
    dFilter.Set("strCheckInfoSQL", "");
    return;
  }
  connection.Execute(copiedEntries(arSubSystem));
  dFilter.Set("strCheckInfoSQL", Branch(dFilter, arSubSystem, GetMaxPeriod(dataSource)).text());
}

}  // namespace velmora::amount
