#include "musicapp/folder/folder_walk.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <utility>

#include "foundation/collation.h"
#include "musicapp/folder/playlist_file.h"
#include "platform/descriptor.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// How hidden files begin that are to take the place of playlists (list_commit.cpp).
constexpr string_view ownPrefix = ".kestrel-";

bool isPassedOver(string_view name) {
  static constexpr string_view kept[] = {"$RECYCLE.BIN", "RECYCLER", "System Volume Information",
                                         "lost+found",   "#recycle", "@eaDir",
                                         "@Recycle"};
  return name.starts_with('.') ||
         std::any_of(std::begin(kept), std::end(kept), [&](string_view own) {
           return own.size() == name.size() && sameIgnoringCase(own, name);
         });
}

class Walk {
 public:
  Walk(const std::string& root, const std::vector<std::string>& roots, const LoadWatch& watch)
      : roots_(roots), watch_(watch), open_{root} {}

  FolderListing carryOut(size_t mostEntries = SIZE_MAX) {
    while (!open_.empty() && entries_ < mostEntries) {
      if (watch_.cancelled && watch_.cancelled()) {
        contents_.isCancelled = true;
        break;
      }
      const std::string folder = std::move(open_.back());
      open_.pop_back();
      list(folder);
      if (mostEntries != SIZE_MAX && !contents_.audio.empty()) break;
    }
    std::sort(contents_.audio.begin(), contents_.audio.end(),
              [](const AudioFile& a, const AudioFile& b) { return a.path < b.path; });
    std::sort(contents_.lists.begin(), contents_.lists.end());
    std::sort(contents_.folders.begin(), contents_.folders.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::sort(contents_.withLeftovers.begin(), contents_.withLeftovers.end());
    std::sort(links_.begin(), links_.end());
    for (const auto& [link, target] : links_)
      if (lists_.insert(target).second) contents_.lists.push_back(link);
    return std::move(contents_);
  }

 private:
  void list(const std::string& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.c_str()), ::closedir);
    if (!stream) return contents_.closed.push_back(folder);
    // As it is before it is read: what comes in meanwhile shows.
    struct stat own {};
    if (::fstat(::dirfd(stream.get()), &own) == 0)
      contents_.folders.emplace_back(folder, fileStatus(own));
    while (const dirent* entry = ::readdir(stream.get())) {
      const string_view name = entry->d_name;
      ++entries_;
      if (name.starts_with(ownPrefix) &&
          (contents_.withLeftovers.empty() || contents_.withLeftovers.back() != folder))
        contents_.withLeftovers.push_back(folder);
      if (isPassedOver(name)) continue;
      const bool isAudio = isAudioName(name), isList = !isAudio && PlaylistFile::isName(name);
      if (entry->d_type == DT_REG && !isAudio && !isList) continue;
      std::string path = folder == "/" ? "/" : folder + "/";
      path += name;
      if (entry->d_type == DT_DIR) {
        open_.push_back(std::move(path));
        continue;
      }
      struct stat info {};
      if (::fstatat(::dirfd(stream.get()), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
        contents_.closed.push_back(std::move(path));
      else if (S_ISDIR(info.st_mode))
        open_.push_back(std::move(path));
      else if (S_ISLNK(info.st_mode))
        follow(path, isList);
      else if (S_ISREG(info.st_mode) && isAudio)
        contents_.audio.push_back({std::move(path), static_cast<std::uint64_t>(info.st_size),
                                   fileStatus(info).modified.time_since_epoch().count(),
                                   info.st_ino});
      else if (S_ISREG(info.st_mode) && isList && lists_.insert(path).second) {
        contents_.listStates.emplace(path, fileStatus(info));
        contents_.lists.push_back(std::move(path));
      }
    }
  }

  void follow(const std::string& link, bool isList) {
    std::error_code error;
    std::string target = std::filesystem::canonical(link, error).string();
    if (error) return;  // leads nowhere
    const bool isInside = std::any_of(roots_.begin(), roots_.end(), [&](const std::string& root) {
      return liesIn(target, root);
    });
    if (!isInside)
      ++contents_.linksOut;
    else if (isList && std::filesystem::is_regular_file(target, error))
      links_.emplace_back(link, std::move(target));
  }

  const std::vector<std::string>& roots_;
  const LoadWatch& watch_;
  std::vector<std::string> open_;
  FolderListing contents_;
  std::set<std::string> lists_;                             ///< real paths
  std::vector<std::pair<std::string, std::string>> links_;  ///< to lists, and where they lead
  size_t entries_ = 0;
};

}  // namespace

bool liesIn(string_view path, string_view folder) noexcept {
  return path.starts_with(folder) &&
         (path.size() == folder.size() || folder == "/" || path[folder.size()] == '/');
}

FolderListing walkFolder(const std::string& root, const std::vector<std::string>& roots,
                         const LoadWatch& watch) {
  return Walk(root, roots, watch).carryOut();
}

bool hasAudioBelow(const std::string& root) {
  constexpr size_t mostEntries = 20'000;
  return !Walk(root, {root}, {}).carryOut(mostEntries).audio.empty();
}

}  // namespace kestrel
