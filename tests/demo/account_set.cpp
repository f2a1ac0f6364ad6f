#include "demo/account_set.h"

#include <stdexcept>
#include <unistd.h>

namespace velmora::cli::demo {

namespace {

namespace fs = std::filesystem;

std::string embedded(const fs::path& file, const std::string& mode) {
  return "Provider=Velmora.Embedded;Data Source=" + file.string() + ";Mode=" + mode;
}

ado::ConnectionRef open(const std::string& connectionString) {
  auto connection = com::make<ado::Connection>();
  connection->Open(connectionString);
  return connection;
}

std::string rowText(const ado::Recordset& rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.fieldCount(); ++i) {
    if (i > 0) text += ' ';
    const auto& value = rows.GetValue(i);
    text += value.isNull() ? "NULL" : value.toText();
  }
  return text;
}

}  // namespace

AccountSet::AccountSet(const std::string& name, const Fill& fill)
    : file_(fs::temp_directory_path() /
            ("velmora_" + name + "_" + std::to_string(getpid()) + ".db")) {
  fs::remove(file_);
  planted_ = fill(*open(embedded(file_, "Create")));
  connection_ = open(connectionString());
}

AccountSet::~AccountSet() {
  connection_->Close();
  std::error_code ignored;
  fs::remove(file_, ignored);
}

int AccountSet::planted(Side side, int checkItem) const {
  for (const PlantedFinding& finding : planted_)
    if (finding.side == side && finding.checkItem == checkItem) return finding.count;
  throw std::out_of_range("no check item " + std::to_string(checkItem));
}

std::string AccountSet::connectionString() const {
  return embedded(file_, "Read");
}

std::vector<std::string> AccountSet::rows(const std::string& query) const {
  std::vector<std::string> rows;
  for (auto answer = connection_->Execute(query); !answer->EOF_(); answer->MoveNext())
    rows.push_back(rowText(*answer));
  return rows;
}

std::int64_t AccountSet::number(const std::string& query) const {
  return connection_->Execute(query)->GetValue(0).toInt64();
}

const AccountSet& smallSet() {
  static const AccountSet set("small", [](auto& connection) { return createSmallSet(connection); });
  return set;
}

const AccountSet& smallSetWithoutFaults() {
  static const AccountSet set("small_faultless", [](auto& connection) {
    return createSmallSet(connection, Faults::kLeftOut);
  });
  return set;
}

const AccountSet& generatedSet() {
  static const AccountSet set("generated", [](ado::Connection& connection) {
    return createGeneratedSet(connection, {.documents = 500, .seed = 7, .progress = {}});
  });
  return set;
}

const AccountSet& generatedSetWithoutFaults() {
  static const AccountSet set("generated_faultless", [](ado::Connection& connection) {
    return createGeneratedSet(
        connection, {.documents = 500, .seed = 7, .progress = {}, .faults = Faults::kLeftOut});
  });
  return set;
}

}  // namespace velmora::cli::demo
