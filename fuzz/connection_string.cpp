// Connection strings: reading and writing them, and what the providers take from them.

#include "velmora/ado/connection_string.h"

#include "common/fuzz.h"
#include "platform/ado/duckdb/settings.h"
#include "platform/ado/odbc/driver_string.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {
namespace {

using ado::ConnectionString;

constexpr std::string_view kMark = "s3cr";
constexpr std::string_view kSecret = "s3cr;et'\"}";

bool isTold(std::string_view text) {
  return text.find(kMark) != std::string_view::npos;
}

/// `read` of settings with a password: no error tells it.
template <class Read>
void keepsSecret(const ConnectionString& settings, Read read) {
  try {
    read(settings);
  } catch (const com::Error& error) {
    require(!isTold(error.description()), "an error tells a password", error.description());
  }
}

void readsBackTheSame(const ConnectionString& settings) {
  const ConnectionString again(settings.toString());
  const auto& was = settings.properties();
  const auto& is = again.properties();
  bool same = was.size() == is.size();
  for (std::size_t i = 0; same && i < was.size(); ++i)
    same = was[i].name == is[i].name && was[i].value == is[i].value;
  require(same, "a connection string reads back differently", settings.toString());
}

}  // namespace

void run(std::string_view input) {
  if (isTold(input)) return;
  try {
    ConnectionString settings(input);
    readsBackTheSame(settings);
    settings.set("Password", kSecret);
    require(!isTold(settings.toDisplay()), "a password is displayed", settings.toDisplay());
    settings.set("Extended Properties", ConnectionString(settings).toString());
    readsBackTheSame(settings);
    require(!isTold(settings.toDisplay()), "a nested password is displayed", settings.toDisplay());
    keepsSecret(settings, ado::embedded::readSettings);
    keepsSecret(settings, ado::odbc::driverString);
  } catch (const com::Error& error) {
    requireReadable(error.description(), input);
  }
}

}  // namespace velmora::fuzz
