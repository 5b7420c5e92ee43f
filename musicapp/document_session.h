/// The state of a library document that scripts are carried out on: what was read, what was
/// changed since, and what of it is on the disk.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "musicapp/document_commit.h"
#include "musicapp/document_lock.h"
#include "musicapp/document_music_application.h"
#include "musicapp/document_reader.h"
#include "musicapp/edited_document.h"
#include "musicapp/media_library.h"
#include "musicapp/number_lookup.h"

namespace kestrel {

class DocumentSession : public MediaLibrary {
 public:
  /// Reads the document. Throws LibraryError.
  DocumentSession(std::string path, DocumentServices services, CommitOptions options);

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return mediaFolder_; }
  std::string libraryFile() override { return path_; }
  std::string persistentID() override { return persistentID_; }
  /// Reads the document again when another program has changed it. Throws LibraryError, with
  /// nothing changed, while there are changes that are not on the disk.
  void reload() override;

  [[nodiscard]] const DocumentServices& services() const noexcept { return services_; }
  /// The first track of that persistent ID; nullptr when there is none.
  [[nodiscard]] const MediaItem* track(std::uint64_t persistentID);

  /// Takes the document's lock unless it is held. Throws LibraryError when it cannot be had, or
  /// the document is not the one that was read, or not one that can be written.
  void lock();
  void unlock() noexcept { lock_.reset(); }
  [[nodiscard]] bool isLocked() const noexcept { return lock_.has_value(); }

  /// The document to be changed; locks it. Throws LibraryError.
  EditedDocument& document();
  /// To be called before anything of `document` is changed.
  EditedDocument& change();
  [[nodiscard]] bool isChanged() const noexcept { return changed_; }
  /// Writes what was changed. Throws LibraryError, with the changes still there.
  void commit();
  /// Forgets what was changed since the last commit.
  void rollBack();

 private:
  void read();

  std::string path_;
  DocumentServices services_;
  CommitOptions options_;

  // As on the disk.
  FileStatus status_;
  std::string mediaFolder_, persistentID_;
  std::shared_ptr<const MediaItems> items_;
  std::shared_ptr<const std::vector<Playlist>> playlists_;

  std::unique_ptr<EditedDocument> document_;  ///< from the first change on
  std::optional<DocumentLock> lock_;
  bool changed_ = false;

  // Over `items_`, while there is no `document_`.
  std::vector<const MediaItem*> itemsByNumber_;
  std::optional<NumberLookup> lookup_;
};

}  // namespace kestrel
