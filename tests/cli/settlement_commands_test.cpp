// The commands settle, distribute and default-account, and the tables they read.

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

#include "cli/failure.h"
#include "cli/settlement/settlement_run.h"
#include "cli/tables/csv_reader.h"
#include "cli/tables/table_file.h"
#include "running_program.h"
#include "velmora/collections/dictionary.h"

namespace velmora::cli {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::string kDemo = std::string(VELMORA_SOURCE_DIR) + "/demo/settlement/";

std::string contentOf(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

std::string parsed(std::string_view text) {
  std::string cells;
  for (const CsvRow& row : parseCsv(text)) {
    cells += std::to_string(row.line) + ":";
    for (const CsvCell& cell : row.cells) cells += (cell.quoted ? "'" : "") + cell.text + "|";
  }
  return cells;
}

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "none";
}

TEST(Csv, ReadsCellsAsTheyAre) {
  EXPECT_EQ(parsed("\xEF\xBB\xBF"
                   "a,b\r\n1,\r\n\r\n\"x\"\"y\n,\",\"\"\n3,4"),
            "1:a|b|2:1||4:'x\"y\n,|'|6:3|4|");
  EXPECT_EQ(parsed("a\n1\n"), "1:a|2:1|");
  EXPECT_EQ(parsed(""), "");
  for (const auto& [text, part] : std::vector<std::pair<std::string, std::string>>{
           {"a,b\n1,2\n3\n", "line 3: 1 cells; the header has 2"},
           {"a\n\"x\n\n", "line 2: a quoted cell has no end"},
           {"a\n\"x\"y\n", "line 2: expected a comma"},
           {"a\nx\"y\n", "line 2: a quote inside a cell"}})
    EXPECT_THAT(failureOf([&text = text] { parseCsv(text); }), HasSubstr(part));
}

TEST(TableFile, RefusesWhatIsNoNumber) {
  const TestFolder folder;
  const auto kindOf = [](const std::string& name) {
    return name == "FID"       ? ColumnKind::integer
           : name == "FAmount" ? ColumnKind::amount
                               : ColumnKind::text;
  };
  const auto read = [&](const std::string& content) {
    return failureOf([&] { readTable(folder.write("t.csv", content), kindOf); });
  };
  EXPECT_EQ(read("FID,FAmount,FNote\n1,12.50,x\n2,,\n"), "none");
  EXPECT_THAT(read("FID,FAmount\n1,\"1,5\"\n"),
              HasSubstr("t.csv: line 2, column FAmount: \"1,5\""));
  EXPECT_THAT(read("FID\n1.5\n"), HasSubstr("column FID: \"1.5\" is no whole number"));
  EXPECT_THAT(read("FID,FID\n1,2\n"), HasSubstr("already a column"));
  EXPECT_THAT(read(""), HasSubstr("expected a header line"));
  EXPECT_THAT(read("{\"fields\":7}"), HasSubstr("expected an array of fields"));
  EXPECT_THAT(read("\uFEFF{\"fields\":7}"), HasSubstr("expected an array of fields"));
  EXPECT_THAT(failureOf([&] { readTable(folder.file("none"), kindOf); }), HasSubstr("cannot read"));
}

class SettleCommand : public testing::Test {
 protected:
  Finished settle(std::vector<std::string> more) {
    more.insert(more.begin(), "settle");
    return runVelmora(more);
  }
  TestFolder folder_;
};

TEST_F(SettleCommand, SettlesTheDemoDocumentsByGroup) {
  const auto out = folder_.file("rows.csv"), source = folder_.file("source.csv"),
             destination = folder_.file("destination.json");
  const auto first = settle({"--source", kDemo + "invoices.csv", "--dest", kDemo + "receipts.csv",
                             "--group-by", "FID,FCurrencyID", "--with-quantity", "--fill", "--out",
                             out, "--updated-source", source, "--updated-dest", destination});
  EXPECT_EQ(first.status, kOk) << first.err;
  EXPECT_THAT(first.out, AllOf(HasSubstr("9 pairs settled"), HasSubstr("1420.00"),
                               HasSubstr("265.50"), HasSubstr("Checked: every document")));
  EXPECT_THAT(contentOf(out),
              HasSubstr("\r\n684.00,684.00,1364.25,0.00,0,4.00,8.00,0,100.00,100.00,200.00,0.00,"));
  const auto again = settle({"--source", source, "--dest", destination, "--group-by",
                             "FID,FCurrencyID", "--with-quantity", "--out", out});
  EXPECT_EQ(again.status, kFailed) << "an existing file is kept";
  EXPECT_THAT(again.err, HasSubstr("exists already"));
  const auto forced = settle({"--source", source, "--dest", destination, "--group-by",
                              "FID,FCurrencyID", "--with-quantity", "--out", out, "--force"});
  EXPECT_EQ(forced.status, kOk) << forced.err;
  EXPECT_THAT(forced.out, HasSubstr("0 pairs settled"));
}

TEST_F(SettleCommand, KeepsEveryDecimalOfATypedTable) {
  const auto whole = folder_.write(
      "whole.json", R"({"fields":[{"name":"FBillID","type":"adInteger"},)"
                    R"({"name":"FCheckAmount","type":"adNumeric","precision":10,"scale":0}],)"
                    R"("rows":[[1,"100"]]})");
  const auto cents = folder_.write("cents.csv", "FBillID,FCheckAmount\n2,60.55\n");
  const auto updated = folder_.file("updated.csv");
  const auto done = settle({"--source", whole, "--dest", cents, "--amounts", "single", "--fill",
                            "--updated-source", updated});
  EXPECT_EQ(done.status, kOk) << done.err;
  EXPECT_THAT(contentOf(updated), AllOf(HasSubstr("39.45"), HasSubstr("60.55")));
}

TEST_F(SettleCommand, TellsWhatIsMissingOrWrong) {
  const auto file = folder_.write("open.csv", "FBillID,FCheckAmountFor\n1,10\n");
  const auto missing = settle({"--source", file, "--fill"});
  EXPECT_EQ(missing.status, kFailed);
  EXPECT_THAT(missing.err, AllOf(HasSubstr("open.csv: missing columns: FCheckAmount"),
                                 Not(HasSubstr("FContractNo"))));
  EXPECT_THAT(settle({"--source", file}).err, AllOf(HasSubstr("FContractNo"), HasSubstr("--fill")));

  const auto open =
      folder_.write("null.csv", "FBillID,FCheckAmount,FNowRemainAmt\n1,10,\n2,-5,-5\n");
  const auto null = settle({"--source", open, "--amounts", "single", "--fill"});
  EXPECT_EQ(null.status, kFailed);
  EXPECT_THAT(null.err,
              HasSubstr("rsSrcBill, FBillID 1, FType 0, FEntryID 0, column FNowRemainAmt"));
  EXPECT_THAT(
      settle({"--source", open, "--amounts", "single", "--fill", "--group-by", "FNone"}).err,
      HasSubstr("--group-by: a table has no column FNone"));
  EXPECT_EQ(settle({}).status, kUsage);
  EXPECT_EQ(settle({"--source", open, "--amounts", "none"}).status, kUsage);
  EXPECT_EQ(settle({"--source", open, "--amounts", "single", "--with-quantity"}).status, kUsage);
}

TEST_F(SettleCommand, ReportsDocumentsThatDoNotAddUp) {
  const auto open =
      folder_.write("open.csv", "FBillID,FCheckAmount,FNowRemainAmt\n1,10,10\n2,-5,-4\n");
  const auto told = settle({"--source", open, "--amounts", "single", "--fill"});
  EXPECT_EQ(told.status, kBlocked);
  EXPECT_EQ(told.err,
            "does not add up: document 2, type 0, entry 0: its settled amount changed by -1 more "
            "than its settlement rows say\n");
  EXPECT_THAT(
      settle({"--dest", folder_.write("left.csv", "FBillID,FCheckAmount,FNowRemainAmt\n7,10,8\n"),
              "--amounts", "single", "--fill"})
          .err,
      HasSubstr("does not add up: destination document 7, type 0, entry 0: FNowCheckAmt plus "
                "FNowRemainAmt is 8; FCheckAmount is 10"));
}

TEST(SettlementRun, FindsRowsThatDisagree) {
  SettlementRun run;
  run.rows = com::make<collections::Vector>();
  for (const int bill : {1, 2}) {
    auto row = com::make<collections::Dictionary>();
    row->Set("FBillID_SRC", bill);
    run.rows->Add(row);
  }
  EXPECT_THAT(run.faults(), ElementsAre("settlement rows 1 and 2: FBillID differs"));
}

TEST(DistributeCommand, FillsRowsInEveryManner) {
  const TestFolder folder;
  const auto rows = folder.write("rows.csv",
                                 "FNo,FCheck,FUsed,FSource,FRate\n"
                                 "a,30,0,100,6.8275\nb,-10,0,0,1\nc,50,5,10,2\n");
  const auto distribute = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"distribute", "--rows", rows, "--format", "csv"});
    return runVelmora(more);
  };
  auto done = distribute({"--distribute", "60,FAmt,FCheck"});
  EXPECT_EQ(done.status, kOk) << done.err;
  EXPECT_THAT(done.out, AllOf(HasSubstr("a,30,0,100,6.8275,30\r\n"), HasSubstr("b,-10,0,0,1,0\r\n"),
                              HasSubstr("c,50,5,10,2,30\r\n")));
  done = distribute({"--distribute", "100,FAmt,FCheck", "--take-opposite"});
  EXPECT_EQ(done.status, kBlocked);
  EXPECT_EQ(done.err, "not distributed: 30 of 100,FAmt,FCheck\n");
  done = distribute({"--rules", "extended", "--rest-to-last", "--distribute",
                     "100,FAmt,FCheck,FUsed", "--convert", "FSource,FLoc,FCheck,FRate,divide"});
  EXPECT_EQ(done.status, kOk) << done.err;
  EXPECT_THAT(done.out,
              AllOf(HasSubstr(",30,30\r\n"), HasSubstr(",-10,0\r\n"), HasSubstr(",80,5.00\r\n")));
  done = distribute({"--rules", "plain", "--distribute", "35,FAmt,FCheck"});
  EXPECT_EQ(done.status, kOk) << done.err;
  EXPECT_THAT(done.out, HasSubstr("b,-10,0,0,1,5\r\n"));

  EXPECT_THAT(distribute({"--convert", "FNone,FLoc,FCheck"}).err,
              HasSubstr("could not be filled: row 1, column FNone"));
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{},
                                             {"--distribute", "1,2"},
                                             {"--distribute", "x,FAmt,FCheck"},
                                             {"--convert", "FSource,FLoc,FCheck,FRate,times"},
                                             {"--distribute", "1,FAmt,FCheck", "--rest-to-last"}})
    EXPECT_EQ(distribute(wrong).status, kUsage) << testing::PrintToString(wrong);
}

}  // namespace
}  // namespace velmora::cli
