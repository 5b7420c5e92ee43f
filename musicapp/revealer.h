/// Shows a file or a playlist to the user, outside or inside this program.
#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

class ProgramRunner;

/// Operations throw FileError when there is nothing to show it in.
class Revealer {
 public:
  virtual ~Revealer() = default;
  virtual void revealFile(const std::string& path) = 0;
  /// By persistent ID.
  virtual void revealPlaylist(std::uint64_t playlist) = 0;
};

/// Asks the desktop's file manager by `dbus-send` to select a file; where that fails, opens its
/// folder through `xdg-open`. Knows no window that has playlists. From any thread.
class FileManagerRevealer : public Revealer {
 public:
  explicit FileManagerRevealer(ProgramRunner& programs) : programs_(programs) {}
  void revealFile(const std::string& path) override;
  void revealPlaylist(std::uint64_t playlist) override;

 private:
  [[nodiscard]] bool select(const std::string& path);

  ProgramRunner& programs_;
};

}  // namespace kestrel
