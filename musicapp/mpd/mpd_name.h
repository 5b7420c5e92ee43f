/// What a Music Player Daemon is called, by whatever address it is reached.
#pragma once

#include <string>

#include "musicapp/mpd/mpd_connection.h"

namespace kestrel {

/// A name for the history (LibraryIdentity::id): that of the socket, links followed, where there is
/// one, else of the machine and the port. A server of this machine that is reached by its port has
/// its socket's name if that is at one of the usual places. Never throws; empty when the system
/// does not say who is at the other end.
std::string mpdServerName(MpdConnection& connection);

}  // namespace kestrel
