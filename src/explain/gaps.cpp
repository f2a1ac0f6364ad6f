#include "explain/gaps.h"

#include <algorithm>
#include <fmt/format.h>

namespace velmora::explain {

namespace {

using collections::Variant;

/// A row's cells, one after the other.
class Cells {
 public:
  explicit Cells(ado::Recordset& rows) : rows_(rows) {}

  int number() {
    const Variant& value = next();
    return value.isNull() ? 0 : value.toInt32();
  }
  std::string text() {
    const Variant& value = next();
    return value.isNull() ? "" : value.toText();
  }
  collections::Date date() {
    const Variant& value = next();
    return value.isNull() ? collections::Date() : value.toDate();
  }
  Decimal decimal() {
    const Variant& value = next();
    return value.isNull() ? Decimal() : value.toDecimal();
  }
  Period period() {
    const int year = number();
    return {year, number()};
  }
  RowKey row() {
    RowKey key;
    key.account = number();
    key.item = number();
    key.currency = number();
    return key;
  }
  Amounts amounts() {
    Amounts all;
    for (Measures* measures : {&all.local, &all.original}) {
      measures->opening = decimal();
      measures->debit = decimal();
      measures->credit = decimal();
      measures->balance = decimal();
    }
    return all;
  }

 private:
  const Variant& next() { return rows_.GetValue(column_++); }

  ado::Recordset& rows_;
  std::size_t column_ = 0;
};

template <class Visit>
void forEachRow(ado::Connection& connection, const std::string& sql, Visit visit) {
  for (const auto rows = connection.Execute(sql); !rows->EOF_(); rows->MoveNext()) {
    Cells cells(*rows);
    visit(cells);
  }
}

/// The work table, gone at the end on every path.
class GapTable {
 public:
  explicit GapTable(ado::Connection& connection) : connection_(connection) {
    drop();
    connection_.Execute(createGaps());
  }
  ~GapTable() { drop(); }
  GapTable(const GapTable&) = delete;
  GapTable& operator=(const GapTable&) = delete;

 private:
  void drop() noexcept {
    try {
      connection_.Execute("if object_id('tempdb..#ExplainGap') is not null drop table #ExplainGap");
    } catch (...) {  // a lost connection took it along
    }
  }

  ado::Connection& connection_;
};

/// A column of names in the caller's language.
std::string named(const std::string& column, const std::string& language) {
  return language == "chs" ? column : column + "_" + language;
}

constexpr const char* kVouchers =
    "(select distinct FVoucherID from #ExplainGap where FVoucherID > 0) k";

std::string contactKeys() {
  return fmt::format(
      "(select FDocumentID as FID from #ExplainGap where FSource = {} union select c.FID from "
      "t_rp_Contact c inner join {} on k.FVoucherID = c.FVoucherID) x",
      kContactSource, kVouchers);
}

/// A bad debt, a transfer or a returned bill.
bool madeBySettlement(const std::pair<const std::pair<int, int>, Document>& document) {
  const int type = document.second.ref.contactType;
  return type >= 8 && type <= 10;
}

class Reader {
 public:
  Reader(ado::Connection& connection, const PostingTerms& terms)
      : connection_(connection), terms_(terms) {}

  Findings all(Sought sought) {
    const GapTable table(connection_);
    connection_.Execute(insertGaps(terms_, sought));
    readGaps();
    forEachRow(connection_, documentSums(terms_), [&](Cells& cells) {
      const RowKey row = cells.row();
      found_.documentSums[row] = cells.amounts();
    });
    if (terms_.scope.comparison != Comparison::initial && !found_.gaps.empty()) readOrigins();
    return std::move(found_);
  }

 private:
  void readGaps() {
    forEachRow(
        connection_,
        "select FAcctID, FItemID, FCurrencyID, FVoucherID, FSource, FDocumentID, FLines, "
        "FDocuments, FLedger, FOwn, FOpening, FDebit, FCredit, FBalance, FOpeningFor, FDebitFor, "
        "FCreditFor, FBalanceFor from #ExplainGap order by 1, 2, 3, 4, 5, 6",
        [&](Cells& cells) {
          Gap gap;
          gap.row = cells.row();
          gap.voucher = cells.number();
          gap.source = cells.number();
          gap.document = cells.number();
          gap.lines = cells.number();
          gap.documents = cells.number();
          gap.ledger = cells.decimal();
          gap.own = cells.decimal();
          gap.amounts = cells.amounts();
          found_.gaps.push_back(std::move(gap));
        });
  }

  void readOrigins() {
    readVouchers();
    readLines();
    readContacts();
    readReceiptAccounts();
    if (terms_.hasSettlements && std::ranges::any_of(found_.documents, madeBySettlement))
      readSettlements();
    if (terms_.offsetsCount) readOffsets();
    if (terms_.access.restricts()) hideDocuments();
    for (auto& [key, document] : found_.documents)
      if (const auto voucher = found_.vouchers.find(document.voucher);
          voucher != found_.vouchers.end())
        voucher->second.documents.push_back(&document);
  }

  void readVouchers() {
    const std::string sql = fmt::format(
        "select v.FVoucherID, isnull(g.{},''), isnull(g.FName,''), v.FNumber, v.FYear, v.FPeriod, "
        "v.FPosted, "
        "v.FInternalInd from {} inner join t_Voucher v on v.FVoucherID = k.FVoucherID left join "
        "t_VoucherGroup g on g.FGroupID = v.FGroupID",
        named("FName", terms_.scope.language), kVouchers);
    forEachRow(connection_, sql, [&](Cells& cells) {
      Voucher voucher;
      voucher.ref.id = cells.number();
      voucher.ref.word = cells.text();
      voucher.ref.ledgerWord = cells.text();
      voucher.ref.number = cells.number();
      voucher.ref.period = cells.period();
      voucher.ref.posted = cells.number() != 0;
      voucher.origin = cells.text();
      found_.vouchers.emplace(voucher.ref.id, std::move(voucher));
    });
  }

  void readLines() {
    const std::string sql = fmt::format(
        "select l.FVoucherID, l.FAccountID, isnull(s.FItemID,0), l.FCurrencyID, "
        "isnull(a.FNumber,''), isnull(i.FNumber,'') from {} inner join t_VoucherEntry l on "
        "l.FVoucherID = k.FVoucherID left join t_Account a on a.FAccountID = l.FAccountID left "
        "join t_ItemDetailV s on s.FDetailID = l.FDetailID left join t_Item i on i.FItemID = "
        "s.FItemID order by l.FVoucherID, l.FEntryID",
        kVouchers);
    forEachRow(connection_, sql, [&](Cells& cells) {
      const auto voucher = found_.vouchers.find(cells.number());
      if (voucher == found_.vouchers.end()) return;
      VoucherLine line;
      line.account = cells.number();
      line.item = cells.number();
      line.currency = cells.number();
      line.accountNumber = cells.text();
      line.itemNumber = cells.text();
      voucher->second.lines.push_back(std::move(line));
    });
  }

  void readContacts() {
    // Without invoices of inventory, or without document types, what they would tell is 0 or ''.
    const bool invoices = terms_.hasInvoices, types = terms_.hasDocumentTypes;
    const auto ofInvoice = [&](const char* column) {
      return invoices ? fmt::format("case when c.FType = 3 then f.{0} else g.{0} end", column)
                      : "0";
    };
    const std::string sql = fmt::format(
        "select c.FID, c.FType, {}, c.FNumber, c.FDate, c.FYear, c.FPeriod, "
        "c.FStatus, c.FVoucherID, c.FCustomer, c.FCurrencyID, isnull(c.FAccountID,0), "
        "{}, isnull({},0), isnull({},0), isnull(i.FNumber,'') "
        "from {} inner join t_rp_Contact c on c.FID = x.FID "
        "left join t_rp_ARPBill b on b.FBillID = c.FRPBillID "
        "left join t_rp_NewReceiveBill r on r.FBillID = c.FRPBillID{}{} "
        "left join t_Item i on i.FItemID = c.FCustomer where c.FIsInit = 0",
        types ? fmt::format("isnull(y.{},'')", named("FName", terms_.scope.language)) : "''",
        types ? "isnull(y.FAccountID,0)" : "0", ofInvoice("FYear"), ofInvoice("FPeriod"),
        contactKeys(),
        invoices ? " left join ICSale f on f.FInterID = c.FInvoiceID "
                   "left join ICPurchase g on g.FInterID = c.FInvoiceID"
                 : "",
        types ? documentTypes(invoices) : "");
    forEachRow(connection_, sql, [&](Cells& cells) {
      Document document;
      document.source = kContactSource;
      document.ref.id = cells.number();
      document.ref.contactType = cells.number();
      document.ref.type = cells.text();
      document.ref.number = cells.text();
      document.ref.date = cells.date();
      document.ref.period = cells.period();
      document.audited = cells.number() == 1;
      document.voucher = cells.number();
      document.item = cells.number();
      document.currency = cells.number();
      const int account = cells.number();
      if (document.ref.contactType != 5 && document.ref.contactType != 6)
        document.accounts.push_back(account);
      document.usualAccount = cells.number();
      if (document.ref.contactType == 3 || document.ref.contactType == 4)
        document.business = cells.period();
      else
        cells.period();
      document.itemNumber = cells.text();
      add(std::move(document));
    });
  }

  static std::string documentTypes(bool invoices) {
    std::string key = "when c.FType in (1,2) then b.FClassTypeID";
    if (invoices)
      key += " when c.FType = 3 then f.FClassTypeID when c.FType = 4 then g.FClassTypeID";
    key += " when c.FType in (5,6) then r.FClassTypeID";
    return " left join t_rp_BillType y on y.FID = case " + key + " else 0 end";
  }

  void readReceiptAccounts() {
    const std::string sql = fmt::format(
        "select c.FID, isnull(d.FAccountID,0) from {} inner join t_rp_Contact c on c.FID = x.FID "
        "inner join t_rp_ARBillOfSH d on d.FBillID = c.FRPBillID where c.FType in (5,6) and "
        "c.FIsInit = 0 order by c.FID, d.FIndex",
        contactKeys());
    forEachRow(connection_, sql, [&](Cells& cells) {
      const auto document = found_.documents.find({kContactSource, cells.number()});
      if (document != found_.documents.end()) document->second.accounts.push_back(cells.number());
    });
  }

  /// The closing check names bad debts and transfers by their settlements.
  void readSettlements() {
    const std::string sql = fmt::format(
        "select c.FID, max(n.FID) from {} inner join t_rp_Contact c on c.FID = x.FID inner join "
        "t_rp_NewCheckInfo n on n.FContactID = c.FID where c.FType in (8,9,10) and c.FIsInit = 0 "
        "group by c.FID",
        contactKeys());
    forEachRow(connection_, sql, [&](Cells& cells) {
      const auto document = found_.documents.find({kContactSource, cells.number()});
      if (document != found_.documents.end()) document->second.ref.settlement = cells.number();
    });
  }

  void readOffsets() {
    const std::string sql = fmt::format(
        "select c.FID, max(c.FCheckDate), max(p.FYear), max(p.FPeriod), "
        "max(c.FVoucherID), max(c.FCustomer), max(c.FCurrencyID), max(isnull(i.FNumber,'')) "
        "from (select FDocumentID as FID from #ExplainGap where FSource = {} union select n.FID "
        "from t_rp_NewCheckInfo n inner join {} on k.FVoucherID = n.FVoucherID) x inner join "
        "t_rp_NewCheckInfo c on c.FID = x.FID left join t_PeriodDate p on c.FCheckDate >= "
        "p.FStartDate and c.FCheckDate <= p.FEndDate left join t_Item i on i.FItemID = "
        "c.FCustomer where c.FCheckType = 1 group by c.FID",
        kSettlementSource, kVouchers);
    forEachRow(connection_, sql, [&](Cells& cells) {
      Document document;
      document.source = kSettlementSource;
      document.ref.id = cells.number();
      document.ref.settlement = document.ref.id;
      document.ref.number = std::to_string(document.ref.id);
      document.ref.date = cells.date();
      document.ref.period = cells.period();
      document.voucher = cells.number();
      document.item = cells.number();
      document.currency = cells.number();
      document.itemNumber = cells.text();
      add(std::move(document));
    });
  }

  void hideDocuments() {
    for (auto& [key, document] : found_.documents) document.hidden = true;
    const auto show = [&](int source, const std::string& from) {
      forEachRow(connection_,
                 "select c.FID from " + from + terms_.access.from + " where 1 = 1" +
                     terms_.access.condition,
                 [&](Cells& cells) {
                   const auto document = found_.documents.find({source, cells.number()});
                   if (document != found_.documents.end()) document->second.hidden = false;
                 });
    };
    show(kContactSource, contactKeys() + " inner join t_rp_Contact c on c.FID = x.FID");
    if (terms_.offsetsCount) show(kSettlementSource, "t_rp_NewCheckInfo c");
  }

  void add(Document document) {
    const std::pair key{document.source, document.ref.id};
    found_.documents.emplace(key, std::move(document));
  }

  ado::Connection& connection_;
  const PostingTerms& terms_;
  Findings found_;
};

std::vector<BalanceGap> readBalanceGaps(ado::Connection& connection, const std::string& sql) {
  std::vector<BalanceGap> gaps;
  forEachRow(connection, sql, [&](Cells& cells) {
    BalanceGap gap;
    gap.row = cells.row();
    gap.time = cells.number();
    gap.debit = cells.decimal();
    gap.credit = cells.decimal();
    gap.debitFor = cells.decimal();
    gap.creditFor = cells.decimal();
    gaps.push_back(std::move(gap));
  });
  return gaps;
}

}  // namespace

Findings readFindings(ado::Connection& connection, const PostingTerms& terms, Sought sought) {
  return Reader(connection, terms).all(sought);
}

std::vector<BalanceGap> readContactBalanceGaps(ado::Connection& connection,
                                               const PostingTerms& terms) {
  return readBalanceGaps(connection, contactBalanceGaps(terms));
}

std::vector<BalanceGap> readLedgerBalanceGaps(ado::Connection& connection,
                                              const PostingTerms& terms) {
  return readBalanceGaps(connection, ledgerBalanceGaps(terms));
}

}  // namespace velmora::explain
