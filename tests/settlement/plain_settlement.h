#pragma once

#include <string>
#include <vector>

#include "documents.h"

namespace velmora::settlement {

/// The settlement as it is told, step by step and row by row, without a thought for
/// speed: each document of the second list goes through the first one from its start,
/// and each run recomputes what remains on all settlement rows.
class PlainSettlement {
 public:
  PlainSettlement(int amountMode, bool withQuantity)
      : mode_(amountMode), withQuantity_(withQuantity && amountMode == 0) {}

  /// `groupBy`: columns that are equal within a group. Either list may be nothing.
  void settle(Rows* source, Rows* destination, Rows& chkInfo,
              const std::vector<std::string>& groupBy) const;

 private:
  struct View;
  using Group = std::map<std::string, Variant>;

  void settleGroup(Rows* source, Rows* destination, Rows& chkInfo, const Group& group) const;
  void allocate(Rows& first, Rows& second, Rows& chkInfo, int sign, const View& firstView,
                const View& secondView) const;
  void useUpInner(Row& inner, Row& outer, Decimal& remOut, int sign, Row& pair) const;
  bool useUpOuter(Row& inner, Row& outer, Decimal& remOut, int sign, Row& pair) const;
  void finish(const Row& inner, const Row& outer, Row& pair, Rows& chkInfo) const;
  void setRemaining(const Row& inner, const Row& outer, Row& pair) const;

  std::string column(const char* foreign, const char* single) const {
    return mode_ == 0 ? foreign : single;
  }

  int mode_;
  bool withQuantity_;
};

}  // namespace velmora::settlement
