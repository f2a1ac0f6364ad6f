// Liabilities estimated for receipts whose invoice has not come yet.

#include "checks/amount/estimate_terms.h"
#include "checks/amount/receipt_matches.h"
#include "common/sql_lines.h"

namespace velmora::amount {

namespace {

constexpr const char* kSubcontractMatches = " and ftrantype=1002523";

constexpr const char* kVoucheredOrExempt = "and (b.FVoucherID=-1  or b.FVoucherID> 0) ";
constexpr const char* kVoucheredExemptOrOpen =
    "and ( b.FVoucherID=-1 or b.FVoucherID > 0 or b.FVoucherID is null)";

/// The record types of estimates and of their reversals.
struct RecordTypes {
  const char *estimate, *reversal;
};

RecordTypes recordTypes(EstimateKind kind) {
  return kind == EstimateKind::goodsReceipts ? RecordTypes{"4000", "-4000"}
                                             : RecordTypes{"5", "301"};
}

/// "= K", or for the opening part and the initial check the comparison with what lies
/// before.
std::string comparedWithPeriod(const EstimateTerms& t) {
  return (t.opening ? "< " : t.filter.initial() ? "<= " : "= ") + t.period;
}

std::string documentPeriod(const EstimateTerms& t) {
  return (t.opening ? " and b.FYear*" : " and  b.FYear*") + t.yearLength + "+b.FPeriod " +
         comparedWithPeriod(t);
}

/// The period of a voucher-making record (tz). An estimate that came over from before the
/// start of the inventory module was recorded one period late.
std::string recordPeriod(const EstimateTerms& t) {
  if (t.kind != EstimateKind::goodsReceipts) return documentPeriod(t);
  const std::string recorded = "tz.FYear*" + t.yearLength + "+tz.FPeriod";
  return " and (case when b.FVoucherID = -1 or (b.FDate<'" + t.inventoryStart +
         "' and tz.FTranType in (4000,5)) then " + recorded + "-1 else " + recorded + " end) " +
         comparedWithPeriod(t);
}

std::string documents(const EstimateTerms& t) {
  return " From (" + GetStockBillSql(t.kind) + ") b";
}

/// A query of one amount, the same in local and document currency: estimates are kept in
/// local currency. Without grouping columns no documents must give no row, not Null.
std::string amountQuery(const EstimateTerms& t, const std::string& periodColumns,
                        const std::string& amount, const std::string& from,
                        const std::string& grouping) {
  SqlLines query;
  query
      .line("Select " + periodColumns + t.columns("b.") + amount + " FAmountFor," + amount +
            " FAmount")
      .line(from)
      .line(grouping.empty() ? "having count(*)>0" : grouping);
  return query.text();
}

std::string withPeriod(const EstimateTerms& t, const std::string& period) {
  const std::string rest = t.grouping("b.");
  return "group by " + period + (rest.empty() ? "" : "," + rest.substr(rest.find("b.")));
}

// --- Quantity rule -----------------------------------------------------------------------

/// What was not matched before the period.
std::string unmatchedBefore(const EstimateTerms& t, const std::string& matches) {
  const std::string before = " and " + t.matchPeriod() + "<" + t.period + matches;
  SqlLines from;
  from.line(documents(t))
      .line("left join " + partialMatches(before, false, "tz") + onEntry("tz"))
      .line("left join " + fullMatches(before, "ty") + onEntry("ty"))
      .line(t.fullJoins())
      .line(t.fullCondition(documentPeriod(t)))
      .line(kVoucheredOrExempt);
  return amountQuery(t, "",
                     "sum(case when ty.FEquityHook=1 then 0 else case when b.FQty=0  then 0 else "
                     "((b.FQty-isnull(tz.FHookQty,0))*b.FAmount/b.FQty) end end)",
                     from.text(), t.grouping("b."));
}

std::string receiptsOfPeriod(const EstimateTerms& t) {
  SqlLines from;
  from.line(documents(t))
      .line(t.fullJoins())
      .line(t.fullCondition(documentPeriod(t)))
      .line(kVoucheredOrExempt);
  return amountQuery(t, "b.FYear,b.FPeriod,", "sum(b.FAmount)", from.text(),
                     withPeriod(t, "b.FYear,b.FPeriod"));
}

/// What was matched within the period; `documentConditions` are joins and conditions over
/// the receipts.
std::string matchedInPeriod(const EstimateTerms& t, const std::string& table,
                            const std::string& alias, const std::string& documentConditions,
                            const std::string& amount) {
  SqlLines from;
  from.line(documents(t))
      .line("join " + table + onEntry(alias))
      .line(documentConditions)
      .line(kVoucheredOrExempt);
  const std::string period = alias + ".FYear," + alias + ".FPeriod";
  return amountQuery(t, period + ",", amount, from.text(), withPeriod(t, period));
}

std::vector<std::string> quantityMovements(const EstimateTerms& t, const std::string& matches,
                                           const std::string& documentConditions) {
  const std::string within = " and " + t.matchPeriod() + "=" + t.period + matches;
  return {
      receiptsOfPeriod(t),
      matchedInPeriod(t, partialMatches(within, true, "tz"), "tz", documentConditions,
                      "sum(case b.FQty when 0 then 0 else -tz.FHookQty*b.FAmount/b.FQty end)"),
      matchedInPeriod(t, fullMatches(within, "ty"), "ty", documentConditions, "sum(-b.FAmount)")};
}

/// Receipts of any period.
std::vector<std::string> quantityMovements(const EstimateTerms& t) {
  return quantityMovements(t, "", t.accessFrom + "\r\n" + t.reducedCondition());
}

/// Receipts of the period with the matches of subcontract receipts alone.
std::vector<std::string> subcontractMovements(const EstimateTerms& t) {
  return quantityMovements(t, kSubcontractMatches,
                           t.fullJoins() + "\r\n" + t.fullCondition(documentPeriod(t)));
}

// --- Voucher rule ------------------------------------------------------------------------

/// An estimate record counts, its reversal counts against it.
std::string recordAmount(EstimateKind kind) {
  const auto [estimate, reversal] = recordTypes(kind);
  return std::string("case when tz.FTrantype=") + estimate +
         " then b.famount when tz.FTrantype=" + reversal + " then -b.famount else 0 end";
}

std::string estimatedBefore(const EstimateTerms& t) {
  const std::string before = " and " + t.matchPeriod() + "<" + t.period;
  SqlLines from;
  from.line(documents(t))
      .line(" join t_makevouchtemp tz on b.finterid=tz.fscbillinterid")
      .line("left join " + fullMatches(before, "ty") + onEntry("ty"))
      .line(t.fullJoins())
      .line(t.fullCondition(recordPeriod(t)))
      .line(kVoucheredExemptOrOpen);
  return amountQuery(t, "",
                     "sum(case when ty.FEquityHook=1 then 0 else " + recordAmount(t.kind) + " end)",
                     from.text(), t.grouping("b."));
}

/// The records of the period, up to the period in which the receipt was matched in full.
/// They count in the period of the check, which is what their condition compares with.
std::string recordsOfPeriod(const EstimateTerms& t) {
  const auto [estimate, reversal] = recordTypes(t.kind);
  SqlLines from;
  from.line(documents(t))
      .line(" join t_makevouchtemp tz on b.finterid=tz.fscbillinterid")
      .line("left join " + fullMatches("", "tb") + onEntry("tb"))
      .line(t.fullJoins())
      .line(t.fullCondition(recordPeriod(t)))
      .line(std::string("and tz.ftrantype in (") + estimate + "," + reversal + ")")
      .line("and tz.FYear*12+tz.FPeriod<=isnull(tb.FYear*12+tb.FPeriod,999999)")
      .line(kVoucheredExemptOrOpen);
  return amountQuery(t, t.filter.year + " FYear," + t.filter.period + " FPeriod,",
                     "sum(" + recordAmount(t.kind) + ")", from.text(), t.grouping("b."));
}

/// Receipts by the last of their records up to the period: reversals follow estimates one
/// by one, so more estimates than reversals mean that an estimate is the last one.
std::string lastRecords(const EstimateTerms& t) {
  const auto [estimate, reversal] = recordTypes(t.kind);
  const std::string isEstimate =
      std::string("case when FTranType=") + estimate + " then 1 else -1 end";
  SqlLines table;
  table
      .line(std::string("(select FSCBillInterID,case when sum(") + isEstimate + ")>0 then " +
            estimate + " else " + reversal + " end FTranType from t_makevouchtemp")
      .line(std::string("where FTranType in (") + estimate + "," + reversal + ") and " +
            t.matchPeriod() + "<=" + t.period)
      .line("group by FSCBillInterID) it");
  return table.text();
}

/// Estimates that a full match of the period cleared.
std::string clearedInPeriod(const EstimateTerms& t) {
  const std::string within = " and " + t.matchPeriod() + "=" + t.period;
  SqlLines from;
  from.line(documents(t))
      .line("join " + fullMatches(within, "ty") + onEntry("ty"))
      .line("join " + lastRecords(t) + " on b.FInterID=it.FSCBillInterID")
      .lineIf(!t.accessFrom.empty(), t.accessFrom)
      .line(t.reducedCondition())
      .line(std::string("and it.FTranType=") + recordTypes(t.kind).estimate)
      .line("and (b.FAmount)<>0")
      .line("and Isnull(b.FVoucherID,0)<>0");
  const std::string period = "ty.FYear,ty.FPeriod";
  return amountQuery(t, period + ",", "sum(-b.FAmount)", from.text(), withPeriod(t, period));
}

// -----------------------------------------------------------------------------------------

std::vector<std::string> openingParts(const EstimateTerms& t) {
  std::vector<std::string> parts = {t.voucherRule ? estimatedBefore(t) : unmatchedBefore(t, "")};
  if (t.kind == EstimateKind::outsourcedProcessing)
    parts.push_back(unmatchedBefore(t, kSubcontractMatches));
  return parts;
}

std::vector<std::string> movementParts(const EstimateTerms& t) {
  std::vector<std::string> parts =
      t.voucherRule ? std::vector{recordsOfPeriod(t), clearedInPeriod(t)} : quantityMovements(t);
  if (t.kind == EstimateKind::outsourcedProcessing)
    for (std::string& part : subcontractMovements(t)) parts.push_back(std::move(part));
  return parts;
}

/// The parts summed up again, so that a row of the work table meets one row.
std::string summed(const EstimateTerms& t, const std::string& periodColumns,
                   const std::vector<std::string>& parts, const std::string& grouping) {
  SqlLines query;
  query
      .line("Select " + periodColumns + t.columns("b.") +
            " sum(FAmountFor) FAmountFor,sum(FAmount) FAmount From (")
      .line(joined(parts, " Union All"))
      .line(") b")
      .line(grouping.empty() ? "having count(*)>0" : grouping);
  return query.text();
}

}  // namespace

std::string GetAdjustSourceSql(const CDataSource& dataSource,
                               const collections::Dictionary& dFilter, EstimateKind kind,
                               bool opening) {
  const EstimateTerms terms(dataSource, dFilter, kind, opening);
  if (terms.filter.bArp) return {};
  if (!opening)
    return summed(terms, "b.FYear,b.FPeriod,", movementParts(terms),
                  withPeriod(terms, "b.FYear,b.FPeriod"));
  const std::vector<std::string> parts = openingParts(terms);
  return parts.size() == 1 ? parts.front() : summed(terms, "", parts, terms.grouping("b."));
}

}  // namespace velmora::amount
