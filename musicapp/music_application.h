/// What a music application offers to Kestrel. Each application is one implementation.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/command.h"
#include "musicapp/load_watch.h"
#include "musicapp/media_library.h"
#include "musicapp/path_maps.h"
#include "musicapp/track_values.h"

namespace kestrel {

class Clock;
class FileService;
class Log;
class Random;
class Revealer;

/// What an application can be asked for; windows and command line leave out what it cannot.
struct Capabilities {
  std::string name;  ///< of the application, for texts
  bool changesPlaylists = false;
  /// Entries are changed where they are. Otherwise a changed playlist is a new one with another ID,
  /// and others of its name go with the old one.
  bool editsInPlace = false;
  bool keepsRepeats = true;  ///< a playlist may list a track more than once
  bool deletesTracks = false;
  /// Tracks leave with their files, and come back with them, in no other way; see `filesMoved`.
  bool tracksFollowFiles = false;
  bool tracksAreFiles =
      false;  ///< there is no track without its file, and nothing to be told of it
  bool restoresTracks = false;
  bool addsFiles = false;
  bool reveals = false;
  TrackValueSet takesValues;  ///< of which sorts tracks can be given some (command::SetValues)
  Message whyNoOthers;        ///< why none of the other sorts; a sentence without full stop
};

/// Commands that take effect together. What runs while it is open is seen at once by this program
/// and is made durable by `commit`; destroying it before forgets what was not. Applications that
/// make each command durable have nothing to commit, and no reversal.
class Batch {
 public:
  using Record = std::function<void(std::string_view reversal)>;

  virtual ~Batch() = default;
  /// `record` is given what `revert` takes, when all is ready and nothing has taken effect; what it
  /// throws passes through. Throws LibraryError when the library cannot be written. In either case
  /// nothing has been changed.
  virtual void commit(const Record& record = {}) = 0;
  /// Makes the library what it was, to the byte, before the commit that gave this reversal; to be
  /// committed. Returns false, and does nothing, unless the library is what that commit made it, or
  /// after commands of this batch. Throws LibraryError when the library is in use.
  virtual bool revert(std::string_view reversal) = 0;
  /// Tells, before commands take a commit back in parts or with changes since, what that commit
  /// recorded: entries that come back by these commands are as they stood in the library before,
  /// spelling included, as far as the application keeps that.
  virtual void recall(std::string_view reversal) { static_cast<void>(reversal); }
};

class MusicApplication {
 public:
  MusicApplication() = default;
  MusicApplication(const MusicApplication&) = delete;
  MusicApplication& operator=(const MusicApplication&) = delete;
  virtual ~MusicApplication() = default;

  /// Reflects the commands run so far. `reload` re-reads what others may have changed.
  virtual MediaLibrary& library() = 0;
  /// Carries a command out on the calling thread and waits for what comes of it. Never throws.
  virtual CommandResult run(const Command& command) = 0;
  /// What tracks have at this moment, with commands of an open batch; nothing for one that is not
  /// there. What a player does not write down at once is asked of it. Throws LibraryError.
  virtual std::vector<std::optional<TrackValues>> valuesOf(std::span<const std::uint64_t> tracks) {
    return valuesIn(library(), tracks);
  }
  [[nodiscard]] virtual Capabilities capabilities() const = 0;
  /// Why one of the user's playlists cannot be changed now, a clause, as far as that shows without
  /// a try; empty when it can. Never throws.
  [[nodiscard]] virtual Message reasonNotToChange(std::uint64_t playlist) {
    static_cast<void>(playlist);
    return {};
  }
  /// Why nothing of the library can be changed now, and what to do, as far as that shows without a
  /// try; empty when it can. Never throws.
  [[nodiscard]] virtual Message reasonNotToWrite() { return {}; }
  /// One at a time. Throws LibraryError when the library is in use by another program or has been
  /// changed since it was read.
  virtual std::unique_ptr<Batch> beginBatch() = 0;
  /// Files of the library have gone to the trash or come back; an application whose tracks go by
  /// that looks at them, which may take a player minutes: `cancelled`, which may be empty, is asked
  /// whether nobody waits for it any longer. What keeps it from that is in the log. Never throws.
  virtual void filesMoved(std::span<const std::string> paths,
                          const std::function<bool()>& cancelled) {
    static_cast<void>(paths), static_cast<void>(cancelled);
  }
};

/// What applications work with; everything outlives them.
struct ApplicationServices {
  FileService& files;
  Log& log;
  Random& random;  ///< for persistent IDs
  Clock& clock;
  Revealer* revealer = nullptr;  ///< without one nothing can be revealed
  LoadWatch watch = {};          ///< of opening and of reloading
  PathMaps maps = {};            ///< of the library that is opened
  std::string password = {};     ///< for a server that asks for one
  /// What a player does not say of its songs is looked up in their files, which takes long the
  /// first time (audio/missing_facts.h).
  bool readsFiles = true;
};

/// A sort of music application: an entry in the table of them (applications.h). Addresses are
/// paths, or URIs that only the application understands.
struct Application {
  Message name;         ///< of its libraries, as dialogs list them, such as "Library documents"
  std::string pattern;  ///< of the names of files that are such libraries, if they are files
  /// Whether the address is, by its looks, that of such a library. Never throws.
  bool (*recognises)(const std::string& address, const FileService& files);
  /// Throws LibraryError.
  std::unique_ptr<MusicApplication> (*open)(const std::string& address,
                                            const ApplicationServices& services);
  /// The addresses of those that are where the application keeps its own.
  std::vector<std::string> (*found)(const ApplicationServices& services);
  Message kind;      ///< what one of its libraries is, in a word
  std::string icon;  ///< a drawing in resources/icons
};

}  // namespace kestrel
