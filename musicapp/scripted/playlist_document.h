/// The playlist document: how a scripted application's playlist gets other entries.
///
/// Such an application has no command that changes entries. A small library document that holds one
/// playlist with the new entries is written, the application imports it, and the old playlist is
/// deleted. The document repeats the values and track entries of the stored library document, so
/// that the application takes it for an excerpt of its own export.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "foundation/function_ref.h"
#include "musicapp/scripted/stored_document.h"

namespace kestrel {

class Clock;
class FileService;
class Log;
class ScriptRunner;

namespace script {

/// Fills `stored` from the library document at `path`, with the header values that every playlist
/// document has, unless it was filled from that file as it is now. Throws LibraryError, with
/// `stored` as it was.
void refresh(StoredDocument& stored, const std::string& path, FileService& files);

/// Makes the document of one playlist and hands it to `write` in pieces. `trackIDs` are decimal
/// keys of the stored "Tracks"; one that is not there gets an entry all the same, which points at
/// nothing. An ID that is no number gets an empty entry, so that the entries still count like the
/// IDs. Throws LibraryError when the stored document lacks a value that the new one must have, and
/// std::out_of_range for a date that the format cannot hold, before anything is handed over.
void makePlaylistDocument(const StoredDocument& stored, std::span<const std::string> trackIDs,
                          std::string_view name, FunctionRef<void(std::string_view)> write);

/// What replacing works with; everything outlives it.
struct ReplacingServices {
  ScriptRunner* scripts;  ///< nullptr: there is no application, which every step then says
  Log& log;
  Clock& clock;
  FileService& files;
  std::string folder;  ///< for the documents, with a slash at the end; not created here
  /// The application has finished a command when it answers: the two waits are left out. For 2,000
  /// playlists they come to 23 minutes.
  bool answersWhenDone = false;
};

/// Writes the document, waits 0.2 s so that the file has settled, has it imported in place of the
/// old playlist, and waits 0.5 s so that the application is done with it. `oldPid` is hexadecimal.
///
/// Failures are logged. The sequence runs whether or not the file could be written; callers check
/// what came of it. Only a document that cannot be made stops it, before anything is written; a
/// missing header value throws LibraryError. The file stays in the folder: its path is returned,
/// empty when none was made.
std::string replaceByDocument(const StoredDocument& stored, std::span<const std::string> trackIDs,
                              const std::string& name, const std::string& oldPid,
                              const ReplacingServices& with);

/// The import-and-replace sequence: imports the document, deletes every user playlist of that name
/// but the old one, imports it again, deletes the old one. The double import with the deletion
/// between leaves exactly one new playlist of the name. A failure is logged, as "Error while adding
/// 1: ...", "... 2: ..." or "Error while deleting: ...", and stops nothing.
void importAndReplace(const std::string& path, const std::string& name, const std::string& oldPid,
                      ScriptRunner* scripts, Log& log);

}  // namespace script
}  // namespace kestrel
