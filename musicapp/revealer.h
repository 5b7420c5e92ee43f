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

/// Opens the folder of a file with the desktop's file manager, through `xdg-open`. It knows no
/// window that has playlists.
class FolderRevealer final : public Revealer {
 public:
  explicit FolderRevealer(ProgramRunner& programs) : programs_(programs) {}
  void revealFile(const std::string& path) override;
  void revealPlaylist(std::uint64_t playlist) override;

 private:
  ProgramRunner& programs_;
};

/// Asks the desktop's file manager by `dbus-send` to select a file, for programs without a bus of
/// their own; opens its folder where that fails.
class FileManagerRevealer final : public Revealer {
 public:
  explicit FileManagerRevealer(ProgramRunner& programs) : programs_(programs), folders_(programs) {}
  void revealFile(const std::string& path) override;
  void revealPlaylist(std::uint64_t playlist) override { folders_.revealPlaylist(playlist); }

 private:
  ProgramRunner& programs_;
  FolderRevealer folders_;
};

}  // namespace kestrel
