#include <csignal>
#include <iostream>

#include "cli/program.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  // A file that would grow beyond the user's limit is one that cannot be written.
  std::signal(SIGXFSZ, SIG_IGN);
  return kestrel::runCommandLine(argc, argv);
}
