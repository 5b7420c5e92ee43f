/// Libraries that are changed in memory first and written as a whole by a commit: what their
/// batches and commands have in common.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "musicapp/library_files.h"
#include "musicapp/music_application.h"

namespace kestrel {

/// One thread at a time. A batch holds the library's lock; a command outside of one is a batch of
/// its own. What breaks off amid a command takes the batch's changes with it, and the batch can
/// only be given up then: no half of a command is ever written.
class EditedLibrary : public MusicApplication, public MediaLibrary {
 public:
  MediaLibrary& library() final { return *this; }
  CommandResult run(const Command& command) final;
  std::unique_ptr<Batch> beginBatch() final;

 protected:
  /// Carries a command out in memory. Throws CommandError or LibraryError before it changes
  /// anything; anything else may be thrown in between.
  virtual CommandResult execute(const Command& command) = 0;
  /// Makes `lock_`, unless it is there. Throws LibraryError when the library cannot be changed now.
  virtual void lock() = 0;
  /// As Batch has these.
  virtual void commit(const Batch::Record& record) = 0;
  virtual bool revert(std::string_view /*reversal*/) { return false; }
  virtual void recall(std::string_view /*reversal*/) {}
  /// Forgets what was changed since the last commit, and what was recalled.
  virtual void rollBack() = 0;
  [[nodiscard]] virtual bool isChanged() const = 0;
  /// Throws FileError when another program's change explains that a command broke off.
  virtual void checkUnchangedFile() const {}
  /// The file or folder that messages name.
  [[nodiscard]] virtual const std::string& place() const = 0;

  std::optional<LibraryLock> lock_;

 private:
  class OpenBatch;
  CommandResult tried(const Command& command);

  bool hasBatch_ = false;
  bool isBroken_ = false;  ///< changes of the batch were lost
};

}  // namespace kestrel
