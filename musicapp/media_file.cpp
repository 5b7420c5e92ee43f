#include "musicapp/media_file.h"

#include <aifffile.h>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <fileref.h>
#include <filesystem>
#include <flacfile.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <opusfile.h>
#include <string_view>
#include <tfilestream.h>
#include <tpropertymap.h>
#include <vorbisfile.h>
#include <wavfile.h>

#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::string_view;

/// The kind of a file, in the words of music applications: keeper rules and filters know them.
std::string kindOf(const TagLib::File& file, string_view name) {
  if (dynamic_cast<const TagLib::MPEG::File*>(&file)) return "MPEG audio file";
  if (const auto* mp4 = dynamic_cast<const TagLib::MP4::File*>(&file))
    return mp4->audioProperties()->codec() == TagLib::MP4::Properties::ALAC
               ? "Apple Lossless audio file"
               : "AAC audio file";
  if (dynamic_cast<const TagLib::RIFF::AIFF::File*>(&file)) return "AIFF audio file";
  if (dynamic_cast<const TagLib::RIFF::WAV::File*>(&file)) return "WAV audio file";
  if (dynamic_cast<const TagLib::FLAC::File*>(&file)) return "FLAC audio file";
  if (dynamic_cast<const TagLib::Ogg::Vorbis::File*>(&file)) return "Ogg Vorbis audio file";
  if (dynamic_cast<const TagLib::Ogg::Opus::File*>(&file)) return "Opus audio file";
  std::string extension(name.substr(std::min(name.rfind('.'), name.size() - 1) + 1));
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return extension + " audio file";
}

/// Reads tags by the names that TagLib gives to those of every format.
class Tags {
 public:
  Tags(const TagLib::PropertyMap& map, TextPool& pool) : map_(map), pool_(pool) {}

  [[nodiscard]] std::string text(const char* name) const {
    const TagLib::StringList& values = map_[name];
    return values.isEmpty() ? std::string() : writableText(values.front().to8Bit(true));
  }
  void take(const char* name, Text& target) const {
    if (const std::string value = text(name); !value.empty()) target = pool_.add(value);
  }
  /// The digits that a text starts with, as in "3/12" or "1999-05-01"; and those behind a slash.
  template <typename Stored>
  void take(const char* name, Held<Stored>& target, Held<std::int16_t>* count = nullptr) const {
    const std::string value = text(name);
    target = leadingNumber(value);
    const std::size_t slash = value.find('/');
    if (count && slash != std::string::npos) *count = leadingNumber(value.substr(slash + 1));
  }

 private:
  static std::int64_t leadingNumber(const std::string& text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && number > 0 ? number : 0;
  }

  TagLib::PropertyMap map_;
  TextPool& pool_;
};

/// An audio file as TagLib reads it: never written to, and nothing but a regular file, since a pipe
/// would wait for its writer.
class OpenedAudio {
 public:
  explicit OpenedAudio(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return;
    stream_.emplace(path.c_str(), true);
    if (stream_->isOpen()) reference_ = TagLib::FileRef(&*stream_);
  }
  [[nodiscard]] const TagLib::File* file() const {
    return !reference_.isNull() && reference_.file()->isValid() ? reference_.file() : nullptr;
  }
  [[nodiscard]] const TagLib::AudioProperties* properties() const {
    return file() ? reference_.audioProperties() : nullptr;
  }

 private:
  std::optional<TagLib::FileStream> stream_;
  TagLib::FileRef reference_;
};

}  // namespace

bool hasPlayingTime(const std::string& path) {
  const OpenedAudio opened(path);
  return opened.properties() && opened.properties()->lengthInMilliseconds() > 0;
}

std::optional<MediaFile> readMediaFile(const std::string& path) {
  const OpenedAudio opened(path);
  const TagLib::AudioProperties* audio = opened.properties();
  // Whatever is called ".mp3" opens as one; what is none has no frame and so no rates.
  if (!audio || audio->sampleRate() <= 0) return std::nullopt;
  const TagLib::File* file = opened.file();

  MediaFile media;
  MediaItem& item = media.item;
  item.totalTime = audio->lengthInMilliseconds();
  item.bitrate = audio->bitrate();
  item.sampleRate = audio->sampleRate();

  const Tags tags(file->properties(), media.texts);
  tags.take("TITLE", item.title);
  tags.take("ARTIST", item.artist);
  tags.take("ALBUMARTIST", item.albumArtist);
  tags.take("ALBUM", item.album);
  tags.take("COMPOSER", item.composer);
  tags.take("GENRE", item.genre);
  tags.take("GROUPING", item.grouping);
  tags.take("COMMENT", item.comments);
  tags.take("DATE", item.year);
  tags.take("BPM", item.beatsPerMinute);
  tags.take("TRACKNUMBER", item.trackNumber, &item.trackCount);
  tags.take("DISCNUMBER", item.discNumber, &item.discCount);
  item.isCompilation = tags.text("COMPILATION") == "1";

  const std::size_t slash = path.rfind('/');
  const string_view name = string_view(path).substr(slash + 1);
  if (item.title.isNull())
    item.title = media.texts.add(writableText(name.substr(0, name.rfind('.'))));
  item.kind = media.texts.add(writableText(kindOf(*file, name)));
  item.locationType = LocationType::file;
  item.locationFolder = media.texts.add(slash == std::string::npos ? "" : path.substr(0, slash));
  item.locationName = media.texts.add(name);
  return media;
}

}  // namespace kestrel
