#include "musicapp/folder/track_finder.h"

#include <filesystem>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include "foundation/collation.h"

namespace kestrel {
namespace {

/// The same for paths that differ in letter case or in the composition of accents alone.
std::string folded(const std::string& path) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* composing = icu::Normalizer2::getNFCInstance(status);
  icu::UnicodeString text = utf16(path);
  if (U_SUCCESS(status)) text = composing->normalize(text.foldCase(), status);
  std::string result;
  return text.toUTF8String(result);
}

}  // namespace

FolderLibrary::TrackFinder::TrackFinder(const MediaItems& items) {
  byPath_.reserve(items.size());
  byID_.reserve(items.size());
  items.forEach([&](const MediaItem& item) {
    byPath_.emplace(filePath(item), &item);
    byID_.emplace(item.persistentID, &item);
  });
}

const MediaItem* FolderLibrary::TrackFinder::track(std::uint64_t persistentID) const {
  const auto found = byID_.find(persistentID);
  return found == byID_.end() ? nullptr : found->second;
}

const MediaItem* FolderLibrary::TrackFinder::exactly(const std::string& path) const {
  const auto found = byPath_.find(path);
  return found == byPath_.end() ? nullptr : found->second;
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
    for (const auto& [trackPath, track] : byPath_)
      if (const auto [other, isOnly] = byFolded_->emplace(folded(trackPath), track); !isOnly)
        other->second = nullptr;
  }
  const auto found = byFolded_->find(folded(path));
  return found == byFolded_->end() ? nullptr : found->second;
}

}  // namespace kestrel
