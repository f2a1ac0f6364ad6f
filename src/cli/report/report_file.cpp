#include "cli/report/report_file.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fmt/chrono.h>
#include <fstream>
#include <system_error>

#include "cli/account_set.h"
#include "cli/caller_string.h"
#include "cli/failure.h"
#include "cli/new_file.h"
#include "cli/options.h"
#include "report/html.h"
#include "report/workbook.h"
#include "velmora/ado/connection_string.h"

namespace velmora::cli {

namespace {

constexpr std::int64_t kMicroseconds = 1'000'000;

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

/// An instant and how it is read.
struct MadeAt {
  std::int64_t seconds = 0;
  std::string text;
};

MadeAt givenTime(const std::string& text) {
  const auto time = collections::Date::tryParse(text);
  if (!time)
    throw UsageError("--as-of \"" + text + "\" is no time; give it as 2009-04-01T09:30:00");
  return {time->microseconds() / kMicroseconds, time->toString()};
}

MadeAt epochTime(const std::string& text) {
  std::int64_t seconds = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, seconds);
  constexpr std::int64_t kYear9999 = 253'402'300'799;
  if (error != std::errc() || rest != end || seconds < 0 || seconds > kYear9999)
    throw Failure("SOURCE_DATE_EPOCH is \"" + text + "\", not seconds since 1970-01-01");
  return {seconds,
          collections::Date::fromMicroseconds(seconds * kMicroseconds).toString() + " UTC"};
}

MadeAt now() {
  const std::time_t seconds = std::time(nullptr);
  return {seconds, fmt::format("{:%Y-%m-%d %H:%M:%S %z}", fmt::localtime(seconds))};
}

MadeAt timeOf(const ReportFile& file) {
  if (!file.madeAt.empty()) return givenTime(file.madeAt);
  const std::string epoch = environment("SOURCE_DATE_EPOCH");
  return epoch.empty() ? now() : epochTime(epoch);
}

report::Words wordsOf(explain::Sentences& sentences) {
  return [&sentences](std::string_view text) { return sentences.of(text); };
}

[[noreturn]] void failToWrite(const std::string& name) {
  throw Failure("cannot write " + name + ": " + std::generic_category().message(errno));
}

void writePage(const std::string& name, const report::Report& report, const report::Words& words) {
  errno = 0;
  std::ofstream out(name, std::ios::binary);
  if (out) {
    report::writeHtml(out, report, words);
    out.close();
  }
  if (!out) failToWrite(name);
}

/// The database without folders and secrets: the report goes to people who need neither.
std::string databaseName(const Session& session) {
  const ado::ConnectionString settings(connectStringOf(session.dsn()));
  std::string name;
  for (const char* key : {"DSN", "Server", "Data Source", "Database", "Initial Catalog"}) {
    const std::string value = settings.value(key);
    if (!value.empty())
      name += (name.empty() ? "" : " / ") + std::filesystem::path(value).filename().string();
  }
  return name;
}

}  // namespace

void addReportOptions(CLI::App& command, ReportFile& file) {
  command.add_flag("--force", file.replace, "Replace files that exist");
  command
      .add_option("--as-of", file.madeAt,
                  "When the report was made, as it is to say; SOURCE_DATE_EPOCH of the "
                  "environment or now if absent")
      ->option_text("TIME");
  command.add_option("--by", file.author, "Who had the report made; the log-in name if absent")
      ->option_text("NAME");
}

void addReportFormatOptions(CLI::App& command, Format& format, ReportFile& file) {
  addFormatOption(command, format, file.form);
  command.add_option("--out", file.out, "The report's file, with --format html or xlsx")
      ->option_text("FILE");
  addReportOptions(command, file);
}

void requireFile(const ReportFile& file) {
  if (file.wanted() && file.out.empty())
    throw UsageError("--format html and xlsx write a file; add --out FILE");
  if (!file.wanted() && !file.out.empty())
    throw UsageError("--out goes with --format html and xlsx; other forms go to standard output");
  if (file.wanted()) requireWritable(file.out, file);
}

void requireWritable(const std::string& name, const ReportFile& file) {
  const NewFile tried(name, file.replace);
  errno = 0;
  if (!std::ofstream(tried.unfinished())) failToWrite(name);
}

report::Report newReport(const ReportFile& file, const std::string& language,
                         const std::string& title, const std::string& subject) {
  const MadeAt made = timeOf(file);
  report::Report report;
  report.language = language;
  report.title = title;
  report.subject = subject;
  report.author = file.author.empty() ? environment("USER") : file.author;
  report.madeAt = made.text;
  report.madeAtSeconds = made.seconds;
  return report;
}

void writeReport(const std::string& name, ReportForm form, const ReportFile& file,
                 const report::Report& report, explain::Sentences& sentences) {
  NewFile written(name, file.replace);
  if (form == ReportForm::html)
    writePage(written.unfinished(), report, wordsOf(sentences));
  else
    report::writeWorkbook(written.unfinished(), report, wordsOf(sentences));
  written.complete();
}

std::string subjectOf(const Session& session) {
  const std::string company = companyName(session.connection());
  return company.empty() ? databaseName(session) : company;
}

About::About(const report::Report& report, explain::Sentences& sentences) : sentences_(sentences) {
  add("制表人", report.author);
  add("制表时间", report.madeAt);
  add("程序版本", VELMORA_VERSION);
}

void About::addBooks(const Session& session) {
  add("公司", companyName(session.connection()));
  add("数据库", databaseName(session));
  const auto user = CallerString(session.dsn()).find("UserID");
  add("数据权限按用户", user && !user->empty() ? *user : "0");
}

void About::add(const char* name, const std::string& value) {
  facts_.entries.emplace_back(sentences_.of(name), value.empty() ? sentences_.of("没有") : value);
}

report::Section About::section() const {
  report::Section section;
  section.id = "about";
  section.title = sentences_.of("关于本报告");
  section.summary = sentences_.of("检查了什么，没有检查什么");
  section.blocks.emplace_back(facts_);
  for (const std::string& limit : limits_)
    section.blocks.emplace_back(report::Paragraph{limit, report::Tone::plain});
  section.blocks.emplace_back(
      report::Signatures{{sentences_.of("制表"), sentences_.of("审核"), sentences_.of("批准")}});
  return section;
}

}  // namespace velmora::cli
