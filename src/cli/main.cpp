#include <fmt/core.h>

int main() {
  fmt::print("velmora {}\n", VELMORA_VERSION);
}
