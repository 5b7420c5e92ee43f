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

/// Schedules `buildLibrary` on the main queue and returns at once.
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
/// thread.
void waitForItunesToUpdate(Moment referenceDate, const std::string& xmlFile,
                           const std::string& itlFile);

/// "AVAILABLE" when something is at the path, else "UNAVAILABLE".
std::string_view fileAvailable(const std::string& path);

}  // namespace kestrel::TextSorter
