#include "platform/ado/duckdb/clock.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace velmora::ado::embedded {

collections::Date now() {
  namespace chrono = std::chrono;
  const auto time = chrono::system_clock::now();
  const auto seconds = chrono::system_clock::to_time_t(time);
  std::tm parts{};
  ::localtime_r(&seconds, &parts);
  const auto fraction = chrono::duration_cast<chrono::milliseconds>(time.time_since_epoch()) % 1000;
  return collections::Date::fromParts({parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                                       parts.tm_hour, parts.tm_min, std::min(parts.tm_sec, 59),
                                       static_cast<int>(fraction.count()) * 1000});
}

}  // namespace velmora::ado::embedded
