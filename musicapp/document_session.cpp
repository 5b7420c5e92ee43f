#include "musicapp/document_session.h"

#include <utility>

#include "foundation/library_error.h"
#include "foundation/plist_error.h"
#include "musicapp/document_backups.h"
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

void DocumentSession::commit() {
  if (!changed_) return;
  status_ = replaceDocument({lock_->document(), status_}, services_.files, services_.log, options_,
                            [&](TextSink& sink) { document_->write(sink); });
  changed_ = false;
  items_ = document_->tracks().items();
  playlists_ = document_->playlists().shared();
}

void DocumentSession::rollBack() {
  if (!std::exchange(changed_, false)) return;
  // The next change scans the document as it is on the disk.
  document_.reset();
}

}  // namespace kestrel
