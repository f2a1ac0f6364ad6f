#include "cli/shown_sql.h"

#include <ostream>

#include "cli/caller_string.h"
#include "cli/output/result_writer.h"
#include "velmora/ado/connection.h"

namespace velmora::cli {

namespace {

constexpr const char* kProvider = "Velmora.ShownSql";

/// A connection that writes each batch down and hands it on.
class ShownConnection final : public ado::ProviderConnection {
 public:
  ShownConnection(const std::string& connectString, std::ostream& out) : out_(out) {
    connection_->Open(connectString);
  }

  std::vector<ado::StatementResult> execute(
      std::string_view batch, std::span<const ado::ParameterValue> parameters) override {
    out_ << batch << '\n';
    for (const ado::ParameterValue& parameter : parameters)
      out_ << "-- ? = " << cellText(parameter.value) << '\n';
    out_ << '\n';
    return connection_->provider().execute(batch, parameters);
  }
  void setCommandTimeout(int seconds) override {
    connection_->provider().setCommandTimeout(seconds);
  }
  void cancel() noexcept override { connection_->Cancel(); }

 private:
  ado::ConnectionRef connection_ = com::make<ado::Connection>();
  std::ostream& out_;
};

}  // namespace

std::string showingSql(const Session& session, std::ostream& out) {
  CallerString dsn(session.dsn());
  const std::string connectString = connectStringOf(session.dsn());
  ado::RegisterProvider(kProvider, [connectString, &out](const ado::ConnectionString&) {
    return std::make_unique<ShownConnection>(connectString, out);
  });
  dsn.set("ConnectString", std::string("Provider=") + kProvider);
  return dsn.toString();
}

}  // namespace velmora::cli
