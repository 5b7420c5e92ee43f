#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "changes/library_checks.h"
#include "changes/library_run.h"
#include "musicapp/applications.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// Why a file cannot be added; empty when it may be. What is no audio file is for the application
/// to find out.
Message reasonNotToAdd(const std::string& path, const FileService& files) {
  const auto status = files.status(path);
  if (!status) return Message::tr("there is no such file");
  if (status->kind == FileStatus::Kind::folder) return Message::tr("it is a folder");
  if (applicationOf(path, files)) return Message::tr("it is a library");
  return {};
}

/// The tracks of some paths.
std::unordered_map<std::string, const MediaItem*> tracksAt(const std::vector<FileChange>& changes,
                                                           const MediaItems& items) {
  std::unordered_map<std::string, const MediaItem*> tracks;
  for (const FileChange& change : changes) tracks.emplace(change.item.originalPath, nullptr);
  items.forEach([&](const MediaItem& item) {
    if (const auto found = tracks.find(filePath(item)); found != tracks.end() && !found->second)
      found->second = &item;
  });
  return tracks;
}

/// A run that adds files.
class AdditionRun final : public LibraryRun {
 public:
  AdditionRun(const Plan& plan, MusicApplication& application, const FileService& files,
              History& history, const ApplyOptions& options)
      : LibraryRun(plan, application, history, options, LibraryImage::Of::user), files_(files) {}

 private:
  bool choose() override {
    for (const PlannedFile& file : plan_.files)
      changes_.emplace_back().item.originalPath = file.path;
    const auto items = library().allMediaItems();
    const auto known = tracksAt(changes_, *items);
    changes_.clear();
    for (const PlannedFile& file : plan_.files) {
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.what = Outcome::What::file;
      outcome.name = file.path;
      const MediaItem* track = known.at(file.path);
      if (track) outcome.id = track->persistentID;
      Message reason =
          track ? Message::tr("the library has it already") : reasonNotToAdd(file.path, files_);
      if (!reason.empty()) {
        skip(outcome, std::move(reason));
        continue;
      }
      changes_.emplace_back().item.originalPath = file.path;
      places_.push_back(report_.outcomes.size() - 1);
    }
    itemsBefore_ = items->size();
    return !changes_.empty();
  }

  RunChanges changes() override { return {{}, changes_, {}}; }

  void act(const LibraryImage& before) override {
    const auto path = [&](std::size_t i) { return changes_[i].item.originalPath; };
    stepThrough(changes_.size(), options_, report_, path, [&](std::size_t i) {
      const CommandResult result = application_.run(command::AddFile{path(i)});
      if (result.failed()) report_.outcomes[places_[i]].reason = result.failure->message;
      ++tried_;
    });
    settle(before);
    history_.record(changes_);
  }

  /// Adding says nothing of how it went: what came of it is seen by looking.
  void settle(const LibraryImage& before) {
    const auto items = library().allMediaItems();
    const auto tracks = tracksAt(changes_, *items);
    std::size_t added = 0;
    for (std::size_t i = 0; i < tried_; ++i) {
      FileChange& change = changes_[i];
      Outcome& outcome = report_.outcomes[places_[i]];
      if (const MediaItem* track = tracks.at(change.item.originalPath)) {
        ++added;
        change.state = ChangeState::done;
        change.track = outcome.id = track->persistentID;
        change.size = outcome.changes = static_cast<std::uint64_t>(track->fileSize);
        change.fingerprint = fingerprintOf(*track);
        outcome.kind = Outcome::Kind::done;
      } else {
        change.state = ChangeState::failed;
        if (outcome.reason.empty())
          outcome.reason = Message::tr(
              "the music application does not take it: it is no audio file, or cannot be read");
        change.note = outcome.reason.english();
        outcome.kind = Outcome::Kind::failed;
      }
    }
    if (const Message difference = before.differenceTo(image()); !difference.empty())
      throw MessageError(Message::tr("adding files changed playlists: %1").arg(difference));
    if (items->size() != itemsBefore_ + added)
      throw MessageError(Message::tr("the library did not grow by the tracks that were added"));
  }

  const FileService& files_;
  std::vector<FileChange> changes_;
  std::vector<std::size_t> places_;  ///< of the changes' outcomes
  std::size_t tried_ = 0;
  std::size_t itemsBefore_ = 0;
};

}  // namespace

ApplyReport applyAdditions(const Plan& plan, MusicApplication& application,
                           const FileService& files, History& history,
                           const ApplyOptions& options) {
  if (plan.kind != RunKind::addToLibrary)
    throw std::invalid_argument("this plan adds no files to the library");
  return AdditionRun(plan, application, files, history, options).carryOut();
}

}  // namespace kestrel
