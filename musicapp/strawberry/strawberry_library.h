/// The collection of Strawberry as a music application.
///
/// Its database may be read at any time. It is written only while Strawberry does not run, which
/// keeps its lists in memory and writes them over what others have changed: in one transaction,
/// after a copy of the database has been put among the backups. Commands change this program's
/// memory; a commit compares that with the database and touches the rows that differ.
///
/// What commands do where their descriptions leave it open:
/// - A song that leaves the library becomes unavailable, as one whose file Strawberry no longer
///   finds. It keeps its entries in playlists, which then are of an unknown track, and what
///   Strawberry remembers of it. Should the file stay, or come back, Strawberry takes the song in
///   again when it next looks at its folders.
/// - Playlists are in the folders that Strawberry's list of them shows. One that is made is among
///   the favourites and has a tab.
/// - Lists that Strawberry fills itself (dynamic ones) are smart playlists.
/// - Files are added by Strawberry alone, from its folders.
/// - What a batch did is taken back by commands, not to the byte: the database is Strawberry's,
///   which writes its lists anew whenever it runs. Entries that went by the place of their file go
///   by it again where a whole batch is taken back.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "musicapp/edited_library.h"
#include "musicapp/library_files.h"
#include "musicapp/strawberry/strawberry_database.h"

namespace kestrel {

/// What a commit is about to do. For tests, which let it fail or end the program there.
enum class StrawberryStep : std::uint8_t {
  begin,   ///< the transaction
  backUp,  ///< the database
  write,   ///< what differs
  commit,
  prune,  ///< the oldest backups; what was written counts
};

struct StrawberryOptions {
  std::size_t keptBackups = 10;
  /// Why the database at a path must not be written now; empty when it may.
  std::function<Message(const std::string& path)> reasonNotToWrite;
  std::function<void(StrawberryStep)> onStep;
};

/// One thread at a time; the lists that it hands out may be read by any, and stay as they are.
class StrawberryLibrary final : public EditedLibrary {
 public:
  /// Reads the database at the path. Throws LibraryError when it cannot be read.
  StrawberryLibrary(std::string path, const ApplicationServices& services,
                    StrawberryOptions options);

  [[nodiscard]] Capabilities capabilities() const override;

  std::vector<std::optional<TrackValues>> valuesOf(std::span<const std::uint64_t> tracks) override;

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return {}; }
  std::string libraryFile() override { return path_; }
  LibraryIdentity identity() override;
  bool hasChanged() override;
  void reload() override;

 private:
  /// Why songs can be given no dates added.
  static Message whyNoDates();
  class Commands;  ///< one operation a command; strawberry_commands.cpp

  void read();
  /// Throws LibraryError when the database cannot be changed now.
  void lock() override;
  CommandResult execute(const Command& command) override;
  [[nodiscard]] const std::string& place() const override { return path_; }
  void commit(const Batch::Record& record) override;
  /// Remembers the places of entries, for the commands that follow.
  void recall(std::string_view reversal) override;
  void rollBack() override;
  /// The songs as they are read have what they were given.
  void keepValues();
  void numberSongs();
  [[nodiscard]] bool isRemoved(std::uint64_t song) const;
  [[nodiscard]] bool isChanged() const override { return !(now_ == stored_.lists); }
  [[nodiscard]] bool isTrack(const StrawberryEntry& entry) const {
    return entry.song != 0 && !isRemoved(entry.song);
  }
  [[nodiscard]] std::vector<std::uint64_t> tracksOf(const StrawberryPlaylist& playlist) const;
  void step(StrawberryStep which) const {
    if (options_.onStep) options_.onStep(which);
  }

  std::string path_;
  ApplicationServices services_;
  StrawberryOptions options_;
  StrawberryContents stored_;  ///< as in the database
  StrawberryLists now_;
  FormerEntries former_;  ///< as they were before what is taken back
  std::unordered_map<std::uint64_t, const MediaItem*> songs_;

  // Made when they are asked for, and reset when they change.
  std::shared_ptr<const MediaItems> items_;
  std::shared_ptr<const std::vector<Playlist>> playlists_;
  std::unordered_map<std::uint64_t, std::string> folders_;  ///< their names, by ID
};

/// Recognises "strawberry:", the usual database, "strawberry:PATH", and files called ".db".
Application strawberryApplication();

}  // namespace kestrel
