/// The music of the invented world, before anyone's library holds it: artists, their albums, the
/// songs on them. Any album or song can be asked for in any order and is always the same.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/make_library/options.h"
#include "tools/make_library/words.h"

namespace kestrel::make_library {

enum class Media : std::uint8_t {
  song,
  podcast,
  audiobook,
  tvShow,
  movie,
  musicVideo,
  homeVideo,
  stream
};

struct Album {
  Media media = Media::song;
  std::string title, artist, genre;
  const Language* language = nullptr;
  std::uint32_t year = 0;
  std::uint32_t songs = 0;
  std::uint32_t discs = 1;
  bool compilation = false;  ///< its songs are by different artists
};

struct Song {
  std::string name, artist, composer;
  std::uint32_t milliseconds = 0;
};

class Catalogue {
 public:
  Catalogue(const Options& options, std::uint32_t songs);

  std::size_t albums() const { return albums_.size(); }
  std::size_t albumOf(std::uint32_t song) const;
  /// First of the album; the songs of an album are numbered in a row.
  std::uint32_t firstSong(std::size_t album) const { return albums_[album].firstSong; }
  Media media(std::uint32_t song) const { return albums_[albumOf(song)].media; }

  Album album(std::size_t index) const;
  /// `album` is the one that holds it.
  Song song(std::uint32_t index, const Album& album) const;

 private:
  struct Place {
    std::uint32_t firstSong;
    Media media;
  };

  std::string artistName(std::uint32_t artist) const;
  std::uint32_t length(Media media, Random& random) const;

  Options options_;
  std::uint32_t songs_;
  std::uint32_t artists_;
  std::vector<Place> albums_;
};

}  // namespace kestrel::make_library
