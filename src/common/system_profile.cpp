#include "common/system_profile.h"

#include "frame/call/text.h"
#include "velmora/ado/command.h"

namespace velmora {

using collections::Variant;

namespace {

constexpr const char* kArpQuery =
    "Select FValue From t_RP_SystemProfile Where UPPER(FCategory) = ? And FKey = ?";
constexpr const char* kOtherQuery =
    "Select FValue From t_SystemProfile Where FCategory = ? And FKey = ?";
constexpr std::int64_t kParameterSize = 30;

}  // namespace

Variant ReadSystemProfile(const CDataSource& dataSource, std::string_view key,
                          std::string_view category, const Variant& fallback) {
  const ScopedConnection connection(dataSource.Connection());
  const auto command = com::make<ado::Command>();
  command->ActiveConnection(*connection);
  command->CommandType(ado::adCmdText);
  command->CommandText(category == "ARP" ? kArpQuery : kOtherQuery);
  command->AppendParameter(ado::adVarChar, kParameterSize, category);
  command->AppendParameter(ado::adVarChar, kParameterSize, key);
  const auto rows = command->Execute();
  return rows->EOF_() ? fallback : rows->Fields()("FValue").Value();
}

std::int32_t readProfileNumber(const CDataSource& dataSource, std::string_view key,
                               std::string_view category) {
  const Variant value = ReadSystemProfile(dataSource, key, category);
  return Variant(value.toDecimal().truncated(0)).toInt32();
}

std::int32_t readCurrentYear(const CDataSource& dataSource, bool bArp) {
  return readProfileNumber(dataSource, bArp ? "FARCurYear" : "FAPCurYear", "ARP");
}

std::int32_t readCurrentPeriod(const CDataSource& dataSource, bool bArp) {
  return readProfileNumber(dataSource, bArp ? "FARCurPeriod" : "FAPCurPeriod", "ARP");
}

bool IsArSubSystem(const CDataSource& dataSource) {
  const std::string code = upperCased(dataSource.parser().GetProperty("SubID"));
  return code == "AR" || code == "EAR" || code == "XS";
}

}  // namespace velmora
