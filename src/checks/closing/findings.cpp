#include "checks/closing/findings.h"

#include "checks/closing/check_item_text.h"
#include "frame/call/text.h"

namespace velmora::closing {

namespace {

constexpr std::size_t kItemSize = 100, kTypeSize = 300, kMessageSize = 300;

}  // namespace

Findings::Findings() : rows_(com::make<ado::Recordset>()) {
  auto fields = rows_->Fields();
  fields.Append("FID", ado::adInteger);
  fields.Append("FChkItem", ado::adVarWChar, kItemSize);
  fields.Append("FChkType", ado::adVarWChar, kTypeSize);
  fields.Append("FChkInfo", ado::adVarWChar, kMessageSize);
  rows_->Open();
}

void Findings::add(const collections::Dictionary& item, ado::Recordset& rows) {
  const std::string name = taggedValue(item.Value("FChkItem").toText(), rows);
  const std::string severity = taggedValue(item.Value("FChkType").toText(), rows);
  const std::string message = item.Value("FChkInfo").toText();
  for (; !rows.EOF_(); rows.MoveNext()) add(name, severity, filledMessage(message, rows));
}

void Findings::add(std::string_view item, std::string_view severity, std::string_view message) {
  rows_->AddNew();
  rows_->SetValue(0, ++count_);
  rows_->SetValue(1, firstCharacters(item, kItemSize));
  rows_->SetValue(2, firstCharacters(severity, kTypeSize));
  rows_->SetValue(3, firstCharacters(message, kMessageSize));
  rows_->Update();
}

const ado::RecordsetRef& Findings::recordset() {
  if (count_ > 0) rows_->MoveFirst();
  return rows_;
}

}  // namespace velmora::closing
