#include "history/history_process.h"

#include <fstream>
#include <iterator>
#include <unistd.h>

namespace kestrel {
namespace {

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The number, when it was started in the system's own count, and in which run of the system.
/// Empty when there is no such process.
std::string tokenOf(const std::string& number) {
  const std::string status = contents("/proc/" + number + "/stat");
  // The second field is the program's name in parentheses, which may hold anything; the start time
  // is the twenty-second. A process that has ended and was not waited for is in state Z.
  std::size_t at = status.rfind(')');
  if (at == std::string::npos || status.compare(at, 3, ") Z") == 0) return {};
  for (int field = 2; field < 22 && at != std::string::npos; ++field) at = status.find(' ', at + 1);
  if (at == std::string::npos) return {};
  const std::string started = status.substr(at + 1, status.find(' ', at + 1) - at - 1);
  std::string boot = contents("/proc/sys/kernel/random/boot_id");
  boot.resize(std::min(boot.size(), boot.find('\n')));
  return number + " " + started + " " + boot;
}

}  // namespace

std::string processToken() { return tokenOf(std::to_string(::getpid())); }

bool isAlive(const std::string& token) {
  const std::string number = token.substr(0, token.find(' '));
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) return false;
  return tokenOf(number) == token;
}

}  // namespace kestrel
