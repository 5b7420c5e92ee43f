/// What the program asks of the machine and of the music application about the library's files:
/// operations of the class TextSorter.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace kestrel::TextSorter {

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
