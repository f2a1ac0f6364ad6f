// Eight threads, each with objects of its own, run different checks on one embedded account
// set at the same time and in turn: the answers are those of one thread alone.

#include <barrier>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "cli/demo/demo.h"
#include "frame/classes.h"
#include "velmora/collections/vector.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using collections::Date;
using collections::Dictionary;

/// The small demonstration set in a file of its own.
class Books {
 public:
  Books() {
    auto connection = com::make<ado::Connection>();
    connection->Open("Provider=Velmora.Embedded;Mode=Create;Data Source=" + path_.string());
    cli::demo::createSmallSet(*connection);
  }
  Books(const Books&) = delete;
  Books& operator=(const Books&) = delete;
  ~Books() { std::filesystem::remove(path_); }

  std::string dsn(const std::string& language) const {
    return "SubID=AR;LANGUAGE=" + language +
           ";ConnectString={Provider=Velmora.Embedded;Mode=Read;Data Source=" + path_.string() +
           "}";
  }

 private:
  std::filesystem::path path_ =
      std::filesystem::temp_directory_path() / ("threads-" + std::to_string(::getpid()) + ".db");
};

std::string textOf(const com::Ref<com::IUnknown>& answer) {
  const auto rows = answer.as<ado::Recordset>();
  if (!rows) return com::GetErrorInfo() ? com::GetErrorInfo()->description : "nothing";
  std::string text;
  for (; !rows->EOF_(); rows->MoveNext()) {
    for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
      const auto& cell = rows->GetValue(i);
      text += (cell.isNull() ? "NULL" : cell.toText()) + '|';
    }
    text += '\n';
  }
  return text;
}

template <class Class>
com::Ref<Class> created() {
  return com::CreateObject(Class::kProgId).template as<Class>();
}

collections::DictionaryRef comparison(bool bArp) {
  auto filter = com::make<Dictionary>();
  filter->Set("bArp", bArp);
  filter->Set("BYear", 2009);
  filter->Set("BPeriod", 3);
  filter->Set("CurrencyID", 0);
  filter->Set("ItemClass", bArp ? 1 : 8);
  filter->Set("AcctList", bArp ? "1122,2203" : "2202,1123");
  filter->Set("AcctLogic", "+,+");
  return filter;
}

std::string closingData(const std::string& dsn, bool bArp) {
  auto option = com::make<Dictionary>();
  option->Set("bArp", bArp);
  com::Ref<com::IUnknown> found;
  bool bCanClose = true;
  created<_clsInitBalCheck>()->CheckClosingData(dsn, option, found, bCanClose);
  return std::to_string(bCanClose) + textOf(found);
}

std::string initData(const std::string& dsn, bool bArp) {
  auto option = com::make<Dictionary>();
  option->Set("bArp", bArp);
  com::Ref<com::IUnknown> found;
  created<_clsInitBalCheck>()->CheckInitData(dsn, option, found);
  return textOf(found);
}

std::string periodChange(const std::string& dsn) {
  std::string message;
  const Date day = Date::ymd(2009, 3, 1);
  const bool can =
      created<_clsCheck>()->IsCanChangePeriod(dsn, message, 2009, 3, day, day, day, day);
  return std::to_string(can) + message;
}

/// A check for each of the eight threads; the languages differ, so that a loader or a
/// message of another thread would show.
std::vector<std::function<std::string()>> checksOn(const Books& books) {
  const std::string chs = books.dsn("chs"), cht = books.dsn("CHT"), en = books.dsn("EN");
  return {
      [=] { return closingData(en, true); },
      [=] { return closingData(cht, false); },
      [=] {
        auto filter = comparison(true);
        return textOf(created<_clsInitBalCheck>()->GetInitAmtCheck(chs, filter));
      },
      [=] {
        auto filter = comparison(false);
        return textOf(created<_clsInitBalCheck>()->GetClosingAmtCheck(en, filter));
      },
      [=] { return initData(en, true); },
      [=] { return textOf(created<_clsCheck>()->CheckValidAccount(cht, 0)); },
      [=] { return periodChange(en) + periodChange(cht); },
      [=] {
        return created<_clsPublic>()->GetCurFincDate(chs, true).toDateText() +
               textOf(created<_clsPublic>()->GetData(
                   chs, "select FNumber, FAmount from t_rp_Contact order by FID"));
      },
  };
}

TEST(Threads, GetTheAnswersOfOneThreadAlone) {
  const com::ScopedClass initBalCheck(publicClasses()[0]), check(publicClasses()[1]),
      publicClass(publicClasses()[2]);
  const Books books;
  const auto checks = checksOn(books);
  std::vector<std::string> alone;
  for (const auto& run : checks) alone.push_back(run());
  for (const std::string& answer : alone) ASSERT_GT(answer.size(), 10U) << answer;

  constexpr std::size_t kRounds = 3;
  std::barrier start(static_cast<std::ptrdiff_t>(checks.size()));
  std::vector<std::vector<std::string>> answers(checks.size());
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < checks.size(); ++thread)
    threads.emplace_back([&, thread] {
      for (std::size_t round = 0; round < kRounds; ++round) {
        start.arrive_and_wait();
        answers[thread].push_back(checks[(thread + round) % checks.size()]());
      }
    });
  for (std::thread& thread : threads) thread.join();
  for (std::size_t thread = 0; thread < checks.size(); ++thread)
    for (std::size_t round = 0; round < kRounds; ++round)
      EXPECT_EQ(answers[thread][round], alone[(thread + round) % checks.size()])
          << "thread " << thread << ", round " << round;
}

}  // namespace
}  // namespace velmora
