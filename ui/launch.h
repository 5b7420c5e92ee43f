/// What happens when the program starts, taking the library snapshot, and what the program later
/// asks of the machine about the library's files: operations of the class TextSorter.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/track_store.h"
#include "musicapp/media_library.h"
#include "platform/clock.h"

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

/// The file URL that a bookmark stands for; nothing for a bookmark that is not one. Never asks
/// the user.
std::optional<std::string> urlForBookmark(std::string_view bookmark);

/// This program's folder for the user's data, "Kestrel" in the system's folder for that; nothing
/// when the system names none. It is not created here.
std::optional<std::string> applicationDataDirectory();

/// Nothing when it cannot be read, for whatever reason.
std::optional<Moment> modDateOfFile(const std::string& path);

/// Blocks until the music application has written its library files anew, that is until the XML
/// file is newer than `referenceDate` and not older than the database file; for some 40 seconds at
/// most, which is no error. Without an XML file there is nothing to wait for. Not on the main
/// thread. `dateBeforeChange` gives a reference that suits files with coarse dates.
void waitForItunesToUpdate(Moment referenceDate, const std::string& xmlFile,
                           const std::string& itlFile);

/// The reference for a change that is about to be made to the library whose XML file this is. File
/// systems round dates down, by two seconds at most: a file that is written at once must not look
/// as if it were older than the change, and cost the whole wait. So it is the moment two seconds
/// ago, or the file's own date when that is earlier still, as it also is where the
/// clock of the disk is behind.
Moment dateBeforeChange(const std::string& xmlFile);

/// "AVAILABLE" when something is at the path, else "UNAVAILABLE".
std::string_view fileAvailable(const std::string& path);

// Both ask the music application, and wait for its answer on the calling thread.

/// The track's cloud status with each word capitalised, such as "Matched"; nothing when the
/// application gives none. Takes the ID in hexadecimal form.
std::optional<std::string> cloudStatusByTrackPid(std::string_view hexpid);

/// The path of the track's file; nothing when the application gives none.
std::optional<std::string> locationByTrackPid(std::string_view hexpid);

}  // namespace kestrel::TextSorter
