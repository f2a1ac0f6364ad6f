#include "velmora/ado/command.h"

#include "velmora/com/error.h"

namespace velmora::ado {

RecordsetRef Command::Execute() {
  if (!connection_)
    throw com::Error(com::error::kAdoObjectClosed, "ADODB.Command",
                     "The command has no connection; expected an open one");
  return connection_->Execute(text_, parameters_);
}

}  // namespace velmora::ado
