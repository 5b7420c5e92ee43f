#include "musicapp/mpd/mpd_name.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <netdb.h>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>

#include "foundation/identifiers.h"
#include "musicapp/library_identity.h"

namespace kestrel {
namespace {

/// The numeric address of an end of a connection; empty when it is none of the network.
std::string numericAddress(int descriptor, int (*endOf)(int, sockaddr*, socklen_t*)) {
  sockaddr_storage end{};
  socklen_t size = sizeof end;
  std::array<char, NI_MAXHOST> name{};
  auto* address = reinterpret_cast<sockaddr*>(&end);
  if (endOf(descriptor, address, &size) != 0 ||
      (end.ss_family != AF_INET && end.ss_family != AF_INET6) ||
      ::getnameinfo(address, size, name.data(), name.size(), nullptr, 0, NI_NUMERICHOST) != 0)
    return {};
  return name.data();
}

/// What a server tells of itself; two that started in one second and know the same are one.
class Statistics {
 public:
  explicit Statistics(MpdConnection& connection) {
    connection.ask({"stats"}, [&](std::string_view name, std::string_view value) {
      if (name == "uptime")
        uptime_ = static_cast<std::int64_t>(numberFromDecimal(value).value_or(0));
      else if (name == "songs" || name == "db_playtime" || name == "db_update")
        known_.emplace(name, value);
    });
  }
  /// `later`: asked for at once after these.
  [[nodiscard]] bool isSame(const Statistics& later) const {
    constexpr std::int64_t most = 2;  // seconds between the questions
    return known_ == later.known_ && later.uptime_ >= uptime_ && later.uptime_ - uptime_ <= most;
  }

 private:
  std::map<std::string, std::string, std::less<>> known_;
  std::int64_t uptime_ = 0;
};

std::string nameOfSocket(const std::string& path) {
  std::error_code error;
  const auto real = std::filesystem::weakly_canonical(path, error);
  return path.starts_with('/') && !error ? real.string() : path;
}

/// The usual socket behind which the server is, too.
std::optional<std::string> socketOf(MpdConnection& connection) {
  const Statistics own(connection);
  // Those of `mpd:`, whatever the environment names.
  std::vector<std::string> sockets{"/run/mpd/socket"};
  if (const char* folder = std::getenv("XDG_RUNTIME_DIR"); folder && *folder == '/')
    sockets.insert(sockets.begin(), std::string(folder) + "/mpd/socket");
  for (const std::string& socket : sockets) {
    std::error_code error;
    if (!std::filesystem::is_socket(socket, error)) continue;
    try {
      MpdConnection other({socket, 0, connection.server().password, {}}, std::chrono::seconds(1));
      if (own.isSame(Statistics(other))) return nameOfSocket(socket);
    } catch (const LibraryError&) {  // it is another's, or is of one that has ended
    }
  }
  return std::nullopt;
}

std::string placeOf(MpdConnection& connection) {
  const MpdServer& server = connection.server();
  if (server.isSocket()) return nameOfSocket(server.host);
  const std::string there = numericAddress(connection.descriptor(), ::getpeername);
  if (there.empty()) return {};
  const bool isHere = there == numericAddress(connection.descriptor(), ::getsockname);
  if (isHere)
    if (auto socket = socketOf(connection)) return *socket;
  return (isHere ? "localhost" : there) + ' ' + std::to_string(server.port);
}

}  // namespace

std::string mpdServerName(MpdConnection& connection) {
  try {
    const std::string place = placeOf(connection);
    return place.empty() ? place : std::string(LibraryIdentity::serverName) + place;
  } catch (const std::exception&) {
    return {};
  }
}

}  // namespace kestrel
