#include "changes/trash_guard.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "foundation/library_error.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/freedesktop_trash.h"
#include "changes/apply.h"
#include "changes/undo.h"
#include "tests/dupes/builders.h"
#include "tests/platform/temporary_folder.h"
#include "tests/changes/history_sql.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

/// Files on a disk, tracks for them in groups, and the plan that comes of ticking some.
struct GuardWorld {
  TemporaryFolder folder;
  SystemFiles files;
  ManualClock clock;
  History history{folder / "history.sqlite", clock};
  FreedesktopTrash trash{clock, folder / "data"};
  std::optional<World> world;
  std::vector<ResultTrack> rows;

  TrackBuilder file(const std::string& name, std::int32_t group, const std::string& bytes = "x") {
    return track(name).path(folder.write(name, bytes)).inGroup(group);
  }
  /// `outside` as many of the last songs are not among the rows.
  Plan plan(const std::vector<TrackBuilder>& tracks, const std::vector<std::size_t>& ticked,
            std::size_t outside = 0) {
    world.emplace(tracks);
    rows = world->rows();
    for (const std::size_t position : ticked) rows[position].tCheckbox = true;
    rows.resize(rows.size() - outside);
    return planTrash(pointers(rows), true, world->items(), files);
  }
};

/// "NAME" of what goes, "NAME: reason" of what stays.
std::vector<std::string> texts(const Plan& plan) {
  std::vector<std::string> lines;
  for (const PlannedFile& file : plan.files)
    lines.push_back(file.name + (file.heldBack.empty() ? "" : ": " + file.heldBack.english()));
  return lines;
}

using Lines = std::vector<std::string>;

TEST(TrashGuard, LetsOnlyGoWhatNothingElseNeeds) {
  GuardWorld w;
  const auto keeper = w.file("keeper", 1);
  const auto linked = track("linked").path(w.folder / "linked").inGroup(1);
  std::filesystem::create_hard_link(w.folder / "keeper", w.folder / "linked");
  const auto pointed = track("pointed").path(w.folder / "pointed").inGroup(1);
  std::filesystem::create_symlink(w.folder / "other keeper", w.folder / "pointed");
  std::filesystem::create_directory(w.folder / "bundle");
  const Plan plan =
      w.plan({keeper, w.file("goes", 1), track("same path").path(w.folder / "keeper").inGroup(1),
              linked, pointed, track("gone").path(w.folder / "gone").inGroup(1),
              w.file("cloud", 1).cloud(), track("bundle").path(w.folder / "bundle").inGroup(1),
              w.file("other keeper", 2), w.file("shared", 2), w.file("alone", 3), w.file("too", 3),
              track("lost keeper").path(w.folder / "lost").missing().inGroup(4),
              w.file("last copy", 4), track("unfound").path(w.folder / "shared")},
             {0, 8, 12}, 1);
  EXPECT_EQ(texts(plan), (Lines{"goes", "same path: a keeper has the same file",
                                "linked: a keeper has the same file under another path",
                                "pointed: a keeper has the same file under another path",
                                "gone: its file is missing", "cloud: it is in the cloud",
                                "bundle: it is no regular file",
                                "shared: another track of the library has the same file",
                                "alone: its group has no keeper", "too: its group has no keeper",
                                "last copy: the file of its group's keeper is missing"}));
  EXPECT_EQ(bytesToFree(plan), 1U);
}

TEST(TrashGuard, KnowsAFileUnderEachOfItsNames) {
  GuardWorld w;
  std::filesystem::create_directory_symlink(".", w.folder / "link");
  const auto at = [&](const std::string& path) { return track(path).path(w.folder / path); };
  std::vector<TrackBuilder> tracks = {w.file("keeper", 1)};
  const std::string bytes[] = {"1", "22", "333", "4444", "55555", "666666"};
  for (const char* name : {"a", "b", "C", "d", "e", "f"})
    tracks.push_back(w.file(name, 1, bytes[tracks.size() - 1]));
  std::filesystem::create_symlink("e", w.folder / "leads to e");
  std::filesystem::create_hard_link(w.folder / "d", w.folder / "other name");
  std::filesystem::create_hard_link(w.folder / "C", w.folder / "c");
  // In rows of a group that keeps all it has, among the songs, and among other items.
  tracks.push_back(at("/./a").inGroup(2));
  const std::size_t rows = tracks.size();
  for (const auto& outside : {at("link/b"), at("c"), at("other name").bytes(4),
                              at("leads to e").bytes(5), at("link/f").podcast()})
    tracks.push_back(outside);
  EXPECT_EQ(
      texts(w.plan(tracks, {0}, 4)),
      (Lines{"a: its group has no keeper", "b: another track of the library has the same file",
             "C: another track of the library has the same file",
             "d: another track of the library has the same file",
             "e: another track of the library has the same file",
             "f: another track of the library has the same file",
             "/./a: its group has no keeper"}));
  // What is left is free to go; a link goes itself, and frees nothing.
  tracks.resize(rows);
  tracks.back() = at("leads to e").inGroup(1);
  const Plan plan = w.plan(tracks, {0});
  EXPECT_EQ(texts(plan), (Lines{"a", "b", "C", "d", "e", "f", "leads to e"}));
  EXPECT_EQ(bytesToFree(plan), 21U);
  // Now it leads nowhere, and can be had back all the same.
  const ApplyReport report = applyTrash(plan, plan.library, w.trash, w.files, w.history);
  EXPECT_EQ(report.count(Outcome::Kind::done), 7U);
  PlaylistLibrary library(std::vector<Playlist>{});
  for (const UndoItem& item : inspectRun(*w.history.run(*report.run), library, w.files).files)
    EXPECT_EQ(item.state, UndoState::ready) << item.name;
}

TEST(TrashGuard, ATrackListedTwiceAndAFileNamedTwice) {
  GuardWorld w;
  w.plan({w.file("a", 1), w.file("b", 1, "1234"), w.file("c", 1, "12")}, {});
  // The first track is a keeper in one row and not in the next; the third is listed twice.
  std::vector<ResultTrack> rows = {w.rows[0], w.rows[0], w.rows[1], w.rows[2], w.rows[2]};
  rows[0].tCheckbox = true;
  const Plan plan = planTrash(pointers(rows), true, w.world->items(), w.files);
  EXPECT_EQ(texts(plan), (Lines{"a: the track is itself a keeper", "b", "c"}));
  EXPECT_EQ(bytesToFree(plan), 6U);
  // With ticks on what is to go, the same rows read the other way round.
  EXPECT_EQ(texts(planTrash(pointers(rows), false, w.world->items(), w.files))[0],
            "a: the track is itself a keeper");
}

TEST(TrashGuard, ApplyingLooksAgainAndRecordsWhereEachFileWent) {
  GuardWorld w;
  Plan plan = w.plan({w.file("keeper", 1), w.file("goes", 1, "abc"), w.file("replaced", 1),
                      w.file("k2", 2), w.file("orphaned", 2), w.file("k3", 3), w.file("late", 3)},
                     {0, 3, 5});
  std::filesystem::rename(w.folder.write("new", "other"), w.folder / "replaced");
  std::filesystem::remove(w.folder / "k2");
  ApplyOptions options;
  options.cancelled = [n = 0]() mutable { return ++n > 1; };
  const ApplyReport report = applyTrash(plan, plan.library, w.trash, w.files, w.history, options);
  EXPECT_EQ(report.state, RunState::cancelled);
  std::map<std::string, std::string> outcomes;
  for (const Outcome& outcome : report.outcomes)
    outcomes[outcome.name.substr(outcome.name.rfind('/') + 1)] =
        outcome.kind == Outcome::Kind::done         ? "done"
        : outcome.kind == Outcome::Kind::notReached ? "not reached"
                                                    : outcome.reason.english();
  EXPECT_EQ(outcomes, (std::map<std::string, std::string>{
                          {"goes", "done"},
                          {"replaced", "another file has taken its place"},
                          {"orphaned", "the file that is kept is no longer there"},
                          {"late", "not reached"}}));
  EXPECT_FALSE(w.files.exists(w.folder / "goes"));
  const auto run = w.history.run(*report.run);
  EXPECT_EQ(TemporaryFolder::read(run->files[0].item.trashedPath), "abc");
  EXPECT_EQ(run->files[1].state, ChangeState::planned);

  LibraryIdentity other = plan.library;
  other.version = "1";
  EXPECT_THROW(applyTrash(plan, other, w.trash, w.files, w.history), LibraryError);
}

/// A trash after whose second file the history takes nothing of files any more.
class BreakingTrash final : public Trash {
 public:
  BreakingTrash(Trash& real, std::string history) : real_(real), history_(std::move(history)) {}
  std::vector<TrashResult> recycle(std::span<const std::string> paths) override {
    if (++count_ == 2) letUpdatesFail(history_, "file_change");
    return real_.recycle(paths);
  }
  void restore(const TrashedItem& item) override {
    if (isFull) throw FileError(item.originalPath, Message::verbatim("no room"), {});
    real_.restore(item);
  }
  bool isFull = false;

 private:
  Trash& real_;
  std::string history_;
  int count_ = 0;
};

TEST(TrashGuard, NothingGoesThatTheHistoryDoesNotKnow) {
  for (const bool isFull : {false, true}) {
    SCOPED_TRACE(isFull);
    GuardWorld w;
    const Plan plan = w.plan(
        {w.file("keeper", 1), w.file("first", 1), w.file("second", 1), w.file("third", 1)}, {0});
    BreakingTrash trash(w.trash, w.history.path());
    trash.isFull = isFull;
    const ApplyReport report = applyTrash(plan, plan.library, trash, w.files, w.history);
    EXPECT_EQ(report.state, RunState::brokenOff);
    EXPECT_NE(report.problem.english().find("the history cannot be used"), std::string::npos);
    EXPECT_EQ(report.count(Outcome::Kind::done), isFull ? 2U : 1U);
    EXPECT_EQ(report.count(Outcome::Kind::notReached), 1U);
    EXPECT_NE(report.lines()[0].find("Broke off before 1 file."), std::string::npos);
    EXPECT_EQ(w.files.exists(w.folder / "second"), !isFull);
    EXPECT_NE(report.outcomes[1].reason.english().find(isFull ? "Trash/files/second" : "put back"),
              std::string::npos);
    EXPECT_TRUE(w.files.exists(w.folder / "third"));
    EXPECT_EQ(w.history.run(*report.run)->summary.state, RunState::brokenOff);
    EXPECT_EQ(w.history.run(*report.run)->files[0].state, ChangeState::done);
  }
}

}  // namespace
}  // namespace kestrel
