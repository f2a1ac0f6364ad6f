#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "velmora/collections/date.h"
#include "velmora/collections/decimal.h"

// What a report says, whatever form it takes on paper, on a screen or in a workbook. Who
// builds one has reckoned every figure in it and worded every sentence in the reader's
// language; a writer only shows.

namespace velmora::report {

using collections::Date;
using collections::Decimal;

enum class Tone { plain, good, warning, serious };

/// A text that leads to the section, table or row with the id `target`; without one it is text
/// alone.
struct Reference {
  std::string text, target;
  bool operator==(const Reference&) const = default;
};
using References = std::vector<Reference>;

/// Nothing, a text, a count, an amount (shown with all the decimals that it has), a day, or
/// texts that lead elsewhere.
using Cell = std::variant<std::monostate, std::string, std::int64_t, Decimal, Date, References>;

enum class Kind { text, count, amount, date };

struct Column {
  std::string name;
  Kind kind = Kind::text;
  std::string group = {};   ///< head above it and its neighbours of the same group; empty: none
  bool choice = false;      ///< has few different texts: offered to filter by
  bool difference = false;  ///< an amount that ought to be 0
  bool key = false;         ///< tells what the row is about; a row's details repeat it
};

struct Row {
  std::vector<Cell> cells;  ///< one a column
  std::string id = {};      ///< empty: nothing leads to it
  bool detail = false;      ///< belongs to the last row before it that is none
  Tone tone = Tone::plain;
};

struct Table {
  std::string id;
  std::string title;
  std::vector<Column> columns;
  std::vector<Row> rows;
  /// The sums of the rows that are no details, one cell a column (text columns: a label or
  /// nothing); empty: the columns have no sum that means anything.
  std::vector<Cell> totals = {};
  bool folded = false;  ///< closed until the reader opens it
};

/// A sentence or a few.
struct Paragraph {
  std::string text;
  Tone tone = Tone::plain;
};

/// What is so: a name and its value each.
struct Facts {
  std::vector<std::pair<std::string, Cell>> entries;
};

/// What to do, in this order.
struct Steps {
  std::string title;
  References entries;
};

struct Bar {
  std::string label;
  Decimal amount;    ///< how long, either side of 0
  std::string text;  ///< the figure as it is read
  Tone tone = Tone::plain;
  std::string target = {};  ///< id of what it is about; empty: leads nowhere
};

/// A picture of figures that stand in a table too.
struct Chart {
  std::string id;
  std::string title;
  std::vector<Bar> bars;
};

/// Lines for name, date and signature, one for each role.
struct Signatures {
  std::vector<std::string> roles;
};

using Block = std::variant<Paragraph, Facts, Steps, Table, Chart, Signatures>;

/// A subject of the report. The first of a report is its summary.
struct Section {
  std::string id;
  std::string title;
  std::string summary = {};  ///< one line, to be read where the section is folded or linked
  Tone tone = Tone::plain;
  std::vector<Block> blocks = {};
  bool folded = false;
};

struct Report {
  std::string language;            ///< "chs", "CHT" or "EN"
  std::string title;               ///< "Closing dossier 2009-03"
  std::string subject;             ///< whose books: the company's name, or the account set's
  std::string author;              ///< who had it made
  std::string madeAt;              ///< when, as it is read
  std::int64_t madeAtSeconds = 0;  ///< the same instant since 1970-01-01 UTC
  std::vector<Section> sections;
};

}  // namespace velmora::report
