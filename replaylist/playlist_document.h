/// The playlist document: how the entries of a playlist are replaced.
///
/// A playlist's contents are not edited. A small library document that holds one playlist with the
/// new entries is written, the music application imports it, and the old playlist is deleted. The
/// document repeats the values and track entries of the stored library document, so that the
/// application takes it for an excerpt of its own export.
///
/// One replaylist run at a time may use what is here.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/function_ref.h"
#include "foundation/property_list.h"
#include "platform/clock.h"
#include "replaylist/stored_document.h"

namespace kestrel {

class MediaLibrary;

/// The class-wide containers of this part, kept with the process.
struct PlaylistDocumentState {
  StoredDocument storedXML;
  std::shared_ptr<MediaLibrary> storedLib;
  /// Set by the controller while the application at hand has finished a command when it answers:
  /// the two waits of `buildXMLWith` are left out then. A batch of two thousand playlists would
  /// otherwise sleep for 23 minutes for nothing.
  bool applicationAnswersWhenDone = false;
};

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

/// The stored library document, empty until the controller fills it; shared by all callers.
StoredDocument& storedXML();

/// Fills `storedXML` from the library document at `path`, unless it was filled from that file and
/// the file is still the same. Values that very old libraries lack and every playlist document has
/// are supplied: "Date" is then the day the file was written, the others are neutral. Throws
/// LibraryError, and leaves the stored document as it was, when the file cannot be read.
void refreshStoredXML(const std::string& path);

/// The library, opened on the first successful call and then kept; nullptr when it cannot be
/// opened, and the next call tries again.
std::shared_ptr<MediaLibrary> storedLib();

/// "<application support>/Kestrel/", with the slash. Not created here.
std::string appSupportFolder();

/// The property list in a file; nothing when it is missing or does not parse. Only the XML format
/// is known here.
std::optional<PropertyList> returnContentsOfFile(const std::string& path);

/// Nothing when the file system does not tell.
std::optional<Moment> modDateOfFile(const std::string& path);

/// Makes the document of one playlist and hands it to `write` in pieces. `trackIDs` are decimal
/// keys of the stored "Tracks"; one that is not there gets an entry all the same, which points at
/// nothing. An ID that is no number deliberately gets an empty entry, so that the entries still
/// count like the IDs. Throws LibraryError when the stored document lacks a value that the new one
/// must have, and std::out_of_range for a date that the format cannot hold, before anything is
/// handed over.
void makePlaylistDocument(const StoredDocument& stored, std::span<const std::string> trackIDs,
                          std::string_view name, FunctionRef<void(std::string_view)> write);

/// Writes the document into the application-support folder, waits 0.2 s so that the file has
/// settled, has it imported in place of the old playlist, and waits 0.5 s so that the application
/// is done with it. `oldPid` is hexadecimal.
///
/// Failures are logged and nothing is returned. Whether the file could be written is deliberately
/// not asked: the sequence runs in any case, and whoever calls this checks what came of it. Only a
/// document that cannot be made stops it, before anything is written; a missing header value
/// throws LibraryError. The file stays in the folder.
void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid);

/// The import-and-replace sequence: imports the document, deletes every user playlist of that name
/// but the old one, imports it again, deletes the old one. The double import with the deletion
/// between is deliberate: it leaves exactly one new playlist of the name. No failure stops it.
void addtohook(const std::string& path, const std::string& name, const std::string& oldPid);

}  // namespace kestrel::ReplaylistControl
