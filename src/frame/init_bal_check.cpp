#include "frame/init_bal_check.h"

#include "checks/amount/amount_check.h"
#include "checks/amount/amount_statements.h"
#include "checks/closing/check_item_list.h"
#include "checks/closing/closing_data_check.h"
#include "checks/closing/query_builders.h"
#include "checks/period/initial_data_check.h"
#include "frame/call/operation.h"
#include "frame/get_data.h"

namespace velmora {

using collections::DictionaryRef;
using Result = com::Ref<com::IUnknown>;

namespace {

/// A query builder as a public operation: "" instead of a failure.
template <class Builder>
std::string buildQuery(Builder build, const DictionaryRef& dFilter) {
  return runOperation(
      Voting::abstains, [&](Place&) { return build(given(dFilter, "dFilter")); },
      [] { return std::string(); });
}

/// A writer of statements as a public operation: with the row access of the caller of the
/// object's operation before, if there was one; false instead of a failure.
template <class Writer>
bool writeStatements(Writer write, const CallSetup& call, const DictionaryRef& dFilter) {
  return runOperation(
      Voting::abstains,
      [&](Place&) {
        write(call.lastDataSource(), given(dFilter, "dFilter"));
        return true;
      },
      [] { return false; });
}

}  // namespace

bool clsInitBalCheck::CheckInitData(const std::string& sDsn, const DictionaryRef& dFilter,
                                    Result& rsReturn) {
  return runOperation(
      Voting::votes,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        place = "#ErrorInfo";
        rsReturn = period::checkInitData(call_.dataSource(), given(dFilter, "dFilter"));
        return true;
      },
      [&] {
        rsReturn = nullptr;
        return false;
      });
}

bool clsInitBalCheck::CheckClosingData(const std::string& sDsn, const DictionaryRef& dOption,
                                       Result& rsReturn, bool& bCanClose) {
  return runOperation(
      Voting::votes,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        rsReturn = closing::checkClosingData(call_.dataSource(), sDsn, given(dOption, "dOption"),
                                             bCanClose, place);
        return true;
      },
      [&] {
        bCanClose = false;
        rsReturn = nullptr;
        return false;
      });
}

Result clsInitBalCheck::GetCheckItemDict(const std::string& sDsn, const DictionaryRef& dFilter) {
  return runOperation(
      Voting::abstains,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        return Result(
            closing::GetCheckItemDict(call_.dataSource(), given(dFilter, "dFilter"), place));
      },
      [] { return nullptr; });
}

ado::RecordsetRef clsInitBalCheck::GetData(const std::string& sDsn, const std::string& sSql) {
  return getData(call_, sDsn, sSql);
}

std::string clsInitBalCheck::GetUnVchExtBillStr(const DictionaryRef& dFilter) {
  return buildQuery(
      [this](const auto& filter) {
        CallSetup own;  // of a caller that names his account set: for this call alone
        const auto dataSource = [&]() -> const CDataSource& {
          if (!filter.Lookup("sDSN")) return call_.dataSource();
          own.PrepareDataSource(filter.Value("sDSN").toText());
          return own.dataSource();
        };
        return closing::GetUnVchExtBillStr(dataSource, filter);
      },
      dFilter);
}

std::string clsInitBalCheck::GetUnVchBillStr(const DictionaryRef& dFilter) {
  return buildQuery(closing::GetUnVchBillStr, dFilter);
}

std::string clsInitBalCheck::GetUnVchInvoiceStr(DictionaryRef& dFilter) {
  return buildQuery(closing::GetUnVchInvoiceStr, dFilter);
}

std::string clsInitBalCheck::GetUnAccountArpBillStr(DictionaryRef& dFilter) {
  return buildQuery(closing::GetUnAccountArpBillStr, dFilter);
}

std::string clsInitBalCheck::GetUnVchArpBillStr(DictionaryRef& dFilter) {
  return buildQuery(closing::GetUnVchArpBillStr, dFilter);
}

std::string clsInitBalCheck::GetUnAuditArpBillStr(DictionaryRef& dFilter) {
  return buildQuery(closing::GetUnAuditArpBillStr, dFilter);
}

std::string clsInitBalCheck::GetNoBillVoucherStr(DictionaryRef& dFilter) {
  return buildQuery(closing::GetNoBillVoucherStr, dFilter);
}

Result clsInitBalCheck::GetClosingAmtCheck(const std::string& sDsn, DictionaryRef& dFilter) {
  return runOperation(
      Voting::abstains,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        return Result(
            amount::getClosingAmtCheck(call_.dataSource(), sDsn, given(dFilter, "dFilter"), place));
      },
      [] { return nullptr; });
}

Result clsInitBalCheck::GetInitAmtCheck(const std::string& sDsn, DictionaryRef& dFilter) {
  return runOperation(
      Voting::abstains,
      [&](Place& place) {
        call_.PrepareDataSource(sDsn);
        return Result(
            amount::getInitAmtCheck(call_.dataSource(), sDsn, given(dFilter, "dFilter"), place));
      },
      [] { return nullptr; });
}

bool clsInitBalCheck::GetClosingCheckDataSql(DictionaryRef& dFilter) {
  return writeStatements(amount::GetClosingCheckDataSql, call_, dFilter);
}

bool clsInitBalCheck::GetAmtCheckDataSql(DictionaryRef& dFilter) {
  return writeStatements(amount::GetAmtCheckDataSql, call_, dFilter);
}

}  // namespace velmora
