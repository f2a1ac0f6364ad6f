#include <fstream>
#include <gmock/gmock.h>
#include <map>

#include "answered.h"
#include "demo/account_set.h"
#include "velmora/collections/vector.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli::demo {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;

std::string callerString(const AccountSet& set) {
  return "ConnectString={" + set.connectionString() + "};LANGUAGE=chs;SubID=AR;UserName=demo";
}

com::Ref<_clsInitBalCheck> check() {
  com::ActivateServer(VELMORA_COMPONENT);
  return com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
}

/// What the whole list of checks is asked for, the optional ones included.
DictionaryRef fullFilter(Side side) {
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", side == Side::kReceivables);
  filter->Set("BYear", 2009);
  filter->Set("BPeriod", 3);
  filter->Set("bchkUnPeriod", true);
  filter->Set("bShowAllError", true);
  filter->Set("bChkNOBillVoucher", true);
  filter->Set("bchkUnPeriodGYandGL", true);
  filter->Set("AcctList", side == Side::kReceivables ? "1122,2203,1221" : "2202,1123,2241");
  return filter;
}

/// How many findings each check has, by its position in the full list.
std::map<int, int> countFindings(const AccountSet& set, Side side) {
  const auto checks = check();
  auto filter = fullFilter(side);
  const auto items =
      answered(checks->GetCheckItemDict(callerString(set), filter)).as<collections::Vector>();
  EXPECT_EQ(items->Size(), 14U);
  std::map<int, int> counts;
  for (std::size_t i = 0; i < items->Size(); ++i) {
    const auto sql = items->Item(i).toObject<Dictionary>()->Value("FSql").toText();
    counts[static_cast<int>(i) + 1] =
        sql.empty() ? 0 : static_cast<int>(checks->GetData(callerString(set), sql)->RecordCount());
  }
  return counts;
}

TEST(ClosingCheck, FindsWhatWasPlanted) {
  for (const AccountSet* set : {&smallSet(), &generatedSet()})
    for (const Side side : {Side::kReceivables, Side::kPayables})
      for (const auto& [item, count] : countFindings(*set, side))
        EXPECT_EQ(count, set->planted(side, item))
            << "check item " << item << (side == Side::kReceivables ? ", ar" : ", ap");
}

TEST(ClosingCheck, FindsNothingWithoutFaults) {
  for (const AccountSet* set : {&smallSetWithoutFaults(), &generatedSetWithoutFaults()})
    for (const Side side : {Side::kReceivables, Side::kPayables})
      for (const auto& [item, count] : countFindings(*set, side)) EXPECT_EQ(count, 0) << item;
}

/// Side, check item, severity and message of every finding, one a line.
std::vector<std::string> findings(const AccountSet& set, Side side) {
  auto options = com::make<Dictionary>();
  options->Set("bArp", side == Side::kReceivables);
  com::Ref<com::IUnknown> answer;
  bool canClose = true;
  EXPECT_TRUE(check()->CheckClosingData(callerString(set), options, answer, canClose));
  EXPECT_FALSE(canClose);
  std::vector<std::string> lines;
  for (const auto rows = answered(answer).as<ado::Recordset>(); !rows->EOF_(); rows->MoveNext())
    lines.push_back(std::string(side == Side::kReceivables ? "ar" : "ap") + '\t' +
                    rows->GetValue(1).toText() + '\t' + rows->GetValue(2).toText() + '\t' +
                    rows->GetValue(3).toText());
  return lines;
}

std::vector<std::string> expectedFindings() {
  std::ifstream file(VELMORA_SOURCE_DIR "/demo/expected_findings.tsv");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST(ClosingCheck, AnswersOnTheSmallSetWhatIsWrittenDown) {
  auto found = findings(smallSet(), Side::kReceivables);
  const auto payables = findings(smallSet(), Side::kPayables);
  found.insert(found.end(), payables.begin(), payables.end());
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(expectedFindings()));
}

}  // namespace
}  // namespace velmora::cli::demo
