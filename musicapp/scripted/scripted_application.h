/// A music application that is driven by script texts.
///
/// It says little about how a command went, keeps each one at once, and cannot change the entries
/// of a playlist: where that is asked for, the playlist is replaced by a new one with another
/// persistent ID, made from a playlist document, and moved into the old one's folder. That deletes
/// other user playlists of exactly its name, so that a playlist which has such is refused.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "musicapp/music_application.h"
#include "musicapp/scripted/playlist_document.h"

namespace kestrel {

/// One thread at a time.
class ScriptedApplication final : public MusicApplication {
 public:
  /// `library` is the application's, which it reflects after each script; `services.scripts` runs
  /// the texts. All outlive this object. The application's library document, from which playlist
  /// documents are made, is `library.libraryFile()`.
  ScriptedApplication(MediaLibrary& library, script::ReplacingServices services)
      : library_(library), services_(std::move(services)) {}

  MediaLibrary& library() override { return library_; }
  CommandResult run(const Command& command) override;
  [[nodiscard]] Capabilities capabilities() const override;
  std::unique_ptr<Batch> beginBatch() override;

 private:
  class Commands;

  MediaLibrary& library_;
  script::ReplacingServices services_;
  StoredDocument stored_;
};

}  // namespace kestrel
