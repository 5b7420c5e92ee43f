/// Shows files in the desktop's file manager, and playlists in Kestrel's own window.
#pragma once

#include <functional>

#include "musicapp/revealer.h"

namespace kestrel {

class ProgramRunner;
class TaskQueue;

/// From any thread.
class DesktopRevealer final : public Revealer {
 public:
  /// `showPlaylist` is called on the main queue. All must outlive the revealer.
  DesktopRevealer(ProgramRunner& programs, TaskQueue& mainQueue,
                  std::function<void(std::uint64_t)> showPlaylist)
      : folders_(programs), mainQueue_(mainQueue), showPlaylist_(std::move(showPlaylist)) {}

  /// Selects the file where the file manager can do that, else opens its folder.
  void revealFile(const std::string& path) override;
  void revealPlaylist(std::uint64_t playlist) override;

 private:
  FolderRevealer folders_;
  TaskQueue& mainQueue_;
  std::function<void(std::uint64_t)> showPlaylist_;
};

}  // namespace kestrel
