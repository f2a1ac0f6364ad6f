#include "checks/closing/check_settings.h"

#include "common/periods.h"
#include "common/system_profile.h"

namespace velmora::closing {

using collections::Dictionary;
using collections::Variant;

namespace {

/// The value under `key`, `fallback` stored there when it is absent.
bool storedFlag(Dictionary& dFilter, std::string_view key, bool fallback) {
  if (!dFilter.Lookup(key)) dFilter.Set(key, fallback);
  return dFilter.Value(key).toBool();
}

/// Decimals of the local currency.
std::int32_t localDecimal(const CDataSource& dataSource) {
  constexpr std::int32_t usual = 2;
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const auto currency = com::make<ado::Recordset>();
  currency->CursorLocation(ado::adUseClient);
  currency->Open(" select * from t_currency where fcurrencyid =1 ", *connection,
                 ado::adOpenUnspecified, ado::adLockReadOnly);
  if (currency->EOF_()) return usual;
  const Variant scale = currency->Fields()("FScale").Value();
  return scale.isNull() ? usual : scale.toInt32();
}

bool profileFlag(const CDataSource& dataSource, std::string_view key) {
  return ReadSystemProfile(dataSource, key, "ARP", "1").toBool();
}

bool checkAccountFlag(const CDataSource& dataSource, Dictionary& dFilter) {
  if (!dFilter.Lookup("bCheckAccount"))
    dFilter.Set("bCheckAccount", ReadSystemProfile(dataSource, "FCheckAccount", "ARP").toBool());
  return dFilter.Value("bCheckAccount").toBool();
}

/// The part that comes from the caller, defaults stored in the order of the options.
CheckSettings readOptions(const CDataSource& dataSource, Dictionary& dFilter) {
  CheckSettings settings{};
  dFilter.Set("strLanguage", dataSource.parser().LanguageID());
  settings.bArp = storedFlag(dFilter, "bArp", true);
  settings.bothSides = dFilter.Value("bShowAll").toBool();
  dFilter.Set("LocalDecimal", localDecimal(dataSource));
  settings.unaudited = storedFlag(dFilter, "bChkUnAudit", true);
  settings.unvouchered = storedFlag(dFilter, "bchkUnVoucher", true);
  storedFlag(dFilter, "bCheckPassed", false);
  settings.allErrors = storedFlag(dFilter, "bShowAllError", false);
  settings.vouchersWithoutDocuments = storedFlag(dFilter, "bChkNOBillVoucher", false);
  storedFlag(dFilter, "bchkCheckRate", false);
  settings.documentsAgainstVouchers = storedFlag(dFilter, "bchkUnPeriodVch", false);
  storedFlag(dFilter, "bchkUnAmountVch", false);
  settings.controlAccounts = checkAccountFlag(dataSource, dFilter);
  if (settings.controlAccounts) settings.documentsAgainstVouchers = true;
  settings.modulePeriods = storedFlag(dFilter, "bchkUnPeriodGYandGL", false);
  if (!dFilter.Lookup("CurrencyID")) dFilter.Set("CurrencyID", 0);
  if (!dFilter.Lookup("ItemFilter")) dFilter.Set("ItemFilter", "");
  settings.inventoryPeriods = dFilter.Value("bchkUnPeriod").toBool();
  return settings;
}

}  // namespace

CheckSettings completeFilter(const CDataSource& dataSource, Dictionary& dFilter) {
  CheckSettings settings = readOptions(dataSource, dFilter);
  const bool bArp = settings.bArp;
  const auto year = dFilter.Value("BYear").toInt32(), period = dFilter.Value("BPeriod").toInt32();
  settings.periodStart = GetPeriodStartDate(dataSource, bArp, year, period);
  settings.periodEnd = GetPeriodEndDate(dataSource, bArp, year, period);
  settings.voucherDemanded =
      profileFlag(dataSource, bArp ? "FARNeedMakeVoucher" : "FAPNeedMakeVoucher");
  settings.auditDemanded =
      profileFlag(dataSource, bArp ? "FARCloseNeedAudit" : "FAPCloseNeedAudit");
  settings.advanceVoucherDemanded =
      profileFlag(dataSource, bArp ? "FARPreNeedVoucher" : "FAPPreNeedVoucher");
  return settings;
}

}  // namespace velmora::closing
