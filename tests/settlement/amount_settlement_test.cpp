// AmtSettlement as callers see it, and the pieces it is made of.

#include "settlement/amount_settlement.h"

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
  struct Case {
    Decimal price;
    int decimals;
    Decimal received;
    std::string quantity, left;  // of the 40 units
  };
  for (const Case& given : {Case{2.5_d, 0, 6.25_d, "3", "37"},
                            {0, 0, 6.25_d, "0", "40"},
                            {3333.33333333333333333333_d, 4, 10000_d, "3", "37"},
                            {123456789012345678.12345678901234567891_d, 4, 1_d, "0", "40"},
                            {3_d, 6, 1_d, "0.3333", "39.6667"},
                            {0.0000000001_d, 2, 93000_d, "0", "40"},
                            {2.5_d, 38, 6.25_d, "2.5", "37.5"},
                            {2.5_d, 2, 100_d, "40", "0"}}) {
    SCOPED_TRACE(given.price.toString());
    chkInfo_->RemoveAll();
    const Row invoice = withQuantity(document(1, 100000_d), 40_d, given.price, given.decimals);
    const Row receipt = withQuantity(document(2, given.received), 1_d, given.received, 0);
    ASSERT_TRUE(settle({invoice}, {receipt}, 0, 1)) << reason();
    EXPECT_THAT(values("FCheckQuantity"), ElementsAre(given.quantity, "1"));
    EXPECT_THAT(values("FRemainQuantity"), ElementsAre(given.left, "0"));
    EXPECT_THAT(column(source_, "FNowRemainQty"), ElementsAre(given.left));
    chkInfo_->RemoveAll();
    ASSERT_TRUE(settle({receipt}, {invoice}, 0, 1)) << reason();
    EXPECT_THAT(values("FCheckQuantity_SRC"), ElementsAre(given.quantity, "1"));
  }
}

/// Where callers map no price, a unit costs what the document's amount says.
TEST_F(AmountSettlement, SharesQuantitiesByAmountWithoutAPrice) {
  const auto dFields = BuildFieldMap(0, 1);
  for (const char* field : {"FPrice", "FQtyDecimal", "sDsn"}) dFields->Set(field, "");
  const auto dCopyMap = BuildCopyMap();
  const auto shared = [&](const Row& source, const Row& destination) {
    Settlement settlement{dFields,
                          dCopyMap,
                          PairRows(*dCopyMap, *BuildMirrorMap(), false, true),
                          0,
                          1,
                          com::make<Vector>(),
                          RemainingAmounts(true)};
    Side first{"rsSrcBill", recordsetOf({source})},
        second{"rsDestBill", recordsetOf({destination})};
    SettleGroup(settlement, first, second, "");
    return settlement.rsChkInfo->Item(0).toObject<Dictionary>();
  };
  const Row large = withQuantity(document(1, 90_d), 40_d, 0, 0);
  const Row small = withQuantity(document(2, 10_d), 1_d, 0, 0);
  EXPECT_EQ(shared(large, small)->Value("FCheckQuantity").toText(), "4.4444");
  EXPECT_EQ(shared(small, large)->Value("FCheckQuantity_SRC").toText(), "4.44");
}

TEST_F(AmountSettlement, ReadsNoQuantityThatIsNotAskedFor) {
  Row bare = document(1, 100_d), counted = withQuantity(document(2, 60_d), 6_d, 10_d, 0);
  for (const char* name : {"FCheckQty", "FRemainQty", "FNowRemainQty", "FTaxPrice", "FQtyDecimal"})
    bare[name] = Null();
  for (const int mode : {0, 1}) {
    chkInfo_->RemoveAll();
    ASSERT_TRUE(settle({bare}, {counted}, mode, mode)) << reason();
    EXPECT_THAT(values("FCheckQuantity"), ElementsAre("0", "0"));
    EXPECT_TRUE(chkInfo_->Item(0).toObject<Dictionary>()->Value("FRemainQuantity").isNull());
    EXPECT_EQ(chkInfo_->Item(1).toObject<Dictionary>()->Value("FRemainQuantity"), Variant(6_d));
  }
  // Used up together, both move whole whatever the price; without a price nothing is rounded.
  Row whole = withQuantity(document(1, 60_d), 5_d, 0, 0), unpriced = whole;
  whole["FTaxPrice"] = whole["FQtyDecimal"] = unpriced["FQtyDecimal"] = Null();
  unpriced["FNowRemainAmtFor"] = 100_d;
  chkInfo_->RemoveAll();
  for (const Row& invoice : {whole, unpriced})
    EXPECT_TRUE(settle({invoice}, {counted}, 0, 1)) << reason();
}

TEST_F(AmountSettlement, OrdersTheKeysAsTheyAreSettled) {
  const auto firstKeys = [&](const Rows& source, int withQuantity) {
    chkInfo_->RemoveAll();
    EXPECT_TRUE(settle(source, {document(9, 60_d)}, 0, withQuantity)) << reason();
    const auto row = chkInfo_->Item(1).toObject<Dictionary>();
    std::string keys;
    for (std::size_t i = 0; i < 13; ++i) keys += (i == 0 ? "" : " ") + row->Key(i);
    return keys;
  };
  const Rows small{document(1, 40_d)}, large{document(1, 60_d)};
  const std::string remain = " FRemainAmount FRemainAmount_SRC ",
                    last =
                        " FCheckAmountFor FCheckAmountFor_SRC FRemainAmountFor "
                        "FRemainAmountFor_SRC FContactID";
  const std::string quantities =
      "FCheckQuantity FCheckQuantity_SRC FRemainQuantity FRemainQuantity_SRC";
  EXPECT_EQ(firstKeys(small, 0), "FCheckAmount FCheckAmount_SRC" + remain + quantities + last);
  EXPECT_EQ(firstKeys(large, 0), "FCheckAmount_SRC FCheckAmount" + remain + quantities + last);
  EXPECT_EQ(firstKeys(small, 1),
            "FCheckAmount FCheckAmount_SRC" + remain +
                "FCheckQuantity FRemainQuantity FCheckQuantity_SRC FRemainQuantity_SRC" + last);
  EXPECT_EQ(firstKeys(large, 1),
            "FCheckAmount_SRC FCheckAmount" + remain +
                "FCheckQuantity_SRC FCheckQuantity FRemainQuantity FRemainQuantity_SRC" + last);
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
  destination_ = recordsetOf({of(15, document(3, 80_d)), of(12, document(4, 10_d)),
                              of(20, document(5, 70_d)), of(20, document(6, -70_d))});
  const auto groups = com::make<Dictionary>();
  groups->Set("FID", "FID");
  ASSERT_TRUE(settle(0, 0, groups)) << reason();
  EXPECT_THAT(values("FBillID"), ElementsAre("1", "4", "2", "3"));
  EXPECT_THAT(values("FCheckAmountFor"), ElementsAre("10", "10", "50", "50"));
  EXPECT_EQ(destination_->Filter(), "FID = 15") << "the filter of the last group";
  EXPECT_THAT(column(destination_, "FRemark"), ElementsAre("0", "1", "0", "0"))
      << "a contact without source documents is in no group";
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

TEST_F(AmountSettlement, LeavesNoPairHalfSettled) {
  const Row large = withQuantity(document(1, 100_d, 683_d), 40_d, 2.5_d, 2),
            small = withQuantity(document(2, 40_d, 270_d), 4_d, 10_d, 2);
  const auto with = [](Row row, const char* name, const Variant& value) {
    row[name] = value;
    return row;
  };
  const Decimal most = Decimal::parse(std::string(24, '9'));
  struct Case {
    Row source, destination;
    std::string part;
    int mode = 0;
  };
  for (const Case& given : {
           Case{large, with(small, "FNowRemainAmt", Null()), "FBillID 2"},
           {with(large, "FNowCheckAmt", Null()), small, "FNowCheckAmt: Null"},
           {large, with(small, "FRemainQty", Null()), "FRemainQty: Null"},
           {with(large, "FRemainAmount", Null()), small, "FRemainAmount: Null"},
           {with(large, "FNowCheckQty", Null()), small, "FNowCheckQty: Null"},
           {with(large, "FQtyDecimal", 39), small, "FQtyDecimal: 39"},
           {with(large, "FNowCheckAmt", most), small, "FNowCheckAmt: "},
           {with(large, "FNowCheckQty", most), small, "FNowCheckQty: "},
           {with(large, "FRemainAmount", Null()), small, "FBillRemainAmount: Null", 1},
       })
    for (const bool swapped : {false, true}) {
      SCOPED_TRACE(given.part + (swapped ? ", swapped" : ""));
      const Rows source{swapped ? given.destination : given.source},
          destination{swapped ? given.source : given.destination};
      EXPECT_FALSE(settle(source, destination, given.mode, 1));
      EXPECT_THAT(reason(), HasSubstr(given.part));
      EXPECT_EQ(rowsOf(source_), source);
      EXPECT_EQ(rowsOf(destination_), destination);
      EXPECT_EQ(chkInfo_->Size(), 0u);
    }
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
  EXPECT_EQ(RoundAmount({1.125_d, 1, 1}, 2), 1.13_d);
  EXPECT_EQ(RoundAmount({-1.125_d, 1, 1}, 2), -1.13_d);
  EXPECT_EQ(RoundAmount({2.4999_d, 1, 1}, 0), 2_d);
  EXPECT_EQ(RoundAmount({2_d, 1, 3_d}, 4), 0.6667_d);
  EXPECT_EQ(RoundAmount({922337203685478_d, 1, 1}, 2), 922337203685478_d);
  EXPECT_EQ(RoundAmount({922337203685478.01_d, 1, 1}, 2), 0_d);
  EXPECT_EQ(RoundAmount({922337203685479_d, 1, -1}, 0), 0_d);
  EXPECT_EQ(errorOf([] {
              RoundAmount({922337203685478_d, 1, 1}, 24);
            }).number(),
            com::error::kOverflow);
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
