#pragma once

#include <optional>
#include <string>
#include <vector>

#include "velmora/ado/connection.h"

namespace velmora::ado {

/// A statement with "?" parameters.
class Command final : public com::Object<com::IUnknown> {
 public:
  ConnectionRef ActiveConnection() const { return connection_; }
  void ActiveConnection(ConnectionRef connection) { connection_ = std::move(connection); }
  const std::string& CommandText() const noexcept { return text_; }
  void CommandText(std::string text) { text_ = std::move(text); }
  CommandTypeEnum CommandType() const noexcept { return type_; }
  void CommandType(CommandTypeEnum type) { type_ = type; }
  /// Seconds that Execute may take, 0 without limit; those of the connection until set.
  /// kAdoInvalidArgument for a negative number.
  int CommandTimeout() const noexcept;
  void CommandTimeout(int seconds);

  /// Appends the next "?" parameter. Direction is input, the only one there is.
  void AppendParameter(DataTypeEnum type, std::int64_t size, Variant value) {
    parameters_.push_back({type, size, std::move(value)});
  }
  /// kAdoObjectClosed without an open connection.
  RecordsetRef Execute();
  /// Ends an Execute that is running on another thread, as Connection::Cancel.
  void Cancel() noexcept;

 private:
  ConnectionRef connection_;
  std::string text_;
  CommandTypeEnum type_ = adCmdText;
  std::optional<int> timeout_;
  std::vector<ParameterValue> parameters_;
};

}  // namespace velmora::ado
