/// What runs have in common that change what an application keeps of a library.
#pragma once

#include <cstddef>
#include <utility>

#include "changes/apply.h"
#include "changes/library_checks.h"

namespace kestrel {

inline void skip(Outcome& outcome, Message reason) {
  outcome.kind = Outcome::Kind::skipped;
  outcome.reason = std::move(reason);
}

/// One run that changes what an application keeps of a library, from the checks to the history's
/// last word: all of it is kept, or none.
class LibraryRun {
 public:
  /// `watched`: the lists whose entries change by what the run does to them alone.
  LibraryRun(const Plan& plan, MusicApplication& application, History& history,
             const ApplyOptions& options, LibraryImage::Of watched)
      : plan_(plan),
        application_(application),
        history_(history),
        options_(options),
        watched_(watched) {
    report_.kind = plan.kind;
  }
  LibraryRun(const LibraryRun&) = delete;
  LibraryRun& operator=(const LibraryRun&) = delete;
  virtual ~LibraryRun() = default;

  ApplyReport carryOut();

 protected:
  /// Settles what takes part, with an outcome for each thing of the plan; false when nothing does.
  virtual bool choose() = 0;
  virtual RunChanges changes() = 0;
  /// Carries it out, checks what came of it and writes that down. What it throws ends the run.
  virtual void act(const LibraryImage& before) = 0;
  /// What is done once the library is on the disk.
  virtual void finishWhatFollows() {}

  MediaLibrary& library() { return application_.library(); }
  LibraryImage image() { return LibraryImage(*library().allPlaylists(), watched_); }
  std::size_t itemCount() { return library().allMediaItems()->size(); }

  Plan plan_;
  MusicApplication& application_;
  History& history_;
  const ApplyOptions& options_;
  ApplyReport report_;

 private:
  void giveUp(Message problem, bool isRestored);

  const LibraryImage::Of watched_;
};

}  // namespace kestrel
