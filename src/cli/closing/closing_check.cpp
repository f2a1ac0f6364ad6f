#include "cli/closing/closing_check.h"

#include "checks/closing/findings.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "velmora/collections/vector.h"
#include "velmora/com/cancellation.h"
#include "velmora/com/class_table.h"
#include "velmora/com/dispatch_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;
constexpr const char* kClosingCheck = "the closing check";

using ChecksRef = com::Ref<_clsInitBalCheck>;

ChecksRef createChecks() {
  return componentObject<_clsInitBalCheck>();
}

/// What the closing check calls before each of its checks.
class ProgressObject final : public com::DispatchObject<ProgressObject> {
 public:
  explicit ProgressObject(CheckProgress progress) : progress_(std::move(progress)) {}

  void Progress(const std::string& caption, std::int32_t index, std::int32_t count) {
    progress_(caption, index, count);
  }

  static const com::DispatchTable<ProgressObject>& dispatchTable() {
    static const auto& table = []() -> const com::DispatchTable<ProgressObject>& {
      constexpr auto kId = com::Guid::parse("0F5B9D2A-6C1E-4B57-9A43-D5E8E7C2B610");
      static com::DispatchTable<ProgressObject> methods("CheckProgress", "", kId, kId);
      return methods.method("Progress", &ProgressObject::Progress, {"caption", "index", "count"});
    }();
    return table;
  }

 private:
  CheckProgress progress_;
};

DictionaryRef closingOptions(const ClosingOptions& options) {
  auto dictionary = com::make<Dictionary>();
  dictionary->Set("bArp", options.receivables);
  dictionary->Set("BYear", options.period.year);
  dictionary->Set("BPeriod", options.period.period);
  dictionary->Set("bShowAllError", options.showAll);
  return dictionary;
}

/// The filter that gives the checks of CheckClosingData.
DictionaryRef listFilter(const ClosingOptions& options) {
  auto filter = closingOptions(options);
  filter->Set("bChkUnPeriodVch", false);
  filter->Set("bChkUnPeriod", true);
  filter->Set("bChkNOBillVoucher", false);
  return filter;
}

/// The filter whose list has the check for vouchers without documents.
DictionaryRef voucherFilter(const ClosingOptions& options) {
  auto filter = listFilter(options);
  filter->Set("bShowAllError", true);
  filter->Set("bChkNOBillVoucher", true);
  filter->Set("AcctList", options.accountIds);
  return filter;
}

com::Ref<Vector> checkItems(_clsInitBalCheck& checks, const Session& session,
                            const DictionaryRef& filter) {
  auto items = checks.GetCheckItemDict(session.dsn(), filter).as<Vector>();
  if (!items) failFromErrorInfo("the list of closing checks");
  return items;
}

/// The check for vouchers without documents among all checks of `filter`: the one
/// with the query that GetNoBillVoucherStr gives.
DictionaryRef vouchersWithoutDocuments(_clsInitBalCheck& checks, const Session& session,
                                       const ClosingOptions& options) {
  auto filter = voucherFilter(options);
  const auto items = checkItems(checks, session, filter);
  const std::string sql = checks.GetNoBillVoucherStr(filter);
  for (const Variant& item : *items) {
    auto dictionary = item.toObject<Dictionary>();
    if (dictionary->Value("FSql").text() == sql) return dictionary;
  }
  throw Failure("the component offers no check for vouchers without documents");
}

/// Adds a closing check's result set, numbered on.
void addRows(ClosingReport& report, ado::Recordset& rows, const std::string& seriousText) {
  for (; !rows.EOF_(); rows.MoveNext()) {
    const auto text = [&](const char* column) {
      return rows.GetValue(rows.fieldIndex(column)).toText();
    };
    Finding finding{static_cast<int>(report.findings.size()) + 1, text("FChkItem"),
                    text("FChkType"), text("FChkInfo"), Severity::warning};
    finding.severity = severityOf(finding.severityText, seriousText);
    report.findings.push_back(std::move(finding));
  }
}

void addVouchersWithoutDocuments(ClosingReport& report, _clsInitBalCheck& checks,
                                 const Session& session, const ClosingOptions& options,
                                 const std::string& seriousText) {
  const auto item = vouchersWithoutDocuments(checks, session, options);
  try {
    closing::Findings found;
    found.add(*item, *checks.GetData(session.dsn(), item->Value("FSql").toText()));
    addRows(report, *found.recordset(), seriousText);
  } catch (const com::Error&) {
    fail(kClosingCheck, com::currentErrorInfo(item->Value("FCaption").toText()));
  }
}

void appendQuery(std::vector<CheckQuery>& queries, const Dictionary& item) {
  const auto sql = item.Value("FSql").text();
  if (!sql.empty())
    queries.push_back({std::string(item.Value("FCaption").text()), std::string(sql)});
}

}  // namespace

Period periodToCheck(const Session& session, const ClosingOptions& options) {
  const Period period = options.period.year != 0
                            ? options.period
                            : currentPeriod(session.connection(), options.receivables);
  requireInCalendar(session.connection(), period);
  return period;
}

ClosingReport runClosingCheck(const Session& session, const ClosingOptions& options,
                              CheckProgress progress) {
  const auto checks = createChecks();
  const auto dictionary = closingOptions(options);
  if (progress) dictionary->Set("OnProgress", com::make<ProgressObject>(std::move(progress)));
  com::Ref<com::IUnknown> rows;
  // With warnings only the operation leaves the verdict as it was handed in.
  bool mayClose = true;
  if (!checks->CheckClosingData(session.dsn(), dictionary, rows, mayClose))
    failFromErrorInfo(kClosingCheck);
  ClosingReport report{options.receivables, options.period, mayClose, {}};
  const std::string seriousText = seriousErrorText(session.language());
  addRows(report, *rows.as<ado::Recordset>(), seriousText);
  if (!options.accountIds.empty())
    addVouchersWithoutDocuments(report, *checks, session, options, seriousText);
  return report;
}

std::future<ClosingReport> startClosingCheck(const Session& session,
                                             const ClosingOptions& options) {
  return std::async(
      std::launch::async,
      [&session, options](const std::stop_token& cancelled) {
        const com::CancellationScope scope(cancelled);
        return runClosingCheck(session, options, {});
      },
      com::CurrentCancellation());
}

std::vector<CheckQuery> closingQueries(const Session& session, const ClosingOptions& options) {
  const auto checks = createChecks();
  const auto items = checkItems(*checks, session, listFilter(options));
  std::vector<CheckQuery> queries;
  for (const Variant& item : *items) appendQuery(queries, *item.toObject<Dictionary>());
  if (!options.accountIds.empty())
    appendQuery(queries, *vouchersWithoutDocuments(*checks, session, options));
  return queries;
}

}  // namespace velmora::cli
