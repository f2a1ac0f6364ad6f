// Creates the component's class by ProgID, as the registry file says, and runs the closing
// check of receivables on the account set named on the command line.
#include <iostream>
#include <velmora/com/class_table.h>
#include <velmora/com/error.h>
#include <velmora/interfaces.h>

int main(int, char** arguments) {
  using namespace velmora;
  const auto checks = com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();
  const std::string dsn =
      "SubID=AR;LANGUAGE=EN;ConnectString={Provider=Velmora.Embedded;Mode=Read;"
      "Data Source=" +
      std::string(arguments[1]) + "}";
  com::Ref<com::IUnknown> findings;
  bool canClose = true;
  if (!checks->CheckClosingData(dsn, com::make<collections::Dictionary>(), findings, canClose)) {
    std::cerr << com::GetErrorInfo()->description << '\n';
    return 1;
  }
  const auto rows = findings.as<ado::Recordset>();
  std::cout << rows->RecordCount() << " findings, first: " << rows->GetValue(3).toText() << ", "
            << (canClose ? "may" : "may not") << " be closed\n";
  return 0;
}
