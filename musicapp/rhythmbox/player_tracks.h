/// The tracks that Rhythmbox keeps in its file "rhythmdb.xml".
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "musicapp/media_library.h"
#include "musicapp/synthetic.h"

namespace kestrel::rhythmbox {

/// Songs only: no radio stations, podcasts, or files that could not be imported. A song whose file
/// is missing ("hidden") is one of them.
class PlayerTracks {
 public:
  /// `ids` gives the tracks theirs, by their URIs.
  explicit PlayerTracks(DerivedIDs& ids) : ids_(ids) {}

  /// Throws LibraryError in the name of `file`.
  void read(std::string_view document, const std::string& file);
  /// Adds a song by its properties, which are named as in the file. Not after `finish`.
  void add(const std::map<std::string, std::string>& properties);
  /// Whether the songs of a document are these, and their files were not written to since. Throws
  /// LibraryError in the name of `file`.
  [[nodiscard]] bool areIn(std::string_view document, const std::string& file) const;
  /// Ends filling. What only the files know is to be filled in before: the player keeps no sample
  /// rate, compilation or grouping, only whole seconds, and often no bit rate; and a text that was
  /// its word for "unknown" is null by now, whether or not the file has a tag with that word.
  void finish();

  [[nodiscard]] std::shared_ptr<const MediaItems> items() const { return items_; }
  [[nodiscard]] MediaItems& itemsToFill() { return *items_; }
  /// nullptr when there is none.
  [[nodiscard]] const MediaItem* find(std::uint64_t id) const;

 private:
  class Reader;
  bool readInHalves(std::string_view document, const std::string& file);
  class Comparison;

  DerivedIDs& ids_;
  std::shared_ptr<MediaItems> items_ = std::make_shared<MediaItems>();
  std::unordered_map<std::uint64_t, const MediaItem*> byID_;
};

}  // namespace kestrel::rhythmbox
