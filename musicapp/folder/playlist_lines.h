/// Playlist files that are lines of text.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/folder/playlist_file.h"
#include "musicapp/folder/playlist_paths.h"

namespace kestrel {

class PlaylistLines : public PlaylistFile {
 public:
  [[nodiscard]] std::string decoded(std::string_view text) const override {
    return toUtf8(text, encoding_);
  }
  [[nodiscard]] bool canHold(const std::string& location, std::size_t entry) const override;

 protected:
  struct Line {
    std::size_t indent, begin, end, next;  ///< `begin` to `end`: its text, without white space
  };
  /// What becomes of lines, by their number.
  struct Edits {
    std::map<std::size_t, std::optional<std::string>> lines;  ///< nothing: the line goes
    std::map<std::size_t, std::string> behind;                ///< whole lines
    std::string first;                                        ///< whole lines, before all
  };

  PlaylistLines(std::string bytes, bool isUtf8);
  [[nodiscard]] std::string_view text(std::size_t line) const {
    return std::string_view(bytes_).substr(lines_[line].begin,
                                           lines_[line].end - lines_[line].begin);
  }
  /// A text that says what a track is, in UTF-8.
  [[nodiscard]] std::string description(std::string_view text) const {
    return toUtf8(text, encodingOf(text));
  }
  /// In the encoding of the file or, of a file that has several, in that of the text `like`.
  [[nodiscard]] std::string encoded(std::string_view text, std::string_view like = {}) const;
  [[nodiscard]] std::string line(std::string_view text) const { return encoded(text) + lineEnd_; }
  [[nodiscard]] std::string edited(const Edits& edits) const;

  std::vector<Line> lines_;
  std::string lineEnd_;

 private:
  /// Of a text that comes in the place of `like`.
  [[nodiscard]] ListEncoding encodingOf(std::string_view like) const;

  ListEncoding encoding_;
  bool isMixed_ = false;  ///< there are lines in UTF-8 among the others
};

}  // namespace kestrel
