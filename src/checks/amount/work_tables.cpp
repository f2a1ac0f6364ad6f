#include "checks/amount/work_tables.h"

#include "checks/amount/amount_columns.h"
#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

constexpr const char* kAmount = " decimal(28,4) default(0)";

/// The amount columns of a measure as lines of a table, with a comma behind each.
void addAmounts(SqlLines& table, std::string_view measure) {
  table.line("    " + columnList(amountColumns(measure), "", kAmount) + ",");
}

void addMovements(SqlLines& table) {
  for (const std::string_view measure : kMovements) addAmounts(table, measure);
}

}  // namespace

std::string createAmtCheck(bool withCurrencyName, bool withMovements) {
  SqlLines table;
  table.line(" create table #AmtCheck (")
      .line("    FID int identity primary key,")
      .line("    FYear int default(0), FPeriod int default(0), FCurrencyID int default(0),")
      .lineIf(withCurrencyName, "    FCurrencyName nvarchar(20) default(''),")
      .line("    FAcctID int default(0), FAcctNumber varchar(200) default(''),")
      .line("    FAcctName nvarchar(200) default(''),")
      .line("    FItemClassID int default(0), FitemClassNumber varchar(255) default(''),")
      .line("    FItemClassName nvarchar(200) default(''),")
      .line("    FAmountDecimal int default(2),");
  addAmounts(table, kBalance);
  if (withMovements) addMovements(table);
  table.line("    FSort int default(0), FSumSort int default(0) )")
      .line(
          " create index idx_tmpAmtcheck_fyear on #AmtCheck (fyear, fperiod, facctnumber, "
          "FItemclassnumber)")
      .line(" create index idx_tmpAmtcheck_fcurrencyid on #AmtCheck (fcurrencyid)");
  return table.text();
}

std::string createAmtDetail(bool withMovements) {
  SqlLines table;
  table.line(" create table #AmtDetail (")
      .line("    FID int identity primary key,")
      .line("    FYear int default(0), FPeriod int default(0), FCurrencyID int default(0),")
      .line("    FAcctID int default(0), FAcctNumber varchar(200) default(''),")
      .line("    FItemClassID int default(0), FitemClassNumber varchar(255) default(''),")
      .line("    FClasstypeID int default(0), FBillID int default(0), FType int default(0),")
      .line("    FDC int default(0),");
  if (withMovements) addMovements(table);
  table.line("    " + columnList(amountColumns(kBalance), "", kAmount) + " )")
      .line(
          " create index idx_tmpAmtdetail_fyear on #AmtDetail (fyear, fperiod, facctnumber, "
          "FItemclassnumber)");
  return table.text();
}

std::string createAmtAcct() {
  return " create table #AmtAcct (FID int identity primary key, FAccountID int default(0),\r\n"
         "    FDC int default(1), FLogic int default(1), FDetailID int default(0) )";
}

std::string GetClosingTableSql(bool detail) {
  SqlLines batch;
  batch.line(" set nocount on ").line(createAmtCheck(false, true));
  if (detail) batch.line(createAmtDetail(true));
  return batch.line(createAmtAcct()).text();
}

}  // namespace velmora::amount
