#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>
#include <unordered_map>

#include "changes/added_tracks.h"
#include "changes/apply.h"
#include "changes/apply_checks.h"
#include "musicapp/applications.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// Why a file cannot be added; empty when it may be. What is no audio file is for the application
/// to find out.
Message reasonNotToAdd(const std::string& path, const FileService& files) {
  const auto status = files.status(path);
  if (!status) return Message::tr("there is no such file");
  if (status->kind == FileStatus::Kind::folder) return Message::tr("it is a folder");
  if (applicationOf(path, files)) return Message::tr("it is a document and no audio file");
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

/// One run that adds files, from the checks to the history's last word.
class AdditionRun {
 public:
  AdditionRun(const Plan& plan, MusicApplication& application, History& history,
              const ApplyOptions& options)
      : plan_(plan), application_(application), history_(history), options_(options) {
    report_.kind = plan.kind;
  }

  ApplyReport carryOut(const FileService& files) {
    std::unique_ptr<Batch> batch = application_.beginBatch();
    const LibraryIdentity now = application_.library().identity();
    requireSame(plan_.library, now);
    choose(files);
    if (changes_.empty()) return std::move(report_);

    before_ = application_.library().allMediaItems()->size();
    const LibraryImage playlists(*application_.library().allPlaylists(), LibraryImage::Of::user);
    report_.run = history_.begin(plan_.kind, now, {{}, changes_, {}});
    try {
      act();
      settle(playlists);
      history_.record(changes_);
      batch->commit(
          [this](std::string_view reversal) { history_.recordReversal(*report_.run, reversal); });
      report_.changedLibrary = report_.count(Outcome::Kind::done) > 0;
    } catch (const std::exception& error) {
      batch.reset();
      giveUp(messageOf(error));
      return std::move(report_);
    }
    finish();
    return std::move(report_);
  }

 private:
  void choose(const FileService& files) {
    for (const PlannedFile& file : plan_.files) {
      FileChange& change = changes_.emplace_back();
      change.item.originalPath = file.path;
    }
    const auto items = application_.library().allMediaItems();
    const auto known = tracksAt(changes_, *items);
    changes_.clear();
    for (const PlannedFile& file : plan_.files) {
      Outcome& outcome = report_.outcomes.emplace_back();
      outcome.what = Outcome::What::file;
      outcome.name = file.path;
      if (const MediaItem* track = known.at(file.path)) {
        outcome.id = track->persistentID;
        outcome.reason = Message::tr("the library has it already");
      } else {
        outcome.reason = reasonNotToAdd(file.path, files);
      }
      if (!outcome.reason.empty()) {
        outcome.kind = Outcome::Kind::skipped;
        continue;
      }
      changes_.emplace_back().item.originalPath = file.path;
      places_.push_back(report_.outcomes.size() - 1);
    }
  }

  void act() {
    for (std::size_t i = 0; i < changes_.size(); ++i) {
      const std::string& path = changes_[i].item.originalPath;
      if (options_.progress) options_.progress({i, changes_.size(), path});
      if (options_.cancelled && options_.cancelled()) {
        report_.state = RunState::cancelled;
        return;
      }
      const CommandResult result = application_.run(command::AddFile{path});
      if (result.failed()) report_.outcomes[places_[i]].reason = result.failure->message;
      ++tried_;
    }
    if (options_.progress) options_.progress({changes_.size(), changes_.size(), {}});
  }

  /// Adding says nothing of how it went: what came of it is seen by looking.
  void settle(const LibraryImage& playlists) {
    const auto items = application_.library().allMediaItems();
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
    const LibraryImage found(*application_.library().allPlaylists(), LibraryImage::Of::user);
    if (const Message difference = playlists.differenceTo(found); !difference.empty())
      throw MessageError(Message::tr("adding files changed playlists: %1").arg(difference));
    if (items->size() != before_ + added)
      throw MessageError(Message::tr("the library did not grow by the tracks that were added"));
  }

  void giveUp(Message problem) {
    report_.problem = std::move(problem);
    const bool restored = application_.library().allMediaItems()->size() == before_;
    report_.changedLibrary = !restored;
    report_.state = restored ? RunState::failed : RunState::brokenOff;
    for (const std::size_t place : places_) {
      Outcome& outcome = report_.outcomes[place];
      outcome.kind = Outcome::Kind::failed;
      outcome.reason = Message::tr("the run failed and nothing of it was kept");
    }
    finish();
  }

  /// The last word to the history. That this fails does not change what was done.
  void finish() {
    try {
      history_.finish(*report_.run, report_.state);
    } catch (const HistoryError& error) {
      if (!report_.problem.empty()) report_.problem = ended(std::move(report_.problem));
      report_.problem = joined(std::move(report_.problem), error.message);
    }
  }

  const Plan& plan_;
  MusicApplication& application_;
  History& history_;
  const ApplyOptions& options_;
  ApplyReport report_;
  std::vector<FileChange> changes_;
  std::vector<std::size_t> places_;  ///< of the changes' outcomes
  std::size_t tried_ = 0;
  std::size_t before_ = 0;  ///< items of the library
};

}  // namespace

ApplyReport applyAdditions(const Plan& plan, MusicApplication& application, FileService& files,
                           History& history, const ApplyOptions& options) {
  if (plan.kind != RunKind::addToLibrary)
    throw std::invalid_argument("this plan adds no files to the library");
  return AdditionRun(plan, application, history, options).carryOut(files);
}

}  // namespace kestrel
