#include "musicapp/document/document_library.h"

#include <utility>

#include "foundation/collation.h"
#include "foundation/library_error.h"
#include "musicapp/document/document_reader.h"
#include "musicapp/document/found_documents.h"
#include "musicapp/library_files.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {

DocumentLibrary::DocumentLibrary(std::string path, const ApplicationServices& services,
                                 CommitOptions options)
    : path_(std::move(path)), services_(services), options_(std::move(options)) {
  read();
}

Capabilities DocumentLibrary::capabilities() const {
  return {.name = "the library document",
          .changesPlaylists = true,
          .editsInPlace = true,
          .deletesTracks = true,
          .restoresTracks = true,
          .addsFiles = true,
          .reveals = services_.revealer != nullptr,
          .takesValues = TrackValueSet::all(),
          .whyNoOthers = {}};
}

std::vector<std::optional<TrackValues>> DocumentLibrary::valuesOf(
    std::span<const std::uint64_t> tracks) {
  auto values = valuesIn(*this, tracks);
  if (!lock_) return values;
  EditedTracks& edited = document().tracks();
  for (std::size_t i = 0; i < tracks.size(); ++i)
    if (const auto number = values[i] ? edited.byPersistentID(tracks[i]) : std::nullopt)
      values[i]->stored = storedElements(edited.valueElements(*number));
  return values;
}

void DocumentLibrary::read() {
  clearLeftoversOf(path_, services_.files, services_.log);
  const MappedFile file = services_.files.map(path_);
  LibraryDocument document = readLibraryDocument(file, path_);
  mapLocations(*document.items, services_.maps, services_.files);
  status_ = file.status();
  document_.reset();
  playlistPlaces_.reset();
  changed_ = false;
  MappedFiles mapped(services_.maps, services_.files);
  const std::string& mediaFolder = mapped.folder(pathOfLocation(document.musicFolder)).path;
  mediaFolder_ = mediaFolder.empty() ? std::move(document.musicFolder) : mediaFolder;
  persistentID_ = std::move(document.persistentID);
  items_ = std::move(document.items);
  playlists_ = std::move(document.playlists);
  index_ = std::move(document.index);
  if (document.droppedItems > 0)
    services_.log.line(path_ + ": dropped " + std::to_string(document.droppedItems) +
                       " playlist entries whose Track ID the library does not define");
}

bool DocumentLibrary::hasChanged() {
  const auto status = services_.files.status(path_);
  return status && *status != status_;
}

void DocumentLibrary::reload() {
  const bool isSame = services_.files.status(path_) == status_;
  // Where maps lead may have changed all the same.
  if (isSame && (changed_ || services_.maps.empty())) return;
  if (changed_) throwChangedMeanwhile(path_);
  read();
}

std::shared_ptr<const MediaItems> DocumentLibrary::allMediaItems() {
  return document_ ? document_->tracks().items() : items_;
}

std::shared_ptr<const std::vector<Playlist>> DocumentLibrary::allPlaylists() {
  return document_ ? document_->playlists().shared() : playlists_;
}

const MediaItem* DocumentLibrary::track(std::uint64_t persistentID) {
  if (document_) {
    const auto number = document_->tracks().byPersistentID(persistentID);
    return number ? &document_->tracks().item(*number) : nullptr;
  }
  const MediaItem* found = nullptr;
  items_->forEach([&](const MediaItem& item) {
    if (!found && item.persistentID == persistentID) found = &item;
  });
  return found;
}

Message DocumentLibrary::reasonNotToWrite() {
  try {
    checkWritable(realPathOf(path_));
  } catch (const std::exception& error) {
    return messageOf(error);
  }
  return {};
}

void DocumentLibrary::lock() {
  if (lock_) return;
  LibraryLock lock(services_.files, realPathOf(path_));
  clearLeftoversOf(lock.library(), services_.files, services_.log);
  LibraryBackups(services_.files, lock.library()).removeUnreplaced();
  if (services_.files.status(lock.library()) != status_) throwChangedMeanwhile(path_);
  checkWritable(lock.library());
  lock_.emplace(std::move(lock));
}

EditedDocument& DocumentLibrary::document() {
  lock();
  if (document_) return *document_;
  MappedFile file = services_.files.map(lock_->library());
  if (file.status() != status_) throwChangedMeanwhile(path_);
  if (!index_) index_ = readLibraryDocument(file, path_).index;
  document_ = std::make_unique<EditedDocument>(DocumentText(std::move(file)), index_, items_,
                                               playlists_, services_.random);
  return *document_;
}

EditedDocument& DocumentLibrary::change() {
  EditedDocument& edited = document();
  changed_ = true;
  return edited;
}

std::optional<std::size_t> DocumentLibrary::playlist(std::uint64_t persistentID) {
  if (!playlistPlaces_) {
    const auto lists = allPlaylists();
    playlistPlaces_.emplace().reserve(lists->size());
    for (std::size_t i = 0; i < lists->size(); ++i)
      playlistPlaces_->try_emplace((*lists)[i].persistentID, i);
  }
  const auto found = playlistPlaces_->find(persistentID);
  return found == playlistPlaces_->end() ? std::nullopt : std::optional(found->second);
}

void DocumentLibrary::commit(const Batch::Record& record) {
  if (reversal_)
    commitReversion();
  else if (changed_)
    commitChanges(record);
}

void DocumentLibrary::commitChanges(const Batch::Record& record) {
  status_ = replaceLibraryFile(
      {lock_->library(), status_}, services_.files, services_.log, options_, [&](TextSink& sink) {
        DocumentReversal reversal;
        if (document_->isConverted()) {
          const MappedFile file = services_.files.map(lock_->library());
          reversal = document_->write(sink, {file.bytes().data(), file.bytes().size()});
        } else {
          reversal = document_->write(sink);
        }
        if (record) record(reversal.encoded());
      });
  changed_ = false;
  if (std::exchange(restored_, false)) return read();
  items_ = document_->tracks().items();
  playlists_ = document_->playlists().shared();
  // The next change starts from the bytes that are on the disk now.
  document_.reset();
  index_.reset();
}

bool DocumentLibrary::revert(std::string_view bytes) {
  if (changed_ || reversal_) return false;
  lock();
  auto reversal = DocumentReversal::decoded(bytes);
  if (!reversal || reversal->size != status_.size) return false;
  const MappedFile file = services_.files.map(lock_->library());
  const std::string found = file.checked([&] {
    ContentHash hash;
    hash.add({file.bytes().data(), file.bytes().size()});
    return hash.value();
  });
  if (found != reversal->after) return false;
  reversal_ = std::move(reversal);
  return true;
}

void DocumentLibrary::commitReversion() {
  const DocumentReversal reversal = *std::exchange(reversal_, std::nullopt);
  replaceLibraryFile(
      {lock_->library(), status_}, services_.files, services_.log, options_, [&](TextSink& sink) {
        const MappedFile file = services_.files.map(lock_->library());
        if (!file.checked([&] {
              return writeReverted({file.bytes().data(), file.bytes().size()}, reversal, sink);
            }))
          throw LibraryError(path_, {},
                             Message::tr("cannot be made what it was: it, or the "
                                         "history, is damaged"),
                             Message::tr("Put the latest backup in its place."));
      });
  read();
}

void DocumentLibrary::rollBack() {
  reversal_.reset();
  restored_ = false;
  if (!std::exchange(changed_, false)) return;
  // The next change starts from the document as it is on the disk.
  document_.reset();
  playlistPlaces_.reset();
}

Application documentApplication() {
  const auto recognises = [](const std::string& address, const FileService& files) {
    if (address.size() >= 4 && sameIgnoringCase(address.substr(address.size() - 4), ".xml"))
      return true;
    try {
      return looksLikeXml(files, address);
    } catch (const FileError&) {
      return false;
    }
  };
  const auto open = [](const std::string& address, const ApplicationServices& services) {
    return std::unique_ptr<MusicApplication>(std::make_unique<DocumentLibrary>(address, services));
  };
  const auto found = [](const ApplicationServices& services) {
    return foundDocuments(services.files);
  };
  return {Message::tr("Library documents"), "*.xml",           recognises, open, found,
          Message::tr("Document"),          "library-document"};
}

}  // namespace kestrel
