#include "cli/demo/partners.h"

#include <array>

#include "cli/demo/numbering.h"

namespace velmora::cli::demo {

namespace {

struct Name {
  std::string_view simplified, traditional, english;
};

constexpr std::array<Name, 10> kPlaces{{{"北京", "北京", "Beijing"},
                                        {"上海", "上海", "Shanghai"},
                                        {"广州", "廣州", "Guangzhou"},
                                        {"香港", "香港", "Hong Kong"},
                                        {"西雅图", "西雅圖", "Seattle"},
                                        {"成都", "成都", "Chengdu"},
                                        {"武汉", "武漢", "Wuhan"},
                                        {"宁波", "寧波", "Ningbo"},
                                        {"九龙", "九龍", "Kowloon"},
                                        {"波士顿", "波士頓", "Boston"}}};

constexpr std::array<Name, 2> kTrades{
    {{"商贸公司", "商貿公司", " Trading"}, {"材料厂", "材料廠", " Materials"}}};

constexpr std::array<Currency, kCurrencyCycle> kCurrencies{kRenminbi, kRenminbi, kRenminbi,
                                                           kHongKongDollar, kUsDollar};

// Customers whose record lacks the payable account, or has one that no sub-system
// controls; of suppliers the receivable one. Neither is used: the accounts of their own
// side tell what the side posts to.
constexpr int kWithoutAccount = 8;
constexpr int kWithUncontrolledAccount = 9;

// Item ids: customers from here on, suppliers from a range of their own.
constexpr int kFirstCustomer = 1001;
constexpr int kFirstSupplier = 50'000'001;

/// Place and trade; from the second round on a number tells namesakes apart.
std::string nameOf(const SideTerms& side, int index, std::string_view Name::*language) {
  const int places = static_cast<int>(kPlaces.size());
  std::string name(kPlaces[static_cast<std::size_t>(index % places)].*language);
  name += kTrades[side.receivables() ? 0 : 1].*language;
  return index < places ? name : name + ' ' + std::to_string(index / places + 1);
}

Partner partnerAt(const SideTerms& side, int index) {
  return {.index = index,
          .id = (side.receivables() ? kFirstCustomer : kFirstSupplier) + index,
          .currency = kCurrencies[static_cast<std::size_t>(index % kCurrencyCycle)],
          .department = side.receivables() ? 101 : 102,
          .employee = side.receivables() ? 201 + index % 2 : 203};
}

/// The other side's account on the partner's record: `trade` unless it is at fault, then
/// 0 or the account of bills, `bills`.
int recordedAccount(Faults faults, int index, int trade, int bills) {
  if (faults == Faults::kLeftOut) return trade;
  if (index == kWithoutAccount) return 0;
  return index == kWithUncontrolledAccount ? bills : trade;
}

}  // namespace

std::vector<Partner> enterPartners(ado::ProviderConnection& connection, const SideTerms& side,
                                   int count, Faults faults) {
  TableWriter items(connection, "t_Item",
                    {"FItemID", "FItemClassID", "FNumber", "FName", "FName_CHT", "FName_EN"});
  TableWriter accounts(
      connection, side.receivables() ? "t_Organization" : "t_Supplier",
      {"FItemID", "FNumber", "FName", "FName_CHT", "FName_EN", "FDepartment", "FEmployee",
       "FCurrencyID", "FARAccountID", "FAPAccountID", "FPreAcctID", "FPreArAcctID", "FPreApAcctID",
       "FOtherArAcctID", "FOtherApAcctID", "FPayTaxAcctID"});
  TableWriter details(connection, "t_ItemDetailV", {"FDetailID", "FItemClassID", "FItemID"});
  std::vector<Partner> partners;
  partners.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index) {
    const Partner partner = partnerAt(side, index);
    const std::string number = numbered(side.receivables() ? "C" : "S", index + 1);
    const std::string simplified = nameOf(side, index, &Name::simplified);
    const std::string traditional = nameOf(side, index, &Name::traditional);
    const std::string english = nameOf(side, index, &Name::english);
    items.row(partner.id, side.itemClass, number, simplified, traditional, english);
    accounts.row(partner.id, number, simplified, traditional, english, partner.department,
                 partner.employee, partner.currency.id,
                 side.receivables() ? 1122 : recordedAccount(faults, index, 1122, 1121),
                 side.receivables() ? recordedAccount(faults, index, 2202, 2201) : 2202,
                 side.advance, 2203, 1123, 1221, 2241, 2221);
    details.row(partner.id, side.itemClass, partner.id);
    partners.push_back(partner);
  }
  items.store();
  accounts.store();
  details.store();
  return partners;
}

}  // namespace velmora::cli::demo
