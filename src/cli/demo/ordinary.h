#pragma once

#include "cli/demo/operations.h"

namespace velmora::cli::demo {

/// Writes an ordinary piece of business of a random kind: one document, sometimes two,
/// or something no document stands behind. `documentsLeft`, at least 1, is how many
/// documents it may take.
void addOrdinaryBusiness(Books& books, int period, int day, int documentsLeft);

/// What some partners owe, or are owed, from before the first period.
void addInitialDocuments(Books& books);

/// Offsets of advances, old and new, in the current period and the one before it, so
/// that a set of any size has some.
void addOffsets(Books& books);
inline constexpr int kOffsetDocuments = 6;

}  // namespace velmora::cli::demo
