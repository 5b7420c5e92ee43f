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
  [[nodiscard]] bool canHold(const std::string& location) const override;

 protected:
  struct Line {
    std::size_t begin, end, next;  ///< `end`: of its text, without white space
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
  [[nodiscard]] std::string encoded(std::string_view text) const;
  [[nodiscard]] std::string line(std::string_view text) const { return encoded(text) + lineEnd_; }
  [[nodiscard]] std::string edited(const Edits& edits) const;

  std::vector<Line> lines_;
  std::string lineEnd_;

 private:
  ListEncoding encoding_;
};

}  // namespace kestrel
