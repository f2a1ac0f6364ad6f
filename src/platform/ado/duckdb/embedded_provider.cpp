#include "platform/ado/duckdb/embedded_provider.h"

#include "platform/ado/duckdb/batch_runner.h"
#include "platform/ado/duckdb/engine_error.h"
#include "platform/ado/duckdb/parameters.h"
#include "platform/ado/duckdb/table_appender.h"
#include "platform/tsql/syntax/parser.h"

namespace velmora::ado::embedded {

namespace {

class EmbeddedConnection final : public ProviderConnection {
 public:
  explicit EmbeddedConnection(const Settings& settings)
      : state_(std::make_shared<SessionState>(settings)) {}

  std::vector<StatementResult> execute(std::string_view batch,
                                       std::span<const ParameterValue> parameters) override {
    native_.clear();
    if (state_->bulkInsertOpen)
      throwError("A bulk insert of this connection is not finished; nothing else can run before.");
    Session& session = state_->session;
    const BatchStopper::Batch running(session.stopper(), {timeout_}, session.interrupt());
    const auto parsed = tsql::parse(batch);
    const auto note = [this](const std::string& sql) { native_.push_back(sql); };
    return BatchRunner(*state_, toVariables(parameters), note).run(parsed);
  }

  void setCommandTimeout(int seconds) override { timeout_ = seconds; }
  void cancel() noexcept override { state_->session.stopper().cancel(); }

  std::unique_ptr<BulkInsert> bulkInsert(std::string_view table,
                                         std::span<const std::string> columns) override {
    return std::make_unique<TableAppender>(state_, table, columns);
  }

  std::string lastNativeSql() const override {
    std::string text;
    for (const auto& sql : native_) text += sql + "\n";
    return text;
  }

 private:
  std::shared_ptr<SessionState> state_;
  std::vector<std::string> native_;
  int timeout_ = 0;
};

}  // namespace

std::unique_ptr<ProviderConnection> openConnection(const ConnectionString& settings) {
  return std::make_unique<EmbeddedConnection>(readSettings(settings));
}

void registerProvider() {
  RegisterProvider(kSource, openConnection);
}

}  // namespace velmora::ado::embedded
