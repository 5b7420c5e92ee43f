/// What happens when the program starts, and taking the library snapshot: operations of the class
/// TextSorter.
#pragma once

#include <memory>
#include <vector>

#include "library/track_store.h"
#include "musicapp/media_library.h"

namespace kestrel::TextSorter {

/// Prepares the launch, on the main thread, once for each opened library: opens the progress sheet
/// in its waiting form (the first snapshot closes it), appends the paths of the application's media
/// folder and library file to the containers, registers the default of "filterFolderLoc", stores
/// "hasRemoteTracks" and refills the stored playlists. A second call would append the paths again.
void initPlaylistsAtLaunch();

/// Takes the snapshot on the calling thread and returns when every record is built; what the user
/// sees of it is posted to the main queue. The first snapshot of a library (setting
/// "completedLaunch" still false) asks for a search at its end when "getDupesAtStartup" is on;
/// later ones read the library again. Records of songs that have left the library stay. One
/// snapshot at a time, and the containers are not to be read meanwhile. A library that cannot be
/// read leaves them as they were; the reason goes to the log.
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

/// Asks on the main queue for a new snapshot, and returns at once. The program's controller has
/// `buildLibrary` done by its worker then; without one it is done on the main queue.
void refreshLibrary();

/// Logs "RELOAD LIB" and answers with the program's library; nullptr when it cannot be opened.
std::shared_ptr<MediaLibrary> storedLib();

}  // namespace kestrel::TextSorter
