#include "ui/replacing.h"

#include <exception>
#include <utility>

#include "foundation/library_error.h"
#include "musicapp/media_library.h"
#include "musicapp/scripted/playlist_document.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel::ReplaylistControl {
namespace {

PlaylistDocumentState& documents() { return process().state<PlaylistDocumentState>(); }

}  // namespace

StoredDocument& storedXML() { return documents().storedXML; }

void refreshStoredXML(const std::string& path) {
  script::refresh(storedXML(), path, process().with.files);
}

std::shared_ptr<MediaLibrary> storedLib() {
  std::shared_ptr<MediaLibrary>& library = documents().storedLib;
  if (!library) {
    try {
      if (const auto& open = process().with.openLibrary) library = open();
    } catch (const std::exception& error) {
      process().with.log.line(error.what());
    }
  }
  return library;
}

std::string appSupportFolder() {
  return TextSorter::applicationDataDirectory().value_or("/Kestrel") + "/";
}

std::optional<PropertyList> returnContentsOfFile(const std::string& path) {
  try {
    return parsePropertyList(process().with.files.readAll(path), path);
  } catch (const LibraryError&) {
  }
  return std::nullopt;
}

std::optional<Moment> modDateOfFile(const std::string& path) {
  return process().with.files.modificationDate(path);
}

void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid) {
  const Collaborators& with = process().with;
  script::replaceByDocument(storedXML(), trackIDs, name, oldPid,
                            {with.scripts, with.log, with.clock, with.files, appSupportFolder(),
                             documents().applicationAnswersWhenDone});
}

void addtohook(const std::string& path, const std::string& name, const std::string& oldPid) {
  script::importAndReplace(path, name, oldPid, process().with.scripts, process().with.log);
}

}  // namespace kestrel::ReplaylistControl
