/// An audio file as TagLib reads it, for this folder.
#pragma once

#include <fileref.h>
#include <filesystem>
#include <id3v2tag.h>
#include <optional>
#include <string>
#include <tfilestream.h>

namespace kestrel {

/// Never written to, and nothing but a regular file, since a pipe would wait for its writer.
class OpenedAudio {
 public:
  explicit OpenedAudio(const std::string& path, bool withProperties = true) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return;
    stream_.emplace(path.c_str(), true);
    if (stream_->isOpen()) reference_ = TagLib::FileRef(&*stream_, withProperties);
  }
  /// nullptr when it cannot be read.
  [[nodiscard]] TagLib::File* file() const {
    return !reference_.isNull() && reference_.file()->isValid() ? reference_.file() : nullptr;
  }
  [[nodiscard]] const TagLib::AudioProperties* properties() const {
    return file() ? reference_.audioProperties() : nullptr;
  }

 private:
  std::optional<TagLib::FileStream> stream_;
  TagLib::FileRef reference_;
};

/// Whether there is a picture within the file (cover.h).
bool hasEmbeddedCover(TagLib::File& file);

/// nullptr when the file has none.
const TagLib::ID3v2::Tag* id3v2Of(TagLib::File& file);

}  // namespace kestrel
