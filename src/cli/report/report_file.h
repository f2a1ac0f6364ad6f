#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "cli/output/result_writer.h"
#include "cli/session.h"
#include "explain/sentences.h"
#include "report/model.h"

namespace velmora::cli {

/// The file that a report is written to, and what the report says of itself.
struct ReportFile {
  ReportForm form = ReportForm::none;
  std::string out;
  bool replace = false;
  std::string madeAt;  ///< empty: SOURCE_DATE_EPOCH of the environment, else now
  std::string author;  ///< empty: the log-in name

  /// Whether the result is to be a report.
  bool wanted() const { return form != ReportForm::none; }
};

/// --force, --as-of and --by.
void addReportOptions(CLI::App& command, ReportFile& file);
/// --format table|csv|json|html|xlsx, --out and the above, of a command whose result can be a
/// report.
void addReportFormatOptions(CLI::App& command, Format& format, ReportFile& file);

/// Before anything is worked out: raises UsageError where a report lacks its file or a file is
/// given in vain, and as requireWritable.
void requireFile(const ReportFile& file);
/// Before anything is worked out: raises Failure where `name` exists and is not to be replaced,
/// or where no file can be made there.
void requireWritable(const std::string& name, const ReportFile& file);

/// A report without sections. Raises UsageError for an --as-of that is no time.
report::Report newReport(const ReportFile& file, const std::string& language,
                         const std::string& title, const std::string& subject);

/// Writes `report` to `name`; the file is there when it is complete. Raises Failure telling why
/// it could not be written.
void writeReport(const std::string& name, ReportForm form, const ReportFile& file,
                 const report::Report& report, explain::Sentences& sentences);

/// Whose books these are: the company's name, else that of the database.
std::string subjectOf(const Session& session);

/// What was checked and how, and what was not: the last section of every report.
class About {
 public:
  About(const report::Report& report, explain::Sentences& sentences);

  /// The account set, the database and the user whose row access applies.
  void addBooks(const Session& session);
  void add(const char* name, const std::string& value);
  /// What the report does not cover.
  void addLimit(const std::string& text) { limits_.push_back(text); }
  report::Section section() const;

 private:
  explain::Sentences& sentences_;
  report::Facts facts_;
  std::vector<std::string> limits_;
};

}  // namespace velmora::cli
