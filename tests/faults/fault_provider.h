#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ado/duckdb/embedded_provider.h"
#include "velmora/com/error.h"

namespace velmora {

/// The embedded database as the provider "Faulty", in which one call of many fails.
/// Opening a connection and running a batch each are a call. Sessions are pooled, as a
/// driver manager does it: one that is closed is the next to be opened, with its tables.
class FaultProvider {
 public:
  /// Becomes the provider "Faulty" until the next one does; has to outlive its use.
  FaultProvider() {
    ado::RegisterProvider("Faulty", [this](const ado::ConnectionString& settings) {
      return std::make_unique<Session>(*this, settings);
    });
  }
  FaultProvider(const FaultProvider&) = delete;
  FaultProvider& operator=(const FaultProvider&) = delete;

  /// From now on calls are counted from 1 and the one of this number fails; 0: none.
  void failCall(std::size_t number) {
    failing_ = number;
    calls_.clear();
  }
  /// What was called since then: "open" or the batch.
  const std::vector<std::string>& calls() const noexcept { return calls_; }
  int open() const noexcept { return open_; }
  /// The sessions that nobody has open.
  const auto& pool() const noexcept { return pool_; }

  static constexpr const char* kReason = "the server went away";

 private:
  class Session final : public ado::ProviderConnection {
   public:
    Session(FaultProvider& provider, const ado::ConnectionString& settings) : provider_(provider) {
      provider_.call("open");
      if (provider_.pool_.empty())
        provider_.pool_.push_back(ado::embedded::openConnection(settings));
      connection_ = std::move(provider_.pool_.back());
      provider_.pool_.pop_back();
      ++provider_.open_;
    }
    ~Session() override {
      --provider_.open_;
      provider_.pool_.push_back(std::move(connection_));
    }
    std::vector<ado::StatementResult> execute(
        std::string_view batch, std::span<const ado::ParameterValue> parameters) override {
      provider_.call(std::string(batch));
      return connection_->execute(batch, parameters);
    }

   private:
    FaultProvider& provider_;
    std::unique_ptr<ado::ProviderConnection> connection_;
  };

  void call(std::string what) {
    calls_.push_back(std::move(what));
    if (calls_.size() == failing_) throw com::Error(com::error::kProvider, "Faulty", kReason);
  }

  std::size_t failing_ = 0;
  std::vector<std::string> calls_;
  int open_ = 0;
  std::vector<std::unique_ptr<ado::ProviderConnection>> pool_;
};

}  // namespace velmora
