#include <unistd.h>

#include <iostream>

#include "tools/prb/Prb.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  fyn::productionrules::PrbContext context{std::cin, std::cout, std::cerr, isatty(STDOUT_FILENO) == 1,
                                           isatty(STDERR_FILENO) == 1};
  return fyn::productionrules::runPrb(std::vector<std::string>(argv + 1, argv + argc), context);
}
