#include "musicapp/mpd/mpd_songs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <mpd/protocol.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "foundation/dates.h"
#include "foundation/utf8.h"
#include "musicapp/audio/missing_facts.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::string_view;

/// The number that a text begins with, as in "3/12" or "1999-05-01"; else 0.
std::int64_t leadingInteger(string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}
double leadingReal(string_view text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

struct TextTag {
  string_view name;
  Text MediaItem::*text;
};
constexpr std::array textTags{
    TextTag{"Title", &MediaItem::title},      TextTag{"Artist", &MediaItem::artist},
    TextTag{"Album", &MediaItem::album},      TextTag{"AlbumArtist", &MediaItem::albumArtist},
    TextTag{"Genre", &MediaItem::genre},      TextTag{"Composer", &MediaItem::composer},
    TextTag{"Comment", &MediaItem::comments}, TextTag{"Grouping", &MediaItem::grouping}};

/// What the other lines of a song, and stickers, say.
struct ValueTag {
  string_view name;
  void (*take)(MediaItem&, string_view value);
};
template <auto number, auto count>
void takeNumberOfCount(MediaItem& item, string_view value) {
  item.*number = leadingInteger(value);
  if (const auto slash = value.find('/'); slash != string_view::npos)
    item.*count = leadingInteger(value.substr(slash + 1));
}
template <auto member>
void takeDateText(MediaItem& item, string_view value) {
  if (const auto seconds = parseIsoDate(value)) item.*member = OptionalDate{*seconds};
}
constexpr ValueTag valueTags[] = {
    {"Track", takeNumberOfCount<&MediaItem::trackNumber, &MediaItem::trackCount>},
    {"Disc", takeNumberOfCount<&MediaItem::discNumber, &MediaItem::discCount>},
    {"Last-Modified", takeDateText<&MediaItem::modified>},
    {"Added", takeDateText<&MediaItem::added>},
    {"Date",
     [](MediaItem& item, string_view value) { item.year = leadingInteger(value.substr(0, 4)); }},
    {"duration",
     [](MediaItem& item, string_view value) {
       item.totalTime = static_cast<std::int64_t>(leadingReal(value) * 1000 + 0.5);
     }},
    // Rate, bits and channels. Rates of one-bit sound are told in units of 44.1 kHz.
    {"Format", [](MediaItem& item, string_view value) {
       const bool isOneBit = value.starts_with("dsd");
       item.sampleRate = isOneBit ? leadingInteger(value.substr(3)) * 44100 : leadingInteger(value);
       const auto next = [&value] {
         value.remove_prefix(std::min(value.find(':'), value.size() - 1) + 1);
         return leadingInteger(value);
       };
       if (value.empty()) return;
       item.sampleDepth = isOneBit ? 1 : next();
       item.channels = value.empty() ? 0 : next();
     }}};

/// The kind of a file by its name, in the words of music applications: keeper rules and filters
/// know them.
std::string kindOfName(string_view name) {
  name.remove_prefix(name.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  std::string extension(dot == string_view::npos ? "" : name.substr(dot + 1));
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  constexpr std::pair<string_view, string_view> kinds[] = {
      {"MP3", "MPEG"},  {"M4A", "AAC"},  {"MP4", "AAC"},        {"AIF", "AIFF"},
      {"AIFC", "AIFF"}, {"WAVE", "WAV"}, {"OGG", "Ogg Vorbis"}, {"OPUS", "Opus"}};
  for (const auto& [known, kind] : kinds)
    if (extension == known) extension = kind;
  return extension.empty() ? extension : extension + " audio file";
}

/// Makes items of the lines of the server's answers.
class SongReader {
 public:
  SongReader(MpdSongs& songs, MediaItems& items, const std::string& musicFolder)
      : songs_(songs), pool_(items.newPool()), musicFolder_(musicFolder) {}

  void take(string_view name, string_view value) {
    if (name == "file") {
      finish();
      uri_ = value;
      ++count_;
      return;
    }
    for (std::size_t i = 0; i < textTags.size(); ++i)
      if (name == textTags[i].name) {
        if (!texts_[i].empty()) texts_[i] += ", ";
        texts_[i] += value;
        return;
      }
    for (const ValueTag& tag : valueTags)
      if (name == tag.name) return tag.take(item_, value);
  }

  /// The song at hand is complete.
  void finish() {
    if (uri_.empty()) return;
    item_.persistentID = songs_.ids.of(uri_);
    for (std::size_t i = 0; i < textTags.size(); ++i) {
      if (!texts_[i].empty()) item_.*textTags[i].text = pool_.share(writableText(texts_[i]));
      texts_[i].clear();
    }
    locate();
    if (blocks_.empty() || blocks_.back().size() == MediaItems::itemsPerBlock)
      blocks_.emplace_back().reserve(MediaItems::itemsPerBlock);
    blocks_.back().push_back(std::exchange(item_, {}));
    uri_.clear();
  }

  [[nodiscard]] std::size_t count() const noexcept { return count_; }
  std::vector<std::vector<MediaItem>>& blocks() noexcept { return blocks_; }

 private:
  void locate() {
    if (uri_.find("://") != std::string::npos) {
      item_.locationType = LocationType::remote;
      item_.locationName = pool_.add(uri_);
      return;
    }
    item_.locationType = LocationType::file;
    if (const std::string kind = kindOfName(uri_); !kind.empty()) item_.kind = pool_.share(kind);
    if (musicFolder_.empty()) {
      item_.isUnlocated = true;
      return;
    }
    path_ = musicFolder_;
    path_.append(1, '/').append(uri_);
    const std::size_t slash = path_.rfind('/');
    item_.locationFolder = pool_.share(string_view(path_).substr(0, slash));
    item_.locationName = pool_.add(string_view(path_).substr(slash + 1));
  }

  MpdSongs& songs_;
  TextPool& pool_;
  const std::string& musicFolder_;
  std::vector<std::vector<MediaItem>> blocks_;
  std::size_t count_ = 0;
  // Of the song at hand.
  MediaItem item_;
  std::string uri_, path_;
  std::array<std::string, textTags.size()> texts_;
};

template <auto member>
void takeCount(MediaItem& item, string_view value) {
  if (item.*member == 0) item.*member = leadingInteger(value);
}
template <auto member>
void takeDate(MediaItem& item, string_view value) {
  if (const std::int64_t seconds = leadingInteger(value); !(item.*member) && seconds > 0)
    item.*member = OptionalDate{seconds};
}
/// By name; of two that say the same, the first that is there counts.
constexpr ValueTag stickers[] = {
    {"playCount", takeCount<&MediaItem::playCount>},
    {"play_count", takeCount<&MediaItem::playCount>},
    {"skipCount", takeCount<&MediaItem::skipCount>},
    {"skip_count", takeCount<&MediaItem::skipCount>},
    {"lastPlayed", takeDate<&MediaItem::lastPlayed>},
    {"last_played", takeDate<&MediaItem::lastPlayed>},
    {"lastSkipped", takeDate<&MediaItem::skipped>},
    {"rating", [](MediaItem& item, string_view value) {
       const bool isPart = value.find('.') != string_view::npos;
       const double rating = leadingReal(value) * (isPart ? 100 : 10);
       item.rating = static_cast<std::int64_t>(std::clamp(rating + 0.5, 0.0, 100.0));
     }}};

/// Reads stickers into items that are still being made.
class StickerReader {
 public:
  using Blocks = std::vector<std::vector<MediaItem>>;
  StickerReader(const MpdSongs& songs, Blocks& blocks) : songs_(songs), blocks_(blocks) {}

  /// As they were met by reading.
  [[nodiscard]] StickerWords words() const { return {isUnderscored_ && !isJoined_, isPart_}; }

  void read(MpdConnection& connection, const LoadWatch& watch) {
    try {
      for (const ValueTag& sticker : stickers) readAll(connection, sticker);
    } catch (const MpdRefusal&) {
      throw;
    } catch (const LibraryError&) {
      // More than the server's output buffer holds: it has ended the connection.
      connection = MpdConnection(connection.server());
      readSongBySong(connection, watch);
    }
  }

 private:
  /// One sticker of all songs.
  void readAll(MpdConnection& connection, const ValueTag& sticker) {
    MediaItem* item = nullptr;
    connection.ask({"sticker", "find", "song", "", std::string(sticker.name)},
                   [&](string_view name, string_view value) {
                     if (name == "file")
                       item = itemAt(value);
                     else if (const auto text = valueOf(sticker, name, value); item && text)
                       take(sticker, *item, *text);
                   });
  }

  /// Takes some times as long as one sticker of all songs does. Asking for each folder would have
  /// the server look through all stickers as many times.
  void readSongBySong(MpdConnection& connection, const LoadWatch& watch) {
    constexpr std::size_t songsAtOnce = 1000;
    std::vector<MediaItem*> items;
    for (auto& block : blocks_)
      for (MediaItem& item : block) items.push_back(&item);
    for (std::size_t first = 0; first < items.size();) {
      if (watch.cancelled && watch.cancelled()) throwStopped(connection);
      if (watch.progress) watch.progress(first, items.size());
      const std::size_t count = std::min(songsAtOnce, items.size() - first);
      first += readSome(connection, std::span(items).subspan(first, count));
    }
  }

  /// Returns how many were read: a song that the server no longer has ends its answer.
  std::size_t readSome(MpdConnection& connection, std::span<MediaItem* const> items) {
    std::vector<MpdConnection::Words> commands;
    for (const MediaItem* item : items)
      commands.push_back({"sticker", "list", "song", *songs_.ids.uriOf(item->persistentID)});
    std::vector<std::array<std::string, std::size(stickers)>> found(items.size());
    std::size_t read = items.size();
    try {
      connection.askEach(commands, [&](std::size_t song, string_view name, string_view value) {
        for (std::size_t i = 0; i < std::size(stickers); ++i)
          if (const auto text = valueOf(stickers[i], name, value)) found[song][i] = *text;
      });
    } catch (const MpdRefusal& refusal) {
      if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
      read = refusal.command + 1;
    }
    for (std::size_t song = 0; song < items.size(); ++song)
      for (std::size_t i = 0; i < std::size(stickers); ++i)
        if (song < read && !found[song][i].empty()) take(stickers[i], *items[song], found[song][i]);
    return read;
  }

  /// What a line says of a sticker, "sticker: NAME=VALUE"; nothing of other lines.
  static std::optional<string_view> valueOf(const ValueTag& sticker, string_view name,
                                            string_view value) {
    const std::size_t size = sticker.name.size();
    if (name != "sticker" || value.size() <= size + 1 || value[size] != '=' ||
        !value.starts_with(sticker.name))
      return std::nullopt;
    return value.substr(size + 1);
  }

  void take(const ValueTag& sticker, MediaItem& item, string_view text) {
    sticker.take(item, text);
    if (sticker.name == "rating")
      isPart_ |= text.find('.') != string_view::npos;
    else
      (sticker.name.find('_') != string_view::npos ? isUnderscored_ : isJoined_) = true;
  }

  [[noreturn]] static void throwStopped(const MpdConnection& connection) {
    throw LibraryError(connection.server().address(), {},
                       Message::tr("was not read to its end, as you stopped it"),
                       Message::tr("Open it again to go on from there."));
  }

  MediaItem* itemAt(string_view uri) {
    if (byID_.empty())
      for (auto& block : blocks_)
        for (MediaItem& item : block) byID_.emplace(item.persistentID, &item);
    const auto id = songs_.ids.find(uri);
    return id ? byID_.at(*id) : nullptr;
  }

  const MpdSongs& songs_;
  Blocks& blocks_;
  std::unordered_map<std::uint64_t, MediaItem*> byID_;
  bool isUnderscored_ = false, isJoined_ = false, isPart_ = false;
};

/// A value's sticker by either name.
struct ValueSticker {
  TrackValue value;
  const char *joined, *underscored;
};
constexpr ValueSticker valueStickers[] = {{TrackValue::plays, "playCount", "play_count"},
                                          {TrackValue::plays, "lastPlayed", "last_played"},
                                          {TrackValue::rating, "rating", "rating"}};

bool isOfValue(string_view name) {
  return std::any_of(std::begin(valueStickers), std::end(valueStickers), [&](const auto& sticker) {
    return name == sticker.joined || name == sticker.underscored;
  });
}

/// Its text; empty where there is nothing to be said.
std::string stickerText(const ValueSticker& sticker, const TrackValues& values, bool isPart) {
  if (sticker.joined == string_view("playCount"))
    return values.plays == 0 ? "" : std::to_string(values.plays);
  if (sticker.value == TrackValue::plays)
    return values.lastPlayed ? std::to_string(values.lastPlayed.seconds) : "";
  if (values.rating == 0) return "";
  if (!isPart && values.rating % 10 == 0) return std::to_string(values.rating / 10);
  const std::string digits = std::to_string(100 + values.rating);  // "1" and two more, or "200"
  return values.rating >= 100 ? "1.0" : "0." + digits.substr(1);
}

}  // namespace

MpdStickers mpdStickers(MpdConnection& connection, const std::string& uri) {
  MpdStickers found;
  connection.ask({"sticker", "list", "song", uri}, [&](string_view name, string_view value) {
    if (const auto equals = value.find('='); name == "sticker" && equals != string_view::npos)
      found.emplace(value.substr(0, equals), value.substr(equals + 1));
  });
  return found;
}

TrackValues mpdValues(const MediaItem& item, const MpdStickers& noted) {
  MediaItem read = item;
  read.playCount = 0;
  read.rating = 0;
  read.lastPlayed = {};
  for (const ValueTag& sticker : stickers)
    if (const auto found = noted.find(std::string(sticker.name)); found != noted.end())
      sticker.take(read, found->second);
  TrackValues values = valuesOf(read);
  values.stored = storedStickers(noted);
  return values;
}

std::string storedStickers(const MpdStickers& noted) {
  nlohmann::json json = nlohmann::json::object();
  for (const auto& [name, value] : noted) json[writableText(name)] = writableText(value);
  return json.dump();
}

std::vector<MpdConnection::Words> mpdValueCommands(const std::string& uri, TrackValueSet which,
                                                   const TrackValues& values,
                                                   const MpdStickers& now,
                                                   const StickerWords& words) {
  std::map<std::string, std::optional<std::string>> wanted;  // none: no such sticker
  const auto stored = nlohmann::json::parse(values.stored, nullptr, false);
  const TrackValues before = mpdValues({}, now);
  for (const ValueSticker& sticker : valueStickers) {
    if (!which.has(sticker.value)) continue;
    if (stored.is_object()) {
      for (const char* name : {sticker.joined, sticker.underscored})
        wanted[name] =
            stored.contains(name) ? std::optional(stored[name].get<std::string>()) : std::nullopt;
    } else if (!isSame(sticker.value, before, values)) {
      // The name that counts for the song, or else the one that the library's programs use.
      const bool isJoined = now.contains(sticker.joined) ||
                            (!now.contains(sticker.underscored) && !words.underscores);
      const char* name = isJoined ? sticker.joined : sticker.underscored;
      const auto old = now.find(name);
      const bool isPart =
          old == now.end() ? words.parts : old->second.find('.') != std::string::npos;
      if (std::string text = stickerText(sticker, values, isPart); !text.empty())
        wanted[name] = std::move(text);
      else  // what counts when this one is gone is gone too
        wanted[name], wanted[sticker.underscored];
    }
  }
  // Others come back where they went with the song.
  if (stored.is_object())
    for (const auto& [name, text] : stored.items())
      if (!isOfValue(name) && !now.contains(name)) wanted[name] = text.get<std::string>();
  std::vector<MpdConnection::Words> commands;
  for (const auto& [name, text] : wanted) {
    const auto old = now.find(name);
    if (!text && old != now.end())
      commands.push_back({"sticker", "delete", "song", uri, name});
    else if (text && (old == now.end() || old->second != *text))
      commands.push_back({"sticker", "set", "song", uri, name, *text});
  }
  return commands;
}

std::string mpdDatabaseState(MpdConnection& connection) {
  std::string state;
  connection.ask({"stats"}, [&](string_view name, string_view value) {
    if (name == "songs" || name == "db_update") state.append(value).append(1, ' ');
  });
  return state;
}

MpdSongs readMpdSongs(MpdConnection& connection, const std::string& musicFolder,
                      const ApplicationServices& services) {
  // A list of everything at once is more than the server's output buffer holds.
  constexpr std::size_t pageSize = 5000;
  for (int attempts = 3;; --attempts) {
    MpdSongs songs;
    songs.state = mpdDatabaseState(connection);
    auto items = std::make_shared<MediaItems>();
    SongReader reader(songs, *items, musicFolder);
    for (std::size_t first = 0; reader.count() == first; first += pageSize)
      // Other expressions leave out songs without a time, or are not known to older servers.
      connection.ask({"find", "(!(file == ''))", "window",
                      std::to_string(first) + ':' + std::to_string(first + pageSize)},
                     [&](string_view name, string_view value) { reader.take(name, value); });
    reader.finish();
    // Pages of a database that is updated meanwhile do not fit together.
    if (attempts > 1 && mpdDatabaseState(connection) != songs.state) continue;
    try {
      StickerReader stickers(songs, reader.blocks());
      stickers.read(connection, services.watch);
      songs.words = stickers.words();
    } catch (const MpdRefusal& refusal) {
      services.log.line("without plays, skips and ratings: " + lineOf(refusal.message));
    }
    for (auto& block : reader.blocks()) {
      block.shrink_to_fit();
      items->append(std::move(block));
    }
    if (services.readsFiles)
      fillMissingFacts(*items, connection.server().address(), services.files, services.log,
                       services.watch);
    items->seal();
    songs.items = std::move(items);
    return songs;
  }
}

}  // namespace kestrel
