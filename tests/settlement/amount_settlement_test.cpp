// AmtSettlement as callers see it, and the pieces it is made of.

#include <gmock/gmock.h>

#include "documents.h"
#include "error_of.h"
#include "frame/classes.h"
#include "scripted_database.h"
#include "settlement/field_map.h"
#include "settlement/group_filters.h"
#include "settlement/rounding.h"
#include "settlement/row_maps.h"
#include "velmora/com/context.h"
#include "velmora/public.h"

namespace velmora::settlement {
namespace {

using collections::Date;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Null;
using collections::Vector;
using testing::ElementsAre;
using testing::HasSubstr;

Decimal operator""_d(const char* text) {
  return Decimal::parse(text);
}

class AmountSettlement : public testing::Test {
 protected:
  bool settle(int amountMode = 0, int withQuantity = 0, const DictionaryRef& groups = {}) {
    com::GetObjectContext().reset();
    return object_->AmtSettlement(dsn_, source_, destination_, chkInfo_, amountMode, withQuantity,
                                  groups);
  }
  bool settle(const Rows& source, const Rows& destination, int amountMode = 0,
              int withQuantity = 0) {
    source_ = recordsetOf(source);
    destination_ = recordsetOf(destination);
    return settle(amountMode, withQuantity);
  }
  /// One value of every settlement row.
  std::vector<std::string> values(const char* key) const {
    std::vector<std::string> values;
    for (const Variant& row : *chkInfo_)
      values.push_back(row.toObject<Dictionary>()->Value(key).toText());
    return values;
  }
  static std::vector<std::string> column(const ado::RecordsetRef& rows, const char* name) {
    std::vector<std::string> values;
    for (const Row& row : rowsOf(rows)) values.push_back(row.at(name).toText());
    return values;
  }
  static std::string reason() {
    return com::GetErrorInfo() ? com::GetErrorInfo()->description : "none";
  }

  com::ScopedClass class_{publicClasses()[2]};
  com::Ref<_clsPublic> object_ = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
  std::string dsn_;
  ado::RecordsetRef source_, destination_;
  collections::VectorRef chkInfo_ = com::make<Vector>();
};

TEST_F(AmountSettlement, SettlesOneInvoiceByTwoReceipts) {
  ASSERT_TRUE(settle({document(7, 100_d)}, {document(8, 60_d), document(9, 60_d)})) << reason();
  EXPECT_THAT(values("FBillID"), ElementsAre("7", "8", "7", "9"));
  EXPECT_THAT(values("FBillID_SRC"), ElementsAre("8", "7", "9", "7"));
  EXPECT_THAT(values("FCheckAmountFor"), ElementsAre("60", "60", "40", "40"));
  EXPECT_THAT(values("FRemainAmountFor"), ElementsAre("40", "0", "0", "20"));
  EXPECT_THAT(values("FContractNo_SRC"), ElementsAre("C8", "C7", "C9", "C7"));
  EXPECT_THAT(column(source_, "FRemark"), ElementsAre("1"));
  EXPECT_THAT(column(destination_, "FRemark"), ElementsAre("1", "0"));
  EXPECT_THAT(column(destination_, "FNowRemainAmtFor"), ElementsAre("0", "20"));
  EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::complete);
  EXPECT_EQ(destination_->AbsolutePosition(), 1);
}

TEST_F(AmountSettlement, OffsetsCreditNotesWithinTheirSideFirst) {
  source_ = recordsetOf({document(1, 100_d), document(2, -30_d)});
  ASSERT_TRUE(settle()) << reason();
  EXPECT_THAT(values("FCheckAmountFor"), ElementsAre("30", "-30"));
  EXPECT_THAT(values("FCheckAmountFor_SRC"), ElementsAre("-30", "30"));
  EXPECT_THAT(column(source_, "FNowCheckAmtFor"), ElementsAre("30", "-30"));
  EXPECT_THAT(column(source_, "FNowRemainAmtFor"), ElementsAre("70", "0"));
}

TEST_F(AmountSettlement, MovesTheLocalAmountOfTheUsedUpDocumentWhole) {
  ASSERT_TRUE(settle({document(1, 100_d, 683_d)}, {document(2, 40_d, 270_d)}));
  EXPECT_THAT(values("FCheckAmount"), ElementsAre("270", "270"));
  EXPECT_THAT(column(source_, "FNowRemainAmt"), ElementsAre("413"));

  chkInfo_->RemoveAll();
  ASSERT_TRUE(settle({document(1, 100_d, 683_d)}, {document(2, 40_d, 0)}));
  EXPECT_THAT(values("FCheckAmount"), ElementsAre("0", "0")) << "the receipt has no local amount";
  EXPECT_THAT(column(source_, "FNowRemainAmt"), ElementsAre("683"));
}

TEST_F(AmountSettlement, SharesQuantitiesByPrice) {
  const Row invoice = withQuantity(document(1, 100_d), 40_d, 2.5_d, 0);
  ASSERT_TRUE(settle({invoice}, {withQuantity(document(2, 6.25_d), 1_d, 6.25_d, 0)}, 0, 1));
  EXPECT_THAT(values("FCheckQuantity"), ElementsAre("3", "1")) << "2.5 units are 3";
  EXPECT_THAT(values("FRemainQuantity"), ElementsAre("37", "0"));

  chkInfo_->RemoveAll();
  const Row unpriced = withQuantity(document(1, 100_d), 40_d, 0, 0);
  ASSERT_TRUE(settle({unpriced}, {document(2, 6.25_d)}, 0, 1));
  EXPECT_THAT(values("FCheckQuantity"), ElementsAre("0", "0"));
}

TEST_F(AmountSettlement, PutsASingleAmountIntoTheLocalKeys) {
  ASSERT_TRUE(settle({document(1, 100_d, 50_d)}, {document(2, 100_d, 30_d)}, 1)) << reason();
  EXPECT_THAT(values("FCheckAmount"), ElementsAre("30", "30"));
  EXPECT_THAT(values("FCheckAmountFor"), ElementsAre("0", "0"));
  EXPECT_THAT(values("FRemainAmount"), ElementsAre("20", "0"));
  EXPECT_THAT(column(source_, "FNowRemainAmt"), ElementsAre("20"));
}

TEST_F(AmountSettlement, CountsEarlierRowsOfADocument) {
  ASSERT_TRUE(settle({document(1, 100_d)}, {document(2, 60_d)}));
  ASSERT_TRUE(settle({document(1, 100_d)}, {document(3, 30_d)}));
  EXPECT_THAT(values("FRemainAmountFor"), ElementsAre("40", "0", "10", "0"));
}

TEST_F(AmountSettlement, KeepsGroupsApart) {
  const auto of = [](int customer, Row row) {
    row["FID"] = customer;
    return row;
  };
  source_ = recordsetOf({of(12, document(1, 100_d)), of(15, document(2, 50_d))});
  destination_ = recordsetOf({of(15, document(3, 80_d)), of(12, document(4, 10_d))});
  const auto groups = com::make<Dictionary>();
  groups->Set("FID", "FID");
  ASSERT_TRUE(settle(0, 0, groups)) << reason();
  EXPECT_THAT(values("FBillID"), ElementsAre("1", "4", "2", "3"));
  EXPECT_THAT(values("FCheckAmountFor"), ElementsAre("10", "10", "50", "50"));
  EXPECT_EQ(destination_->Filter(), "FID = 15") << "the filter of the last group";
}

TEST_F(AmountSettlement, NeedsNoRows) {
  EXPECT_TRUE(settle());
  EXPECT_TRUE(settle({}, {}));
  EXPECT_TRUE(settle({}, {}, 2)) << "nothing to settle in a mode that there is not";
  EXPECT_EQ(chkInfo_->Size(), 0u);
}

TEST_F(AmountSettlement, NamesWhatItCannotSettle) {
  const Row good = document(1, 100_d);
  Row null = document(7, 30_d);
  null["FNowRemainAmtFor"] = Null();
  const auto expectFailure = [&](const std::string& part) {
    EXPECT_EQ(com::GetObjectContext().vote(), com::Vote::abort);
    EXPECT_THAT(reason(), HasSubstr(part));
  };
  EXPECT_FALSE(settle({good}, {document(2, 60_d), null}));
  expectFailure("rsDestBill, FBillID 7, FType 1, FEntryID 1, column FNowRemainAmtFor: Null");
  EXPECT_THAT(column(source_, "FNowRemainAmtFor"), ElementsAre("40")) << "what was settled stays";
  EXPECT_EQ(chkInfo_->Size(), 2u);

  EXPECT_FALSE(settle({good}, {good}, 2));
  expectFailure("lCheckAmtFor is 2");

  source_ = recordsetOf({good}, "FOrderType");
  destination_ = recordsetOf({good});
  EXPECT_FALSE(settle());
  expectFailure("rsSrcBill: There is no column 'FOrderType'");

  const auto groups = com::make<Dictionary>();
  groups->Set("FCurrencyID", "FCurrencyID");
  null["FCurrencyID"] = Null();
  source_ = recordsetOf({null});
  EXPECT_FALSE(settle(0, 0, groups));
  expectFailure("FCurrencyID =\"");
  source_ = nullptr;
  EXPECT_FALSE(settle(0, 0, groups));
  expectFailure("rsSrcBill is nothing");

  chkInfo_->Add("no row");
  EXPECT_FALSE(settle({good}, {good}));
  expectFailure("rsChkInfo, row 3: no Dictionary");
  chkInfo_ = nullptr;
  EXPECT_FALSE(settle({good}, {good}));
  expectFailure("rsChkInfo is nothing");
}

TEST_F(AmountSettlement, AsksTheAccountSetOnceWhenThereIsOne) {
  ScriptedDatabase database;
  dsn_ = kScriptedDsn;
  const Rows mixed{document(1, 100_d), document(2, -30_d)};
  EXPECT_FALSE(settle(mixed, mixed));
  EXPECT_THAT(reason(), HasSubstr("t_currency"));
  EXPECT_EQ(chkInfo_->Size(), 0u) << "nothing is settled without it";

  database.answer("from t_currency where fcurrencyid = 1", rowset({"FScale"}, {2}));
  database.opened.clear();
  EXPECT_TRUE(settle(mixed, mixed)) << reason();
  EXPECT_EQ(database.opened.size(), 1u);
  EXPECT_EQ(database.open, 0);
}

TEST(GroupFilters, AreWrittenByTheTypeOfTheColumn) {
  auto rows = com::make<ado::Recordset>();
  rows->Fields().Append("FID", ado::adInteger);
  rows->Fields().Append("FNumber", ado::adVarWChar, 20);
  rows->Fields().Append("FDate", ado::adDBDate);
  rows->Fields().Append("FTime", ado::adDBTimeStamp);
  rows->Fields().Append("FRate", ado::adNumeric, 0, 10, 4);
  rows->Open();
  const Date time = *Date::tryParse("2009-03-17 10:20:30");
  for (const char* number : {"O'Neil", "o'neil", "B"}) {
    rows->AddNew();
    const std::vector<Variant> cells{12, number, time, time, "6.8270"};
    for (std::size_t i = 0; i < cells.size(); ++i) rows->SetValue(i, cells[i]);
    rows->Update();
  }
  const auto filtersBy = [&](const std::vector<std::pair<std::string, std::string>>& fields) {
    const auto dDictSwitch = com::make<Dictionary>();
    for (const auto& [column, key] : fields) dDictSwitch->Set(column, key);
    const DictionaryRef groups = BuildGroupFilters(rows, dDictSwitch);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < groups->Count(); ++i) {
      texts.push_back(groups->Key(i) + ": " + groups->Item(i).toText());
      rows->Filter(groups->Item(i).toText());
      EXPECT_GT(rows->RecordCount(), 0) << texts.back();
      rows->Filter("");
    }
    return texts;
  };
  EXPECT_THAT(filtersBy({{"FID", "FID"}, {"FRate", "FRate"}}),
              ElementsAre("12|6.827: FID = 12 and FRate = 6.827"));
  EXPECT_THAT(filtersBy({{"FNumber", "FNumber"}}),
              ElementsAre("O'Neil: FNumber = 'O''Neil'", "B: FNumber = 'B'"));
  EXPECT_THAT(filtersBy({{"FNumber", "FID"}}), ElementsAre("12: FNumber = 'O''Neil'"))
      << "the first row of a group decides";
  EXPECT_THAT(filtersBy({{"FDate", "FID"}}), ElementsAre("12: FDate = '2009-03-17'"));
  EXPECT_THAT(filtersBy({{"FTime", "FID"}}), ElementsAre("12: FTime = #2009-03-17 10:20:30#"));
}

TEST(RoundAmount, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(RoundAmount(1.125_d, 2), 1.13_d);
  EXPECT_EQ(RoundAmount(-1.125_d, 2), -1.13_d);
  EXPECT_EQ(RoundAmount(2.4999_d, 0), 2_d);
  EXPECT_EQ(RoundAmount(Null(), 2), 0_d);
  EXPECT_EQ(RoundAmount(922337203685478_d, 2), 922337203685478_d);
  EXPECT_EQ(RoundAmount(922337203685478.01_d, 2), 0_d);
  EXPECT_EQ(roundedQuotient(2_d, 3_d, 4), 0.6667_d);
  EXPECT_EQ(roundedQuotient(922337203685479_d, -1_d, 0), 0_d);
  EXPECT_EQ(errorOf([] { roundedQuotient(1, 0, 2); }).number(), com::error::kDivisionByZero);
}

TEST(SettlementMaps, AreComplete) {
  EXPECT_EQ(BuildFieldMap(0, 0)->Value("FPrice").toText(), "FTaxPrice");
  EXPECT_EQ(BuildFieldMap(0, 0)->Value("FQty").toText(), "");
  EXPECT_EQ(BuildFieldMap(0, 1)->Value("FBillRemainQty").toText(), "FRemainQty");
  EXPECT_EQ(BuildFieldMap(1, 1)->Value("FCheckAmountFor").toText(), "FNowCheckAmt");
  EXPECT_EQ(BuildFieldMap(2, 0)->Count(), 0u);
  EXPECT_EQ(BuildCopyMap()->Count(), 47u);
  EXPECT_EQ(BuildMirrorMap()->Count(), 28u);
  auto row = com::make<Dictionary>();
  row->Set("a", 1);
  EXPECT_TRUE(SwapValues(*row, "a", "b"));
  EXPECT_TRUE(row->Value("a").isEmpty());
  EXPECT_EQ(row->Value("b"), Variant(1));
}

}  // namespace
}  // namespace velmora::settlement
