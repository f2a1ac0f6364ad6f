#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "velmora/ado/provider.h"
#include "velmora/ado/recordset.h"

namespace velmora::ado {

/// A connection to a database. Not thread-safe; one thread at a time, but for Cancel.
class Connection final : public com::Object<com::IUnknown> {
 public:
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("00000550-0000-0010-8000-00AA006D2EA4");

  /// Seconds; ADO's.
  static constexpr int kDefaultCommandTimeout = 30;

  Connection();
  ~Connection() override;

  /// Opens by connection string; `user` and `password` complete it when not
  /// empty. The "Provider" property chooses the provider ("Driver" or "DSN"
  /// without one means ODBC). Raises the provider's error or
  /// kAdoProviderNotFound; a password is never part of the message.
  void Open(std::string_view connectionString, std::string_view user = {},
            std::string_view password = {}, int options = adOptionUnspecified);
  /// Closing a closed connection does nothing.
  void Close() noexcept;
  ObjectStateEnum State() const noexcept;

  CursorLocationEnum CursorLocation() const noexcept { return cursorLocation_; }
  void CursorLocation(CursorLocationEnum location) { cursorLocation_ = location; }
  /// Seconds that a batch may run; 0 waits without limit. Execute raises kAdoTimeout when they
  /// are over. The connection stays usable; the embedded database has then rolled back the
  /// transaction that the batch was in, a server leaves that to the client.
  /// kAdoInvalidArgument for a negative number.
  int CommandTimeout() const noexcept { return commandTimeout_; }
  void CommandTimeout(int seconds);

  /// Runs a batch. The answer is the first rowset, connected to this connection,
  /// with the others behind NextRecordset; a closed recordset when there is none.
  /// `recordsAffected` receives the rows changed by the last changing statement
  /// (-1: none).
  RecordsetRef Execute(std::string_view commandText, std::int64_t* recordsAffected = nullptr,
                       int options = adOptionUnspecified);
  RecordsetRef Execute(std::string_view commandText, std::span<const ParameterValue> parameters,
                       std::int64_t* recordsAffected = nullptr);

  /// Ends the batch that another thread runs on this connection: its Execute raises
  /// kAdoOperationCancelled, all else is as at the end of CommandTimeout. Returns without waiting
  /// for that. Nothing happens when no batch is running, or on a closed connection. Any thread
  /// may call it while it holds a reference.
  void Cancel() noexcept;

  /// The provider's connection; raises kAdoObjectClosed.
  ProviderConnection& provider();

 private:
  friend class Command;
  void* find(const com::Guid& iid) noexcept override;
  RecordsetRef execute(std::string_view commandText, std::span<const ParameterValue> parameters,
                       int timeout, std::int64_t* recordsAffected);

  std::mutex cancelling_;  // keeps the provider's connection while Cancel uses it
  std::unique_ptr<ProviderConnection> provider_;
  CursorLocationEnum cursorLocation_ = adUseServer;
  int commandTimeout_ = kDefaultCommandTimeout;
};

using ConnectionRef = com::Ref<Connection>;

}  // namespace velmora::ado
