#pragma once

#include <map>
#include <string>
#include <vector>

#include "velmora/ado/provider.h"
#include "velmora/com/error.h"

namespace velmora::ado {

/// What a fake database answers, and what it was asked.
struct FakeDatabase {
  /// Answers by the text of the batch; any other batch fails.
  std::map<std::string, std::vector<StatementResult>> answers;
  /// When not empty, opening fails with this text, "%1" being the whole settings.
  std::string refusal;

  ConnectionString settings{""};
  std::vector<std::string> batches;
  std::vector<ParameterValue> parameters;
  int timeout = -1;
  int open = 0;
};

class FakeConnection final : public ProviderConnection {
 public:
  explicit FakeConnection(FakeDatabase& database) : database_(database) { ++database_.open; }
  ~FakeConnection() override { --database_.open; }

  std::vector<StatementResult> execute(std::string_view batch,
                                       std::span<const ParameterValue> parameters) override {
    database_.batches.emplace_back(batch);
    database_.parameters.assign(parameters.begin(), parameters.end());
    const auto found = database_.answers.find(std::string(batch));
    if (found == database_.answers.end())
      throw com::Error(com::error::kProvider, "Fake", "cannot run " + std::string(batch));
    return found->second;
  }
  void setCommandTimeout(int seconds) override { database_.timeout = seconds; }

 private:
  FakeDatabase& database_;
};

/// Registers `database`, which has to outlive its use, as a provider.
inline void registerFake(const std::string& name, FakeDatabase& database) {
  RegisterProvider(name, [&database](const ConnectionString& settings) {
    database.settings = settings;
    if (!database.refusal.empty()) {
      std::string text = database.refusal;
      if (const auto at = text.find("%1"); at != std::string::npos)
        text.replace(at, 2, settings.toString());
      throw com::Error(-17, "Fake", text);
    }
    return std::make_unique<FakeConnection>(database);
  });
}

inline StatementResult rowsOf(std::string column, std::vector<Variant> cells) {
  StatementResult result;
  result.hasRows = true;
  result.rows.fields = {{std::move(column), adInteger}};
  result.rows.cells = std::move(cells);
  return result;
}

inline StatementResult changed(std::int64_t rows) {
  return {false, {}, rows};
}

}  // namespace velmora::ado
