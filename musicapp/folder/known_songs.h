/// The songs of a folder as the index knows them from earlier readings, read from it while the
/// folder is walked.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "musicapp/audio/audio_index.h"
#include "musicapp/folder/list_index.h"
#include "musicapp/media_library.h"

namespace kestrel {

class KnownSongs {
 public:
  /// Begins to read what is known of the folder, and of the lists below `roots`, on a thread of its
  /// own. All must outlive this; index and texts are not to be used before `wait`.
  KnownSongs(AudioIndex& index, std::string folder, TextPool& texts, const FileService& files,
             Log& log, const std::vector<std::string>& roots);
  ~KnownSongs() = default;  // waits too
  KnownSongs(const KnownSongs&) = delete;
  KnownSongs& operator=(const KnownSongs&) = delete;

  /// Until all is read. Throws what reading has thrown.
  void wait();
  /// What is known of a file in this state: an item, without its place, or that it has no audio,
  /// which is an item without a kind. Nothing of others. To be asked for in order of paths, of each
  /// file once.
  std::optional<MediaItem> take(const AudioFile& file);
  [[nodiscard]] std::unique_ptr<ListIndex> takeLists() { return std::move(lists_); }

 private:
  std::vector<AudioFile> files_;  ///< by path
  std::vector<MediaItem> items_;
  std::unique_ptr<ListIndex> lists_;
  std::exception_ptr problem_;
  std::size_t next_ = 0;
  std::jthread reading_;
};

}  // namespace kestrel
