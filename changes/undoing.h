/// The work of taking a run back; see undo.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "changes/library_checks.h"
#include "changes/undo.h"
#include "changes/undo_values.h"

namespace kestrel {

/// One undoing, from the checks to the history's last word.
class Undoing {
 public:
  Undoing(MusicApplication& application, FileService& files, History& history, Trash* trash,
          const UndoOptions& options)
      : application_(application),
        fileService_(files),
        history_(history),
        trash_(trash),
        options_(options) {}

  UndoReport carryOut(std::int64_t number);

 private:
  /// Nothing where all that is not files is what the application had noted of them, and it takes
  /// nothing now.
  std::unique_ptr<Batch> begunBatch();
  /// Whether tracks, or what they have, come back with their files.
  [[nodiscard]] bool hasFilesFirst() const;
  /// Whether the run added files to the library, which then are what is taken out again.
  [[nodiscard]] bool deletesTracks() const { return run_.summary.kind == RunKind::addToLibrary; }
  [[noreturn]] void refuse(Message problem, Message remedy) const {
    throw LibraryError(path_, {}, std::move(problem), std::move(remedy));
  }
  /// What has been done stays done, whatever becomes of the record. Its first problem is told.
  template <typename Tell>
  void tellHistory(Tell&& tell) {
    try {
      tell();
    } catch (const HistoryError& error) {
      if (report_.problem.empty()) report_.problem = error.message;
    }
  }
  /// How people call a run of this library.
  [[nodiscard]] std::string textOf(std::int64_t run);
  void load(std::int64_t id, const LibraryIdentity& now);
  /// Settles what is to be done; refuses when something stands in the way.
  void choose();
  /// The last run since whose changes, still in effect, are to playlists that differ or took tracks
  /// away that these listed.
  std::optional<RunSummary> laterRun();
  /// Whether nothing of what the run did to the library is left out.
  [[nodiscard]] bool takesAllBack() const;
  void restoreLibrary(const LibraryImage& before, LibraryImage::Of watched);
  [[nodiscard]] std::optional<std::int64_t> undoneBy() const;
  Outcome& addOutcome(const UndoItem& item, Outcome::What what = Outcome::What::playlist);
  void take(const UndoItem& item, std::size_t number);
  /// There is nothing to take back, which the history does not know yet.
  static void asBefore(Outcome& outcome, std::int64_t change, std::vector<std::int64_t>& undone);
  void takeTrack(const UndoItem& item, std::size_t number);
  void takeFile(const UndoItem& item, std::size_t number);
  /// Whether a file that was to come back first cannot.
  [[nodiscard]] bool isFileGone() const;
  [[nodiscard]] bool areFilesBack() const;
  /// Gives a playlist its old entries back, or makes it anew.
  void restore(std::size_t number, const LibraryImage& before, LibraryImage& expected);
  void done(std::size_t number);
  /// Takes the tracks of added files out of the library again; the files stay.
  void deleteTracks();
  /// Whether the user has cancelled, now or before; tells of what comes next otherwise.
  [[nodiscard]] bool isStopped(std::size_t done, std::size_t total, const std::string& name);
  /// Moves files back from the trash.
  void restoreFiles();
  void restoreFile(std::size_t number);

  MusicApplication& application_;
  FileService& fileService_;
  History& history_;
  Trash* trash_;
  const UndoOptions& options_;
  std::string path_;
  RunRecord run_;
  UndoReport report_;
  std::vector<PlaylistChange> changes_;  ///< of the undo, as are the files
  std::vector<FileChange> files_;
  std::vector<TrackChange> tracks_;
  UndoneValues values_{application_};
  bool filesCame_ = false;                             ///< it was tried to bring them back
  std::vector<std::vector<std::uint64_t>> unknownAt_;  ///< of the changes
  std::vector<std::size_t> outcomeOfChange_, outcomeOfFile_;
  /// The changes of the run that `changes_` and `files_` take back.
  std::vector<std::int64_t> originals_, originalFiles_;
  std::vector<std::int64_t> undoneChanges_, undoneFiles_, undoneTracks_;
};

}  // namespace kestrel
