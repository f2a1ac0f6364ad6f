#pragma once

#include <iosfwd>
#include <string>

#include "cli/output/terminal.h"
#include "velmora/ado/recordset.h"

namespace velmora::cli {

enum class Format { table, csv, json };
/// Forms of a result that is a report in a file of its own.
enum class ReportForm { none, html, xlsx };

/// A value as table and CSV show it: decimals with all their decimals, bits as 1
/// and 0, dates as "YYYY-MM-DD" with the time when there is one. Null gives "".
std::string cellText(const collections::Variant& value);

/// All rows in view, columns lined up, numbers to the right, NULL spelled out.
void writeTable(std::ostream& out, ado::Recordset& rows, const Style& style);

/// All rows in view as RFC 4180 text with a header line; NULL is an empty field,
/// an empty text an empty field in quotes.
void writeCsv(std::ostream& out, ado::Recordset& rows);

}  // namespace velmora::cli
