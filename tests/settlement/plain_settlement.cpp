#include "plain_settlement.h"

#include <algorithm>
#include <set>

namespace velmora::settlement {

namespace {

Decimal number(const Row& row, const std::string& column) {
  return row.at(column).toDecimal();
}
void add(Row& row, const std::string& column, const Decimal& change) {
  row[column] = number(row, column) + change;
}
Decimal times(int sign, const Decimal& amount) {
  return sign < 0 ? -amount : amount;
}
/// amount / price, halves away from zero, with the decimals of the quantity but no more
/// than the column of the tests holds.
Decimal quantityFor(const Decimal& amount, const Row& row) {
  const Decimal price = number(row, "FTaxPrice");
  if (amount.isZero() || price.isZero()) return 0;
  return Decimal::divide(amount, price, std::min(row.at("FQtyDecimal").toInt32(), 4));
}

const char* const kCopied[] = {
    "FBillID",     "FType",     "FIsinit",          "FEntryID",      "FItemID",    "FUnitID",
    "FAuxPropID",  "FDetailID", "FSRCAmount",       "FSRCAmountFor", "FAccountID", "FDC",
    "FContractNo", "FOrderNo",  "FContractEntryID", "FOrderInterID", "FOrderType", "FOrderEntryID"};
const std::pair<const char*, const char*> kRenamed[] = {
    {"FContactID", "FID"},
    {"FBillRemainAmountFor", "FRemainAmountFor"},
    {"FBillRemainAmount", "FRemainAmount"},
    {"FBillRemainQty", "FRemainQty"}};
const char* const kComputed[] = {"FCheckAmountFor",  "FCheckAmount",  "FCheckQuantity",
                                 "FRemainAmountFor", "FRemainAmount", "FRemainQuantity"};

Row mirrorOf(const Row& pair) {
  Row mirror = pair;
  const auto exchange = [&mirror](const std::string& key) {
    std::swap(mirror[key], mirror[key + "_SRC"]);
  };
  for (const char* key : kCopied) exchange(key);
  for (const auto& [key, column] : kRenamed) exchange(key);
  for (const char* key : kComputed) exchange(key);
  return mirror;
}

void completeRemaining(Rows& chkInfo) {
  struct Totals {
    Decimal amountFor, amount, quantity;
  };
  std::map<std::string, Totals> totals;
  for (Row& row : chkInfo) {
    Totals& total = totals[row["FBillID"].toText() + "/" + row["FType"].toText() + "/" +
                           row["FEntryID"].toText()];
    const Decimal size = number(row, "FCheckQuantity").abs();
    row["FCheckQuantity"] = number(row, "FCheckAmountFor") > Decimal(0) ? size : -size;
    if (row["FBillRemainQty"].isNull())
      row["FRemainQuantity"] = collections::Null();
    else
      row["FRemainQuantity"] =
          number(row, "FBillRemainQty") - number(row, "FCheckQuantity") - total.quantity;
    row["FRemainAmountFor"] =
        number(row, "FBillRemainAmountFor") - total.amountFor - number(row, "FCheckAmountFor");
    row["FRemainAmount"] =
        number(row, "FBillRemainAmount") - number(row, "FCheckAmount") - total.amount;
    total.amountFor += number(row, "FCheckAmountFor");
    total.amount += number(row, "FCheckAmount");
    total.quantity += number(row, "FCheckQuantity");
  }
}

}  // namespace

/// The rows that a run may see.
struct PlainSettlement::View {
  Group group;
  int amountSign = 0;  // 0: any
  std::string amountColumn;

  bool inGroup(const Row& row) const {
    for (const auto& [column, value] : group)
      if (!(row.at(column) == value)) return false;
    return true;
  }
  bool shows(const Row& row) const {
    return inGroup(row) && (amountSign == 0 || number(row, amountColumn).sign() == amountSign) &&
           row.at("FRemark").toInt32() == 0;
  }
  bool isEmpty(const Rows& rows) const {
    for (const Row& row : rows)
      if (shows(row)) return false;
    return true;
  }
};

void PlainSettlement::settle(Rows* source, Rows* destination, Rows& chkInfo,
                             const std::vector<std::string>& groupBy) const {
  if (groupBy.empty()) return settleGroup(source, destination, chkInfo, {});
  std::set<std::string> known;
  std::vector<Group> groups;
  for (const Row& row : *source) {
    std::string key;
    Group group;
    for (const auto& name : groupBy) {
      key += row.at(name).toText() + "|";
      group[name] = row.at(name);
    }
    if (known.insert(key).second) groups.push_back(group);
  }
  for (const Group& group : groups) settleGroup(source, destination, chkInfo, group);
}

void PlainSettlement::settleGroup(Rows* source, Rows* destination, Rows& chkInfo,
                                  const Group& group) const {
  const std::string amount = column("FCheckAmountFor", "FCheckAmount");
  for (Rows* side : {source, destination})
    if (side != nullptr)
      allocate(*side, *side, chkInfo, -1, {group, 1, amount}, {group, -1, amount});
  if (source != nullptr && destination != nullptr)
    allocate(*source, *destination, chkInfo, 1, {group, 0, amount}, {group, 0, amount});
}

void PlainSettlement::allocate(Rows& first, Rows& second, Rows& chkInfo, int sign,
                               const View& firstView, const View& secondView) const {
  const std::string open = column("FNowRemainAmtFor", "FNowRemainAmt");
  if (firstView.isEmpty(first) || secondView.isEmpty(second)) return;
  for (Row& outer : second) {
    if (!secondView.shows(outer)) continue;
    Decimal remOut = number(outer, open);
    for (Row& inner : first) {
      if (remOut.isZero()) break;
      if (!firstView.shows(inner)) continue;
      Row pair;
      bool bothDone = false;
      if (number(inner, open).abs() < remOut.abs())
        useUpInner(inner, outer, remOut, sign, pair);
      else
        bothDone = useUpOuter(inner, outer, remOut, sign, pair);
      finish(inner, outer, pair, chkInfo);
      if (bothDone) break;
    }
  }
  completeRemaining(chkInfo);
}

void PlainSettlement::useUpInner(Row& inner, Row& outer, Decimal& remOut, int sign,
                                 Row& pair) const {
  const std::string open = column("FNowRemainAmtFor", "FNowRemainAmt");
  const std::string settled = column("FNowCheckAmtFor", "FNowCheckAmt");
  const Decimal remIn = number(inner, open);
  inner[settled] = inner.at(column("FCheckAmountFor", "FCheckAmount"));
  inner[open] = Decimal(0);
  inner["FRemark"] = 1;
  add(outer, settled, times(sign, remIn));
  add(outer, open, -times(sign, remIn));
  pair["FCheckAmount"] = pair["FCheckAmount_SRC"] = Decimal(0);
  if (mode_ == 0 && !number(outer, "FCheckAmount").isZero()) {
    const Decimal local = number(inner, "FNowRemainAmt");
    add(inner, "FNowCheckAmt", local);
    add(inner, "FNowRemainAmt", -local);
    pair["FCheckAmount"] = local;
    add(outer, "FNowCheckAmt", times(sign, local));
    add(outer, "FNowRemainAmt", -times(sign, local));
    pair["FCheckAmount_SRC"] = times(sign, local);
  }
  pair["FCheckQuantity"] = pair["FCheckQuantity_SRC"] = Decimal(0);
  if (withQuantity_) {
    if (!number(inner, "FCheckQty").isZero()) {
      pair["FCheckQuantity"] = inner["FNowRemainQty"];
      inner["FNowCheckQty"] = inner["FCheckQty"];
      inner["FNowRemainQty"] = Decimal(0);
    }
    if (!number(outer, "FCheckQty").isZero()) {
      Decimal share = times(sign, quantityFor(remIn, outer));
      if (share.abs() >= number(outer, "FNowRemainQty").abs())
        share = number(outer, "FNowRemainQty");
      add(outer, "FNowCheckQty", share);
      add(outer, "FNowRemainQty", -share);
      pair["FCheckQuantity_SRC"] = share;
    }
  }
  pair["FCheckAmountFor"] = remIn;
  pair["FCheckAmountFor_SRC"] = times(sign, remIn);
  setRemaining(inner, outer, pair);
  remOut -= times(sign, remIn);
}

bool PlainSettlement::useUpOuter(Row& inner, Row& outer, Decimal& remOut, int sign,
                                 Row& pair) const {
  const std::string open = column("FNowRemainAmtFor", "FNowRemainAmt");
  const std::string settled = column("FNowCheckAmtFor", "FNowCheckAmt");
  const bool bothDone = number(inner, open).abs() == remOut.abs();
  outer[settled] = outer.at(column("FCheckAmountFor", "FCheckAmount"));
  outer[open] = Decimal(0);
  outer["FRemark"] = 1;
  add(inner, settled, times(sign, remOut));
  add(inner, open, -times(sign, remOut));
  inner["FRemark"] = bothDone ? 1 : 0;
  pair["FCheckAmount"] = pair["FCheckAmount_SRC"] = Decimal(0);
  if (mode_ == 0 && !number(outer, "FCheckAmount").isZero()) {
    const Decimal local = number(outer, "FNowRemainAmt");
    add(outer, "FNowCheckAmt", local);
    add(outer, "FNowRemainAmt", -local);
    pair["FCheckAmount_SRC"] = local;
    add(inner, "FNowCheckAmt", times(sign, local));
    add(inner, "FNowRemainAmt", -times(sign, local));
    pair["FCheckAmount"] = times(sign, local);
  }
  pair["FCheckQuantity"] = pair["FCheckQuantity_SRC"] = Decimal(0);
  if (withQuantity_) {
    if (!number(outer, "FCheckQty").isZero()) {
      pair["FCheckQuantity_SRC"] = outer["FNowRemainQty"];
      outer["FNowCheckQty"] = outer["FCheckQty"];
      outer["FNowRemainQty"] = Decimal(0);
    }
    if (!number(inner, "FCheckQty").isZero()) {
      Decimal share = times(sign, quantityFor(remOut, inner));
      if (bothDone || share.abs() >= number(inner, "FNowRemainQty").abs())
        share = number(inner, "FNowRemainQty");
      add(inner, "FNowCheckQty", share);
      add(inner, "FNowRemainQty", -share);
      pair["FCheckQuantity"] = share;
    }
  }
  pair["FCheckAmountFor"] = times(sign, remOut);
  pair["FCheckAmountFor_SRC"] = remOut;
  setRemaining(inner, outer, pair);
  remOut = 0;
  return bothDone;
}

void PlainSettlement::setRemaining(const Row& inner, const Row& outer, Row& pair) const {
  const auto set = [&](const Row& document, const std::string& end) {
    const auto remaining = [&](const char* before, const std::string& settled) {
      return number(document, before) - number(document, settled);
    };
    pair["FRemainAmountFor" + end] =
        remaining("FRemainAmountFor", column("FNowCheckAmtFor", "FNowCheckAmt"));
    pair["FRemainAmount" + end] =
        mode_ == 0 ? remaining("FRemainAmount", "FNowCheckAmt") : Decimal(0);
    pair["FRemainQuantity" + end] =
        withQuantity_ ? remaining("FRemainQty", "FNowCheckQty") : Decimal(0);
  };
  set(inner, "");
  set(outer, "_SRC");
}

void PlainSettlement::finish(const Row& inner, const Row& outer, Row& pair, Rows& chkInfo) const {
  for (const std::string key : kCopied) {
    pair[key] = inner.at(key);
    pair[key + "_SRC"] = outer.at(key);
  }
  for (const auto& [key, column] : kRenamed) {
    pair[key] = inner.at(column);
    pair[std::string(key) + "_SRC"] = outer.at(column);
  }
  pair["FInvoiceID"] = inner.at("FBillID");
  pair["FPrice"] = inner.at("FPrice");
  pair["FTaxPrice"] = inner.at("FTaxPrice");
  if (mode_ == 1) {
    for (const std::string key : {"FCheckAmount", "FRemainAmount"})
      for (const char* end : {"", "_SRC"}) std::swap(pair[key + "For" + end], pair[key + end]);
  }
  chkInfo.push_back(pair);
  chkInfo.push_back(mirrorOf(pair));
}

}  // namespace velmora::settlement
