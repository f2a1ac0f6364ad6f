#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora::cli {

/// Members keep their order.
using Json = nlohmann::ordered_json;

/// A JSON text or value that is not what is wanted there.
class JsonError : public std::exception {
 public:
  explicit JsonError(std::string message) : message_(std::move(message)) {}
  JsonError(std::string message, std::string_view place) : JsonError(std::move(message)) {
    within(place);
  }
  /// Adds the outer place in front: within("rows[2]") of "FAmount: ..." gives
  /// "rows[2].FAmount: ...".
  void within(std::string_view place);
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
  bool placed_ = false;
};

/// Nesting allowed in what is read and written.
inline constexpr int kMaxJsonDepth = 200;

/// Parses one JSON value, stricter than usual because amounts depend on it: a member
/// that occurs twice, an integer that 64 bits cannot hold and nesting deeper than
/// kMaxJsonDepth are refused. Raises JsonError.
Json parseJson(std::string_view text);

/// `value` on one line; bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& value);

}  // namespace velmora::cli
