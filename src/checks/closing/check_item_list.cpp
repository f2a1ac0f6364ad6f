#include "checks/closing/check_item_list.h"

#include <functional>

#include "checks/closing/check_settings.h"
#include "checks/closing/query_builders.h"
#include "common/messages.h"

namespace velmora::closing {

using collections::Dictionary;
using collections::DictionaryRef;

namespace {

/// One closing check before its query is built.
struct CheckItem {
  bool included;
  const char* caption;
  std::function<std::string()> query;
  std::string name;  ///< in the caller's language, as a tagged value
  bool serious;
  std::string message;  ///< in the caller's language, with the columns it shows
  std::int16_t type = 0;
};

/// Builds the items of one call.
class CheckItems {
 public:
  CheckItems(const CDataSource& dataSource, Dictionary& dFilter)
      : dataSource_(dataSource),
        dFilter_(dFilter),
        settings_(completeFilter(dataSource, dFilter)),
        language_(dFilter.Value("strLanguage").toText()) {}

  /// In the order in which they are run.
  std::vector<CheckItem> all() const;
  DictionaryRef build(const CheckItem& item, Place& place) const;

 private:
  std::vector<CheckItem> auditItems() const;
  std::vector<CheckItem> voucherItems() const;
  std::vector<CheckItem> advanceItems() const;
  std::vector<CheckItem> periodItems() const;

  std::string lookup(std::string_view text) const { return LoadMessage(text, language_); }
  /// An item name written with "%1" for the flag of its tagged value.
  std::string flagged(std::string_view name) const {
    return LoadMessageFmt(name, language_, {"0|"});
  }
  /// The query of a builder that takes the filter alone.
  template <class Filter>
  std::function<std::string()> query(std::string (*builder)(Filter&)) const {
    return [this, builder] { return builder(dFilter_); };
  }
  std::function<std::string()> transfersQuery(bool advances) const {
    return [this, advances] {
      dFilter_.Set("bPreChecked", advances);
      return GetUnVchExtBillStr([this]() -> const CDataSource& { return dataSource_; }, dFilter_);
    };
  }
  std::string settlementsInPeriod() const;
  std::string writeOffTransfersQuery() const;
  std::string returnedBillsQuery() const;

  const CDataSource& dataSource_;
  Dictionary& dFilter_;
  CheckSettings settings_;
  std::string language_;
};

constexpr const char* kDocumentMessage = "%1[%2]:%3|FType,FBillNo,FErrInfo";

/// The end of the queries over settlement records: side and settlement date.
std::string CheckItems::settlementsInPeriod() const {
  return " and fcheckdate>='" + settings_.periodStart.toDateText() + "' and fcheckdate<='" +
         settings_.periodEnd.toDateText() + "'";
}

std::string sideCondition(const CheckSettings& settings) {
  if (settings.bothSides) return {};
  return settings.bArp ? " and FRP=1" : " and FRP=0";
}

std::string CheckItems::writeOffTransfersQuery() const {
  return std::string(" select distinct fid from t_rp_newcheckinfo   ") +
         " where FARToAR in (0,1) " + " and FVoucherID<=0 " + sideCondition(settings_) +
         " and FZXID>0 " + settlementsInPeriod();
}

std::string CheckItems::returnedBillsQuery() const {
  return std::string(" select 1 from t_rp_newcheckinfo   ") + " where FUnTread=1 " +
         " and FVoucherID<=0 " + sideCondition(settings_) + settlementsInPeriod();
}

std::vector<CheckItem> CheckItems::auditItems() const {
  const CheckSettings& s = settings_;
  return {
      {s.unaudited, "没有审核的单据", query(GetUnAuditArpBillStr), lookup("0|单据审核检查"),
       s.auditDemanded, kDocumentMessage},
      {s.unaudited, "没有核销的现购费用发票", query(GetUnCheckExpInvoiceStr),
       lookup("0|现购费用发票检查"), s.controlAccounts, kDocumentMessage},
  };
}

std::vector<CheckItem> CheckItems::voucherItems() const {
  const CheckSettings& s = settings_;
  const bool included = s.unvouchered && (s.voucherDemanded || s.allErrors);
  return {
      {included, "没有生成凭证的单据", query(GetUnVchArpBillStr), lookup("0|单据凭证检查"),
       s.voucherDemanded, kDocumentMessage},
      {included, "没有生成凭证的票据", query(GetUnVchBillStr), flagged("%1票据凭证检查"),
       s.voucherDemanded, kDocumentMessage},
      {included, "没有生成凭证的转销单据", [this] { return writeOffTransfersQuery(); },
       flagged("%1转销凭证检查"), s.voucherDemanded,
       lookup("账款的转销凭证还未生成。核销序号：") + "%1|FID"},
      {included, "没有生成凭证的退票单据", [this] { return returnedBillsQuery(); },
       flagged("%1退票凭证检查"), s.voucherDemanded, lookup("账款的退票凭证还未生成"), 1},
      {included, "没有生成凭证的转账单据", transfersQuery(false), flagged("%1转账凭证检查"),
       s.voucherDemanded, "%1[%2][" + lookup("核销序号:") + " %3]:%4|FType,FBillNo,FID,FErrInfo"},
  };
}

std::vector<CheckItem> CheckItems::advanceItems() const {
  const CheckSettings& s = settings_;
  return {
      {s.unvouchered && s.advanceVoucherDemanded, "没有生成凭证的转账单据", transfersQuery(true),
       flagged("%1转账凭证检查"), s.advanceVoucherDemanded,
       "%1[%2][" + lookup("核销序号:") + "%3]:%4|FType,FBillNo,FID,FErrInfo"},
      {s.vouchersWithoutDocuments && s.allErrors, "没有生成凭证的转账单据",
       query(GetNoBillVoucherStr), flagged("%1凭证检查"), false,
       "%1[%2-%3]:%4|FType,FGroupName,FNumber,FErrInfo"},
  };
}

std::vector<CheckItem> CheckItems::periodItems() const {
  const CheckSettings& s = settings_;
  return {
      {s.inventoryPeriods, "物流单据的期间与应收应付不一致", query(GetUnPeriodICBillStr),
       flagged("%1单据期间检查"), true, kDocumentMessage},
      {s.documentsAgainstVouchers, "单据期间与对应的凭证是否相符", query(GetUnPeriodVchBillStr),
       flagged("%1单据期间检查"), s.controlAccounts, kDocumentMessage},
      {s.documentsAgainstVouchers, "单据往来科目与对应的凭证是否相符",
       query(GetUnAccountArpBillStr), flagged("%1单据往来科目检查"), s.controlAccounts,
       kDocumentMessage},
      {s.modulePeriods, "当前期间与总账、物流系统匹配是否合理",
       [this] { return GetPeriodMatchStr(dataSource_, dFilter_); }, flagged("%1期间检查"), false,
       "%1|FErrInfo"},
      {true,
       s.bArp ? "检查当前期间现金系统发送的收款单是否已经确认"
              : "检查当前期间现金系统发送的付款单是否已经确认",
       query(GetUnConfirmCashBillStr), flagged("%1单据确认检查"), true, "%1|FErrInfo"},
  };
}

std::vector<CheckItem> CheckItems::all() const {
  std::vector<CheckItem> items;
  for (auto&& group : {auditItems(), voucherItems(), advanceItems(), periodItems()})
    for (const CheckItem& item : group)
      if (item.included) items.push_back(item);
  return items;
}

DictionaryRef CheckItems::build(const CheckItem& item, Place& place) const {
  auto entry = com::make<Dictionary>();
  const std::string caption = lookup(item.caption);
  place = caption;
  entry->Set("FCaption", caption);
  entry->Set("FSql", item.query());
  entry->Set("FType", item.type);
  entry->Set("FChkItem", item.name);
  entry->Set("FChkType", "0|" + lookup(item.serious ? "严重错误" : "警告信息"));
  entry->Set("FChkInfo", item.message);
  return entry;
}

}  // namespace

collections::VectorRef GetCheckItemDict(const CDataSource& dataSource, Dictionary& dFilter,
                                        Place& place) {
  place = "t_RP_SystemProfile";
  // Open for the whole list: the settings' own connections then find the account set open.
  const ScopedConnection held(dataSource.UnCommittedConnection());
  const CheckItems items(dataSource, dFilter);
  auto list = com::make<collections::Vector>();
  for (const CheckItem& item : items.all()) list->Add(items.build(item, place));
  return list;
}

}  // namespace velmora::closing
