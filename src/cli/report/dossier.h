#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "cli/report/report_file.h"
#include "cli/report/sections.h"

namespace velmora::cli {

/// What a closing dossier is asked for.
struct DossierOptions {
  AccountSetOptions accountSet;
  bool receivables = true, payables = true;  ///< the sides
  Period period;                             ///< 0: the current one of each side
  bool showAll = false, noRowAccess = false;
};

/// A side with the check of its initial data.
struct DossierSide {
  CheckedSide checked;
  CheckReport initial;

  DossierSide(ClosingReport closing, Reconciliation comparison, explain::Explanation explanation,
              CheckReport initialData, const std::string& language)
      : checked(std::move(closing), std::move(comparison), std::move(explanation), language),
        initial(std::move(initialData)) {}
};

/// The books as they were checked.
struct Dossier {
  std::vector<std::unique_ptr<DossierSide>> sides;
  CheckReport accounts;
  std::vector<std::string> limits;  ///< what was left out, and why

  bool blocked() const;
};

/// Tells what is being worked out.
using DossierProgress = std::function<void(const std::string&)>;

/// Runs all checks. `session` keeps the account set open between them. A side without a current
/// period is left out when both are asked for. Raises Failure telling why a check could not be run;
/// notes go to `err`.
Dossier makeDossier(const Session& session, const DossierOptions& options, std::ostream& err,
                    const DossierProgress& progress);

/// The dossier as a report.
report::Report reportOf(const Session& session, const Dossier& dossier,
                        const DossierOptions& options, const ReportFile& file,
                        explain::Sentences& sentences);

}  // namespace velmora::cli
