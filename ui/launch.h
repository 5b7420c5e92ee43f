/// What happens when the program starts, and what it later asks of the machine about the library's
/// files: the operations of the class TextSorter over its collaborators.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "musicapp/media_library.h"
#include "platform/clock.h"

namespace kestrel::TextSorter {

/// Prepares the launch, on the main thread, once per run: opens the progress sheet in its waiting
/// form (the first snapshot closes it), appends the paths of the application's media folder and
/// library file to the containers, registers the default of "filterFolderLoc", stores
/// "hasRemoteTracks" and refills the stored playlists. A second call would append the paths again.
void initPlaylistsAtLaunch();

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

/// The reference for a change that is about to be made to the library whose document this is. File
/// systems round dates down, by two seconds at most: a document that is written at once must not
/// look as if it were older than the change, and cost the whole wait. So it is the moment two
/// seconds ago, or the document's own date when that is earlier still, as it also is where the
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
