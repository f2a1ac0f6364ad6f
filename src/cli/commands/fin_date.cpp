#include <ostream>

#include "cli/account_set.h"
#include "cli/call/json_text.h"
#include "cli/commands/commands.h"
#include "cli/component.h"
#include "cli/options.h"
#include "velmora/com/class_table.h"
#include "velmora/interfaces.h"

namespace velmora::cli {

namespace {

int finDate(const AccountSetOptions& options, Streams& streams) {
  activateComponent();
  const Session session(options);
  requireAccountSet(session.connection());
  const auto object = componentObject<_clsPublic>();
  const auto date = object->GetCurFincDate(session.dsn(), options.receivables);
  // A date that could not be found out is this machine's, which nobody should post with.
  if (com::GetErrorInfo()) failFromErrorInfo("the financial date");
  streams.out << date.toString() << '\n';
  return 0;
}

}  // namespace

void addFinDate(CLI::App& program, Run& chosen) {
  auto options = std::make_shared<AccountSetOptions>();
  CLI::App* command =
      program.add_subcommand("fin-date", "Tell the date for new receivables or payables documents");
  command->footer(
      "Example:\n"
      "  velmora fin-date --db demo.db --side ap\n"
      "\n"
      "Prints today's date and time while today lies in the current period, else the\n"
      "last day of the current period.");
  addConnectionOptions(*command, *options);
  addSideOption(*command, *options);
  command->callback([options, &chosen] {
    chosen = [options](Streams& streams) { return finDate(*options, streams); };
  });
}

}  // namespace velmora::cli
