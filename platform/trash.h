/// The trash: where files go that can be had back.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/message.h"

namespace kestrel {

class Clock;

/// A place in the trash and what is, or is to be, in it: what it takes to bring that back.
struct TrashedItem {
  std::string originalPath;
  std::string trashedPath;  ///< empty while no place is known
  std::string infoPath;     ///< the trash's own note about the item
  friend bool operator==(const TrashedItem&, const TrashedItem&) = default;
};

/// What became of one path.
struct TrashResult {
  std::string path;                 ///< as it was given
  std::optional<TrashedItem> item;  ///< nothing when it was not moved
  Message problem;                  ///< then why, as a sentence with path and remedy
};

class Trash {
 public:
  virtual ~Trash() = default;
  /// Claims a place for a file, link or folder and writes its note; nothing is moved yet, so that
  /// the place can be written down before. Throws FileError.
  virtual TrashedItem reserve(const std::string& path) = 0;
  /// Moves it to its place. Throws FileError, and gives the place up, when that fails.
  virtual void move(const TrashedItem& item) = 0;
  /// Gives up a place in which nothing lies: removes its note, which is looked for when only the
  /// original path is known. Returns false, and does not throw, when the trash cannot be reached.
  virtual bool release(const TrashedItem& item) = 0;
  /// Puts an item back, making the folders that it was in. Throws FileError, and leaves the item in
  /// the trash, when that fails or something else has taken its place.
  virtual void restore(const TrashedItem& item) = 0;

  /// Reserves and moves each path. One result a path, in order. Does not throw for what cannot be
  /// moved.
  std::vector<TrashResult> recycle(std::span<const std::string> paths);
};

/// The trash of freedesktop.org's desktops, so that file managers show what is in it and can bring
/// it back: one in the user's data folder, and one at the top of every other volume, because
/// nothing is ever copied.
///
/// Nothing in the trash is ever overwritten: names that are taken get a number. Paths must be
/// absolute, so that the folder in which a program happens to run does not matter. From any thread.
class FreedesktopTrash final : public Trash {
 public:
  /// `dataFolder` is the user's folder for data, if there is one; its "Trash" need not exist.
  FreedesktopTrash(const Clock& clock, std::optional<std::string> dataFolder);

  TrashedItem reserve(const std::string& path) override;
  void move(const TrashedItem& item) override;
  bool release(const TrashedItem& item) override;
  void restore(const TrashedItem& item) override;

 private:
  /// A trash folder, and the folder that paths in it are relative to ("/" for the user's own).
  struct Bin {
    std::string folder;
    std::string top;
  };

  [[nodiscard]] Bin binFor(const std::string& path) const;
  TrashedItem reserveIn(const Bin& bin, const std::string& path);

  const Clock& clock_;
  std::optional<std::string> dataFolder_;
  std::mutex mutex_;
  /// The last number given to a name in a bin: a thousand files of one name must not each try all
  /// numbers before theirs.
  std::map<std::string, int> lastNumbers_;
};

}  // namespace kestrel
