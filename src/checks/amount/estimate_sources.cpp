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

/// Which periods count: those before the check's, in an initial check also that itself,
/// else that alone.
const char* comparison(const EstimateTerms& t) {
  return t.opening ? "< " : t.filter.initial() ? "<= " : "= ";
}

std::string documentPeriod(const EstimateTerms& t) {
  return "b.FYear*" + t.yearLength + "+b.FPeriod ";
}

/// Condition over documents by their own period.
std::string byDocument(const EstimateTerms& t, const char* compared) {
  return (t.opening ? " and " : " and  ") + documentPeriod(t) + compared + t.period;
}

/// The period of a voucher-making record (tz). An estimate that came over from before the
/// start of the inventory module was recorded one period late. Processing goes by the
/// document.
std::string recordPeriod(const EstimateTerms& t) {
  if (t.kind != EstimateKind::goodsReceipts) return documentPeriod(t);
  const std::string recorded = "tz.FYear*" + t.yearLength + "+tz.FPeriod";
  return "(case when b.FVoucherID = -1 or (b.FDate<'" + t.inventoryStart +
         "' and tz.FTranType in (4000,5)) then " + recorded + "-1 else " + recorded + " end) ";
}

std::string byRecord(const EstimateTerms& t) {
  if (t.kind != EstimateKind::goodsReceipts) return byDocument(t, comparison(t));
  return " and " + recordPeriod(t) + comparison(t) + t.period;
}

/// The sum of what a document counts for `before` the period. An initial check adds what it
/// counts for `within` the period.
std::string openSum(const EstimateTerms& t, const std::string& period, const std::string& before,
                    const std::string& within) {
  if (t.opening) return "sum(" + before + ")";
  return "sum(case when " + period + "< " + t.period + " then " + before + " else " + within +
         " end)";
}

std::string documents(const EstimateTerms& t) {
  return " From (" + GetStockBillSql(t.kind) + ") b";
}

/// The period of the check as columns.
std::string checkedPeriod(const EstimateTerms& t) {
  return t.filter.year + " FYear," + t.filter.period + " FPeriod,";
}

/// Keeps subcontract receipts out, which are numbered like inventory receipts.
std::string ofInventory(const EstimateTerms& t) {
  return t.kind == EstimateKind::outsourcedProcessing ? " and b.FTranType<>1002523" : "";
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

/// What was not matched before the period; `matches` limits them.
std::string unmatchedBefore(const EstimateTerms& t, const std::string& matches) {
  const std::string before = " and " + t.matchPeriod() + "<" + t.period;
  SqlLines from;
  from.line(documents(t))
      .line("left join " + partialMatches(before + matches, false, "tz") + onEntry("tz"))
      .line("left join " + fullMatches(matches, before, "ty") + onEntry("ty"))
      .line(t.fullJoins())
      .line(t.fullCondition(byDocument(t, comparison(t))))
      .line(kVoucheredOrExempt);
  return amountQuery(t, "",
                     openSum(t, documentPeriod(t),
                             "case when ty.FEquityHook=1 then 0 else case when b.FQty=0  then 0 "
                             "else ((b.FQty-isnull(tz.FHookQty,0))*b.FAmount/b.FQty) end end",
                             "b.FAmount"),
                     from.text(), t.grouping("b."));
}

std::string receiptsOfPeriod(const EstimateTerms& t) {
  SqlLines from;
  from.line(documents(t))
      .line(t.fullJoins())
      .line(t.fullCondition(byDocument(t, "= ")))
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

std::vector<std::string> matchesOfPeriod(const EstimateTerms& t, const std::string& matches,
                                         const std::string& documentConditions) {
  const std::string within = " and " + t.matchPeriod() + "=" + t.period;
  return {matchedInPeriod(t, partialMatches(within + matches, true, "tz"), "tz", documentConditions,
                          "sum(case b.FQty when 0 then 0 else -tz.FHookQty*b.FAmount/b.FQty end)"),
          matchedInPeriod(t, fullMatches(matches, within, "ty"), "ty", documentConditions,
                          "sum(-b.FAmount)")};
}

/// Receipts of any period.
std::vector<std::string> matchesOfPeriod(const EstimateTerms& t) {
  return matchesOfPeriod(t, "", t.accessFrom + "\r\n" + t.reducedCondition());
}

/// Receipts of the period with the matches of subcontract receipts alone.
std::vector<std::string> subcontractMatchesOfPeriod(const EstimateTerms& t) {
  return matchesOfPeriod(t, kSubcontractMatches,
                         t.fullJoins() + "\r\n" + t.fullCondition(byDocument(t, "= ")));
}

// --- Voucher rule ------------------------------------------------------------------------

/// An estimate record counts, its reversal counts against it.
std::string recordAmount(EstimateKind kind) {
  const auto [estimate, reversal] = recordTypes(kind);
  return std::string("case when tz.FTrantype=") + estimate +
         " then b.famount when tz.FTrantype=" + reversal + " then -b.famount else 0 end";
}

std::string joinRecords(const EstimateTerms& t) {
  return " join t_makevouchtemp tz on b.finterid=tz.fscbillinterid" + ofInventory(t);
}

/// Up to the period in which the receipt was matched in full.
constexpr const char* kUpToFullMatch =
    "tz.FYear*12+tz.FPeriod<=isnull(tb.FYear*12+tb.FPeriod,999999)";

std::string estimatedBefore(const EstimateTerms& t) {
  const std::string before = " and " + t.matchPeriod() + "<" + t.period;
  const std::string recorded = recordAmount(t.kind);
  SqlLines from;
  from.line(documents(t))
      .line(joinRecords(t))
      .line("left join " + fullMatches("", before, "ty") + onEntry("ty"))
      .lineIf(!t.opening, "left join " + fullMatches("", "", "tb") + onEntry("tb"))
      .line(t.fullJoins())
      .line(t.fullCondition(byRecord(t)))
      .line(kVoucheredExemptOrOpen);
  return amountQuery(
      t, "",
      openSum(t, recordPeriod(t), "case when ty.FEquityHook=1 then 0 else " + recorded + " end",
              std::string("case when ") + kUpToFullMatch + " then " + recorded + " else 0 end"),
      from.text(), t.grouping("b."));
}

/// The records of the period. They count in the period of the check, which is what their
/// condition compares with.
std::string recordsOfPeriod(const EstimateTerms& t) {
  const auto [estimate, reversal] = recordTypes(t.kind);
  SqlLines from;
  from.line(documents(t))
      .line(joinRecords(t))
      .line("left join " + fullMatches("", "", "tb") + onEntry("tb"))
      .line(t.fullJoins())
      .line(t.fullCondition(byRecord(t)))
      .line(std::string("and tz.ftrantype in (") + estimate + "," + reversal + ")")
      .line(std::string("and ") + kUpToFullMatch)
      .line(kVoucheredExemptOrOpen);
  return amountQuery(t, checkedPeriod(t), "sum(" + recordAmount(t.kind) + ")", from.text(),
                     t.grouping("b."));
}

/// The last record of each receipt up to the period.
std::string lastRecords(const EstimateTerms& t) {
  const auto [estimate, reversal] = recordTypes(t.kind);
  SqlLines table;
  table.line("(select FSCBillInterID,FTranType from (select FSCBillInterID,FTranType,")
      .line(
          "row_number() over (partition by FSCBillInterID order by FYear desc,FPeriod desc,FID "
          "desc) FPlace")
      .line(std::string("from t_makevouchtemp where FTranType in (") + estimate + "," + reversal +
            ") and " + t.matchPeriod() + "<=" + t.period + ") r")
      .line("where FPlace=1) it");
  return table.text();
}

/// Estimates that a full match of the period cleared.
std::string clearedInPeriod(const EstimateTerms& t) {
  const std::string within = " and " + t.matchPeriod() + "=" + t.period;
  SqlLines from;
  from.line(documents(t))
      .line("join " + fullMatches("", within, "ty") + onEntry("ty"))
      .line("join " + lastRecords(t) + " on b.FInterID=it.FSCBillInterID" + ofInventory(t))
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

/// What an initial check finds open before the period, and the period's receipts, as one
/// amount of the check's period. It has as many decimals as an opening balance: both checks
/// then round alike.
std::string openUpToPeriod(const EstimateTerms& t) {
  SqlLines query;
  query
      .line("Select " + checkedPeriod(t) + t.columns("b.") +
            "cast(FAmountFor as decimal(28,4)) FAmountFor,cast(FAmount as decimal(28,4)) FAmount "
            "From (")
      .line(summed(t, "", openingParts(t), t.grouping("b.")))
      .line(") b");
  return query.text();
}

void append(std::vector<std::string>& parts, std::vector<std::string> more) {
  for (std::string& part : more) parts.push_back(std::move(part));
}

std::vector<std::string> movementParts(const EstimateTerms& t) {
  const bool processing = t.kind == EstimateKind::outsourcedProcessing;
  std::vector<std::string> parts;
  if (t.filter.initial())
    parts.push_back(openUpToPeriod(t));
  else
    parts.push_back(t.voucherRule ? recordsOfPeriod(t) : receiptsOfPeriod(t));
  append(parts, t.voucherRule ? std::vector{clearedInPeriod(t)} : matchesOfPeriod(t));
  if (!processing) return parts;
  if (!t.filter.initial()) parts.push_back(receiptsOfPeriod(t));
  append(parts, subcontractMatchesOfPeriod(t));
  return parts;
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
