// The checks of initial data and of accounts over the demonstration sets.

#include <fstream>
#include <gmock/gmock.h>

#include "answered.h"
#include "demo/account_set.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::cli::demo {
namespace {

std::string callerString(const AccountSet& set) {
  return "ConnectString={" + set.connectionString() + "};LANGUAGE=chs;SubID=AR;UserName=demo";
}

template <class Interface>
com::Ref<Interface> create() {
  com::ActivateServer(VELMORA_COMPONENT);
  return com::CreateObject(Interface::kProgId).template as<Interface>();
}

using Lines = std::vector<std::string>;

/// Name of the check, then the columns of each finding, separated by tabulators.
void addLines(Lines& lines, const std::string& check, const com::Ref<com::IUnknown>& answer,
              const std::vector<const char*>& columns) {
  const auto rows = answered(answer).as<ado::Recordset>();
  for (; !rows->EOF_(); rows->MoveNext()) {
    std::string line = check;
    for (const char* column : columns) line += '\t' + rows->Fields()(column).Value().toText();
    lines.push_back(line);
  }
}

void addInitFindings(Lines& lines, const std::string& name, const AccountSet& set, bool bArp) {
  auto filter = com::make<collections::Dictionary>();
  filter->Set("bArp", bArp);
  com::Ref<com::IUnknown> answer;
  create<_clsInitBalCheck>()->CheckInitData(callerString(set), filter, answer);
  addLines(lines, name, answer, {"FChkItem", "FChkType", "FChkInfo"});
}

void addAccountFindings(Lines& lines, const std::string& name, const AccountSet& set) {
  addLines(lines, name, create<_clsCheck>()->CheckValidAccount(callerString(set)),
           {"FKey", "FErrType", "FErrInfo"});
}

TEST(BasicChecks, AnswerOnTheSetsWhatIsWrittenDown) {
  const AccountSet fresh("new", [](ado::Connection& connection) {
    createNewSet(connection);
    return PlantedFindings();
  });
  Lines found;
  addInitFindings(found, "init ar", smallSet(), true);
  addInitFindings(found, "init ap", smallSet(), false);
  addAccountFindings(found, "account", smallSet());
  addInitFindings(found, "new init ar", fresh, true);
  addInitFindings(found, "new init ap", fresh, false);
  addAccountFindings(found, "new account", fresh);

  std::ifstream file(VELMORA_SOURCE_DIR "/demo/expected_basic_findings.tsv");
  Lines expected;
  for (std::string line; std::getline(file, line);) expected.push_back(line);
  EXPECT_EQ(found, expected);

  Lines small, generated;
  addAccountFindings(small, "", smallSet());
  addAccountFindings(generated, "", generatedSet());
  EXPECT_EQ(generated, small) << "planted once, whatever the size";
}

TEST(BasicChecks, FindNothingWithoutFaults) {
  Lines found;
  addInitFindings(found, "init ar", smallSetWithoutFaults(), true);
  addInitFindings(found, "init ap", smallSetWithoutFaults(), false);
  addAccountFindings(found, "account", smallSetWithoutFaults());
  EXPECT_THAT(found, testing::IsEmpty());
}

}  // namespace
}  // namespace velmora::cli::demo
