#include "cli/row_access.h"

#include <limits>
#include <ostream>

#include "cli/failure.h"
#include "cli/secrets.h"
#include "velmora/com/error.h"

namespace velmora::cli {

void addRowAccessOptions(CLI::App& command, AccountSetOptions& options, bool& noRowAccess) {
  command
      .add_option("--user", options.userId,
                  "Id of the user whose row access applies; if absent that of the connection "
                  "string, else 0")
      ->option_text("ID")
      ->check(CLI::Range(0, std::numeric_limits<int>::max()));
  command.add_flag("--no-row-access", noRowAccess,
                   "Go on with the rows of all users where row access cannot be decided");
}

std::optional<std::string> undecidedRowAccess() {
  const auto& info = com::GetErrorInfo();
  if (!info || info->place != "row access") return std::nullopt;
  return "row access could not be decided: " + withoutPasswords(info->description) + " (" +
         info->source + ", error " + std::to_string(info->number) + ")";
}

void requireRowAccess() {
  if (const auto reason = undecidedRowAccess())
    throw Failure(*reason +
                  "; mend this, or give --no-row-access to go on with the rows of all users");
}

std::string noRowAccessNote() {
  const auto reason = undecidedRowAccess();
  return reason ? "note: --no-row-access: these are the rows of all users; " + *reason
                : "note: --no-row-access was not needed; row access was decided and applies";
}

void settleRowAccess(bool noRowAccess, std::ostream& err) {
  if (noRowAccess)
    err << noRowAccessNote() << '\n';
  else
    requireRowAccess();
}

}  // namespace velmora::cli
