#pragma once

#include <string>
#include <vector>

namespace velmora::tsql::test {

/// A result as the case file writes it.
struct ExpectedResult {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
};

struct Case {
  std::string name;
  std::string batch;
  std::vector<ExpectedResult> results;
  std::string error;  ///< SQL Server's number; empty: no error
};

/// The cases of a file beside the tests; for the form see the head of cases.txt.
std::vector<Case> readCases(const std::string& file);

}  // namespace velmora::tsql::test
