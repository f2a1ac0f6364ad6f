#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "cli/demo/demo.h"

namespace velmora::cli::demo {

/// An account set in a file of its own that goes with this object.
class AccountSet {
 public:
  using Fill = std::function<PlantedFindings(ado::Connection&)>;

  AccountSet(const std::string& name, const Fill& fill);
  ~AccountSet();
  AccountSet(const AccountSet&) = delete;
  AccountSet& operator=(const AccountSet&) = delete;

  const PlantedFindings& planted() const { return planted_; }
  /// How often a check item was planted on a side.
  int planted(Side side, int checkItem) const;

  std::string connectionString() const;
  /// The rows a query answers, cells as texts joined by blanks.
  std::vector<std::string> rows(const std::string& query) const;
  std::int64_t number(const std::string& query) const;

 private:
  std::filesystem::path file_;
  PlantedFindings planted_;
  ado::ConnectionRef connection_;
};

/// The small set, filled once for all tests.
const AccountSet& smallSet();
/// A generated set of 500 documents a side, filled once for all tests.
const AccountSet& generatedSet();
/// The same without faults.
const AccountSet& smallSetWithoutFaults();
const AccountSet& generatedSetWithoutFaults();

}  // namespace velmora::cli::demo
