#pragma once

#include "settlement/switch_rows.h"
#include "velmora/collections/dictionary.h"

namespace velmora::settlement {

/// How the switch-data operations differ.
struct SwitchRules {
  /// A row whose amount has the other sign than the amount to distribute does not take
  /// of it like the others ...
  bool testsSign = true;
  /// ... but its whole amount, which enlarges what is left; else nothing.
  bool oppositeTakesWhole = false;
  /// A row that gave its whole amount gives it for the later columns too.
  bool keepsTakenWhole = true;
  /// A row with exactly the amount left to distribute gives its own; else it takes the
  /// one left.
  bool equalTakesWhole = true;
  /// FChkFieldName2 of an option lowers what a row may take.
  bool lessSecondCheck = false;
  /// The last row takes the whole rest, even beyond its amount.
  bool lastTakesRest = false;
  /// Each row's planned quantity and amounts become its remaining ones.
  bool copiesPlanned = false;
};

/// Fills the target columns of `rows`, one option dictionary a column (see
/// _clsPublic::GetSwitchData), and lowers the options' FAmount by what the rows took, as
/// their columns hold it: rows and rest always make up the amount.
/// Raises naming option, or row and column; rows filled before stay filled.
void fillSwitchData(SwitchRows& rows, const collections::Vector& vOption, const SwitchRules& rules);

/// GetSwitchData, GetSwitchDataExt: the same over a recordset, which is on its first row
/// afterwards, whether this raises or not. `dFilter` may be nothing.
void GetSwitchData(ado::Recordset& rsEntry, const collections::Vector& vOption,
                   const collections::DictionaryRef& dFilter);
void GetSwitchDataExt(ado::Recordset& rsEntry, const collections::Vector& vOption,
                      const collections::DictionaryRef& dFilter);
/// The same over dictionaries.
void GetSwitchVectData(const collections::Vector& rsEntry, const collections::Vector& vOption);

}  // namespace velmora::settlement
