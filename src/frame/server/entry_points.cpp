#include <cstdint>

extern "C" [[gnu::visibility("default")]] std::int32_t DllCanUnloadNow() {
  return 0;
}
