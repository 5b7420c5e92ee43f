/// Replacing the entries of a scripted application's playlists: the operations of the class
/// ReplaylistControl over the process's collaborators and containers.
///
/// One replaylist run at a time may use what is here. Applications that can change entries where
/// they are need none of it.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "foundation/property_list.h"
#include "musicapp/scripted/stored_document.h"
#include "platform/clock.h"

namespace kestrel {

class MediaLibrary;

/// The class-wide containers, kept with the process.
struct PlaylistDocumentState {
  StoredDocument storedXML;
  std::shared_ptr<MediaLibrary> storedLib;
  bool applicationAnswersWhenDone = false;  ///< see script::ReplacingServices
};

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

/// The stored library document, empty until the controller fills it; shared by all callers.
StoredDocument& storedXML();

/// Fills `storedXML` from the library document at `path`, unless it was filled from that file and
/// the file is still the same. Throws LibraryError, and leaves the stored document as it was, when
/// the file cannot be read.
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

/// See script::replaceByDocument.
void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid);

/// See script::importAndReplace.
void addtohook(const std::string& path, const std::string& name, const std::string& oldPid);

}  // namespace kestrel::ReplaylistControl
