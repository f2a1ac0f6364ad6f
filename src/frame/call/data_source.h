#pragma once

#include <memory>
#include <string>
#include <utility>

#include "frame/call/parse.h"
#include "velmora/ado/connection.h"

namespace velmora {

/// The one place where database connections are made. Lives as long as the set-up
/// of one call; its end also unloads the thread's message loader.
class CDataSource {
 public:
  explicit CDataSource(std::shared_ptr<const CParse> parser) : parser_(std::move(parser)) {}
  ~CDataSource();
  CDataSource(const CDataSource&) = delete;
  CDataSource& operator=(const CDataSource&) = delete;

  const CParse& parser() const noexcept { return *parser_; }
  std::string ConnectString() const { return parser_->ConStr(); }

  // Each a new, open connection that the caller owns: client-side cursors, no
  // command time-out. Raise the provider's error.

  /// Reads committed rows only; for the settings.
  ado::ConnectionRef Connection() const;
  /// Reads uncommitted rows too, so that checks neither wait for nor block the users
  /// who are entering documents.
  ado::ConnectionRef UnCommittedConnection() const;

 private:
  ado::ConnectionRef open(const char* isolation) const;

  std::shared_ptr<const CParse> parser_;
};

/// A connection that is closed at the end of its scope, on every path.
class ScopedConnection {
 public:
  explicit ScopedConnection(ado::ConnectionRef connection) : connection_(std::move(connection)) {}
  ~ScopedConnection() { connection_->Close(); }
  ScopedConnection(const ScopedConnection&) = delete;
  ScopedConnection& operator=(const ScopedConnection&) = delete;

  const ado::ConnectionRef& operator*() const noexcept { return connection_; }
  ado::Connection* operator->() const noexcept { return connection_.get(); }

 private:
  ado::ConnectionRef connection_;
};

}  // namespace velmora
