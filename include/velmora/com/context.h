#pragma once

#include <string_view>

#include "velmora/com/dispatch.h"

namespace velmora::com {

/// What the operations of this thread said of the transaction around them.
enum class Vote { none, complete, abort };

/// The object context of the calling thread. An operation votes with SetComplete
/// or SetAbort; the last vote stands. The host reads it after the call.
class ObjectContext {
 public:
  void SetComplete() noexcept { vote_ = Vote::complete; }
  void SetAbort() noexcept { vote_ = Vote::abort; }
  /// A new object that belongs to the same transaction. Raises as CreateObject.
  Ref<IDispatch> CreateInstance(std::string_view progId);

  Vote vote() const noexcept { return vote_; }
  /// For the host: forgets the vote before a call.
  void reset() noexcept { vote_ = Vote::none; }

 private:
  Vote vote_ = Vote::none;
};

/// The calling thread's context.
ObjectContext& GetObjectContext() noexcept;

}  // namespace velmora::com
