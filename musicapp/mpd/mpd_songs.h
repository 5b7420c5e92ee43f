/// The songs of a Music Player Daemon as media items.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "musicapp/media_library.h"
#include "musicapp/mpd/mpd_connection.h"
#include "musicapp/music_application.h"
#include "musicapp/synthetic.h"

namespace kestrel {

struct MpdSongs {
  std::shared_ptr<const MediaItems> items;
  DerivedIDs ids{"track"};  ///< by URI, which is the path below the folder of music
  /// Of the server's database when it was read: another one when it has been updated.
  std::string state;
};

/// Reads all songs, what players have noted of them ("stickers": plays, skips, ratings), and what
/// the server does not tell from their files where these are found below `musicFolder`. Throws
/// LibraryError, also when the watch cancels.
///
/// - Tags that repeat are joined by commas. A comment is there only if the server is set to keep
///   comments; bit rate, size, totals, beats and compilation come from the files. The date added is
///   not known before its version 0.24.
/// - A rating of a sticker is one of ten, or with a point a part of 1. Names of stickers are those
///   of the usual players, where they have none those of the usual tagging program.
/// - Without a folder of music, songs have no location, and count as there.
/// - A song that the server knows by an URL is a stream, like one in the cloud. A track of a cue
///   sheet has a location that is no file, so that it counts as missing.
MpdSongs readMpdSongs(MpdConnection& connection, const std::string& musicFolder,
                      const ApplicationServices& services);

/// The state of the server's database, as in MpdSongs.
std::string mpdDatabaseState(MpdConnection& connection);

}  // namespace kestrel
