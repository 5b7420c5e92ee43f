/// Where a Music Player Daemon is reached.
///
/// `mpd:` is the server that MPD_HOST and MPD_PORT name, else the one that answers at the usual
/// places: the socket in XDG_RUNTIME_DIR, that of the system, this machine's port 6600.
/// `mpd:/run/mpd/socket` is a socket, `mpd:@name` an abstract one, `mpd://host:port` a server of
/// the network. A server says where its music lies on its own socket only: `?music=/folder` behind
/// an address is the folder as it is seen from here, with %20 for a space.
///
/// No address holds a password. It comes from MPD_HOST, as "password@host", when that is the
/// server which is asked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

struct MpdServer {
  std::string host;      ///< name, number, or path of a socket
  unsigned port = 0;     ///< 0 for a socket
  std::string password;  ///< may be empty
  std::string music;     ///< the folder of its music, without a slash at the end; may be empty

  [[nodiscard]] bool isSocket() const noexcept { return port == 0; }
  /// Without the password.
  [[nodiscard]] std::string address() const;
};

[[nodiscard]] inline bool isMpdAddress(std::string_view address) noexcept {
  return address.starts_with("mpd:");
}

/// The servers that an address may mean, in the order in which they are to be tried; one or more.
/// Throws LibraryError when it is none, without what may be a password.
std::vector<MpdServer> mpdServers(const std::string& address);

}  // namespace kestrel
