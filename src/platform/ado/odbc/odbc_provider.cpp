#include "platform/ado/odbc/odbc_provider.h"

#include "platform/ado/odbc/batch.h"
#include "platform/ado/odbc/driver_string.h"

namespace velmora::ado::odbc {

namespace {

class OdbcConnection final : public ProviderConnection {
 public:
  explicit OdbcConnection(const DriverString& to) : session_(to.text, to.loginTimeout) {}

  std::vector<StatementResult> execute(std::string_view batch,
                                       std::span<const ParameterValue> parameters) override {
    return runBatch(session_, batch, parameters, timeout_, stopper_);
  }

  void setCommandTimeout(int seconds) override { timeout_ = seconds; }
  void cancel() noexcept override { stopper_.cancel(); }

 private:
  Session session_;
  BatchStopper stopper_{kSource};
  int timeout_ = 0;
};

}  // namespace

std::unique_ptr<ProviderConnection> openConnection(const ConnectionString& settings) {
  return std::make_unique<OdbcConnection>(driverString(settings));
}

void registerProvider() {
  RegisterProvider("MSDASQL", openConnection);
}

}  // namespace velmora::ado::odbc
