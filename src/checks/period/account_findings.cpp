#include "checks/period/account_findings.h"

#include "frame/call/text.h"

namespace velmora::period {

namespace {

constexpr std::size_t kTypeSize = 300, kMessageSize = 300, kKeySize = 100;

}  // namespace

AccountFindings::AccountFindings() : rows_(com::make<ado::Recordset>()) {
  auto fields = rows_->Fields();
  fields.Append("FID", ado::adInteger);
  fields.Append("FErrType", ado::adVarWChar, kTypeSize);
  fields.Append("FErrInfo", ado::adVarWChar, kMessageSize);
  fields.Append("FKey", ado::adVarWChar, kKeySize);
  rows_->Open();
}

void AccountFindings::add(std::string_view severity, std::string_view message,
                          std::string_view itemClass) {
  rows_->AddNew();
  rows_->SetValue(0, ++count_);
  rows_->SetValue(1, firstCharacters(severity, kTypeSize));
  rows_->SetValue(2, firstCharacters(message, kMessageSize));
  rows_->SetValue(3, firstCharacters(itemClass, kKeySize));
  rows_->Update();
}

const ado::RecordsetRef& AccountFindings::recordset() {
  if (count_ > 0) rows_->MoveFirst();
  return rows_;
}

}  // namespace velmora::period
