/// What keeper rules and reports ask of files, as no library says it: how the samples are kept, and
/// whether there is a cover.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "musicapp/load_watch.h"

namespace kestrel {

class FileService;
class Log;

/// Answers come from the audio index: a file is opened once, until it changes. Callable from any
/// thread. `prepare` asks for many files in one go, with all cores; what was not prepared is looked
/// up on its own.
class FileAnswers {
 public:
  /// Both must outlive this.
  FileAnswers(const FileService& files, Log& log) : files_(files), log_(log) {}

  struct Sound {
    std::int64_t bitDepth = 0;  ///< of a sample; 0 where the format has none
    std::int64_t channels = 0;
  };
  void prepare(std::span<const std::string> paths, const LoadWatch& watch = {});
  /// Nothing where there is no audio file that can be read.
  std::optional<Sound> soundOf(const std::string& path);
  /// Within the file, or beside it (cover.h). Likewise.
  std::optional<bool> hasCover(const std::string& path);

 private:
  struct Known {
    Sound sound;
    bool isThere = false, hasCover = false;
  };
  Known known(const std::string& path);
  void look(std::span<const std::string> paths, const LoadWatch& watch);

  const FileService& files_;
  Log& log_;
  std::mutex mutex_;
  std::unordered_map<std::string, Known> known_;
  std::unordered_map<std::string, bool> coverIn_;  ///< by folder
};

}  // namespace kestrel
