/// The songs of a Music Player Daemon as media items.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "musicapp/media_library.h"
#include "musicapp/mpd/mpd_connection.h"
#include "musicapp/music_application.h"
#include "musicapp/synthetic.h"

namespace kestrel {

/// How the programs of a library write stickers.
struct StickerWords {
  bool underscores = false;  ///< "play_count", not "playCount"
  bool parts = false;        ///< ratings are parts of 1, not of ten
};

struct MpdSongs {
  std::shared_ptr<const MediaItems> items;
  DerivedIDs ids{"track"};  ///< by URI, which is the path below the folder of music
  /// Of the server's database when it was read: another one when it has been updated.
  std::string state;
  StickerWords words;
};

/// What the server has noted of a song beside its tags, by name.
using MpdStickers = std::map<std::string, std::string>;
/// Throws LibraryError; MpdRefusal where the server notes nothing.
MpdStickers mpdStickers(MpdConnection& connection, const std::string& uri);
/// An item's values by its stickers, and what else the item says.
TrackValues mpdValues(const MediaItem& item, const MpdStickers& stickers);

/// Of what a song can be given, there are no other stickers.
inline constexpr TrackValueSet mpdValueSorts{TrackValue::plays, TrackValue::rating};
/// The commands that give a song these values. With what is `stored` it gets the same stickers
/// back.
std::vector<MpdConnection::Words> mpdValueCommands(const std::string& uri, TrackValueSet which,
                                                   const TrackValues& values,
                                                   const MpdStickers& now,
                                                   const StickerWords& words);
/// For TrackValues::stored.
std::string storedStickers(const MpdStickers& stickers);

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
