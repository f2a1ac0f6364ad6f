#include "platform/suite/security_info.h"

#include <charconv>
#include <memory>

#include "platform/suite/caller_string.h"
#include "velmora/com/error.h"

namespace velmora::suite {

namespace {

constexpr const char* kProgId = "TirnBase.SecurityInfo";
constexpr std::size_t kLongestShown = 40;

}  // namespace

const com::DispatchTable<SecurityInfo>& SecurityInfo::dispatchTable() {
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<SecurityInfo>>(
        "SecurityInfo", kProgId, com::Guid::parse("528FD4CD-6C59-4FC8-8778-FA98667A0EDF"),
        com::IDispatch::kInterfaceId);
    made->method("GetCurrentUserID", &SecurityInfo::GetCurrentUserID, {"connectionString"});
    return made;
  }();
  return *table;
}

std::int32_t SecurityInfo::GetCurrentUserID(const std::string& connectionString) {
  const std::string text = callerProperties(connectionString)->Value("UserID").toText();
  if (text.empty()) return 0;
  std::int32_t user = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, user);
  if (read.ec != std::errc() || read.ptr != end || user < 0)
    throw com::Error(com::error::kInvalidArgument, kProgId,
                     "The connection string's UserID is " +
                         (text.size() > kLongestShown ? "a long text" : '"' + text + '"') +
                         "; a whole number from 0 to 2147483647 is expected");
  return user;
}

}  // namespace velmora::suite
