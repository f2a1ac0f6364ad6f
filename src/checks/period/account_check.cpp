#include "checks/period/account_check.h"

#include "checks/period/account_findings.h"
#include "checks/period/account_query.h"
#include "checks/period/item_classes.h"
#include "checks/period/open_rows.h"
#include "common/messages.h"
#include "common/system_profile.h"
#include "frame/call/text.h"
#include "velmora/collections/format.h"

namespace velmora::period {

using collections::Variant;

namespace {

/// Whether accounts must belong to a sub-system.
bool controlDemanded(const CDataSource& dataSource) {
  const Variant value = ReadSystemProfile(dataSource, "FCheckAccount", "ARP");
  return !value.isNull() && trimmed(value.toText()) == "1";
}

/// The texts of findings in the caller's language, looked up once for all of them.
struct FindingTexts {
  explicit FindingTexts(const std::string& language)
      : serious(LoadMessage("严重错误", language)),
        warning(LoadMessage("警告错误", language)),
        noColumns(LoadMessage("表 %1 缺少必要的应收应付科目字段", language)),
        missing(LoadMessage("表 %1-数据 %2(%3) 没有维护应收应付科目数据", language)),
        uncontrolled(LoadMessage(
            "表 %1-数据 %2(%3) 应收应付科目数据不正确，应该选择受控属性的科目。", language)) {}

  const std::string serious, warning;
  const std::string noColumns, missing, uncontrolled;
};

/// Examines one item class after the other.
class ItemClassChecks {
 public:
  ItemClassChecks(const ado::ConnectionRef& connection, const std::string& language,
                  bool controlDemanded)
      : connection_(connection), texts_(language), controlDemanded_(controlDemanded) {}

  void run(const ItemClass& itemClass) {
    // Without the columns no record can be asked for its accounts.
    if (!hasAccountColumns(connection_, itemClass)) return addNoColumns(itemClass);
    addRecords(itemClass, AccountFault::missing, texts_.missing);
    if (controlDemanded_) addRecords(itemClass, AccountFault::uncontrolled, texts_.uncontrolled);
  }

  AccountFindings& findings() noexcept { return findings_; }

 private:
  void addNoColumns(const ItemClass& itemClass) {
    const Variant parameters[] = {itemClass.name};
    findings_.add(texts_.serious, collections::FormatString(texts_.noColumns, parameters),
                  itemClass.name);
  }

  void addRecords(const ItemClass& itemClass, AccountFault fault, const std::string& text) {
    const auto rows = openRows(connection_, accountQuery(itemClass.table, itemClass.id, fault));
    const std::size_t number = rows->fieldIndex("FNumber"), name = rows->fieldIndex("FName");
    for (; !rows->EOF_(); rows->MoveNext()) {
      const Variant parameters[] = {itemClass.name, rows->GetValue(number), rows->GetValue(name)};
      findings_.add(texts_.warning, collections::FormatString(text, parameters), itemClass.name);
    }
  }

  const ado::ConnectionRef& connection_;
  const FindingTexts texts_;
  bool controlDemanded_;
  AccountFindings findings_;
};

}  // namespace

ado::RecordsetRef checkValidAccount(const CDataSource& dataSource, std::int32_t classTypeId,
                                    Place& place) {
  place = "t_ItemClass";
  const ScopedConnection connection(dataSource.UnCommittedConnection());
  if (classTypeId != 0) return AccountFindings().recordset();
  const std::string language = dataSource.parser().LanguageID();
  ItemClassChecks checks(*connection, language, controlDemanded(dataSource));
  for (const ItemClass& itemClass : itemClassesToCheck(*connection, language)) {
    place = itemClass.table;
    checks.run(itemClass);
  }
  return checks.findings().recordset();
}

}  // namespace velmora::period
