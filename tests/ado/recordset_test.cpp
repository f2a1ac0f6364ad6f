#include "velmora/ado/recordset.h"

#include "ado/documents.h"
#include "ado/expect_error.h"

namespace velmora::ado {
namespace {

using namespace com::error;
using testing::ElementsAre;

TEST(Recordset, IsBuiltInMemoryFromItsColumns) {
  auto rs = com::make<Recordset>();
  EXPECT_EQ(rs->State(), adStateClosed);
  expectError(kAdoInvalidArgument, "no columns", [&] { rs->Open(); });
  rs->Fields().Append("FID", adInteger);
  rs->Fields().Append("FName", adVarWChar, 100);
  rs->Fields().Append("FAmount", adNumeric, 0, 18, 4);
  expectError(kDuplicateKey, "'fid'", [&] { rs->Fields().Append("fid", adInteger); });
  expectError(kAdoInvalidArgument, "no type 9",
              [&] { rs->Fields().Append("X", static_cast<DataTypeEnum>(9)); });
  expectError(kAdoInvalidArgument, "precision 10 and scale 12",
              [&] { rs->Fields().Append("X", adNumeric, 0, 10, 12); });
  rs->Open();

  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_EQ(rs->CursorLocation(), adUseClient);
  EXPECT_EQ(rs->CursorType(), adOpenStatic);
  ASSERT_EQ(rs->Fields().Count(), 3U);
  EXPECT_EQ(rs->Fields()(0).DefinedSize(), 4);
  EXPECT_EQ(rs->Fields()("fNAME").Name(), "FName");
  EXPECT_EQ(rs->Fields()(1).DefinedSize(), 100);
  EXPECT_EQ(rs->Fields()(2).Type(), adNumeric);
  EXPECT_EQ(rs->Fields()(2).Precision(), 18);
  EXPECT_EQ(rs->Fields()(2).NumericScale(), 4);
  expectError(kAdoItemNotFound, "'FNone'", [&] { rs->Fields()("FNone"); });
  expectError(kAdoItemNotFound, "column 3; the recordset has 3", [&] { rs->Fields()(3); });
  expectError(kAdoObjectOpen, "is open", [&] { rs->Fields().Append("FMore", adInteger); });
  expectError(kAdoObjectOpen, "is open", [&] { rs->Open(); });
}

TEST(Recordset, RefusesEverythingWhileClosed) {
  auto rs = openDocuments(1);
  rs->Close();
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_EQ(rs->Fields().Count(), 0U);
  Recordset& closed = *rs;
  const auto refused = [](auto action) { expectError(kAdoObjectClosed, "closed", action); };
  refused([&] { closed.BOF(); });
  refused([&] { closed.EOF_(); });
  refused([&] { closed.RecordCount(); });
  refused([&] { closed.MoveFirst(); });
  refused([&] { closed.MoveNext(); });
  refused([&] { closed.MovePrevious(); });
  refused([&] { closed.MoveLast(); });
  refused([&] { closed.AbsolutePosition(); });
  refused([&] { closed.AddNew(); });
  refused([&] { closed.Update(); });
  refused([&] { closed.Delete(); });
  refused([&] { closed.Filter(""); });
  refused([&] { closed.GetValue(0); });
  refused([&] { closed.SetValue(0, 1); });
  refused([&] { closed.Clone(); });
  refused([&] { closed.NextRecordset(); });
  refused([&] { closed.Close(); });
}

TEST(Recordset, MovesBetweenItsEnds) {
  auto rs = openDocuments(2);
  EXPECT_FALSE(rs->BOF() || rs->EOF_());
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  rs->MoveNext();
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  rs->MoveNext();
  EXPECT_TRUE(rs->EOF_());
  EXPECT_FALSE(rs->BOF());
  EXPECT_EQ(rs->AbsolutePosition(), -1);
  expectError(kAdoNoCurrentRow, "EOF", [&] { rs->MoveNext(); });
  expectError(kAdoNoCurrentRow, "no current row", [&] { rs->GetValue(0); });
  expectError(kAdoNoCurrentRow, "no current row", [&] { rs->Fields()("FID").Value(); });
  expectError(kAdoNoCurrentRow, "no current row", [&] { rs->GetRow(); });
  rs->MovePrevious();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 2);
  EXPECT_EQ(rs->GetRow().size(), rs->fieldCount());
  EXPECT_EQ(rs->GetRow()[0].toInt32(), 2);
  rs->MovePrevious();
  rs->MovePrevious();
  EXPECT_TRUE(rs->BOF());
  EXPECT_FALSE(rs->EOF_());
  expectError(kAdoNoCurrentRow, "BOF", [&] { rs->MovePrevious(); });
  rs->MoveNext();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 1);
  rs->MoveLast();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 2);
}

TEST(Recordset, IsAtBothEndsWithoutRows) {
  auto none = openDocuments(0);
  auto filtered = openDocuments(3);
  filtered->Filter("FID > 3");
  for (Recordset* rs : {none.get(), filtered.get()}) {
    EXPECT_TRUE(rs->BOF() && rs->EOF_());
    EXPECT_EQ(rs->RecordCount(), 0);
    expectError(kAdoNoCurrentRow, "no first row", [&] { rs->MoveFirst(); });
    expectError(kAdoNoCurrentRow, "no last row", [&] { rs->MoveLast(); });
    expectError(kAdoNoCurrentRow, "EOF", [&] { rs->MoveNext(); });
    expectError(kAdoNoCurrentRow, "BOF", [&] { rs->MovePrevious(); });
  }
}

TEST(Recordset, AddsRowsOfNullsAtItsEnd) {
  auto rs = openDocuments(1);
  rs->Filter("FAmount > 1000");
  rs->AddNew();
  EXPECT_FALSE(rs->EOF_());  // a new row is current although the filter does not show it
  EXPECT_TRUE(rs->Fields()("FCustomer").Value().isNull());
  rs->Fields()("FID").Value("2");
  rs->Fields()("FAmount").Value(1000.005);
  rs->Update();
  EXPECT_EQ(rs->GetValue(2), Variant(Decimal::parse("1000.01")));
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->Filter("");
  EXPECT_THAT(idsOf(*rs), ElementsAre(1, 2));
  expectError(kAdoNoCurrentRow, "no current row", [&] { rs->Update(); });
}

TEST(Recordset, DeletesTheCurrentRowForItsClonesToo) {
  auto rs = openDocuments(3);
  auto clone = rs->Clone();
  rs->MoveNext();
  clone->MoveNext();
  rs->Delete();
  expectError(kAdoNoCurrentRow, "deleted", [&] { rs->GetValue(0); });
  expectError(kAdoNoCurrentRow, "deleted", [&] { clone->SetValue(0, 7); });
  rs->MoveNext();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 3);
  clone->MovePrevious();
  EXPECT_EQ(clone->GetValue(0).toInt32(), 1);
  clone->Filter("FID >= 2");
  EXPECT_THAT(idsOf(*clone), ElementsAre(3));
}

TEST(Recordset, OverARowsetIsReadOnly) {
  Rowset rows;
  rows.fields = {{"FID", adInteger}, {"", adVarWChar}, {"FID", adInteger}};
  rows.cells = {1, "one", 10, 2, "two", 20};
  auto rs = Recordset::fromRowset(std::move(rows));
  EXPECT_EQ(rs->LockType(), adLockReadOnly);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields()("fid").Value(), Variant(1));  // the first of equal names
  EXPECT_EQ(rs->GetValue(2), Variant(10));
  const auto refused = [](auto action) { expectError(kAdoNotSupported, "read-only", action); };
  refused([&] { rs->SetValue(0, 5); });
  refused([&] { rs->AddNew(); });
  refused([&] { rs->Delete(); });
  refused([&] { rs->Update(); });
  refused([&] { rs->Clone(adLockOptimistic)->SetValue(0, 5); });
  refused([&] { openDocuments(1)->Clone(adLockReadOnly)->SetValue(0, 5); });
  EXPECT_FALSE(rs->NextRecordset());
}

TEST(Recordset, KeepsARowThatLeftTheFilterCurrentUntilItMoves) {
  auto rs = openDocuments(3);
  rs->Filter("FRemark = 0");
  rs->MoveNext();
  rs->SetValue(3, 1);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->AbsolutePosition(), -1);
  EXPECT_EQ(rs->GetValue(0).toInt32(), 2);
  rs->SetValue(2, "0");  // what settles a row goes on writing to it
  rs->MoveNext();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 3);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  rs->MovePrevious();
  EXPECT_EQ(rs->GetValue(0).toInt32(), 1);
}

TEST(Recordset, EndsWhenTheLastRowLeftTheFilter) {
  auto rs = openDocuments(1);
  rs->Filter("FRemark = 0");
  rs->SetValue(3, 1);
  EXPECT_TRUE(rs->BOF() && rs->EOF_());
  EXPECT_EQ(rs->GetValue(0).toInt32(), 1);
  rs->MoveNext();
  EXPECT_TRUE(rs->EOF_());
  expectError(kAdoNoCurrentRow, "EOF", [&] { rs->MoveNext(); });
}

TEST(Recordset, ClonesShareRowsButNeitherFilterNorPosition) {
  auto rs = openDocuments(4);
  rs->Filter("FCustomer = 'a'");
  rs->MoveLast();
  auto clone = rs->Clone();
  EXPECT_EQ(clone->Filter(), "");
  EXPECT_EQ(clone->RecordCount(), 4);
  EXPECT_EQ(clone->GetValue(0).toInt32(), 1);
  clone->SetValue(1, "B");
  EXPECT_THAT(idsOf(*rs), ElementsAre(4));
  clone->SetValue(1, "A");
  EXPECT_THAT(idsOf(*rs), ElementsAre(1, 4));  // back at its old place
  rs->Close();
  EXPECT_EQ(clone->RecordCount(), 4);
}

TEST(Recordset, AnswersForItselfByItsId) {
  auto rs = openDocuments(1);
  const com::Ref<com::IUnknown> unknown = rs;
  EXPECT_EQ(unknown.as<Recordset>(), rs);
  EXPECT_EQ(Variant(rs).toObject<Recordset>(), rs);
}

}  // namespace
}  // namespace velmora::ado
