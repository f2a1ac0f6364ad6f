#include <ostream>

#include "cli/account_set.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/failure.h"
#include "cli/options.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

struct Options {
  AccountSetOptions accountSet;
  int itemClass = 0, item = 0, classType = 0;
};

int defaultAccount(const Options& options, Streams& streams) {
  activateComponent();
  const Session session(options.accountSet);
  requireAccountSet(session.connection());
  const auto object = componentObject<_clsPublic>();
  const auto account =
      object->GetDefaultAcctID(session.dsn(), options.itemClass, options.item, options.classType);
  if (com::GetErrorInfo()) failFromErrorInfo("the default account");
  streams.out << account << '\n';
  if (account == 0) streams.err << "no account: neither the item nor the document type has one\n";
  return kOk;
}

CLI::Option* addNumber(CLI::App& command, const char* name, int& target, const char* help) {
  return command.add_option(name, target, help)->option_text("ID")->required();
}

}  // namespace

void addDefaultAccount(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand(
      "default-account", "Tell the account to propose for an item on a document");
  command->footer(
      "Example:\n"
      "  velmora default-account --db demo.db --item-class 1 --item 1001 --class-type 1000000\n"
      "\n"
      "Prints the id of the item's own account for documents of that class type, else that\n"
      "of the document type's account, else 0.");
  addConnectionOptions(*command, options->accountSet);
  addNumber(*command, "--item-class", options->itemClass,
            "Class of the item: 1 customers, 8 suppliers");
  addNumber(*command, "--item", options->item, "The item");
  addNumber(*command, "--class-type", options->classType, "Class type of the document");
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return defaultAccount(*options, streams); };
  });
}

}  // namespace velmora::cli
