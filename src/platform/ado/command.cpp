#include "velmora/ado/command.h"

#include "platform/ado/command_timeout.h"
#include "velmora/com/error.h"

namespace velmora::ado {

int Command::CommandTimeout() const noexcept {
  if (timeout_) return *timeout_;
  return connection_ ? connection_->CommandTimeout() : Connection::kDefaultCommandTimeout;
}

void Command::CommandTimeout(int seconds) {
  requireTimeout(seconds, "ADODB.Command");
  timeout_ = seconds;
}

void Command::Cancel() noexcept {
  if (connection_) connection_->Cancel();
}

RecordsetRef Command::Execute() {
  if (!connection_)
    throw com::Error(com::error::kAdoObjectClosed, "ADODB.Command",
                     "The command has no connection; expected an open one");
  return connection_->execute(text_, parameters_, CommandTimeout(), nullptr);
}

}  // namespace velmora::ado
