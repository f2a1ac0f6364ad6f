#include <iostream>

#include "cli/program.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  return velmora::cli::runProgram({argv + 1, argv + argc}, {std::cin, std::cout, std::cerr});
}
