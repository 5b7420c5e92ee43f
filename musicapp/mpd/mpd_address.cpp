#include "musicapp/mpd/mpd_address.h"

#include <charconv>
#include <cstdlib>
#include <optional>

#include "foundation/library_error.h"
#include "musicapp/file_url.h"

namespace kestrel {
namespace {

constexpr unsigned usualPort = 6600;

std::string fromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::optional<unsigned> portOf(std::string_view text) {
  unsigned port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  const bool isPort = error == std::errc() && end == text.data() + text.size();
  return isPort && port > 0 && port < 65536 ? std::optional(port) : std::nullopt;
}

bool isSocketName(std::string_view host) { return host.starts_with('/') || host.starts_with('@'); }

/// The server that the environment names, if it names one.
std::optional<MpdServer> serverOfEnvironment() {
  const std::string host = fromEnvironment("MPD_HOST");
  const auto port = portOf(fromEnvironment("MPD_PORT"));
  if (host.empty() && !port) return std::nullopt;
  MpdServer server{host.empty() ? "localhost" : host, port.value_or(usualPort), {}, {}};
  // What stands before the first "@", unless that begins the name of an abstract socket.
  if (const std::size_t at = host.find('@'); at != std::string::npos && at > 0) {
    server.password = host.substr(0, at);
    server.host = host.substr(at + 1);
  }
  if (isSocketName(server.host)) server.port = 0;
  return server;
}

/// `rest`: the address behind "mpd:", without what stands behind a question mark.
std::optional<MpdServer> serverAt(std::string_view rest) {
  MpdServer server;
  if (!rest.starts_with("//")) {
    server.host = rest;
    return isSocketName(rest) && rest.size() > 1 ? std::optional(server) : std::nullopt;
  }
  rest.remove_prefix(2);
  if (rest.ends_with('/')) rest.remove_suffix(1);
  server.port = usualPort;
  const std::size_t closing = rest.starts_with('[') ? rest.find(']') : 0;
  if (closing == std::string_view::npos) return std::nullopt;
  if (const std::size_t colon = rest.find(':', closing); colon != std::string_view::npos) {
    const auto port = portOf(rest.substr(colon + 1));
    if (!port) return std::nullopt;
    server.port = *port;
    rest = rest.substr(0, colon);
  }
  server.host = closing ? rest.substr(1, closing - 1) : rest;
  const bool isName = !server.host.empty() && server.host.find('/') == std::string::npos;
  return isName ? std::optional(server) : std::nullopt;
}

[[noreturn]] void refuse(const std::string& address, Message problem, Message remedy) {
  throw LibraryError(address, {}, std::move(problem), std::move(remedy));
}

}  // namespace

std::string MpdServer::address() const {
  std::string text = "mpd:" + host;
  if (!isSocket())
    text = "mpd://" + (host.find(':') == std::string::npos ? host : '[' + host + ']') + ':' +
           std::to_string(port);
  if (!music.empty())
    text += "?music=" + fileUrlOfPath(music).substr(std::string("file://").size());
  return text;
}

std::vector<MpdServer> mpdServers(const std::string& address) {
  std::string_view rest(address);
  rest.remove_prefix(std::min(rest.size(), std::string_view("mpd:").size()));
  std::string music;
  if (const std::size_t mark = rest.find('?'); mark != std::string_view::npos) {
    constexpr std::string_view key = "?music=";
    if (rest.substr(mark).starts_with(key)) appendDecoded(rest.substr(mark + key.size()), music);
    while (music.size() > 1 && music.ends_with('/')) music.pop_back();
    if (!music.starts_with('/'))
      refuse("mpd:", Message::tr("the address names no folder of music"),
             Message::tr("Write ?music=/the/folder behind it."));
    rest = rest.substr(0, mark);
  }

  std::vector<MpdServer> servers;
  const auto named = serverOfEnvironment();
  if (rest.empty()) {
    if (named) {
      servers.push_back(*named);
    } else {
      if (const std::string folder = fromEnvironment("XDG_RUNTIME_DIR"); folder.starts_with('/'))
        servers.push_back({folder + "/mpd/socket", 0, {}, {}});
      servers.push_back({"/run/mpd/socket", 0, {}, {}});
      servers.push_back({"localhost", usualPort, {}, {}});
    }
  } else {
    if (rest.starts_with("//") && rest.find('@') != std::string_view::npos)
      refuse(
          "mpd:", Message::tr("an address holds no password, since addresses are kept and shown"),
          Message::tr("Set MPD_HOST to PASSWORD@HOST, and open %1.").arg("mpd:"));
    auto server = serverAt(rest);
    if (!server)
      refuse(address, Message::tr("is no address of a music player"),
             Message::tr("Write mpd:, mpd://HOST:PORT or mpd:/PATH/OF/SOCKET."));
    if (named && named->host == server->host && named->port == server->port)
      server->password = named->password;
    servers.push_back(std::move(*server));
  }
  for (MpdServer& server : servers) server.music = music;
  return servers;
}

}  // namespace kestrel
