#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

#include "velmora/ado/connection.h"

namespace velmora {

/// An embedded account set of its own for each test: every table, calendar months as
/// periods of 2008 to 2010, local currency 1 with two decimals, and no documents.
class AccountSet : public testing::Test {
 protected:
  AccountSet() : file_(folder().path / (std::to_string(++folder().count) + ".db")) {
    std::filesystem::copy_file(folder().path / "empty.db", file_);
  }
  ~AccountSet() override {
    connection_ = nullptr;
    std::filesystem::remove(file_);
  }

  /// The caller's connection string, for reading.
  std::string dsn(const std::string& more = {}) {
    connection_ = nullptr;
    return more + "ConnectString={Provider=Velmora.Embedded;Data Source=" + file_.string() +
           ";Mode=Read}";
  }
  /// A connection for reading; while it lives, others need not open the file anew.
  ado::ConnectionRef held() {
    connection_ = nullptr;
    return connect(file_, "Read");
  }
  void run(const std::string& batch) {
    if (!connection_) connection_ = connect(file_, "ReadWrite");
    connection_->Execute(batch);
  }
  /// "insert into table (columns) values (row),(row)"
  void plant(const std::string& table, const std::string& columns, const std::string& rows) {
    run("insert into " + table + " (" + columns + ") values " + rows);
  }
  void profile(const std::string& key, const std::string& value) {
    run("delete from t_RP_SystemProfile where FKey = '" + key + "'");
    plant("t_RP_SystemProfile", "FCategory, FKey, FValue", "('ARP','" + key + "','" + value + "')");
  }

 private:
  struct Folder {
    std::filesystem::path path;
    int count = 0;
    Folder() {
      auto pattern = (std::filesystem::temp_directory_path() / "account-set-XXXXXX").string();
      path = ::mkdtemp(pattern.data());
      layTables(path / "empty.db");
    }
    ~Folder() { std::filesystem::remove_all(path); }
  };
  static Folder& folder() {
    static Folder folder;
    return folder;
  }

  static ado::ConnectionRef connect(const std::filesystem::path& file, const std::string& mode) {
    auto connection = com::make<ado::Connection>();
    connection->Open("Provider=Velmora.Embedded;Data Source=" + file.string() + ";Mode=" + mode);
    return connection;
  }

  static void layTables(const std::filesystem::path& file) {
    const auto connection = connect(file, "Create");
    std::set<std::filesystem::path> scripts;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(VELMORA_SOURCE_DIR) / "schema"))
      scripts.insert(entry.path());
    for (const auto& script : scripts) {
      std::ifstream input(script);
      std::string batch;
      for (std::string line; std::getline(input, line);) {
        if (line != "GO") {
          batch += line + '\n';
          continue;
        }
        connection->Execute(batch);
        batch.clear();
      }
    }
    std::string months;
    for (int year = 2008; year <= 2010; ++year)
      for (int month = 1; month <= 12; ++month)
        months += "insert into t_PeriodDate values (" + std::to_string(year) + "," +
                  std::to_string(month) + ",'" + day(year, month, 1) + "','" +
                  day(year, month, lastDay(year, month)) + "')\n";
    connection->Execute(months);
    connection->Execute(
        "insert into t_Currency (FCurrencyID, FNumber, FName, FExchangeRate) values "
        "(1,'RMB','人民币',1), (3,'USD','美元',6.8275)");
  }

  static std::string day(int year, int month, int dayOfMonth) {
    return collections::Date::ymd(year, month, dayOfMonth).toDateText();
  }
  static int lastDay(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && year % 4 == 0 ? 29 : days[month - 1];
  }

  std::filesystem::path file_;
  ado::ConnectionRef connection_;
};

}  // namespace velmora
