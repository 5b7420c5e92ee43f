/// Taking the library snapshot: the operations of the class TextSorter over its containers.
#pragma once

#include <memory>
#include <vector>

#include "library/track_store.h"
#include "musicapp/media_library.h"

namespace kestrel::TextSorter {

/// Takes the snapshot on the calling thread and returns when every record is built; what the user
/// sees of it is posted to the main queue. The first snapshot of a run (setting "completedLaunch"
/// still false) asks for a search at its end when "getDupesAtStartup" is on; later ones read the
/// library again. Records of songs that have left the library stay. One snapshot at a time, and
/// the containers are not to be read meanwhile. A library that cannot be read leaves them as they
/// were; the reason goes to the log.
void buildLibrary();

/// The library, opened on first use and kept; nullptr when it cannot be opened.
std::shared_ptr<MediaLibrary> myLibrary();

/// The songs of the library by `hexpid`; nullptr before the first snapshot. Result tracks keep
/// what they share of it alive.
std::shared_ptr<const TrackStore> groomedTracksDictionary();

/// The playlists as of the last snapshot or refresh; nullptr before.
std::shared_ptr<const std::vector<Playlist>> storedPlaylistArray();

/// Logs "** START LIB INIT **" and refills the stored playlists from the library.
void refreshPlaylists();

}  // namespace kestrel::TextSorter
