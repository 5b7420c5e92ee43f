#include "musicapp/document/document_session.h"

#include <utility>

#include "foundation/library_error.h"
#include "musicapp/document/document_backups.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {

DocumentSession::DocumentSession(std::string path, DocumentServices services, CommitOptions options)
    : path_(std::move(path)), services_(services), options_(std::move(options)) {
  read();
}

void DocumentSession::read() {
  LibraryDocument document;
  try {
    clearLeftoversOf(path_, services_.files, services_.log);
    const MappedFile file = services_.files.map(path_);
    document = readLibraryDocument(file, path_);
    status_ = file.status();
  } catch (const FileError& error) {
    throw LibraryError(path_, {}, error.problem, error.remedy);
  }
  document_.reset();
  lookup_.reset();
  playlistsMoved();
  changed_ = false;
  mediaFolder_ = std::move(document.musicFolder);
  persistentID_ = std::move(document.persistentID);
  items_ = std::move(document.items);
  playlists_ = std::move(document.playlists);
  if (document.droppedItems > 0)
    services_.log.line(path_ + ": dropped " + std::to_string(document.droppedItems) +
                       " playlist entries whose Track ID the library does not define");
}

void DocumentSession::reload() {
  if (services_.files.status(path_) == status_) return;
  if (changed_) throwChangedMeanwhile(path_);
  read();
}

std::shared_ptr<const MediaItems> DocumentSession::allMediaItems() {
  return document_ ? document_->tracks().items() : items_;
}

std::shared_ptr<const std::vector<Playlist>> DocumentSession::allPlaylists() {
  return document_ ? document_->playlists().shared() : playlists_;
}

const MediaItem* DocumentSession::track(std::uint64_t persistentID) {
  if (document_) {
    const auto number = document_->tracks().byPersistentID(persistentID);
    return number ? &document_->tracks().item(*number) : nullptr;
  }
  if (!lookup_) {
    lookup_.emplace().reserve(items_->size());
    itemsByNumber_.clear();
    items_->forEach([&](const MediaItem& item) {
      lookup_->add(item.persistentID, static_cast<std::uint32_t>(itemsByNumber_.size()));
      itemsByNumber_.push_back(&item);
    });
  }
  const auto number = lookup_->find(persistentID, [](std::uint32_t) { return true; });
  return number ? itemsByNumber_[*number] : nullptr;
}

void DocumentSession::lock() {
  if (lock_) return;
  DocumentLock lock(services_.files, realPathOf(path_));
  clearLeftoversOf(lock.document(), services_.files, services_.log);
  DocumentBackups(services_.files, lock.document()).removeUnreplaced();
  if (services_.files.status(lock.document()) != status_) throwChangedMeanwhile(path_);
  checkWritable(lock.document());
  lock_.emplace(std::move(lock));
}

EditedDocument& DocumentSession::document() {
  lock();
  if (document_) return *document_;
  const auto checkUnchanged = [&](const std::optional<FileStatus>& status) {
    if (status != status_) throwChangedMeanwhile(path_);
  };
  try {
    DocumentText text(services_.files.map(lock_->document()));
    checkUnchanged(text.status());
    try {
      document_ =
          std::make_unique<EditedDocument>(std::move(text), items_, playlists_, services_.random);
    } catch (const std::exception&) {
      checkUnchanged(services_.files.status(lock_->document()));
      throw;
    }
  } catch (const FileError& error) {
    throw LibraryError(path_, {}, error.problem, error.remedy);
  } catch (const PlistError& error) {
    throw libraryError(path_, {}, error);
  }
  lookup_.reset();
  itemsByNumber_ = {};
  return *document_;
}

EditedDocument& DocumentSession::change() {
  EditedDocument& edited = document();
  changed_ = true;
  return edited;
}

std::optional<std::size_t> DocumentSession::playlist(std::uint64_t persistentID) {
  if (!playlistPlaces_) {
    const auto lists = allPlaylists();
    playlistPlaces_.emplace().reserve(lists->size());
    for (std::size_t i = 0; i < lists->size(); ++i)
      playlistPlaces_->try_emplace((*lists)[i].persistentID, i);
  }
  const auto found = playlistPlaces_->find(persistentID);
  return found == playlistPlaces_->end() ? std::nullopt : std::optional(found->second);
}

void DocumentSession::commit(const Batch::Record& record) {
  if (reversal_)
    commitReversion();
  else if (changed_)
    commitChanges(record);
}

void DocumentSession::commitChanges(const Batch::Record& record) {
  status_ = replaceDocument(
      {lock_->document(), status_}, services_.files, services_.log, options_, [&](TextSink& sink) {
        DocumentReversal reversal;
        if (document_->isConverted()) {
          const MappedFile file = services_.files.map(lock_->document());
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
}

bool DocumentSession::revert(std::string_view bytes) {
  if (changed_ || reversal_) return false;
  lock();
  auto reversal = DocumentReversal::decoded(bytes);
  if (!reversal || reversal->size != status_.size) return false;
  try {
    const MappedFile file = services_.files.map(lock_->document());
    const std::string found = file.checked([&] {
      ContentHash hash;
      hash.add({file.bytes().data(), file.bytes().size()});
      return hash.value();
    });
    if (found != reversal->after) return false;
  } catch (const FileError& error) {
    throw LibraryError(path_, {}, error.problem, error.remedy);
  }
  reversal_ = std::move(reversal);
  return true;
}

void DocumentSession::commitReversion() {
  const DocumentReversal reversal = *std::exchange(reversal_, std::nullopt);
  replaceDocument(
      {lock_->document(), status_}, services_.files, services_.log, options_, [&](TextSink& sink) {
        const MappedFile file = services_.files.map(lock_->document());
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

void DocumentSession::rollBack() {
  reversal_.reset();
  restored_ = false;
  if (!std::exchange(changed_, false)) return;
  // The next change scans the document as it is on the disk.
  document_.reset();
  playlistsMoved();
}

}  // namespace kestrel
