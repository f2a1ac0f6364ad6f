#include "checks/amount/amount_check.h"

#include "checks/amount/amount_statements.h"
#include "checks/amount/query_builders.h"
#include "frame/call/scoped_work_tables.h"

namespace velmora::amount {

using collections::Dictionary;

namespace {

void completeFilter(const CDataSource& dataSource, const std::string& sDsn, Dictionary& dFilter) {
  dFilter.Set("strLanguage", dataSource.parser().LanguageID());
  dFilter.Set("sDSN", sDsn);
  for (const char* key : {"bArp", "bShowDetail"})
    if (!dFilter.Lookup(key)) dFilter.Set(key, true);
}

/// The statements of one check, on one connection, in their order.
class Run {
 public:
  Run(const CDataSource& dataSource, ado::Connection& connection, const Dictionary& dFilter,
      Place& place)
      : dataSource_(dataSource), connection_(connection), dFilter_(dFilter), place_(place) {}

  void all() {
    statement("Chk_CreateTable");
    statement("Chk_InitArpAmt");
    adjust("bZanGu", EstimateKind::goodsReceipts);
    adjust("bWeiWai", EstimateKind::outsourcedProcessing);
    statement("Chk_InitGlAmt");
    statement("Chk_UpdateTable");
  }

 private:
  void statement(const char* key) {
    place_ = key;
    execute(dFilter_.Value(key).toText());
  }

  /// Estimates are liabilities in local currency.
  void adjust(const char* option, EstimateKind kind) {
    if (dFilter_.Value("bArp").toBool() || !dFilter_.Value(option).toBool() ||
        dFilter_.Value("CurrencyID").toInt32() >= 2)
      return;
    place_ = option;
    execute(GetAdjustAmtSql(dataSource_, dFilter_, kind));
  }

  void execute(const std::string& text) {
    if (!text.empty()) connection_.Execute(text);
  }

  const CDataSource& dataSource_;
  ado::Connection& connection_;
  const Dictionary& dFilter_;
  Place& place_;
};

/// The rows of #AmtCheck as a recordset of its own.
ado::RecordsetRef takeRows(const ado::ConnectionRef& connection, const std::string& order,
                           Place& place) {
  place = "#AmtCheck";
  auto rows = com::make<ado::Recordset>();
  rows->CursorLocation(ado::adUseClient);
  rows->Open("select * from #AmtCheck " + order, connection, ado::adOpenStatic,
             ado::adLockReadOnly);
  rows->ActiveConnection(nullptr);
  return rows;
}

}  // namespace

ado::RecordsetRef getInitAmtCheck(const CDataSource& dataSource, const std::string& sDsn,
                                  Dictionary& dFilter, Place& place) {
  completeFilter(dataSource, sDsn, dFilter);
  if (!dFilter.Lookup("bChkForAdjust")) dFilter.Set("bChkForAdjust", false);
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const ScopedWorkTables tables(**connection, {"#AmtCheck", "#AmtDetail", "#tempCheckInfo"});
  place = "strCheckInfoSQL";
  GetCheckInfoSql(dataSource, **connection, dFilter);
  GetAmtCheckDataSql(&dataSource, dFilter);
  Run(dataSource, **connection, dFilter, place).all();
  const bool detail = dFilter.Value("bShowDetail").toBool();
  return takeRows(*connection,
                  detail ? "\r\n order by fyear, fperiod,  FAcctNumber,fsumsort,FItemClassNumber"
                         : " order by fid",
                  place);
}

ado::RecordsetRef getClosingAmtCheck(const CDataSource& dataSource, const std::string& sDsn,
                                     Dictionary& dFilter, Place& place) {
  completeFilter(dataSource, sDsn, dFilter);
  GetClosingCheckDataSql(&dataSource, dFilter);
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const ScopedWorkTables tables(**connection, {"#AmtCheck", "#AmtDetail", "#AmtAcct"});
  Run(dataSource, **connection, dFilter, place).all();
  return takeRows(*connection, " order by fid", place);
}

}  // namespace velmora::amount
