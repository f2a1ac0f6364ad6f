#pragma once

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

  /// Appends the next "?" parameter. Direction is input, the only one there is.
  void AppendParameter(DataTypeEnum type, std::int64_t size, Variant value) {
    parameters_.push_back({type, size, std::move(value)});
  }
  /// kAdoObjectClosed without an open connection.
  RecordsetRef Execute();

 private:
  ConnectionRef connection_;
  std::string text_;
  CommandTypeEnum type_ = adCmdText;
  std::vector<ParameterValue> parameters_;
};

}  // namespace velmora::ado
