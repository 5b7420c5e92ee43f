/// Where the files of a library are on this machine, when it comes from another one: pairs of an
/// old and a new beginning of paths.
///
/// A library that was opened with maps says of its items where their files are here, so that all
/// that touches a file is right without asking, and keeps the locations that it has beside that:
/// they are what records and the document say.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kestrel {

class FileService;
class MediaItems;

/// Immutable; callable from any thread.
class PathMaps {
 public:
  struct Map {
    std::string from;  ///< a folder as locations name it; see `pathOfLocation`
    std::string to;    ///< a folder of this machine
    friend bool operator==(const Map&, const Map&) = default;
  };

  PathMaps() = default;
  /// Beginnings may be written as people do, with slashes at the end. Of two for one beginning the
  /// later one counts.
  explicit PathMaps(std::vector<Map> maps);

  [[nodiscard]] bool empty() const noexcept { return maps_.empty(); }
  /// The longest beginnings first.
  [[nodiscard]] const std::vector<Map>& list() const noexcept { return maps_; }
  /// The map whose beginning is the longest that `path` has, and the rest of the path, which begins
  /// with a slash or is empty; nullptr when there is none. Whole names only; letter case and the
  /// way accents are composed do not count where no beginning fits exactly.
  [[nodiscard]] const Map* of(std::string_view path, std::string_view& rest) const;

 private:
  std::vector<Map> maps_;
};

/// A folder or file of another machine in the form that paths of a library have, with slashes and
/// none at the end: "C:\Music\" is "/C:/Music", "\\server\share" is "//server/share"; file URLs are
/// decoded.
std::string pathOfLocation(std::string_view text);
/// The same as people write it: without the slash before a drive, the root of all with one.
std::string_view shownLocation(std::string_view path) noexcept;

/// Files of mapped paths as the disk has them. Remembers what it has seen of the disk: make one for
/// a pass over a library. `maps` and `files` must outlive it. Throws nothing of its own: what
/// cannot be listed is empty.
class MappedFiles {
 public:
  MappedFiles(const PathMaps& maps, const FileService& files) : maps_(maps), files_(files) {}

  struct Folder {
    std::string path;      ///< by its mapped name where it is not there; empty: no map is for it
    bool isThere = false;  ///< and then by the name that the disk has
    /// The others whose paths differ from the location in letter case or composed accents alone;
    /// not looked for until there is a need.
    mutable std::optional<std::vector<std::string>> others = {};
  };
  /// Where the folder of a location is. The reference stays valid.
  const Folder& folder(std::string_view location);
  /// A file in such a folder.
  struct File {
    const std::string* folder;  ///< the folder's own, or one of the others; valid as that is
    std::string name;
  };
  /// Where the file of a location is; nothing where no map leads to one. One that differs in letter
  /// case or composed accents alone will do, several do not. `here`: the location's folder.
  std::optional<File> file(std::string_view location, const Folder& here);
  /// The path of the file of a location; nothing when no map leads to one.
  std::optional<std::string> find(std::string_view location);

 private:
  /// Names by how they compare.
  using Names = std::unordered_map<std::string, std::vector<std::string>>;
  const Names& namesIn(const std::string& folder);
  std::optional<std::string> name(const std::string& folder, std::string_view name);
  Folder resolved(std::string_view location);
  const std::vector<std::string>& othersOf(std::string_view location, const Folder& here);

  const PathMaps& maps_;
  const FileService& files_;
  std::unordered_map<std::string, Folder> folders_;    ///< by location
  std::unordered_map<std::string, Names> names_;       ///< by path
  std::unordered_map<std::string, std::string> real_;  ///< folders by mapped path; empty: none
  std::string path_;
};

/// Gives all items of files the paths that they have here. One whose file is not found gets its
/// mapped path, unless there is a file at its location as it stands.
void mapLocations(MediaItems& items, const PathMaps& maps, const FileService& files);

}  // namespace kestrel
