#include "frame/call/data_source.h"

#include "frame/call/loader_slot.h"

namespace velmora {

CDataSource::~CDataSource() {
  unloadMessageLoader();
}

ado::ConnectionRef CDataSource::Connection() const {
  return open("SET TRANSACTION ISOLATION LEVEL READ COMMITTED");
}

ado::ConnectionRef CDataSource::UnCommittedConnection() const {
  return open("SET TRANSACTION ISOLATION LEVEL READ UnCOMMITTED");
}

ado::ConnectionRef CDataSource::open(const char* isolation) const {
  auto connection = com::make<ado::Connection>();
  connection->Open(ConnectString(), "", "", ado::adOptionUnspecified);
  connection->Execute(isolation);
  connection->CursorLocation(ado::adUseClient);
  connection->CommandTimeout(0);
  return connection;
}

}  // namespace velmora
