#include "tools/make_library/playlists.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tools/make_library/random.h"
#include "tools/make_library/track.h"

namespace kestrel::make_library {
namespace {

using std::string_view;

constexpr std::uint32_t kDeepest = 3;

// The lists that come with every library. A list with media holds all tracks of that media.
struct BuiltIn {
  string_view name, flag;
  std::uint32_t distinguished;
  std::array<bool, 8> media;  // by Media
  bool smart;
};
constexpr std::array<bool, 8> only(std::initializer_list<Media> wanted) {
  std::array<bool, 8> media{};
  for (const Media one : wanted) media[static_cast<std::size_t>(one)] = true;
  return media;
}
constexpr std::array<BuiltIn, 10> kBuiltIns{{
    {"Music", "Music", 4, only({Media::song, Media::musicVideo, Media::stream}), false},
    {"Movies", "Movies", 2, only({Media::movie}), false},
    {"TV Shows", "TV Shows", 3, only({Media::tvShow}), false},
    {"Podcasts", "Podcasts", 10, only({Media::podcast}), false},
    {"Audiobooks", "Audiobooks", 5, only({Media::audiobook}), false},
    {"Music Videos", "", 47, only({Media::musicVideo}), true},
    {"Home Videos", "", 48, only({Media::homeVideo}), true},
    {"Genius", "", 26, only({}), false},
    {"My Top Rated", "", 200, only({}), true},
    {"Recently Added", "", 204, only({}), true},
}};

// The first playlists of the owner: each is a case that is rare among the others. `parent` is
// the name of a folder that stands before it.
struct Particular {
  string_view name;
  PlaylistKind kind = PlaylistKind::regular;
  string_view parent{};
  enum class Content : std::uint8_t {
    some,
    none,
    repeats,  // a few tracks, again and again
    copies,   // songs together with all their copies
    unknownTracks
  } content = Content::some;
};
using Content = Particular::Content;
constexpr auto kParticular = std::to_array<Particular>({
    {.name = "All My Copies", .content = Content::copies},
    {.name = "Over and Over", .content = Content::repeats},
    {.name = "Occasions", .kind = PlaylistKind::folder},
    {.name = "Kitchen", .kind = PlaylistKind::folder, .parent = "Occasions"},
    {.name = "Sunday", .kind = PlaylistKind::folder, .parent = "Kitchen"},
    {.name = "Slow Breakfast", .parent = "Sunday", .content = Content::copies},
    {.name = "Doing the Dishes", .parent = "Kitchen", .content = Content::repeats},
    {.name = "Four Stars & More", .kind = PlaylistKind::smart, .parent = "Occasions"},
    {.name = "Nothing Yet", .content = Content::none},
    {.name = "Road Trip"},
    {.name = "Road Trip", .parent = "Occasions", .content = Content::copies},
    {.name = "The \"Best\" of '99", .content = Content::copies},
    {.name = "AC\\DC\\both", .content = Content::repeats},
    {.name = "🎉 Fête d’été 🎉"},
    {.name = "Like That One", .kind = PlaylistKind::genius},
    {.name = "After the Crash", .content = Content::unknownTracks},
    {.name = "Empty Shelf", .kind = PlaylistKind::folder},
    {.name = "<untitled> & co."},
});

std::string bytes(Random& random, string_view start, std::size_t size) {
  std::string result{start};
  while (result.size() < size) result += static_cast<char>(random.below(256));
  return result;
}

class Owner {
 public:
  Owner(const Options& options, const Catalogue& catalogue, const Plan& plan)
      : options_(options),
        catalogue_(catalogue),
        plan_(plan),
        count_(static_cast<std::uint32_t>(plan.entries.size())),
        random_(options.seed, Stream::playlist) {
    indexCopies();
  }

  void handOver(const std::function<void(const Playlist&)>& use) {
    handOverBuiltIns(use);
    const std::uint32_t wanted = options_.playlists.value_or(usualPlaylistCount(options_.tracks));
    std::vector<Playlist> made;
    made.reserve(wanted);
    for (std::uint32_t i = 0; i < wanted; ++i) {
      made.push_back(i < kParticular.size() ? particular(kParticular[i]) : ordinary());
    }
    fillFolders(made);
    for (const Playlist& playlist : made) use(playlist);
  }

 private:
  struct Folder {
    string_view name;
    std::uint64_t id;
    std::uint32_t depth;
  };

  void handOverBuiltIns(const std::function<void(const Playlist&)>& use) {
    Playlist master = start("Library");
    master.master = true;
    for (std::uint32_t i = 0; i < count_; ++i) master.trackIds.push_back(TrackMaker::trackId(i));
    use(master);
    for (const BuiltIn& builtIn : kBuiltIns) {
      Playlist list = start(builtIn.name);
      list.distinguished = builtIn.distinguished;
      list.flag = builtIn.flag;
      if (builtIn.smart) makeSmart(list);
      if (builtIn.media != only({})) {
        for (std::uint32_t i = 0; i < count_; ++i) {
          const Media media = catalogue_.media(plan_.entries[i].song);
          if (builtIn.media[static_cast<std::size_t>(media)]) {
            list.trackIds.push_back(TrackMaker::trackId(i));
          }
        }
      } else if (builtIn.smart) {
        addSome(list, std::min(25U, count_));
      }
      use(list);
    }
  }

  // Entries of the songs that have more than one, sorted by song.
  void indexCopies() {
    std::vector<std::uint32_t> entriesOf(plan_.songs, 0);
    for (const Entry& entry : plan_.entries) ++entriesOf[entry.song];
    for (std::uint32_t i = 0; i < count_; ++i) {
      if (entriesOf[plan_.entries[i].song] > 1) copied_.push_back(i);
    }
    std::sort(copied_.begin(), copied_.end(), [&](std::uint32_t a, std::uint32_t b) {
      return std::pair{plan_.entries[a].song, a} < std::pair{plan_.entries[b].song, b};
    });
  }

  Playlist start(string_view name) {
    Playlist playlist;
    playlist.name = name;
    playlist.persistentId = random_.next();
    return playlist;
  }

  void makeSmart(Playlist& playlist) {
    playlist.kind = PlaylistKind::smart;
    playlist.smartInfo = bytes(random_, string_view{"\1\1\0\3", 4}, 104);
    playlist.smartCriteria = bytes(random_, "SLst", random_.between(136, 900));
  }

  Playlist particular(const Particular& wanted) {
    Playlist playlist = start(wanted.name);
    const auto parent = std::find_if(folders_.rbegin(), folders_.rend(), [&](const Folder& folder) {
      return folder.name == wanted.parent;
    });
    if (parent != folders_.rend()) playlist.parent = parent->id;
    become(playlist, wanted.kind, wanted.name, parent == folders_.rend() ? 1 : parent->depth + 1);
    if (wanted.kind != PlaylistKind::folder) fill(playlist, wanted.content);
    return playlist;
  }

  Playlist ordinary() {
    const Language& language = pickLanguage(random_);
    Playlist playlist = start(fillPattern(random_.pick(language.albums), language, random_));
    if (random_.chance(100)) playlist.description = random_.pick(remarks());
    std::uint32_t depth = 1;
    if (!folders_.empty() && random_.chance(400)) {
      const Folder& parent = random_.pick(folders_);
      playlist.parent = parent.id;
      depth = parent.depth + 1;
    }
    const std::uint32_t roll = random_.below(100);
    const bool mayHold = depth <= kDeepest;
    become(playlist,
           roll < 8 && mayHold ? PlaylistKind::folder
           : roll < 22         ? PlaylistKind::smart
           : roll < 25         ? PlaylistKind::genius
                               : PlaylistKind::regular,
           "", depth);
    if (playlist.kind == PlaylistKind::folder) return playlist;
    constexpr std::array kContents{Content::some,   Content::some,   Content::some,   Content::some,
                                   Content::copies, Content::copies, Content::repeats};
    fill(playlist, random_.chance(20) ? Content::none : random_.pick(kContents));
    return playlist;
  }

  void become(Playlist& playlist, PlaylistKind kind, string_view name, std::uint32_t depth) {
    if (kind == PlaylistKind::smart) makeSmart(playlist);
    playlist.kind = kind;
    if (kind == PlaylistKind::folder) folders_.push_back({name, playlist.persistentId, depth});
    if (kind == PlaylistKind::genius && count_ > 0) {
      playlist.geniusTrack = TrackMaker::trackId(random_.below(count_));
    }
  }

  void fill(Playlist& playlist, Content content) {
    if (count_ == 0 || content == Content::none) return;
    const std::uint32_t size =
        random_.chance(100) ? random_.between(100, 1000) : random_.between(4, 60);
    switch (content) {
      case Content::repeats:
        addRepeats(playlist, size);
        break;
      case Content::copies:
        addCopies(playlist, size);
        break;
      case Content::unknownTracks:
        addSome(playlist, 6);
        for (std::uint32_t i = 0; i < kUnknownTrackIds; ++i) {
          playlist.trackIds.push_back(TrackMaker::trackId(random_.below(count_)) - 1);
        }
        break;
      default:
        addSome(playlist, size);
    }
  }

  // Stretches of the library, as when albums are dragged into a list.
  void addSome(Playlist& playlist, std::uint32_t size) {
    while (playlist.trackIds.size() < size) {
      const std::uint32_t first = random_.below(count_);
      const std::uint32_t stretch = random_.chance(500) ? 1 : random_.between(2, 10);
      for (std::uint32_t i = first; i < std::min(count_, first + stretch); ++i) {
        playlist.trackIds.push_back(TrackMaker::trackId(i));
      }
    }
  }

  void addRepeats(Playlist& playlist, std::uint32_t size) {
    Playlist few;
    addSome(few, std::max(2U, size / 3));
    while (playlist.trackIds.size() < size) {
      playlist.trackIds.push_back(random_.pick(few.trackIds));
    }
    // Once more in a row, whatever was drawn.
    playlist.trackIds.push_back(playlist.trackIds.back());
  }

  void addCopies(Playlist& playlist, std::uint32_t size) {
    constexpr std::uint32_t kMostOfOneSong = 20;
    if (copied_.empty()) return addSome(playlist, size);
    const auto all = static_cast<std::uint32_t>(copied_.size());
    while (playlist.trackIds.size() < size) {
      std::uint32_t at = random_.below(all);
      const auto song = [&](std::uint32_t i) { return plan_.entries[copied_[i]].song; };
      for (std::uint32_t back = 0; back < kMostOfOneSong && at > 0 && song(at - 1) == song(at);
           ++back) {
        --at;
      }
      for (std::uint32_t i = at; i < std::min(all, at + kMostOfOneSong) && song(i) == song(at);
           ++i) {
        playlist.trackIds.push_back(TrackMaker::trackId(copied_[i]));
      }
      if (random_.chance(300))
        addSome(playlist, static_cast<std::uint32_t>(playlist.trackIds.size()) + 3);
    }
  }

  // A folder lists what is in it, the folders in it included. Children stand after their folder.
  static void fillFolders(std::vector<Playlist>& playlists) {
    std::vector<std::pair<std::uint64_t, std::size_t>> places;
    for (std::size_t i = 0; i < playlists.size(); ++i) {
      if (playlists[i].kind == PlaylistKind::folder) {
        places.emplace_back(playlists[i].persistentId, i);
      }
    }
    std::sort(places.begin(), places.end());
    for (std::size_t i = playlists.size(); i-- > 0;) {
      const Playlist& child = playlists[i];
      const auto place =
          std::lower_bound(places.begin(), places.end(), std::pair{child.parent, std::size_t{0}});
      if (child.parent == 0 || place == places.end()) continue;
      std::vector<std::uint32_t>& all = playlists[place->second].trackIds;
      all.insert(all.end(), child.trackIds.begin(), child.trackIds.end());
    }
    for (const auto& [id, index] : places) {
      std::vector<std::uint32_t>& all = playlists[index].trackIds;
      std::sort(all.begin(), all.end());
      all.erase(std::unique(all.begin(), all.end()), all.end());
    }
  }

  const Options& options_;
  const Catalogue& catalogue_;
  const Plan& plan_;
  const std::uint32_t count_;
  Random random_;
  std::vector<std::uint32_t> copied_;
  std::vector<Folder> folders_;
};

}  // namespace

std::uint32_t usualPlaylistCount(std::uint32_t tracks) {
  return std::clamp<std::uint32_t>(tracks / 250, 24, 200);
}

void makePlaylists(const Options& options, const Catalogue& catalogue, const Plan& plan,
                   const std::function<void(const Playlist&)>& use) {
  Owner(options, catalogue, plan).handOver(use);
}

}  // namespace kestrel::make_library
