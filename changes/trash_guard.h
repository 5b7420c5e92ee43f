/// What is asked before a file goes to the trash: when the plan is made, and again when it is
/// applied, perhaps much later and from a file that anyone may have written.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/plan.h"
#include "musicapp/media_library.h"
#include "platform/files.h"

namespace kestrel {

/// A file on this machine as it runs: device and inode.
using FileID = std::pair<std::uint64_t, std::uint64_t>;
std::optional<FileID> fileID(const std::optional<FileStatus>& status);

/// Where the files lie that a library names: among its media, somewhere else, or where none may go.
///
/// The media folder is the one that the library names. Where it names none, or one that does not
/// exist here, it is inferred from the tracks that stay: the folder that their files have in
/// common. A folder that holds one of Kestrel's own, as the user's home does, says nothing: below
/// it there is one media folder for each of its folders that hold tracks.
///
/// Folders are told apart by what they are on the disk, so that links and spellings do not matter;
/// each is asked once.
class TrashPlaces {
 public:
  enum class Place : std::uint8_t {
    media,
    elsewhere,
    own,  ///< in a folder of Kestrel's own, other than that of the demo library
    libraryFile,
  };
  /// `leaving`: the tracks from whose files nothing is inferred. `files` must outlive this.
  TrashPlaces(MediaLibrary& library, const std::unordered_set<std::uint64_t>& leaving,
              const FileService& files);
  [[nodiscard]] Place of(const std::string& path, FileID file);

 private:
  [[nodiscard]] Place ofFolder(const std::string& folder) const;

  const FileService& files_;
  std::optional<FileID> libraryFile_, demo_;
  std::set<FileID> own_, media_;
  std::unordered_map<std::string, Place> known_;  ///< by folder
};

/// What the guard lets go where it holds back otherwise, or the other way round.
struct GuardOptions {
  bool otherFiles = false;          ///< lets files go that are no audio
  bool outsideMediaFolder = false;  ///< lets files go that lie outside the library's media folder
  bool cloudReplaces = true;        ///< a kept copy in the cloud is enough for a file to go
  /// Holds back what is not known to sound the same as the copy that is kept. Heeded when a plan is
  /// made, from what its rows say; when it is applied, see heard_files.h.
  bool onlySameSound = false;
};

/// Which files hold audio. Each is opened once, and again only when it has changed.
class AudioFiles {
 public:
  explicit AudioFiles(const FileService& files) : files_(files) {}
  [[nodiscard]] bool isAudio(const std::string& path);
  /// Why the file at `path` is none that another one can be given up for: it has to be a regular
  /// file, there and readable, with a playing time. Empty when it is one.
  [[nodiscard]] Message faultOf(const std::string& path);

 private:
  struct Known {
    std::optional<FileStatus> status;
    bool isAudio = false;
  };
  const FileService& files_;
  std::unordered_map<std::string, Known> known_;
};

/// Finds out which of some files tracks of a library have too, whatever they call them. Only
/// tracks that may have one are asked of the disk: those that have its name, whatever the case of
/// its letters, or its size.
class FilesInUse {
 public:
  explicit FilesInUse(const FileService& files) : files_(files) {}
  /// A file to find out about, with the name and size that a track says it has.
  void want(std::string_view name, std::int64_t size, const FileStatus& status);
  /// Looks whether `item` has a wanted file. `isKnown` tells of its path that it is to be passed
  /// over. When all are wanted.
  template <typename IsKnown>
  void look(const MediaItem& item, IsKnown&& isKnown) {
    if (item.locationFolder.isNull() || !mayHaveOne(item)) return;
    std::string path = filePath(item);
    if (!isKnown(path)) ask(std::move(path));
  }
  [[nodiscard]] bool has(FileID file) const { return used_.contains(file); }

 private:
  [[nodiscard]] bool mayHaveOne(const MediaItem& item);
  void ask(std::string path);
  const std::string& folded(std::string_view name);

  const FileService& files_;
  std::set<FileID> wanted_, used_;
  std::unordered_set<std::string> names_, paths_;  ///< the paths asked already
  std::unordered_set<std::int64_t> sizes_;
  std::string folded_;
};

/// Why a file that nothing else speaks against stays, for where it lies, what it is and what is
/// kept in its place (`keeperPath`; empty: a copy in the cloud). Empty when it goes.
Message reasonOfGuard(const std::string& path, FileID file, const std::string& keeperPath,
                      TrashPlaces& places, AudioFiles& audio, const GuardOptions& options);

/// The files of a plan at the time of its applying. Reads the library once.
class TrashCheck {
 public:
  /// Plan, library and files must outlive this.
  TrashCheck(const Plan& plan, MediaLibrary& library, const FileService& files,
             const GuardOptions& options);
  /// Why a file of the plan stays; empty when it goes: a regular file, the one that was planned,
  /// still that of its track, that no track which stays has too, and with its kept copy as it has
  /// to be.
  [[nodiscard]] Message reasonToStay(const PlannedFile& file);
  /// The same right before it is moved, when others have gone: whether it and what is kept in its
  /// place are still what they were.
  [[nodiscard]] Message reasonNow(const PlannedFile& file);

 private:
  const FileService& files_;
  GuardOptions options_;
  TrashPlaces places_;
  AudioFiles audio_;
  FilesInUse inUse_;
  std::set<FileID> keepers_;  ///< what is kept in place of any of the plan's files
  /// Those of which, or of whose keeper, the tags may be others than the library has read.
  std::unordered_set<const PlannedFile*> changed_;
  /// Which of the plan's files have the path of their track, and which have it of their keeper.
  std::unordered_set<const PlannedFile*> located_, replaced_;
};

}  // namespace kestrel
