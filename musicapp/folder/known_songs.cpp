#include "musicapp/folder/known_songs.h"

#include <exception>
#include <utility>

namespace kestrel {

KnownSongs::KnownSongs(AudioIndex& index, std::string folder, TextPool& texts,
                       const FileService& files, Log& log, const std::vector<std::string>& roots)
    : reading_([this, &index, folder = std::move(folder), &texts, &files, &log, &roots] {
        try {
          index.readKnown(folder, [&](AudioFile&& file, const AudioFacts* facts) {
            files_.push_back(std::move(file));
            MediaItem& item = items_.emplace_back();
            if (facts) fillItem(*facts, item, texts);
          });
          lists_ = std::make_unique<ListIndex>(files, log, roots);
        } catch (...) {
          problem_ = std::current_exception();
        }
      }) {}

void KnownSongs::wait() {
  if (reading_.joinable()) reading_.join();
  if (problem_) std::rethrow_exception(problem_);
}

std::optional<MediaItem> KnownSongs::take(const AudioFile& file) {
  while (next_ < files_.size() && files_[next_].path < file.path) ++next_;
  if (next_ == files_.size() || !(files_[next_] == file)) return std::nullopt;
  return std::move(items_[next_++]);
}

}  // namespace kestrel
