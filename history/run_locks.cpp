#include "history/run_locks.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <unistd.h>

namespace kestrel {
namespace {

constexpr const char* locked = "locked";

/// Asks about the byte of a run, or changes its lock. Nothing where there are no locks, or another
/// program holds it.
std::optional<struct flock> byteLock(const Descriptor& file, int command, short type,
                                     std::int64_t run) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = run;
  lock.l_len = 1;
  return ::fcntl(file.number(), command, &lock) == 0 ? std::optional(lock) : std::nullopt;
}

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

bool isProcessAlive(const std::string& token) {
  const std::string number = token.substr(0, token.find(' '));
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) return false;
  return tokenOf(number) == token;
}

}  // namespace

bool RunLocks::open() const {
  if (!file_) file_ = Descriptor(::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  return static_cast<bool>(file_);
}

std::string RunLocks::hold(std::int64_t run) {
  if (!open() || !byteLock(file_, F_OFD_SETLK, F_WRLCK, run))
    return tokenOf(std::to_string(::getpid()));
  held_.insert(run);
  return locked;
}

void RunLocks::release(std::int64_t run) {
  if (held_.erase(run) > 0) byteLock(file_, F_OFD_SETLK, F_UNLCK, run);
}

bool RunLocks::isAlive(std::int64_t run, const std::string& written) const {
  if (written != locked) return isProcessAlive(written);
  if (held_.contains(run)) return true;
  const auto found = open() ? byteLock(file_, F_OFD_GETLK, F_WRLCK, run) : std::nullopt;
  return found && found->l_type != F_UNLCK;
}

}  // namespace kestrel
