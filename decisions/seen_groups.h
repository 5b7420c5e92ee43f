/// The groups that a search had found when the user last asked for what is new.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "library/result_track.h"
#include "platform/clock.h"

namespace kestrel {

class FileService;

/// A value.
class SeenGroups {
 public:
  /// Whether the group has a member that was not in one group with the others then.
  [[nodiscard]] bool isNew(std::span<const std::uint64_t> members) const;
  /// Adds a group; a track is in one at most.
  void add(std::span<const std::uint64_t> members);
  [[nodiscard]] std::string text(Moment when) const;
  /// Nothing for a text that is not such a list.
  static std::optional<SeenGroups> read(std::string_view text, Moment& when);

 private:
  std::unordered_map<std::uint64_t, std::uint32_t> groupOf_;
  std::uint32_t groups_ = 0;
};

/// Where the list is kept: a file in the state folder for each library and search. It can be lost
/// without harm: then all is new again.
class SeenGroupsFile {
 public:
  /// `search` says what is searched for, and where. `files` must outlive this.
  SeenGroupsFile(FileService& files, const std::string& libraryUri, const std::string& search);
  /// Nothing when there is none, or it cannot be read; else fills in when it was written.
  [[nodiscard]] std::optional<SeenGroups> load(Moment& when) const;
  /// Throws FileError.
  void save(const SeenGroups& groups, Moment when);

 private:
  FileService& files_;
  std::string folder_, path_;
};

}  // namespace kestrel
