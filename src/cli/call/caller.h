#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/call/json_text.h"
#include "velmora/com/dispatch.h"

namespace velmora::cli {

/// Runs operations of the public classes, JSON in and JSON out.
///
/// One object a class serves all requests, because some query builders use the data
/// source that an earlier operation of the same object opened.
class Caller {
 public:
  /// `dsn` is the argument sDsn of requests without one; empty: there is none. An operation
  /// that could not decide on row access has failed, unless `withoutRowAccess`.
  explicit Caller(std::string dsn, bool withoutRowAccess = false)
      : dsn_(std::move(dsn)), withoutRowAccess_(withoutRowAccess) {}

  struct Answer {
    Json json;
    bool ran = false;  ///< false: "error" says why not
  };
  /// Never raises: what is wrong with the request is in the answer's "error".
  Answer answer(std::string_view request);

 private:
  com::IDispatch& objectOf(const std::string& className);
  collections::Variant absentArgument(const com::MethodInfo& method,
                                      const com::ParameterInfo& parameter) const;
  std::vector<collections::Variant> argumentsOf(const com::MethodInfo& method, const Json& given);
  collections::Variant invoke(com::IDispatch& object, const com::MethodInfo& method,
                              std::vector<collections::Variant>& values) const;

  std::string dsn_;
  bool withoutRowAccess_;
  std::vector<com::Ref<com::IDispatch>> objects_;
};

}  // namespace velmora::cli
