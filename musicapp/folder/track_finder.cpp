#include "musicapp/folder/track_finder.h"

#include <algorithm>
#include <filesystem>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include "foundation/collation.h"

namespace kestrel {
namespace {

/// The same for paths that differ in letter case or in the composition of accents alone.
std::string folded(std::string_view path) {
  std::string result(path);
  const bool isPlain = std::all_of(path.begin(), path.end(), [](char c) { return c > 0; });
  if (isPlain) {
    for (char& c : result)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return result;
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* composing = icu::Normalizer2::getNFCInstance(status);
  icu::UnicodeString text = utf16(path);
  if (U_SUCCESS(status)) text = composing->normalize(text.foldCase(), status);
  result.clear();
  return text.toUTF8String(result);
}

}  // namespace

FolderLibrary::TrackFinder::TrackFinder(const MediaItems& items) : items_(items) {
  byPath_.reserve(items.size());
  items.forEach([&](const MediaItem& item) { byPath_.insert(&item); });
}

const MediaItem* FolderLibrary::TrackFinder::track(std::uint64_t persistentID) {
  if (byID_.empty()) {
    byID_.reserve(items_.size());
    items_.forEach([&](const MediaItem& item) { byID_.emplace(item.persistentID, &item); });
  }
  const auto found = byID_.find(persistentID);
  return found == byID_.end() ? nullptr : found->second;
}

const MediaItem* FolderLibrary::TrackFinder::exactly(std::string_view path) const {
  const auto found = byPath_.find(Path(path));
  return found == byPath_.end() ? nullptr : *found;
}

const MediaItem* FolderLibrary::TrackFinder::at(const std::string& path) {
  if (const MediaItem* track = exactly(path)) return track;
  std::error_code error;
  const std::size_t slash = path.rfind('/');
  const auto [known, isNew] = realFolders_.try_emplace(path.substr(0, slash));
  if (isNew) known->second = std::filesystem::canonical(known->first, error).string();
  if (!known->second.empty()) {
    const std::string real = known->second + path.substr(slash);
    if (const MediaItem* track = exactly(real)) return track;
    if (std::filesystem::is_symlink(real, error))
      return exactly(std::filesystem::canonical(real, error).string());
  }
  if (!byFolded_) {
    byFolded_.emplace().reserve(byPath_.size());
    std::string_view last;  // whose songs stand together
    std::string folder;
    items_.forEach([&](const MediaItem& track) {
      if (track.locationFolder.view() != last || folder.empty()) {
        last = track.locationFolder.view();
        folder = folded(last) + '/';
      }
      const auto [other, isOnly] =
          byFolded_->emplace(folder + folded(track.locationName.view()), &track);
      if (!isOnly) other->second = nullptr;
    });
  }
  const auto found = byFolded_->find(folded(path));
  return found == byFolded_->end() ? nullptr : found->second;
}

}  // namespace kestrel
