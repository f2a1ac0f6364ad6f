#pragma once

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/duckdb/embedded_provider.h"
#include "velmora/com/error.h"

namespace velmora::ado::embedded::test {

using ConnectionPtr = std::unique_ptr<ProviderConnection>;
using Texts = std::vector<std::vector<std::string>>;

inline ConnectionPtr connect(const std::string& text) {
  return openConnection(ConnectionString(text));
}

inline ConnectionPtr inMemory() {
  return connect("Data Source=:memory:");
}

/// The results of a batch.
inline std::vector<StatementResult> run(ProviderConnection& connection, std::string_view batch,
                                        const std::vector<ParameterValue>& parameters = {}) {
  return connection.execute(batch, parameters);
}

inline Texts texts(const Rowset& rows) {
  Texts result;
  const auto width = rows.fields.size();
  for (std::size_t i = 0; i < rows.cells.size(); ++i) {
    if (i % width == 0) result.emplace_back();
    result.back().push_back(rows.cells[i].isNull() ? "NULL" : rows.cells[i].toText());
  }
  return result;
}

/// The rows of the last statement of a batch, as texts.
inline Texts query(ProviderConnection& connection, std::string_view batch,
                   const std::vector<ParameterValue>& parameters = {}) {
  return texts(run(connection, batch, parameters).back().rows);
}

/// What `action` raises; empty when it raises nothing.
inline std::string failure(const std::function<void()>& action) {
  try {
    action();
  } catch (const com::Error& error) {
    return error.description();
  }
  return {};
}

inline std::string failure(ProviderConnection& connection, std::string_view batch,
                           const std::vector<ParameterValue>& parameters = {}) {
  return failure([&] { run(connection, batch, parameters); });
}

/// A folder of its own for each test.
class DatabaseFile : public testing::Test {
 protected:
  DatabaseFile() {
    auto pattern = (std::filesystem::temp_directory_path() / "embedded-test-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~DatabaseFile() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name = "accounts.db") const {
    return (folder_ / name).string();
  }
  std::string dsn(const std::string& mode, const std::string& name = "accounts.db") const {
    return "Provider=Velmora.Embedded;Data Source=" + path(name) + ";Mode=" + mode;
  }
  ConnectionPtr open(const std::string& mode) const { return connect(dsn(mode)); }
  /// Creates the file with the tables of `batch`.
  void create(std::string_view batch) const { run(*open("Create"), batch); }

  std::filesystem::path folder_;
};

}  // namespace velmora::ado::embedded::test
