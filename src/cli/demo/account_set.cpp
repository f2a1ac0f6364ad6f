#include <algorithm>

#include "cli/demo/demo.h"
#include "cli/demo/estimates.h"
#include "cli/demo/faults.h"
#include "cli/demo/ordinary.h"
#include "cli/demo/scripts.h"
#include "velmora/com/cancellation.h"
#include "velmora/com/error.h"

namespace velmora::cli::demo {

namespace {

constexpr int kLastOrdinaryDay = 28;  // every month has it

// Below it the faults would take more documents than there are; above it partners
// would run out of item ids.
constexpr std::int64_t kMinimumDocuments = 100;
constexpr std::int64_t kMaximumDocuments = 50'000'000;

constexpr std::uint64_t kSmallSeed = 2009;
constexpr int kSmallDocuments = 100;
constexpr int kSmallPartners = 10;

// One document in a hundred is at fault.
constexpr int kDocumentsPerFault = 100;

/// The kinds of fault to plant, each at least once, in order.
std::vector<FaultKind> faultsToPlant(const SideTerms& side, int documents) {
  const std::vector<FaultKind> kinds = faultsOf(side);
  const auto count =
      std::max(kinds.size(), static_cast<std::size_t>(documents) / kDocumentsPerFault);
  std::vector<FaultKind> plan;
  plan.reserve(count);
  for (std::size_t i = 0; i < count; ++i) plan.push_back(kinds[i % kinds.size()]);
  return plan;
}

int documentsOf(const std::vector<FaultKind>& plan) {
  int count = 0;
  for (const FaultKind& kind : plan) count += kind.documents;
  return count;
}

PlantedFindings noFindings() {
  PlantedFindings findings;
  for (const Side side : {Side::kReceivables, Side::kPayables})
    for (int place = 1; place <= kCheckItems + 1; ++place) {
      const int item = place % (kCheckItems + 1);  // what is on no list comes last
      findings.push_back({side, item, std::string(checkItemName(item)), 0});
    }
  return findings;
}

void count(PlantedFindings& findings, Side side, const FaultKind& kind) {
  for (PlantedFinding& finding : findings)
    if (finding.checkItem == kind.checkItem && (kind.onBothSides || finding.side == side))
      finding.count += kind.findings;
}

/// Fills a database whose tables are there with the documents of both sides.
class Filling {
 public:
  Filling(ado::ProviderConnection& connection, const GenerateOptions& options, int partners)
      : connection_(connection),
        options_(options),
        documents_(static_cast<int>(options.documents)),
        partners_(partners),
        tables_(connection) {}

  PlantedFindings fill() {
    for (const Side side : {Side::kReceivables, Side::kPayables}) fillSide(termsOf(side));
    writeAccountBalances(tables_, ledger_);
    tables_.store();
    report(total());
    return std::move(findings_);
  }

 private:
  void fillSide(const SideTerms& side) {
    const auto seed = options_.seed * 2 + static_cast<std::uint64_t>(side.frp);
    Books books(side, tables_, ledger_,
                enterPartners(connection_, side, partners_, options_.faults), seed);
    const std::vector<FaultKind> faults = faultsToPlant(side, documents_);
    addInitialDocuments(books);
    addOrdinary(books, documents_ - documentsOf(faults) - kOffsetDocuments);
    addOffsets(books);
    if (!side.receivables()) addEstimates(books, documents_);
    if (options_.faults == Faults::kPlanted) plant(books, faults);
    books.writeBalances();
    done_ += books.documents();
  }

  /// Spreads ordinary business evenly over the periods in use, in order of dates.
  void addOrdinary(Books& books, int documents) {
    const std::int64_t days = std::int64_t{kPeriods} * kLastOrdinaryDay;
    while (books.documents() < documents) {
      com::ThrowIfCancelled();
      const auto day = static_cast<int>(books.documents() * days / documents);
      addOrdinaryBusiness(books, day / kLastOrdinaryDay, day % kLastOrdinaryDay + 1,
                          documents - books.documents());
      reportNowAndThen(books.documents());
    }
  }

  void plant(Books& books, const std::vector<FaultKind>& faults) {
    for (const FaultKind& kind : faults) {
      kind.plant(books,
                 {books.anyPartner(), kCurrentPeriod, books.random().between(1, kLastOrdinaryDay)});
      count(findings_, books.side().side, kind);
    }
  }

  void reportNowAndThen(int documents) {
    constexpr int kStep = 10'000;
    if (done_ + documents >= reported_ + kStep) report(done_ + documents);
  }

  void report(int documents) {
    reported_ = documents;
    if (options_.progress) options_.progress(documents, total());
  }

  /// Documents of both sides.
  int total() const {
    int count = 2 * documents_;
    if (options_.faults == Faults::kLeftOut)
      for (const Side side : {Side::kReceivables, Side::kPayables})
        count -= documentsOf(faultsToPlant(termsOf(side), documents_));
    return count;
  }

  ado::ProviderConnection& connection_;
  const GenerateOptions& options_;
  int documents_;  ///< a side
  int partners_;   ///< a side
  int done_ = 0;
  int reported_ = 0;
  Tables tables_;
  AccountBalances ledger_;
  PlantedFindings findings_ = noFindings();
};

PlantedFindings create(ado::Connection& connection, const GenerateOptions& options, int partners) {
  runScripts(connection, schemaScripts());
  runScripts(connection, basicDataScripts());
  if (options.faults == Faults::kPlanted) runScripts(connection, basicFaultScripts());
  return Filling(connection.provider(), options, partners).fill();
}

/// One customer or supplier for fifty documents, at least twenty.
int partnersFor(std::int64_t documents) {
  const auto wanted = static_cast<int>(std::max<std::int64_t>(20, documents / 50));
  return wanted / kCurrencyCycle * kCurrencyCycle;
}

}  // namespace

void createNewSet(ado::Connection& connection) {
  runScripts(connection, schemaScripts());
  runScripts(connection, newSetScripts());
}

PlantedFindings createSmallSet(ado::Connection& connection, Faults faults) {
  return create(
      connection,
      {.documents = kSmallDocuments, .seed = kSmallSeed, .progress = {}, .faults = faults},
      kSmallPartners);
}

PlantedFindings createGeneratedSet(ado::Connection& connection, const GenerateOptions& options) {
  if (options.documents < kMinimumDocuments || options.documents > kMaximumDocuments)
    throw com::Error(com::error::kInvalidArgument, "demo",
                     "cannot create " + std::to_string(options.documents) +
                         " documents a side, expected " + std::to_string(kMinimumDocuments) +
                         " to " + std::to_string(kMaximumDocuments));
  return create(connection, options, partnersFor(options.documents));
}

}  // namespace velmora::cli::demo
