// How the engine runs the statements of every command: rows that belong together are found
// by hashing, because comparing all with all takes hours on real books.

#include <cstdlib>
#include <gmock/gmock.h>
#include <sstream>

#include "cli/demo/demo.h"
#include "cli/program.h"
#include "engine_plan.h"
#include "platform/ado/duckdb/batch_runner.h"
#include "platform/ado/duckdb/parameters.h"
#include "platform/tsql/syntax/parser.h"
#include "running_program.h"
#include "sanitized.h"

namespace velmora::cli {
namespace {

using ado::embedded::BatchRunner;

/// What may be joined row by row.
struct Exception {
  const char* table;   ///< which one side reads alone
  const char* option;  ///< of the command
  const char* reason;
};
constexpr Exception kExceptions[] = {
    {"t_PeriodDate", "", "dates are looked up in the calendar, which has some periods a year"},
    {"t_Currency", "", "few currencies, and all of them are wanted with each account"},
    {"t_Account", "", "the few accounts compared, wanted with each contact"},
    {"#AmtCheck", "--no-detail", "a row for each account"},
};

bool isExpected(const RowByRowJoin& join, const std::string& command) {
  for (const auto& [table, option, reason] : kExceptions)
    for (const auto& side : join.sides)
      if (side == std::set<std::string>{table} && command.find(option) != std::string::npos)
        return true;
  return false;
}

/// The embedded database as the provider "Planned", which looks at the plan of every
/// statement before it runs.
class PlannedProvider {
 public:
  PlannedProvider() {
    ado::RegisterProvider("Planned", [this](const ado::ConnectionString& settings) {
      return std::make_unique<Connection>(*this, settings);
    });
  }
  PlannedProvider(const PlannedProvider&) = delete;
  PlannedProvider& operator=(const PlannedProvider&) = delete;

  std::string command;  ///< that is run now
  int statements = 0;
  std::vector<std::string> found;

 private:
  class Connection final : public ado::ProviderConnection {
   public:
    Connection(PlannedProvider& provider, const ado::ConnectionString& settings)
        : provider_(provider), state_(ado::embedded::readSettings(settings)) {}

    std::vector<ado::StatementResult> execute(
        std::string_view batch, std::span<const ado::ParameterValue> parameters) override {
      const auto parsed = tsql::parse(batch);
      const auto look = [this](const std::string& sql) { provider_.look(state_.session, sql); };
      return BatchRunner(state_, ado::embedded::toVariables(parameters), look).run(parsed);
    }

   private:
    PlannedProvider& provider_;
    ado::embedded::SessionState state_;
  };

  void look(ado::embedded::Session& session, const std::string& sql) {
    if (sql.find(" FROM ") == std::string::npos) return;
    ++statements;
    for (const auto& join : rowByRowJoins(session, sql))
      if (!isExpected(join, command))
        found.push_back(command + ": " + join.name + " " + join.condition + " in " + sql);
  }
};

/// Options of each kind of comparison.
const std::map<std::string, std::vector<std::string>> kComparisons = {
    {"initial", {"", "--no-detail", "--currency 1", "--no-detail --by-currency"}},
    {"period",
     {"", "--no-detail", "--currency 1", "--no-detail --by-currency", "--unposted",
      "--no-detail --unposted", "--items C000003..S000004"}},
    {"closing", {"", "--no-detail", "--currency 1", "--unposted", "--no-detail --unposted"}}};

std::vector<std::string> commands() {
  std::vector<std::string> lines = {
      "account-check", "default-account --item-class 1 --item 1001 --class-type 1000000",
      "period-change --year 2009 --period 3 --old-start 2009-03-01 --old-end 2009-03-31 "
      "--new-start 2009-03-01 --new-end 2009-03-20"};
  for (const std::string side : {" --side ar ", " --side ap "})
    for (const char* command :
         {"close-check", "close-check --show-all", "close-check --show-all --accounts 1122,2202",
          "init-check", "fin-date"})
      lines.push_back(command + side);
  for (const auto& [kind, options] : kComparisons) {
    for (const std::string side : {"ar ", "ap ", "ap --estimates --outsourcing "})
      for (const auto& option : options)
        lines.push_back("reconcile " + kind + " --side " + side + option);
    for (const char* estimates : {"--estimates", "--outsourcing"})
      lines.push_back("reconcile " + kind + " --side ap " + estimates);
  }
  return lines;
}

std::vector<std::string> words(const std::string& line) {
  std::istringstream in(line);
  return {std::istream_iterator<std::string>(in), {}};
}

/// Looks at all commands on the small set after `settings` have been changed in it.
void expectHashing(const char* settings) {
  ::setenv("VELMORA_COMPONENT", VELMORA_COMPONENT, 1);
  const TestFolder folder;
  const std::string file = ";Data Source=" + folder.file("demo.db");
  const auto connection = com::make<ado::Connection>();
  connection->Open("Provider=Velmora.Embedded;Mode=Create" + file);
  demo::createSmallSet(*connection);
  connection->Execute(settings);
  connection->Close();
  connection->Open("Provider=Velmora.Embedded;Mode=Read" + file);  // the file is opened once
  PlannedProvider provider;
  const auto all = commands();
  for (std::size_t i = 0; i < all.size(); i += kSanitized ? 7 : 1) {
    const auto& command = all[i];
    provider.command = command;
    provider.statements = 0;
    auto arguments = words(command);
    arguments.insert(arguments.end(), {"--dsn", "Provider=Planned;Mode=Read" + file});
    std::istringstream in;
    std::ostringstream out, err;
    EXPECT_LE(runProgram(arguments, {in, out, err}), 1) << command << "\n" << err.str();
    EXPECT_GT(provider.statements, 0) << command;
  }
  EXPECT_THAT(provider.found, testing::IsEmpty());
}

TEST(Plans, CompareNoTableRowByRow) {
  expectHashing("set nocount on");
}

/// Estimates with vouchers, advances without; contacts that only some may see.
TEST(Plans, CompareNoTableRowByRowUnderOtherSettings) {
  expectHashing(
      "update t_SystemProfile set FValue = '1' where FKey = 'MakeZanGuVoucher'\n"
      "update t_RP_SystemProfile set FValue = '0' where FKey like 'FA_PreNeedVoucher'\n"
      "update t_AccessSwitch set FUsed = 1\n"
      "insert into t_AccessRule select 0, 't_Item', FItemID from t_Item");
}

}  // namespace
}  // namespace velmora::cli
