#include "cli/report/settlement_report.h"

#include "velmora/collections/dictionary.h"

namespace velmora::cli {

namespace {

using collections::Dictionary;
using collections::Variant;
using explain::Sentences;
using report::Cell;
using report::Column;
using report::Kind;
using report::Section;
using report::Table;
using report::Tone;

Cell amountCell(const Variant& value) {
  return value.isNull() ? Cell() : Cell(value.toDecimal());
}

/// What tells a document entry, on either side of a pair.
constexpr std::array<std::pair<const char*, const char*>, 3> kEntry{
    {{"单据内码", "FBillID"}, {"单据类型", "FType"}, {"分录", "FEntryID"}}};

Column amountColumn(const std::string& name, const std::string& group = {}) {
  return {.name = name, .kind = Kind::amount, .group = group};
}

void addEntryColumns(Table& table, const std::string& group, Sentences& sentences) {
  for (const auto& [name, column] : kEntry)
    table.columns.push_back({.name = sentences.of(name), .group = group, .key = true});
}

Table summaryTable(const SettlementRun& run, Sentences& sentences) {
  Table table{"sides", sentences.of("核销结果"), {}, {}};
  table.columns = {{.name = sentences.of("方"), .key = true},
                   {.name = sentences.of("币别"), .key = true},
                   {.name = sentences.of("单据数"), .kind = Kind::count},
                   amountColumn(sentences.of("已核销")),
                   amountColumn(sentences.of("未核销")),
                   {.name = sentences.of("未核销单据数"), .kind = Kind::count}};
  for (const auto& side : run.summary())
    table.rows.push_back({{sentences.of(side.side == "source" ? "源单" : "目标单"), side.currency,
                           static_cast<std::int64_t>(side.documents), side.settled, side.open,
                           static_cast<std::int64_t>(side.openDocuments)}});
  return table;
}

/// The amounts that a pair settles, by mode.
std::vector<std::pair<const char*, const char*>> pairAmounts(const SettlementMode& mode) {
  std::vector<std::pair<const char*, const char*>> amounts;
  if (!mode.singleAmount) amounts.emplace_back("核销金额（原币）", "FCheckAmountFor");
  amounts.emplace_back("核销金额", "FCheckAmount");
  if (mode.withQuantity && !mode.singleAmount) amounts.emplace_back("核销数量", "FCheckQuantity");
  return amounts;
}

Table pairTable(const SettlementRun& run, Sentences& sentences) {
  Table table{"pairs", sentences.of("核销明细"), {}, {}};
  table.columns.push_back({.name = sentences.of("往来单位"), .choice = true, .key = true});
  addEntryColumns(table, sentences.of("单据"), sentences);
  addEntryColumns(table, sentences.of("对方单据"), sentences);
  for (const auto& [name, key] : pairAmounts(run.mode))
    table.columns.push_back(amountColumn(sentences.of(name)));
  for (std::size_t i = 0; i + 1 < run.rows->Size(); i += 2) {
    const auto pair = run.rows->Item(i).toObject<Dictionary>();
    report::Row row;
    row.cells.emplace_back(cellText(pair->Value("FContactID")));
    for (const char* side : {"", "_SRC"})
      for (const auto& [name, key] : kEntry)
        row.cells.emplace_back(cellText(pair->Value(std::string(key) + side)));
    for (const auto& [name, key] : pairAmounts(run.mode))
      row.cells.push_back(amountCell(pair->Value(key)));
    table.rows.push_back(std::move(row));
  }
  return table;
}

Table documentTable(const SettlementRun& run, const ado::RecordsetRef& side, const std::string& id,
                    const std::string& title, Sentences& sentences) {
  Table table{id, title, {}, {}};
  addEntryColumns(table, {}, sentences);
  const AmountColumns amounts = settlementAmounts(run.mode);
  for (const char* name : {"金额", "已核销", "未核销"})
    table.columns.push_back(amountColumn(sentences.of(name)));
  for (const auto all = side->Clone(); !all->EOF_(); all->MoveNext()) {
    const auto value = [&](const std::string& column) {
      return all->GetValue(all->fieldIndex(column));
    };
    report::Row row;
    for (const auto& [name, column] : kEntry) row.cells.emplace_back(cellText(value(column)));
    for (const std::string* column : {&amounts.whole, &amounts.settled, &amounts.open})
      row.cells.push_back(amountCell(value(*column)));
    const Variant open = value(amounts.open);
    if (!open.isNull() && !open.toDecimal().isZero()) row.tone = Tone::warning;
    table.rows.push_back(std::move(row));
  }
  return table;
}

Section sectionOf(Table table) {
  Section section;
  section.id = table.id + "-section";
  section.title = table.title;
  section.summary = std::to_string(table.rows.size());
  section.blocks.emplace_back(std::move(table));
  return section;
}

}  // namespace

report::Report settlementReport(const SettlementRun& run, const std::vector<std::string>& faults,
                                const std::string& language, const ReportFile& file,
                                Sentences& sentences) {
  report::Report made = newReport(file, language, sentences.of("往来核销"), {});
  Section summary;
  summary.id = "summary";
  summary.title = sentences.of("结论");
  summary.tone = faults.empty() ? Tone::good : Tone::serious;
  summary.blocks.emplace_back(report::Paragraph{
      sentences.of("核销 %1 对。", {std::to_string(run.pairs())}) + " " +
          (faults.empty() ? sentences.of("已核对：每张单据的已核销与未核销金额相符，每对金额相等。")
                          : sentences.of("有 %1 处不符。", {std::to_string(faults.size())})),
      summary.tone});
  for (const std::string& fault : faults)
    summary.blocks.emplace_back(report::Paragraph{fault, Tone::serious});
  summary.blocks.emplace_back(summaryTable(run, sentences));
  made.sections.push_back(std::move(summary));
  made.sections.push_back(sectionOf(pairTable(run, sentences)));
  if (run.source)
    made.sections.push_back(
        sectionOf(documentTable(run, run.source, "source", sentences.of("源单"), sentences)));
  if (run.destination)
    made.sections.push_back(sectionOf(
        documentTable(run, run.destination, "destination", sentences.of("目标单"), sentences)));
  made.sections.push_back(About(made, sentences).section());
  return made;
}

}  // namespace velmora::cli
