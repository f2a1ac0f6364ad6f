#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "velmora/ado/connection.h"

namespace velmora::cli::demo {

enum class Side { kReceivables, kPayables };

/// Whether the faults are entered, or the same books without them: then no check finds
/// anything and receivables and payables agree with the ledger in every period.
enum class Faults { kPlanted, kLeftOut };

/// How often one kind of fault was planted, as the closing check counts it.
struct PlantedFinding {
  Side side = Side::kReceivables;
  /// 1 to 14, the position in the full list of closing checks; 0: a fault that only the
  /// comparison with the ledger shows.
  int checkItem = 0;
  std::string name;  ///< short English name of the check item
  int count = 0;     ///< rows the closing check of the current period lists
};

/// Every check item of both sides in order, those with nothing planted included.
using PlantedFindings = std::vector<PlantedFinding>;

struct GenerateOptions {
  std::int64_t documents = 0;  ///< per side, 100 to 50,000,000
  std::uint64_t seed = 1;      ///< the same seed gives the same account set
  /// Called now and then with the documents written so far, of both sides, and
  /// with their total once everything is stored. May be empty.
  std::function<void(std::int64_t done, std::int64_t total)> progress;
  /// Left out, the set is smaller by the documents at fault, one in a hundred.
  Faults faults = Faults::kPlanted;
};

/// Fills an empty, writable database with the tables of a new account set, in which
/// nothing but start periods has been entered. Raises com::Error.
void createNewSet(ado::Connection& connection);

/// Fills an empty, writable database with the tables of an account set and the
/// small demonstration set. Raises com::Error.
PlantedFindings createSmallSet(ado::Connection& connection, Faults faults = Faults::kPlanted);

/// Fills an empty, writable database with the tables of an account set and
/// `options.documents` documents a side, consistent but for a seeded share of
/// planted faults. Raises com::Error.
PlantedFindings createGeneratedSet(ado::Connection& connection, const GenerateOptions& options);

}  // namespace velmora::cli::demo
