#include "checks/closing/closing_data_check.h"

#include "checks/closing/findings.h"
#include "common/messages.h"
#include "common/system_profile.h"
#include "velmora/collections/vector.h"
#include "velmora/com/context.h"
#include "velmora/init_bal_check.h"

namespace velmora::closing {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::VectorRef;

namespace {

struct FiscalPeriod {
  std::int32_t year, period;
};

FiscalPeriod periodToCheck(const CDataSource& dataSource, const Dictionary& dOption, bool bArp) {
  if (dOption.Lookup("BYear"))
    return {dOption.Value("BYear").toInt32(), dOption.Value("BPeriod").toInt32()};
  return {readCurrentYear(dataSource, bArp), readCurrentPeriod(dataSource, bArp)};
}

void requirePeriod(const FiscalPeriod& period, bool bArp) {
  if (period.year != 0 && period.period != 0) return;
  throw com::Error(com::error::kInvalidArgument, "clsInitBalCheck",
                   std::string(period.year == 0 ? "BYear" : "BPeriod") +
                       " is 0; expected a fiscal year and period, from the options BYear and "
                       "BPeriod or without BYear from the system profile's " +
                       (bArp ? "FARCurYear and FARCurPeriod" : "FAPCurYear and FAPCurPeriod"));
}

DictionaryRef listFilter(const CDataSource& dataSource, const Dictionary& dOption) {
  const bool bArp = dOption.GetValue("bArp", true).toBool();
  const FiscalPeriod period = periodToCheck(dataSource, dOption, bArp);
  requirePeriod(period, bArp);
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", bArp);
  filter->Set("BYear", period.year);
  filter->Set("BPeriod", period.period);
  filter->Set("bShowAllError", dOption.GetValue("bShowAllError", false).toBool());
  filter->Set("bChkUnPeriodVch", false);
  filter->Set("bChkUnPeriod", true);
  filter->Set("bChkNOBillVoucher", false);
  return filter;
}

/// Runs the items of the check list through the second instance and gathers what they
/// find.
class ItemRunner {
 public:
  ItemRunner(com::IDispatch& queries, const std::string& sDsn, const std::string& language,
             bool& bCanClose)
      : queries_(queries),
        sDsn_(sDsn),
        seriousText_(LoadMessage("严重错误", language)),
        bCanClose_(bCanClose) {}

  void run(const Dictionary& item) {
    const std::string query = item.Value("FSql").toText();
    if (query.empty()) return;
    const auto rows = com::call(queries_, "GetData", sDsn_, query).toObject<ado::Recordset>();
    if (!rows)
      throw com::Error(com::error::kFailed, "clsInitBalCheck", "GetData answered no recordset");
    if (rows->EOF_()) return;
    if (item.Value("FChkType").toText().find(seriousText_) != std::string::npos) bCanClose_ = false;
    findings_.add(item, *rows);
  }

  Findings& findings() noexcept { return findings_; }

 private:
  com::IDispatch& queries_;
  const std::string& sDsn_;
  std::string seriousText_;
  bool& bCanClose_;
  Findings findings_;
};

/// The caller's progress object, if there is one.
com::Ref<com::IDispatch> progressObject(const Dictionary& dOption) {
  const Variant given = dOption.Value("OnProgress");
  if (given.type() != collections::VarType::object) return {};
  return given.toObject<com::IDispatch>();
}

/// Tells it which check comes next.
void showProgress(const com::Ref<com::IDispatch>& progress, const Dictionary& item,
                  std::size_t index, std::size_t count) {
  if (!progress) return;
  com::call(*progress, "Progress", item.Value("FCaption"), static_cast<std::int32_t>(index),
            static_cast<std::int32_t>(count));
}

}  // namespace

ado::RecordsetRef checkClosingData(const CDataSource& dataSource, const std::string& sDsn,
                                   const Dictionary& dOption, bool& bCanClose, Place& place) {
  place = "t_RP_SystemProfile";
  // Open for the whole check: the queries' own connections then find the account set open.
  const ScopedConnection held(dataSource.UnCommittedConnection());
  const std::string language = dataSource.parser().LanguageID();
  const auto progress = progressObject(dOption);
  const DictionaryRef filter = listFilter(dataSource, dOption);
  const auto queries = com::GetObjectContext().CreateInstance(_clsInitBalCheck::kProgId);
  const auto items =
      com::call(*queries, "GetCheckItemDict", sDsn, filter).toObject<collections::Vector>();
  if (!items) raiseReasonOf("GetCheckItemDict", place);

  ItemRunner runner(*queries, sDsn, language, bCanClose);
  for (std::size_t i = 0; i < items->Size(); ++i) {
    const DictionaryRef item = items->Item(i).toObject<Dictionary>();
    place = item->Value("FCaption").toText();
    showProgress(progress, *item, i + 1, items->Size());
    runner.run(*item);
  }
  if (runner.findings().count() == 0) bCanClose = true;
  return runner.findings().recordset();
}

}  // namespace velmora::closing
