#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>

namespace velmora {

/// Of VELMORA_SEED where it is set, to repeat a run.
inline std::uint64_t printedSeed() {
  const char* given = std::getenv("VELMORA_SEED");
  const std::uint64_t seed = given ? std::strtoull(given, nullptr, 10) : std::random_device()();
  std::cout << "VELMORA_SEED=" << seed << '\n';
  return seed;
}

}  // namespace velmora
