#include "checks/closing/check_item_text.h"

#include "frame/call/text.h"
#include "velmora/com/error.h"

namespace velmora::closing {

using collections::Variant;

namespace {

std::string columnText(ado::Recordset& rows, std::string_view column) {
  const Variant& value = rows.Fields()(column).Value();
  if (value.isNull())
    throw com::Error(com::error::kInvalidUseOfNull, "clsInitBalCheck",
                     "column " + std::string(column) + " of a finding is Null; a text is expected");
  return value.toText();
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
    text.replace(at, what.size(), with);
}

}  // namespace

std::string taggedValue(std::string_view tagged, ado::Recordset& rows) {
  const Variant flag = cutAt(tagged, '|');
  const std::string_view value = cutAt(tagged, '|');
  return flag.toDecimal().isZero() ? std::string(value) : columnText(rows, trimmed(value));
}

std::string filledMessage(std::string_view message, ado::Recordset& rows) {
  std::string text(cutAt(message, '|'));
  std::string_view columns = trimmed(cutAt(message, '|'));
  for (int number = 1; !columns.empty(); ++number)
    replaceAll(text, "%" + std::to_string(number), columnText(rows, cutAt(columns, ',')));
  return text;
}

}  // namespace velmora::closing
