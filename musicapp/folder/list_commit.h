/// Changing several playlist files together.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/library_commit.h"

namespace kestrel {

/// A playlist file that is to hold other bytes.
struct ListChange {
  std::string path;
  std::optional<FileStatus> expected;        ///< as it was read; nothing: no file is there
  std::optional<std::string> before, after;  ///< nothing: no file
  std::optional<FileStatus> status;          ///< once it is changed
};

/// Makes all of these changes, or none. All new files are written and kept back until `prepared`
/// returns; then each takes its place, and the earlier ones stay as numbered backups. Links stay,
/// and the files that they lead to are changed. A program that is ended meanwhile leaves each file
/// old or new. Throws LibraryError when one cannot be written or is not as it was read, and what
/// `prepared` throws. To be called by who holds the library's lock.
void commitLists(std::span<ListChange> changes, FileService& files, Log& log,
                 const CommitOptions& options, const std::function<void()>& prepared);

/// What takes such changes back, to the byte: written into the history before they take effect, so
/// its format (CBOR) stays readable. Files below `root` are named by their place in it.
std::string reversalOf(std::span<const ListChange> changes, const std::string& root);
/// The changes that take those back. Nothing unless the files are what they made of them.
std::optional<std::vector<ListChange>> changesBack(std::string_view reversal,
                                                   const std::string& root, FileService& files);

}  // namespace kestrel
