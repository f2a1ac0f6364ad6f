// Which reasons a finding of the closing check shows in.

#include "cli/closing/finding_reasons.h"

#include <gmock/gmock.h>

namespace velmora::cli {
namespace {

using explain::DocumentRef;
using explain::Reason;
using explain::RowReason;
using testing::ElementsAre;
using testing::IsEmpty;

DocumentRef paper(std::string number, int id, int contactType, int settlement = 0) {
  DocumentRef document;
  document.number = std::move(number);
  document.id = id;
  document.contactType = contactType;
  document.settlement = settlement;
  return document;
}

explain::VoucherRef voucher(std::string word, int number) {
  explain::VoucherRef found;
  found.word = "Journal";
  found.ledgerWord = std::move(word);
  found.number = number;
  return found;
}

RowReason reason(Reason what, int amount, std::optional<DocumentRef> document = {}) {
  RowReason told;
  told.reason = what;
  told.difference.local.balance = amount;
  told.document = std::move(document);
  return told;
}

Finding finding(int id, std::string item, std::string message) {
  return {id, std::move(item), "", std::move(message), Severity::serious};
}

/// A row with one reason of each kind.
explain::Explanation explanation() {
  explain::ExplainedRow row;
  row.reasons = {reason(Reason::noVoucher, 1, paper("A1", 1, 3)),
                 reason(Reason::otherPeriod, 2, paper("A2", 2, 5)),
                 reason(Reason::offsetWithoutVoucher, 4, paper("25", 25, 0, 25)),
                 reason(Reason::transferWithoutVoucher, 8, paper("B1", 4, 9, 22)),
                 reason(Reason::transferWithoutVoucher, 16, paper("C1", 5, 10, 23)),
                 reason(Reason::noDocument, 32, paper("A1", 1, 3)),
                 reason(Reason::transferWithoutVoucher, 64, paper("C2", 6, 10, 24)),
                 reason(Reason::noVoucher, 128, paper("D1", 7, 3)),
                 reason(Reason::notPosted, 256, paper("D1", 8, 5))};
  row.reasons[1].furtherDocuments = {paper("A3", 3, 5)};
  row.reasons[5].voucher = voucher("记", 13);
  row.reasons[5].probable = true;
  return {{row}, {}};
}

TEST(FindingReasons, MeetWhereBothAreAboutTheSame) {
  const auto explained = explanation();
  const struct {
    Finding finding;
    std::optional<int> moved;
  } cases[] = {
      {finding(1, "单据凭证检查", "销售发票[A1]:没有生成凭证"), 1},
      {finding(2, "单据期间检查", "收款单[A2]:单据期间与对应凭证不一致"), 2},
      {finding(3, "单据期间检查", "收款单[A3]:单据期间与对应凭证不一致"), 2},
      {finding(4, "单据审核检查", "收款单[25]:单据没有审核"), 0},
      {finding(5, "转账凭证检查", "预收冲应收[A1][核销序号:25]:没有生成转账凭证"), 4},
      {finding(6, "转销凭证检查", "账款的转销凭证还未生成。核销序号：22"), 8},
      {finding(7, "退票凭证检查", "账款的退票凭证还未生成"), 16},
      {finding(8, "退票凭证检查", "账款的退票凭证还未生成"), 64},
      {finding(9, "退票凭证检查", "账款的退票凭证还未生成"), 0},
      {finding(10, "凭证检查", "凭证[记-13]:没有应收应付系统对应的单据"), 32},
      {finding(12, "单据凭证检查", "销售发票[D1]:没有生成凭证"), std::nullopt},
      {finding(11, "期间检查", "应付系统的当前期间是 2009.2"), std::nullopt},
  };
  Findings findings;
  for (const auto& one : cases) findings.push_back(one.finding);
  const FindingReasons reasons(findings, explained, "chs");
  for (const auto& [one, moved] : cases) {
    const auto found = reasons.moved(one);
    ASSERT_EQ(found.has_value(), moved.has_value()) << one.message;
    if (!moved) continue;
    EXPECT_EQ(found->local.balance, explain::Decimal(*moved)) << one.message;
  }
  const auto& told = explained.rows.front().reasons;
  EXPECT_THAT(reasons.checksOf(told[1]), ElementsAre("单据期间检查")) << "found twice, named once";
  EXPECT_THAT(reasons.checksOf(told[5]), ElementsAre("凭证检查"));
}

TEST(FindingReasons, DoNotSayThatNothingMovesWhereReasonsAreKeptBack) {
  auto explained = explanation();
  explained.rows.front().reasons.push_back(reason(Reason::notShown, 5));
  const Findings findings{finding(1, "单据凭证检查", "销售发票[A9]:没有生成凭证"),
                          finding(2, "单据凭证检查", "销售发票[A1]:没有生成凭证")};
  const FindingReasons reasons(findings, explained, "chs");
  EXPECT_FALSE(reasons.moved(findings[0]).has_value());
  EXPECT_TRUE(reasons.moved(findings[1]).has_value());
  EXPECT_THAT(reasons.checksOf(explained.rows.front().reasons.back()), IsEmpty());
}

}  // namespace
}  // namespace velmora::cli
