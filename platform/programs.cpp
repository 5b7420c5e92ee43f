#include "platform/programs.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <span>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/descriptor.h"
#include "platform/file_error.h"

extern char** environ;

namespace kestrel {
namespace {

using SteadyClock = std::chrono::steady_clock;

Message failed() { return Message::tr("cannot be started"); }

struct Pipe {
  explicit Pipe(const std::string& program) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw FileError::fromCode(program, failed(), errno);
    readEnd = Descriptor(ends[0]);
    writeEnd = Descriptor(ends[1]);
  }
  Descriptor readEnd;
  Descriptor writeEnd;
};

/// Holds the broken-pipe signal back in this thread: a program that does not read its input must
/// not end ours.
class NoPipeSignal {
 public:
  NoPipeSignal() {
    ::sigemptyset(&pipe_);
    ::sigaddset(&pipe_, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~NoPipeSignal() {
    const timespec none{};
    while (::sigtimedwait(&pipe_, nullptr, &none) < 0 && errno == EINTR) {
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;

 private:
  sigset_t pipe_{};
  sigset_t before_{};
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
    throw FileError::fromCode(call.program, failed(), code);
  return child;
}

/// Milliseconds for poll: rounded up, so that it does not wake just before the time.
int remaining(const std::optional<SteadyClock::time_point>& deadline) {
  if (!deadline) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - SteadyClock::now());
  return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1 << 30));
}

/// One direction of the talk with the program; `end` closes when it is over.
struct Channel {
  Descriptor end;
  std::string* received = nullptr;  ///< nullptr: sends
  std::string_view toSend;

  void proceed() {
    std::array<char, 65536> buffer{};
    const ssize_t count =
        received ? ::read(end.number(), buffer.data(), buffer.size())
                 : ::write(end.number(), toSend.data(), std::min(toSend.size(), buffer.size()));
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count > 0 && received) received->append(buffer.data(), static_cast<std::size_t>(count));
    if (count > 0 && !received) toSend.remove_prefix(static_cast<std::size_t>(count));
    if (count <= 0 || (!received && toSend.empty())) end.close();
  }
};

/// Sends and receives in whatever order the program likes. Returns false on timeout.
bool talk(std::span<Channel> channels, const std::optional<SteadyClock::time_point>& deadline) {
  while (true) {
    std::array<pollfd, 3> waitFor{};
    std::array<Channel*, 3> open{};
    nfds_t count = 0;
    for (Channel& channel : channels) {
      if (!channel.end) continue;
      waitFor[count] = {channel.end.number(), channel.received ? short{POLLIN} : short{POLLOUT}, 0};
      open[count++] = &channel;
    }
    if (count == 0) return true;
    const int ready = ::poll(waitFor.data(), count, remaining(deadline));
    if (ready == 0) return false;
    for (nfds_t i = 0; ready > 0 && i < count; ++i)
      if (waitFor[i].revents != 0) open[i]->proceed();
  }
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
  ProgramResult result;
  Pipe input(call.program);
  Pipe output(call.program);
  Pipe errors(call.program);
  const NoPipeSignal guard;
  const pid_t child = spawn(call, input.readEnd.number(), output.writeEnd.number(),
                            call.oneOutput ? output.writeEnd.number() : errors.writeEnd.number());
  input.readEnd.close();
  output.writeEnd.close();
  errors.writeEnd.close();

  std::optional<SteadyClock::time_point> deadline;
  if (call.timeout) deadline = SteadyClock::now() + *call.timeout;
  ::fcntl(input.writeEnd.number(), F_SETFL, O_NONBLOCK);
  std::array channels{Channel{std::move(input.writeEnd), nullptr, call.input},
                      Channel{std::move(output.readEnd), &result.output, {}},
                      Channel{std::move(errors.readEnd), &result.errors, {}}};
  if (call.input.empty()) channels[0].end.close();

  int status = 0;
  result.timedOut = !talk(channels, deadline) || !waitFor(child, status, deadline);
  if (result.timedOut) {
    ::kill(-child, SIGKILL);
    waitFor(child, status, std::nullopt);
  }
  result.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  return result;
}

}  // namespace kestrel
