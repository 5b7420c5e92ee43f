#include "musicapp/rhythmbox/player_tracks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <exception>
#include <libintl.h>
#include <locale.h>
#include <thread>
#include <utility>
#include <vector>

#include "musicapp/file_url.h"
#include "musicapp/rhythmbox/xml_events.h"

namespace kestrel::rhythmbox {
namespace {

using std::string_view;

constexpr string_view rootElement = "rhythmdb";

/// What the player writes where a file has no tag: the word of the language that it ran in.
std::string wordForUnknown() {
  const locale_t users = ::newlocale(LC_MESSAGES_MASK, "", nullptr);
  if (!users) return "Unknown";
  const locale_t before = ::uselocale(users);
  std::string word = ::dgettext("rhythmbox", "Unknown");
  ::uselocale(before);
  ::freelocale(users);
  return word;
}

/// The kind of a file in the words of music applications, which keeper rules and filters know.
string_view kindOf(string_view mediaType) {
  static constexpr std::pair<string_view, string_view> kinds[] = {
      {"audio/mpeg", "MPEG audio file"},
      {"application/x-id3", "MPEG audio file"},
      {"audio/x-m4a", "AAC audio file"},
      {"audio/mp4", "AAC audio file"},
      {"audio/aac", "AAC audio file"},
      {"audio/x-alac", "Apple Lossless audio file"},
      {"audio/flac", "FLAC audio file"},
      {"audio/x-flac", "FLAC audio file"},
      {"audio/ogg", "Ogg Vorbis audio file"},
      {"audio/x-vorbis", "Ogg Vorbis audio file"},
      {"application/ogg", "Ogg Vorbis audio file"},
      {"audio/x-opus", "Opus audio file"},
      {"audio/x-wav", "WAV audio file"},
      {"audio/x-aiff", "AIFF audio file"}};
  const auto* found = std::find_if(std::begin(kinds), std::end(kinds),
                                   [&](const auto& kind) { return kind.first == mediaType; });
  return found == std::end(kinds) ? mediaType : found->second;
}

double realOf(string_view text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value > -9e15 && value < 9e15 ? value : 0;
}
std::int64_t numberOf(string_view text) { return std::llround(realOf(text)); }

/// From the days since the first of the year 1; 0 is no date.
std::int64_t yearOf(std::int64_t day) {
  using namespace std::chrono;
  constexpr std::int64_t last = 3'652'059;  // of the year 9999
  if (day <= 0 || day > last) return 0;
  const sys_days date = sys_days(year(1) / January / 1) + days(day - 1);
  return static_cast<int>(year_month_day(date).year());
}

}  // namespace

/// An element of an entry, and what it is for.
struct Field {
  enum class Sort : std::uint8_t { own, shared, tag, number, date, year, kind, location };
  string_view name;
  Sort sort;
  Text MediaItem::*textTarget = nullptr;
  void (*setNumber)(MediaItem&, double) = nullptr;
  OptionalDate MediaItem::*dateTarget = nullptr;
};

namespace {

template <auto target, int factor = 1>
constexpr Field number(string_view name) {
  return {name, Field::Sort::number, nullptr,
          [](MediaItem& item, double value) { item.*target = std::llround(value * factor); },
          nullptr};
}
constexpr Field text(string_view name, Text MediaItem::*target, Field::Sort sort) {
  return {name, sort, target, nullptr, nullptr};
}
constexpr Field date(string_view name, OptionalDate MediaItem::*target) {
  return {name, Field::Sort::date, nullptr, nullptr, target};
}

// By name, for a binary search.
constexpr std::array fields{text("album", &MediaItem::album, Field::Sort::tag),
                            text("album-artist", &MediaItem::albumArtist, Field::Sort::tag),
                            text("artist", &MediaItem::artist, Field::Sort::tag),
                            number<&MediaItem::beatsPerMinute>("beats-per-minute"),
                            number<&MediaItem::bitrate>("bitrate"),
                            text("comment", &MediaItem::comments, Field::Sort::shared),
                            text("composer", &MediaItem::composer, Field::Sort::tag),
                            Field{"date", Field::Sort::year},
                            number<&MediaItem::discNumber>("disc-number"),
                            number<&MediaItem::discCount>("disc-total"),
                            number<&MediaItem::totalTime, 1000>("duration"),
                            number<&MediaItem::fileSize>("file-size"),
                            date("first-seen", &MediaItem::added),
                            text("genre", &MediaItem::genre, Field::Sort::tag),
                            date("last-played", &MediaItem::lastPlayed),
                            Field{"location", Field::Sort::location},
                            Field{"media-type", Field::Sort::kind},
                            date("mtime", &MediaItem::modified),
                            number<&MediaItem::playCount>("play-count"),
                            number<&MediaItem::rating, 20>("rating"),
                            text("title", &MediaItem::title, Field::Sort::own),
                            number<&MediaItem::trackNumber>("track-number"),
                            number<&MediaItem::trackCount>("track-total")};
static_assert(std::is_sorted(fields.begin(), fields.end(),
                             [](const Field& a, const Field& b) { return a.name < b.name; }));

const Field* fieldNamed(string_view name) {
  const auto* found =
      std::lower_bound(fields.begin(), fields.end(), name,
                       [](const Field& field, string_view wanted) { return field.name < wanted; });
  return found != fields.end() && found->name == name ? found : nullptr;
}

}  // namespace

/// Fills blocks of items from elements, or from properties.
class PlayerTracks::Reader final : public XmlReader {
 public:
  /// `holdsBack`: reading, which may then be done by another thread, touches the tracks with
  /// `handOver` only.
  Reader(PlayerTracks& tracks, std::size_t itemsPerBlock, bool holdsBack = false)
      : tracks_(tracks),
        pool_(tracks.items_->newPool()),
        unknown_(wordForUnknown()),
        itemsPerBlock_(itemsPerBlock),
        holdsBack_(holdsBack) {}

  void take(string_view name, string_view value) {
    if (const Field* field = fieldNamed(name); field && !value.empty()) take(*field, value);
  }
  void finishItem() {
    if (!uri_.empty()) {
      item_.persistentID = tracks_.ids_.usual(uri_);
      if (holdsBack_)
        heldBack_.emplace_back(item_, std::move(uri_));
      else
        put(item_, uri_);
    }
    item_ = {};
    uri_.clear();
  }
  void handOver() {
    for (auto& [item, uri] : heldBack_) put(item, uri);
    heldBack_ = {};
    finishBlock();
  }
  void finishBlock() {
    if (!block_.empty()) tracks_.items_->append(std::exchange(block_, {}));
  }

 private:
  /// The item has its usual ID.
  void put(MediaItem& item, const std::string& uri) {
    if (block_.empty()) block_.reserve(itemsPerBlock_);
    item.persistentID = tracks_.ids_.of(uri, item.persistentID);
    // Its place in the block stays: `byID_` points there.
    if (tracks_.byID_.try_emplace(item.persistentID, block_.data() + block_.size()).second)
      block_.push_back(item);
    if (block_.size() == itemsPerBlock_) finishBlock();
  }

  void beginElement(const Tag& tag) override {
    ++depth_;
    if (depth_ == 2) inSong_ = tag.name == "entry" && tag.attribute("type") == "song";
    field_ = depth_ == 3 && inSong_ ? fieldNamed(tag.name) : nullptr;
    value_.clear();
  }
  void text(string_view piece) override {
    if (field_) value_.append(piece);
  }
  void endElement(const Tag&) override {
    if (depth_ == 3 && field_ && !value_.empty()) take(*field_, value_);
    if (depth_ == 2 && inSong_) finishItem();
    field_ = nullptr;
    --depth_;
  }

  void take(const Field& field, string_view value) {
    switch (field.sort) {
      case Field::Sort::own:
        item_.*field.textTarget = pool_.add(value);
        break;
      case Field::Sort::tag:
        if (value == "Unknown" || value == unknown_) break;
        [[fallthrough]];
      case Field::Sort::shared:
        item_.*field.textTarget = pool_.share(value);
        break;
      case Field::Sort::number:
        field.setNumber(item_, realOf(value));
        break;
      case Field::Sort::date:
        if (const std::int64_t seconds = numberOf(value); seconds > 0)
          item_.*field.dateTarget = OptionalDate{seconds};
        break;
      case Field::Sort::year:
        item_.year = yearOf(numberOf(value));
        break;
      case Field::Sort::kind:
        item_.kind = pool_.share(kindOf(value));
        break;
      case Field::Sort::location:
        setLocation(value);
        break;
    }
  }
  void setLocation(string_view uri) {
    uri_ = uri;
    const bool isFile = pathOfFileUrl(uri, path_);
    const std::size_t slash = isFile ? path_.rfind('/') : 0;
    if (isFile) item_.locationFolder = pool_.share(string_view(path_).substr(0, slash));
    item_.locationName = pool_.add(isFile ? string_view(path_).substr(slash + 1) : uri);
    item_.locationType = isFile ? LocationType::file : LocationType::url;
  }

  PlayerTracks& tracks_;
  TextPool& pool_;
  std::string unknown_;
  std::size_t itemsPerBlock_;
  bool holdsBack_;
  std::vector<std::pair<MediaItem, std::string>> heldBack_;  ///< with their URIs
  std::vector<MediaItem> block_;
  MediaItem item_;
  std::string uri_, path_, value_;
  int depth_ = 0;
  bool inSong_ = false;
  const Field* field_ = nullptr;
};

/// Compares songs by their places and the times of their files.
class PlayerTracks::Comparison final : public XmlReader {
 public:
  explicit Comparison(const PlayerTracks& tracks) : tracks_(tracks) {}
  [[nodiscard]] bool isSame() const { return isSame_ && found_ == tracks_.byID_.size(); }

 private:
  void beginElement(const Tag& tag) override {
    if (++depth_ == 2) inSong_ = tag.name == "entry" && tag.attribute("type") == "song";
    value_ = nullptr;
    if (depth_ != 3 || !inSong_) return;
    if (tag.name == "location") value_ = &uri_;
    if (tag.name == "mtime") value_ = &modified_;
  }
  void text(string_view piece) override {
    if (value_) value_->append(piece);
  }
  void endElement(const Tag&) override {
    value_ = nullptr;
    if (depth_-- != 2 || !inSong_) return;
    const auto id = tracks_.ids_.find(uri_);
    const MediaItem* item = id ? tracks_.find(*id) : nullptr;
    const std::int64_t seconds = numberOf(modified_);
    isSame_ &= item && (seconds > 0 ? OptionalDate{seconds} : OptionalDate{}).seconds ==
                           item->modified.seconds;
    ++found_;
    uri_.clear();
    modified_.clear();
  }

  const PlayerTracks& tracks_;
  bool isSame_ = true, inSong_ = false;
  std::size_t found_ = 0;
  int depth_ = 0;
  std::string uri_, modified_;
  std::string* value_ = nullptr;  ///< of the element at hand
};

bool PlayerTracks::areIn(string_view document, const std::string& file) const {
  Comparison comparison(*this);
  comparison.read(document, rootElement, file);
  return comparison.isSame();
}

void PlayerTracks::read(string_view document, const std::string& file) {
  byID_.reserve(document.size() / 800);  // about as long as an entry is
  if (readInHalves(document, file)) return;
  Reader reader(*this, MediaItems::itemsPerBlock);
  reader.read(document, rootElement, file);
  reader.finishBlock();
}

/// By two threads, each from its own beginning of an entry. Returns false, with nothing changed,
/// for a document that is short, or where that is none: then the first half is not well-formed.
bool PlayerTracks::readInHalves(string_view document, const std::string& file) {
  constexpr std::size_t least = std::size_t{1} << 20, prolog = 256;
  constexpr string_view end = "</entry>";
  const std::size_t found = document.find(end, document.size() / 2);
  if (document.size() < least || found == string_view::npos ||
      document.substr(0, prolog).find("encoding") != string_view::npos)
    return false;
  const std::size_t middle = found + end.size();
  const string_view first[] = {document.substr(0, middle), "</rhythmdb>"},
                    second[] = {"<rhythmdb>", document.substr(middle)};
  Reader one(*this, MediaItems::itemsPerBlock, true), other(*this, MediaItems::itemsPerBlock, true);
  const auto isRead = [&](Reader& reader, std::span<const string_view> pieces) {
    try {
      reader.readPieces(pieces, rootElement, file);
      return true;
    } catch (const std::exception&) {  // who reads it as a whole says why
      return false;
    }
  };
  bool isOtherRead = false;
  std::jthread half([&] { isOtherRead = isRead(other, second); });
  const bool isOneRead = isRead(one, first);
  half.join();
  if (!isOneRead || !isOtherRead) return false;
  one.handOver();
  other.handOver();
  return true;
}

void PlayerTracks::add(const std::map<std::string, std::string>& properties) {
  Reader reader(*this, 1);
  for (const auto& [name, value] : properties) reader.take(name, value);
  reader.finishItem();
  reader.finishBlock();
}

void PlayerTracks::finish() { items_->seal(); }

const MediaItem* PlayerTracks::find(std::uint64_t id) const {
  const auto found = byID_.find(id);
  return found == byID_.end() ? nullptr : found->second;
}

}  // namespace kestrel::rhythmbox
