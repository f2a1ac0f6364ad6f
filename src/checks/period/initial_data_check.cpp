#include "checks/period/initial_data_check.h"

#include "checks/period/initial_data_batch.h"
#include "checks/period/open_rows.h"
#include "common/system_profile.h"
#include "frame/call/scoped_work_tables.h"

namespace velmora::period {

using collections::Variant;

namespace {

InitialDataOptions optionsFrom(const CDataSource& dataSource,
                               const collections::Dictionary& dFilter) {
  InitialDataOptions options;
  options.bArp = dFilter.GetValue("bArp", true).toBool();
  options.language = dataSource.parser().LanguageID();
  const Variant demanded = ReadSystemProfile(dataSource, "FCheckAccount", "ARP");
  options.accountDemanded = !demanded.isNull() && !demanded.toDecimal().isZero();
  return options;
}

}  // namespace

ado::RecordsetRef checkInitData(const CDataSource& dataSource,
                                const collections::Dictionary& dFilter) {
  // Open before the setting is read, whose own connection then finds the account set open.
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  const InitialDataOptions options = optionsFrom(dataSource, dFilter);
  const ScopedWorkTables tables(**connection, {kErrorInfo});
  connection->Execute(initialDataBatch(options));
  auto findings = openRows(*connection, " select * from #ErrorInfo ");
  findings->ActiveConnection(nullptr);
  return findings;
}

}  // namespace velmora::period
