#pragma once

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "frame/classes.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora {

/// An account set with control accounts kept by customer (1122, 2203) and by supplier
/// (2202, 2204), two of each, and an operation of the reconciliation called on it. 2203 is
/// kept in local currency alone, 1124 (customers, in no list) in currency 3 alone; the
/// others in all currencies.
class ReconciledBooks : public AccountSet {
 protected:
  ReconciledBooks() {
    run(R"(insert into t_Account (FAccountID, FNumber, FName, FDC, FDetailID, FCurrencyID) values
             (1001,'1001','现金',1,0,0), (1122,'1122','应收账款',1,1,0),
             (1124,'1124','应收外汇账款',1,1,3), (2203,'2203','预收账款',-1,1,1),
             (2202,'2202','应付账款',-1,2,0), (2204,'2204','暂估应付账款',-1,2,0)
           insert into t_ItemClass (FItemClassID, FNumber, FName) values (1,'1','客户'), (8,'8','供应商')
           insert into t_Item (FItemID, FItemClassID, FNumber, FName) values
             (11,1,'C1','甲'), (12,1,'C2','乙'), (21,8,'S1','丙'), (22,8,'S2','丁')
           insert into t_ItemDetailV (FDetailID, FItemClassID, FItemID) values
             (0,0,0), (1,1,-1), (2,8,-1), (11,1,11), (12,1,12), (21,8,21), (22,8,22))");
    filter_->Set("BYear", 2009);
    filter_->Set("BPeriod", 3);
    filter_->Set("CurrencyID", 0);
    receivables();
  }

  void receivables() {
    filter_->Set("bArp", true);
    filter_->Set("ItemClass", 1);
    filter_->Set("AcctList", "1122,2203");
    filter_->Set("AcctLogic", "+,+");
    side_ = "AR";
  }
  void payables() {
    filter_->Set("bArp", false);
    filter_->Set("ItemClass", 8);
    filter_->Set("AcctList", "2202");
    filter_->Set("AcctLogic", "+");
    side_ = "AP";
  }

  /// A contact balance of 2009-03 in local currency; "currency" other than 1 with the same
  /// amounts in it.
  void contact(int frp, int item, int account, int begin, int debit, int credit, int currency = 1) {
    const std::string amounts =
        text(begin) + ',' + text(debit) + ',' + text(credit) + ',' + text(begin + debit - credit);
    plant("t_rp_ContactBal",
          "FYear, FPeriod, FRP, FItemClassID, FCustomer, FAccountID, FCurrencyID, "
          "FBeginBalanceFor, FDebitFor, FCreditFor, FEndBalanceFor, "
          "FBeginBalance, FDebit, FCredit, FEndBalance",
          "(2009,3," + text(frp) + ',' + (frp == 1 ? "1," : "8,") + text(item) + ',' +
              text(account) + ',' + text(currency) + ',' + amounts + ',' + amounts + ')');
  }
  /// A ledger balance of 2009-03 by detail combination and currency, debits positive.
  void ledger(int account, int detail, int begin, int debit, int credit, int currency = 0) {
    const std::string amounts =
        text(begin) + ',' + text(debit) + ',' + text(credit) + ',' + text(begin + debit - credit);
    plant("t_Balance",
          "FYear, FPeriod, FAccountID, FDetailID, FCurrencyID, "
          "FBeginBalanceFor, FDebitFor, FCreditFor, FEndBalanceFor, "
          "FBeginBalance, FDebit, FCredit, FEndBalance",
          "(2009,3," + text(account) + ',' + text(detail) + ',' + text(currency) + ',' + amounts +
              ',' + amounts + ')');
  }
  void voucher(int id, bool posted, int account, int detail, int dc, int amount, int period = 3) {
    plant("t_Voucher", "FVoucherID, FDate, FYear, FPeriod, FGroupID, FNumber, FPosted",
          '(' + text(id) + ",'2009-03-10',2009," + text(period) + ",1," + text(id) +
              (posted ? ",1)" : ",0)"));
    plant("t_VoucherEntry", "FVoucherID, FEntryID, FAccountID, FDetailID, FDC, FAmountFor, FAmount",
          '(' + text(id) + ",1," + text(account) + ',' + text(detail) + ',' + text(dc) + ',' +
              text(amount) + ',' + text(amount) + ')');
  }

  using Operation = com::Ref<com::IUnknown> (_clsInitBalCheck::*)(const std::string&,
                                                                  collections::DictionaryRef&);

  /// Rows as "account|item|kind" followed by the wanted columns, each as "value" with its
  /// ending zeros cut; the reason as the only line when there is no result.
  std::vector<std::string> rows(Operation operation, std::vector<std::string> columns) {
    const auto object = com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
    com::GetObjectContext().reset();
    answer_ = (*object.*operation)("SubID=" + side_ + ";" + dsn(), filter_).as<ado::Recordset>();
    EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::none);
    EXPECT_EQ(com::GetErrorInfo().has_value(), !answer_);
    if (!answer_) return {reason().place + ": " + reason().description};
    EXPECT_FALSE(answer_->ActiveConnection());
    std::vector<std::string> lines;
    for (; !answer_->EOF_(); answer_->MoveNext()) {
      std::string line =
          cell("FAcctNumber") + '|' + cell("FItemClassNumber") + '|' + cell("FSumSort");
      for (const std::string& column : columns) line += ' ' + cell(column);
      lines.push_back(line);
    }
    return lines;
  }
  std::vector<std::string> periodRows(std::vector<std::string> columns) {
    return rows(&_clsInitBalCheck::GetInitAmtCheck, std::move(columns));
  }
  std::vector<std::string> closingRows(std::vector<std::string> columns) {
    return rows(&_clsInitBalCheck::GetClosingAmtCheck, std::move(columns));
  }

  /// Columns of the last answer; 0 when there was none.
  static std::string text(int value) { return std::to_string(value); }

  com::ScopedClass class_{publicClasses()[0]};
  collections::DictionaryRef filter_ = com::make<collections::Dictionary>();
  ado::RecordsetRef answer_;
  std::string side_;

 private:
  std::string cell(const std::string& column) {
    const auto& value = answer_->Fields()(column).Value();
    return value.type() == collections::VarType::decimal ? value.toDecimal().normalized().toString()
                                                         : value.toText();
  }
};

}  // namespace velmora
