#pragma once

#include <string>
#include <utility>

#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/context.h"
#include "velmora/com/error.h"

namespace velmora {

/// Whether an operation votes on the transaction around it.
enum class Voting { votes, abstains };

/// Where an operation stands, for the reason that a failure leaves behind: the check
/// item or statement at work, or empty.
using Place = std::string;

/// The one border at which the failures of an operation end. Runs `body(place)` and
/// answers its result; when it raises, answers `onFailure()` and leaves the reason as
/// the thread's error information. A voting operation tells the object context
/// SetComplete or SetAbort.
template <class Body, class OnFailure>
auto runOperation(Voting voting, Body body, OnFailure onFailure) {
  com::ClearErrorInfo();
  Place place;
  try {
    auto result = body(place);
    if (voting == Voting::votes) com::GetObjectContext().SetComplete();
    return result;
  } catch (...) {
    com::ErrorInfo reason = com::currentErrorInfo(std::move(place));
    if (voting == Voting::votes) com::GetObjectContext().SetAbort();
    decltype(body(place)) answer = onFailure();
    com::SetErrorInfo(std::move(reason));
    return answer;
  }
}

/// Raises the reason why another operation of this component answered nothing, and
/// sets `place` to where that was; `operation` names it when it left no reason.
[[noreturn]] void raiseReasonOf(std::string_view operation, Place& place);

// The object behind an argument; kInvalidArgument naming the argument when it is nothing.
collections::Dictionary& given(const collections::DictionaryRef& argument, std::string_view name);
collections::Vector& given(const collections::VectorRef& argument, std::string_view name);
ado::Recordset& given(const ado::RecordsetRef& argument, std::string_view name);

}  // namespace velmora
