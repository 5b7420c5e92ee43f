/// The state of a library document that scripts are carried out on: what was read, what was
/// changed since, and what of it is on the disk.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "musicapp/document/document_commit.h"
#include "musicapp/document/document_lock.h"
#include "musicapp/document/document_music_application.h"
#include "musicapp/document/document_reader.h"
#include "musicapp/document/edited_document.h"
#include "musicapp/document/number_lookup.h"
#include "musicapp/media_library.h"

namespace kestrel {

class DocumentSession : public MediaLibrary {
 public:
  /// Reads the document. Throws LibraryError.
  DocumentSession(std::string path, DocumentServices services, CommitOptions options);

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return mediaFolder_; }
  std::string libraryFile() override { return path_; }
  LibraryIdentity identity() override { return documentIdentity(path_, persistentID_, status_); }
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
  /// To be called when tracks were restored: the document is read again once it is written.
  void tracksRestored() noexcept { restored_ = true; }
  /// The place of the first playlist of that persistent ID; nothing when there is none.
  [[nodiscard]] std::optional<std::size_t> playlist(std::uint64_t persistentID);
  /// To be called when playlists were added or removed.
  void playlistsMoved() noexcept { playlistPlaces_.reset(); }

  /// Writes what was changed; see Batch. Throws LibraryError, with the changes still there.
  void commit(const Batch::Record& record = {});
  /// Has the next commit write what the document was before the commit that gave `reversal`; see
  /// Batch. The lists become that after it.
  bool revert(std::string_view reversal);
  /// Forgets what was changed since the last commit.
  void rollBack();

 private:
  void read();
  void commitChanges(const Batch::Record& record);
  void commitReversion();

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
  bool restored_ = false;                     ///< tracks, of which the lists do not know all
  std::optional<DocumentReversal> reversal_;  ///< to be carried out by the next commit
  std::optional<std::unordered_map<std::uint64_t, std::size_t>> playlistPlaces_;

  // Over `items_`, while there is no `document_`.
  std::vector<const MediaItem*> itemsByNumber_;
  std::optional<NumberLookup> lookup_;
};

}  // namespace kestrel
