#include "cli/demo/table_writer.h"

#include <gmock/gmock.h>

#include "cli/demo/calendar.h"
#include "error_of.h"

namespace velmora::cli::demo {
namespace {

/// A provider that keeps what is stored.
struct Storage : ado::ProviderConnection {
  struct Bulk : ado::BulkInsert {
    explicit Bulk(std::vector<std::string>& stored) : stored_(stored) {}
    void append(const ado::Variant& value) override { stored_.push_back(value.toText()); }
    void append(std::int64_t value) override { stored_.push_back(std::to_string(value)); }
    void append(std::string_view text) override { stored_.emplace_back(text); }
    void append(const collections::Decimal& value) override { stored_.push_back(value.toString()); }
    void append(collections::Date value) override { stored_.push_back(value.toDateText()); }
    void appendNull() override { stored_.emplace_back("NULL"); }
    void endRow() override { stored_.emplace_back("/"); }
    void finish() override { stored_.emplace_back("finished"); }
    std::vector<std::string>& stored_;
  };

  std::vector<ado::StatementResult> execute(std::string_view,
                                            std::span<const ado::ParameterValue>) override {
    return {};
  }
  std::unique_ptr<ado::BulkInsert> bulkInsert(std::string_view,
                                              std::span<const std::string>) override {
    return std::make_unique<Bulk>(stored);
  }
  std::vector<std::string> stored;
};

TEST(TableWriter, StoresEveryKindOfValueOnce) {
  Storage storage;
  TableWriter table(storage, "t_Item", {"a", "b", "c", "d", "e", "f", "g"});
  table.row(7, "文本", Amount{{-5}, {123'456}}, kUsDollar, dateIn(13, 28), nullptr);
  EXPECT_THAT(storage.stored, testing::IsEmpty());
  table.store();
  table.store();
  EXPECT_THAT(storage.stored, testing::ElementsAre("7", "文本", "-0.05", "1234.56", "6.8275",
                                                   "2009-02-28", "NULL", "/", "finished"));
}

TEST(TableWriter, RefusesARowOfTheWrongLength) {
  Storage storage;
  TableWriter table(storage, "t_Item", {"a", "b"});
  EXPECT_THAT(errorOf([&] { table.row(1); }).description(), testing::HasSubstr("t_Item"));
}

}  // namespace
}  // namespace velmora::cli::demo
