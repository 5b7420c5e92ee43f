#include "musicapp/mpd/mpd_connection.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <mpd/client.h>
#include <stdexcept>
#include <utility>

namespace kestrel {
namespace {

Message problemOf(int code, const std::string& answer) {
  switch (code) {
    case MPD_SERVER_ERROR_PASSWORD:
      return Message::tr("does not accept the password");
    case MPD_SERVER_ERROR_PERMISSION:
      return Message::tr("does not permit this without a password, or not to this one: %1")
          .arg(answer);
    default:
      return Message::tr("refuses: %1").arg(answer);
  }
}

bool isAboutPassword(int code) noexcept {
  return code == MPD_SERVER_ERROR_PASSWORD || code == MPD_SERVER_ERROR_PERMISSION;
}

Message remedyOf(int code) {
  return isAboutPassword(code) ? Message::tr("Set MPD_HOST to PASSWORD@HOST.") : Message{};
}

/// A server that has gone makes sending fail, as far as it goes; not end the program.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~WithoutPipeSignal() {
    constexpr timespec now{};
    if (!wasPending_)
      while (sigtimedwait(&pipe_, nullptr, &now) < 0 && errno == EINTR) {
      }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

 private:
  sigset_t pipe_{}, before_{};
  bool wasPending_ = false;
};

}  // namespace

MpdRefusal::MpdRefusal(const MpdServer& server, int code_, std::size_t command_,
                       const std::string& answer)
    : LibraryError(server.address(), {}, problemOf(code_, answer), remedyOf(code_)),
      code(code_),
      command(command_) {}

bool MpdRefusal::wantsPassword() const noexcept { return isAboutPassword(code); }

MpdConnection::MpdConnection(const MpdServer& server, std::chrono::milliseconds patience)
    : server_(server),
      connection_(mpd_connection_new(server.host.c_str(), server.port,
                                     static_cast<unsigned>(patience.count())),
                  mpd_connection_free) {
  if (!connection_) throw std::bad_alloc();
  if (mpd_connection_get_error(connection_.get()) != MPD_ERROR_SUCCESS)
    throw LibraryError(server_.address(), {},
                       Message::tr("cannot be reached: %1")
                           .arg(mpd_connection_get_error_message(connection_.get())),
                       Message::tr("Start the music player, or look up its address."));
  if (!server_.password.empty()) tell({"password", server_.password});
}

int MpdConnection::descriptor() const { return mpd_connection_get_fd(connection_.get()); }

bool MpdConnection::isAtLeast(unsigned major, unsigned minor, unsigned patch) const {
  return mpd_connection_cmp_server_version(connection_.get(), major, minor, patch) >= 0;
}

void MpdConnection::ask(const Words& command, Pair pair) {
  send(command);
  while (mpd_pair* line = mpd_recv_pair(connection_.get())) {
    pair(line->name, line->value);
    mpd_return_pair(connection_.get(), line);
  }
  finish();
}

void MpdConnection::askEach(std::span<const Words> commands, PairOf pair) {
  mpd_connection* const connection = connection_.get();
  sendAll(commands, true);
  for (std::size_t i = 0; i < commands.size(); ++i) {
    while (mpd_pair* line = mpd_recv_pair(connection)) {
      pair(i, line->name, line->value);
      mpd_return_pair(connection, line);
    }
    if (mpd_connection_get_error(connection) != MPD_ERROR_SUCCESS || !mpd_response_next(connection))
      fail();
  }
  finish();
}

void MpdConnection::tell(const Words& command) {
  ask(command, [](std::string_view, std::string_view) {});
}

void MpdConnection::tell(std::span<const Words> commands) {
  sendAll(commands, false);
  finish();
}

std::string MpdConnection::value(const Words& command, std::string_view name) {
  std::string found;
  ask(command, [&](std::string_view key, std::string_view value) {
    if (key == name) found = value;
  });
  return found;
}

void MpdConnection::sendAll(std::span<const Words> commands, bool answersEach) {
  const WithoutPipeSignal guard;
  if (!mpd_command_list_begin(connection_.get(), answersEach)) fail();
  for (const Words& command : commands) send(command);
  if (!mpd_command_list_end(connection_.get())) fail();
}

void MpdConnection::send(const Words& command) {
  const WithoutPipeSignal guard;
  std::array<const char*, 6> words{};
  for (std::size_t i = 0; i < command.size(); ++i) words.at(i) = command[i].c_str();
  if (!mpd_send_command(connection_.get(), words[0], words[1], words[2], words[3], words[4],
                        words[5], nullptr))
    fail();
}

void MpdConnection::finish() {
  if (mpd_connection_get_error(connection_.get()) != MPD_ERROR_SUCCESS ||
      !mpd_response_finish(connection_.get()))
    fail();
}

void MpdConnection::fail() {
  const std::string answer = mpd_connection_get_error_message(connection_.get());
  if (mpd_connection_get_error(connection_.get()) != MPD_ERROR_SERVER)
    throw LibraryError(server_.address(), {},
                       Message::tr("the connection was lost: %1").arg(answer),
                       Message::tr("See that the music player runs, and try again."));
  const int code = mpd_connection_get_server_error(connection_.get());
  const unsigned command = mpd_connection_get_server_error_location(connection_.get());
  mpd_connection_clear_error(connection_.get());
  throw MpdRefusal(server_, code, command, answer);
}

}  // namespace kestrel
