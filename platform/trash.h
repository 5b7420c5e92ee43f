/// The trash: where files go that can be had back.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/message.h"

namespace kestrel {

/// Something in the trash, with what it takes to bring it back.
struct TrashedItem {
  std::string originalPath;
  std::string trashedPath;
  std::string infoPath;  ///< the trash's own note about the item
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
  /// Moves each file, link or folder to the trash. One result a path, in order. Does not throw for
  /// what cannot be moved.
  virtual std::vector<TrashResult> recycle(std::span<const std::string> paths) = 0;
  /// Puts an item back, making the folders that it was in. Throws FileError, and leaves the item in
  /// the trash, when that fails or something else has taken its place.
  virtual void restore(const TrashedItem& item) = 0;
};

namespace TextManipulator {

/// Hands the last component of `path` to the trash, and that alone: deliberately not the full path,
/// so by itself this never removes a file of the library. Reports nothing. What is to be trashed
/// for good goes through `Trash::recycle` with full paths.
void sendToTrash(const std::string& path, Trash& trash);

}  // namespace TextManipulator
}  // namespace kestrel
