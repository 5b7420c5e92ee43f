#include "musicapp/audio/audio_facts.h"

#include <aifffile.h>
#include <algorithm>
#include <apefile.h>
#include <asffile.h>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fcntl.h>
#include <flacfile.h>
#include <iterator>
#include <mp4file.h>
#include <mpcfile.h>
#include <mpegfile.h>
#include <oggflacfile.h>
#include <opusfile.h>
#include <popularimeterframe.h>
#include <speexfile.h>
#include <string_view>
#include <sys/stat.h>
#include <tpropertymap.h>
#include <trueaudiofile.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <wavpackfile.h>

#include "foundation/utf8.h"
#include "musicapp/audio/opened_audio.h"

namespace kestrel {
namespace {

using std::string_view;

/// The ending behind the last point, in capitals.
std::string endingOf(string_view path) {
  const string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t point = name.rfind('.');
  std::string ending(point == string_view::npos ? "" : name.substr(point + 1));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return ending;
}

template <typename Kind>
bool is(const TagLib::File& file) {
  return dynamic_cast<const Kind*>(&file) != nullptr;
}

/// The kinds of files in the words of music applications: keeper rules and filters know them.
constexpr std::pair<bool (*)(const TagLib::File&), const char*> kinds[] = {
    {is<TagLib::MPEG::File>, "MPEG audio file"},
    {is<TagLib::RIFF::AIFF::File>, "AIFF audio file"},
    {is<TagLib::RIFF::WAV::File>, "WAV audio file"},
    {is<TagLib::FLAC::File>, "FLAC audio file"},
    {is<TagLib::Ogg::FLAC::File>, "FLAC audio file"},
    {is<TagLib::Ogg::Vorbis::File>, "Ogg Vorbis audio file"},
    {is<TagLib::Ogg::Opus::File>, "Opus audio file"},
    {is<TagLib::Ogg::Speex::File>, "Speex audio file"},
    {is<TagLib::WavPack::File>, "WavPack audio file"},
    {is<TagLib::APE::File>, "Monkey's Audio file"},
    {is<TagLib::MPC::File>, "Musepack audio file"},
    {is<TagLib::ASF::File>, "Windows Media audio file"},
    {is<TagLib::TrueAudio::File>, "TTA audio file"}};

std::string kindOf(const TagLib::File& file, const std::string& path) {
  if (const auto* mp4 = dynamic_cast<const TagLib::MP4::File*>(&file))
    return mp4->audioProperties()->codec() == TagLib::MP4::Properties::ALAC
               ? "Apple Lossless audio file"
               : "AAC audio file";
  for (const auto& [isIt, kind] : kinds)
    if (isIt(file)) return kind;
  return endingOf(path) + " audio file";
}

std::int64_t leadingNumber(string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && number > 0 ? number : 0;
}

/// Reads tags by the names that TagLib gives to those of every format.
class Tags {
 public:
  explicit Tags(TagLib::PropertyMap map) : map_(std::move(map)) {}

  /// Of the first of these names that has a value. Programs differ in how they call a thing.
  [[nodiscard]] std::string text(std::initializer_list<const char*> names) const {
    for (const char* name : names) {
      const auto found = map_.find(name);
      if (found == map_.end()) continue;
      if (std::string value = found->second.toString(", ").to8Bit(true); !value.empty())
        return writableText(value);
    }
    return {};
  }
  /// The digits that a text starts with, as in "3/12".
  [[nodiscard]] std::int64_t number(std::initializer_list<const char*> names) const {
    return leadingNumber(text(names));
  }
  /// A number, and how many there are: behind its slash, or under names of its own.
  void place(std::initializer_list<const char*> names, std::initializer_list<const char*> totals,
             std::int64_t& number, std::int64_t& count) const {
    const std::string value = text(names);
    const std::size_t slash = value.find('/');
    number = leadingNumber(value);
    count = slash == std::string::npos ? this->number(totals)
                                       : leadingNumber(string_view(value).substr(slash + 1));
  }
  /// The fraction of a name that may have an address of its user behind it, as in "RATING:me@home".
  [[nodiscard]] std::string textOfAnyUser(const char* name) const {
    if (std::string value = text({name}); !value.empty()) return value;
    const TagLib::String prefix = TagLib::String(name) + ":";
    for (const auto& [key, values] : map_)
      if (key.startsWith(prefix) && !values.isEmpty()) return values.front().to8Bit(true);
    return {};
  }

 private:
  TagLib::PropertyMap map_;
};

/// The year of "1999", "1999-05-01" and "19990501".
std::int64_t yearOf(const std::string& date) {
  return leadingNumber(string_view(date).substr(0, 4));
}

std::int64_t percent(const std::string& fraction) {
  double value = 0;
  std::from_chars(fraction.data(), fraction.data() + fraction.size(), value);
  return std::clamp<std::int64_t>(std::llround(value * 100), 0, 100);
}

/// Stars by what players write into a byte: 1, 64, 128, 196 and 255, and what lies near.
std::int64_t ratingOfByte(int byte) {
  constexpr int starts[] = {1, 32, 96, 160, 224};
  return 20 * (std::upper_bound(std::begin(starts), std::end(starts), byte) - starts);
}

/// The rating of a text: a fraction, stars, or a hundredth.
std::int64_t ratingOfText(const std::string& text) {
  if (text.find('.') != std::string::npos) return percent(text);
  const std::int64_t number = std::min<std::int64_t>(leadingNumber(text), 100);
  return number <= 5 ? number * 20 : number;
}

void readRating(TagLib::File& file, const Tags& tags, AudioFacts& facts) {
  if (const TagLib::ID3v2::Tag* id3 = id3v2Of(file))
    for (const TagLib::ID3v2::Frame* frame : id3->frameList("POPM"))
      if (const auto* found = dynamic_cast<const TagLib::ID3v2::PopularimeterFrame*>(frame)) {
        facts.rating = std::max(facts.rating, ratingOfByte(found->rating()));
        facts.playCount = std::max<std::int64_t>(facts.playCount, found->counter());
      }
  if (const auto* asf = dynamic_cast<const TagLib::ASF::File*>(&file); asf && asf->tag()) {
    // 1, 25, 50, 75 and 99 are its stars.
    const auto& values = asf->tag()->attributeListMap()["WM/SharedUserRating"];
    if (!values.isEmpty() && values.front().toUInt() > 0)
      facts.rating = std::min<std::int64_t>(20 * ((values.front().toUInt() + 12) / 25 + 1), 100);
  }
  if (const std::string fraction = tags.text({"FMPS_RATING"}); !fraction.empty())
    facts.rating = percent(fraction);
  else if (const std::string text = tags.textOfAnyUser("RATING"); !text.empty())
    facts.rating = ratingOfText(text);
  if (const std::int64_t plays = tags.number({"FMPS_PLAYCOUNT", "PLAYCOUNT", "PLAY_COUNT"}))
    facts.playCount = plays;
}

/// Of the kinds that have whole samples.
template <typename Properties>
int depthOf(const TagLib::AudioProperties& audio) {
  const auto* known = dynamic_cast<const Properties*>(&audio);
  return known ? known->bitsPerSample() : 0;
}
constexpr int (*depths[])(const TagLib::AudioProperties&) = {
    depthOf<TagLib::FLAC::Properties>,       depthOf<TagLib::RIFF::WAV::Properties>,
    depthOf<TagLib::RIFF::AIFF::Properties>, depthOf<TagLib::MP4::Properties>,
    depthOf<TagLib::WavPack::Properties>,    depthOf<TagLib::APE::Properties>,
    depthOf<TagLib::TrueAudio::Properties>};

std::int64_t birthOf(const std::string& path) {
  struct statx info {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME | STATX_MTIME, &info) != 0) return 0;
  return info.stx_mask & STATX_BTIME ? info.stx_btime.tv_sec : info.stx_mtime.tv_sec;
}

}  // namespace

bool isAudioName(string_view name) noexcept {
  static constexpr string_view endings[] = {
      "MP3", "M4A",  "M4B", "M4P",  "M4R", "MP4", "3G2", "FLAC", "OGG", "OGA", "OPUS", "SPX",
      "WAV", "AIFF", "AIF", "AIFC", "AFC", "WV",  "APE", "MPC",  "WMA", "ASF", "TTA"};
  const std::size_t point = name.rfind('.');
  if (point == string_view::npos || point == 0) return false;
  const string_view ending = name.substr(point + 1);
  return std::any_of(std::begin(endings), std::end(endings), [&](string_view known) {
    return std::equal(known.begin(), known.end(), ending.begin(), ending.end(), [](char a, char b) {
      return a == (b >= 'a' && b <= 'z' ? static_cast<char>(b - 32) : b);
    });
  });
}

const TagLib::ID3v2::Tag* id3v2Of(TagLib::File& file) {
  if (auto* mpeg = dynamic_cast<TagLib::MPEG::File*>(&file)) return mpeg->ID3v2Tag();
  if (auto* wav = dynamic_cast<TagLib::RIFF::WAV::File*>(&file)) return wav->ID3v2Tag();
  if (auto* aiff = dynamic_cast<TagLib::RIFF::AIFF::File*>(&file)) return aiff->tag();
  if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(&file)) return flac->ID3v2Tag();
  if (auto* tta = dynamic_cast<TagLib::TrueAudio::File*>(&file)) return tta->ID3v2Tag();
  return nullptr;
}

bool hasPlayingTime(const std::string& path) {
  const OpenedAudio opened(path);
  return opened.properties() && opened.properties()->lengthInMilliseconds() > 0;
}

std::optional<AudioFacts> readAudioFacts(const std::string& path) {
  const OpenedAudio opened(path);
  const TagLib::AudioProperties* audio = opened.properties();
  // Whatever is called ".mp3" opens as one; what is none has no frame and so no rates.
  if (!audio || audio->sampleRate() <= 0) return std::nullopt;

  AudioFacts facts;
  facts.milliseconds = audio->lengthInMilliseconds();
  facts.bitrate = audio->bitrate();
  facts.sampleRate = audio->sampleRate();
  facts.channels = audio->channels();
  for (const auto depth : depths)
    facts.sampleDepth = std::max<std::int64_t>(facts.sampleDepth, depth(*audio));
  facts.hasCover = hasEmbeddedCover(*opened.file()) ? 1 : 0;
  facts.kind = writableText(kindOf(*opened.file(), path));
  facts.added = birthOf(path);

  const Tags tags(opened.file()->properties());
  facts.title = tags.text({"TITLE"});
  facts.artist = tags.text({"ARTIST"});
  facts.albumArtist = tags.text({"ALBUMARTIST", "ALBUM ARTIST"});
  facts.album = tags.text({"ALBUM"});
  facts.composer = tags.text({"COMPOSER"});
  facts.genre = tags.text({"GENRE"});
  facts.comments = tags.text({"COMMENT", "DESCRIPTION"});
  facts.grouping = tags.text({"GROUPING", "CONTENTGROUP"});
  // One frame of ID3v2 was for groupings before it was for works.
  if (facts.grouping.empty() && tags.text({"MOVEMENTNAME", "MOVEMENT"}).empty())
    facts.grouping = tags.text({"WORK"});
  facts.year = yearOf(tags.text({"DATE", "YEAR"}));
  facts.beatsPerMinute = tags.number({"BPM", "TBPM"});
  tags.place({"TRACKNUMBER"}, {"TRACKTOTAL", "TOTALTRACKS"}, facts.trackNumber, facts.trackCount);
  tags.place({"DISCNUMBER"}, {"DISCTOTAL", "TOTALDISCS"}, facts.discNumber, facts.discCount);
  const std::string compilation = tags.text({"COMPILATION", "TCMP", "ITUNESCOMPILATION"});
  facts.isCompilation = compilation == "1" || compilation == "true" ? 1 : 0;
  readRating(*opened.file(), tags, facts);
  return facts;
}

void fillItem(const AudioFacts& facts, MediaItem& item, TextPool& texts) {
  for (const TextFact& text : textFacts)
    if (!(facts.*text.fact).empty()) item.*text.item = texts.share(facts.*text.fact);
  for (const NumberFact& number : numberFacts) number.set(item, facts.*number.fact);
}

void setLocation(const std::string& path, MediaItem& item, TextPool& texts) {
  const std::size_t slash = path.rfind('/');
  item.locationType = LocationType::file;
  item.locationFolder = texts.share(slash == std::string::npos ? "" : path.substr(0, slash));
  item.locationName = texts.add(string_view(path).substr(slash + 1));
}

}  // namespace kestrel
