#include "platform/programs.h"

#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "foundation/identifiers.h"
#include "platform/descriptor.h"
#include "platform/file_error.h"

extern char** environ;

namespace kestrel {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// A file in memory that is one of the program's standard streams: neither side ever waits for the
/// other.
class Stream {
 public:
  explicit Stream(const std::string& program)
      : program_(program), file_(::memfd_create("kestrel", MFD_CLOEXEC)) {
    check(file_ ? 0 : errno);
  }
  void write(std::string_view bytes) {
    check(file_.write(bytes));
    rewind();
  }
  std::string written() {
    rewind();
    return file_.readAll(program_);
  }
  [[nodiscard]] int number() const noexcept { return file_.number(); }

 private:
  void check(int code) const {
    if (code) throw FileError::fromCode(program_, Message::tr("cannot be started"), code);
  }
  void rewind() const { check(::lseek(file_.number(), 0, SEEK_SET) == 0 ? 0 : errno); }

  std::string program_;
  Descriptor file_;
};

/// What posix_spawn wants to know, freed when it goes out of scope.
class SpawnPlan {
 public:
  SpawnPlan() {
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    // A group of its own, so that a timeout reaches what the program has started; signals as a
    // program expects to find them.
    sigset_t none;
    sigset_t defaults;
    ::sigemptyset(&none);
    ::sigemptyset(&defaults);
    ::sigaddset(&defaults, SIGPIPE);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &defaults);
    ::posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnPlan() {
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
};

pid_t spawn(const ProgramCall& call, int input, int output, int errors) {
  SpawnPlan plan;
  ::posix_spawn_file_actions_adddup2(&plan.actions, input, STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&plan.actions, output, STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&plan.actions, errors, STDERR_FILENO);
  std::vector<char*> arguments{const_cast<char*>(call.program.c_str())};
  for (const std::string& argument : call.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (const int code = ::posix_spawnp(&child, call.program.c_str(), &plan.actions, &plan.attributes,
                                      arguments.data(), environ))
    throw FileError::fromCode(call.program, Message::tr("cannot be started"), code);
  return child;
}

/// Returns whether the program has ended in time.
bool waitFor(pid_t child, int& status, const std::optional<SteadyClock::time_point>& deadline) {
  while (true) {
    const pid_t ended = ::waitpid(child, &status, deadline ? WNOHANG : 0);
    if (ended == child) return true;
    if (ended < 0 && errno != EINTR) return true;
    if (deadline && SteadyClock::now() >= *deadline) return false;
    if (ended == 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

}  // namespace

ProgramResult SystemPrograms::run(const ProgramCall& call) {
  Stream input(call.program), output(call.program), errors(call.program);
  input.write(call.input);
  const pid_t child = spawn(call, input.number(), output.number(),
                            call.oneOutput ? output.number() : errors.number());
  std::optional<SteadyClock::time_point> deadline;
  if (call.timeout) deadline = SteadyClock::now() + *call.timeout;
  ProgramResult result;
  int status = 0;
  result.timedOut = !waitFor(child, status, deadline);
  if (result.timedOut) {
    ::kill(-child, SIGKILL);
    waitFor(child, status, std::nullopt);
  }
  result.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  result.output = output.written();
  result.errors = errors.written();
  return result;
}

}  // namespace kestrel
