/// One connection to a Music Player Daemon.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/library_error.h"
#include "musicapp/mpd/mpd_address.h"

struct mpd_connection;

namespace kestrel {

/// The server has said no; the connection goes on.
class MpdRefusal : public LibraryError {
 public:
  MpdRefusal(const MpdServer& server, int code_, std::size_t command_, const std::string& answer);
  [[nodiscard]] bool wantsPassword() const noexcept;
  int code;             ///< an mpd_server_error
  std::size_t command;  ///< which of several commands was refused; those before it were carried out
};

/// Everything that asks the server throws MpdRefusal, or LibraryError when the connection is lost,
/// after which it has to be made anew. Servers end connections that are idle for a minute, so none
/// is kept longer than a task takes. One thread at a time.
class MpdConnection final {
 public:
  using Words = std::vector<std::string>;  ///< a command and at most five arguments
  using Pair = FunctionRef<void(std::string_view name, std::string_view value)>;

  /// Waits at most `patience` for each answer; longer ones are read as they come.
  explicit MpdConnection(const MpdServer& server,
                         std::chrono::milliseconds patience = std::chrono::seconds(30));

  [[nodiscard]] const MpdServer& server() const noexcept { return server_; }
  /// Of its socket, for questions to the system.
  [[nodiscard]] int descriptor() const;
  [[nodiscard]] bool isAtLeast(unsigned major, unsigned minor, unsigned patch) const;

  /// Passes each line of the answer on.
  void ask(const Words& command, Pair pair);
  /// Carries out several commands, up to the first that is refused, and passes each line of their
  /// answers on with the place of its command.
  using PairOf =
      FunctionRef<void(std::size_t command, std::string_view name, std::string_view value)>;
  void askEach(std::span<const Words> commands, PairOf pair);
  void tell(const Words& command);
  /// Carried out one after the other without another client coming between them, up to the first
  /// that is refused.
  void tell(std::span<const Words> commands);
  /// The value of a line of the answer; empty when there is no such line.
  std::string value(const Words& command, std::string_view name);

 private:
  void sendAll(std::span<const Words> commands, bool answersEach);
  void send(const Words& command);
  void finish();
  [[noreturn]] void fail();

  MpdServer server_;
  std::unique_ptr<mpd_connection, void (*)(mpd_connection*)> connection_;
};

}  // namespace kestrel
