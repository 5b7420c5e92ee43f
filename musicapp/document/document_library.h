/// A library document as a music application: its lists are what the document says, and commands
/// are carried out on the document itself.
///
/// Commands change this program's memory at once and the document as a whole: the new one is the
/// old one's bytes with what the commands touched cut out or put in, so that every key that
/// Kestrel does not know, the order of keys and the layout stay as they were. (A document that is
/// not in UTF-8 becomes UTF-8 with its first change.) The document that was replaced is kept as a
/// numbered backup in the application-support folder.
///
/// What it costs: changes look only at the playlists and tracks that they touch, deleting tracks at
/// the entries of all playlists that have them; a commit copies the document once, however many
/// commands it makes durable, and the first change after it reads the document again. So many
/// commands belong into one batch. Memory grows with what was touched only.
///
/// What commands do where their descriptions leave it open:
/// - A playlist document adds one user playlist at top level for each of its playlists; entries
///   are matched to tracks of this library, those that match none are left out. A media file that
///   is in the library already is not added again.
/// - Entries can be changed in ordinary and genius playlists only: the others are not the user's.
///   The master playlist and the application's own ("distinguished") ones cannot be deleted.
/// - A playlist without a persistent ID has one from its position. It is written down when the
///   position changes or a playlist is moved into it, so that it stays the same.
/// - What XML cannot hold (control characters) becomes U+FFFD in new texts, except in the name of
///   a playlist that the library has already: copies must be found under the same name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "musicapp/document/edited_document.h"
#include "musicapp/edited_library.h"
#include "musicapp/library_commit.h"
#include "musicapp/library_files.h"

namespace kestrel {

/// One thread at a time; the lists that it hands out may be read by any, and stay as they are. An
/// earlier list that is held by none any more is changed in place, so hold none in loops over many
/// commands. With large playlists a held list costs a copy of all entries at the next change.
class DocumentLibrary final : public EditedLibrary {
 public:
  /// Reads the document. Throws LibraryError when it cannot be read.
  DocumentLibrary(std::string path, const ApplicationServices& services,
                  CommitOptions options = {});

  [[nodiscard]] Capabilities capabilities() const override;

  /// `stored` is there while a batch is open.
  std::vector<std::optional<TrackValues>> valuesOf(std::span<const std::uint64_t> tracks) override;

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return mediaFolder_; }
  std::string libraryFile() override { return path_; }
  LibraryIdentity identity() override { return fileIdentity(path_, persistentID_, status_); }
  bool hasChanged() override;
  [[nodiscard]] Message reasonNotToWrite() override;
  /// Reads the document again when another program has changed it. Throws LibraryError, with
  /// nothing changed, while there are changes that are not on the disk.
  void reload() override;

 private:
  class Commands;  ///< one operation a command; document_commands.cpp

  void read();

  /// The first track of that persistent ID; nullptr when there is none. Looks at all as long as
  /// nothing is changed.
  [[nodiscard]] const MediaItem* track(std::uint64_t persistentID);
  /// The place of the first playlist of that persistent ID; nothing when there is none.
  [[nodiscard]] std::optional<std::size_t> playlist(std::uint64_t persistentID);

  /// Takes the document's lock unless it is held. Throws LibraryError when it cannot be had, or
  /// the document is not the one that was read, or not one that can be written.
  void lock() override;
  CommandResult execute(const Command& command) override;
  void checkUnchangedFile() const override;
  [[nodiscard]] bool isChanged() const override { return changed_; }
  [[nodiscard]] const std::string& place() const override { return path_; }
  /// The document to be changed; locks it. Throws LibraryError.
  EditedDocument& document();
  /// To be called before anything of `document` is changed.
  EditedDocument& change();

  /// Writes what was changed; see Batch. Throws LibraryError, with the changes still there.
  void commit(const Batch::Record& record) override;
  void commitChanges(const Batch::Record& record);
  /// Has the next commit write what the document was before the commit that gave `reversal`; see
  /// Batch. The lists become that after it.
  bool revert(std::string_view reversal) override;
  void commitReversion();
  /// Forgets what was changed since the last commit.
  void rollBack() override;

  std::string path_;
  ApplicationServices services_;
  CommitOptions options_;

  // As on the disk.
  FileStatus status_;
  std::string mediaFolder_, persistentID_;
  std::shared_ptr<const MediaItems> items_;
  std::shared_ptr<const std::vector<Playlist>> playlists_;
  std::shared_ptr<const DocumentIndex> index_;  ///< nullptr: to be read

  std::unique_ptr<EditedDocument> document_;  ///< from the first change on
  bool changed_ = false;
  bool restored_ = false;                     ///< tracks, of which the lists do not know all
  std::optional<DocumentReversal> reversal_;  ///< to be carried out by the next commit
  /// Made when it is asked for, and reset when playlists come or go.
  std::optional<std::unordered_map<std::uint64_t, std::size_t>> playlistPlaces_;
};

/// Recognises XML files, by name or by their first bytes.
Application documentApplication();

}  // namespace kestrel
