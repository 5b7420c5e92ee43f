#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>

#include "changes/apply.h"
#include "changes/trash_plan.h"
#include "changes/undo.h"
#include "foundation/library_error.h"
#include "history/history_database.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/trash.h"
#include "tests/dupes/builders.h"
#include "tests/platform/temporary_folder.h"
#include "tests/platform/watched_trash.h"
#include "tools/make_library/audio_files.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

const std::string sound = make_library::makeAudio("wav", 1, 8, 440).bytes;

/// Files on a disk, tracks for them in groups, and the plan that comes of ticking some.
struct GuardWorld {
  TemporaryFolder folder;
  SystemFiles files;
  ManualClock clock;
  History history{folder / "history.sqlite", clock};
  FreedesktopTrash trash{clock, folder / "data"};
  std::optional<World> world;
  PlaylistLibrary library;
  std::vector<ResultTrack> rows;
  GuardOptions guard;

  /// A sound, with some bytes more.
  TrackBuilder file(const std::string& name, std::int32_t group, const std::string& bytes = "x") {
    return track(name).path(folder.write(name, sound + bytes)).inGroup(group);
  }
  /// `outside` as many of the last songs are not among the rows.
  Plan plan(const std::vector<TrackBuilder>& tracks, const std::vector<std::size_t>& ticked,
            std::size_t outside = 0) {
    world.emplace(tracks);
    rows = world->rows();
    for (const std::size_t position : ticked) rows[position].tCheckbox = true;
    rows.resize(rows.size() - outside);
    library.items = std::shared_ptr<const MediaItems>(world->store(), &world->items());
    return planTrash(pointers(rows), true, library, files, guard);
  }
  ApplyReport apply(const Plan& plan, ApplyOptions options = {}) {
    options.guard = guard;
    return applyTrash(plan, library, trash, files, history, options);
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
  EXPECT_EQ(bytesToFree(plan), sound.size() + 1);
}

TEST(TrashGuard, KnowsAFileUnderEachOfItsNames) {
  GuardWorld w;
  std::filesystem::create_directory_symlink(".", w.folder / "link");
  const auto at = [&](const std::string& path) { return track(path).path(w.folder / path); };
  const auto size = [](std::size_t more) { return static_cast<std::int64_t>(sound.size() + more); };
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
  for (const auto& outside : {at("link/b"), at("c"), at("other name").bytes(size(4)),
                              at("leads to e").bytes(size(5)), at("link/f").podcast()})
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
  EXPECT_EQ(bytesToFree(plan), 6 * sound.size() + 21);
  // Now it leads nowhere, and can be had back all the same.
  const ApplyReport report = w.apply(plan);
  EXPECT_EQ(report.count(Outcome::Kind::done), 7U);
  for (const UndoItem& item : inspectRun(*w.history.run(*report.run), w.library, w.files).files)
    EXPECT_EQ(item.state, UndoState::ready) << item.name;
}

TEST(TrashGuard, ATrackListedTwiceAndAFileNamedTwice) {
  GuardWorld w;
  w.plan({w.file("a", 1), w.file("b", 1, "1234"), w.file("c", 1, "12")}, {});
  // The first track is a keeper in one row and not in the next; the third is listed twice.
  std::vector<ResultTrack> rows = {w.rows[0], w.rows[0], w.rows[1], w.rows[2], w.rows[2]};
  rows[0].tCheckbox = true;
  const Plan plan = planTrash(pointers(rows), true, w.library, w.files);
  EXPECT_EQ(texts(plan), (Lines{"a: the track is itself a keeper", "b", "c"}));
  EXPECT_EQ(bytesToFree(plan), 2 * sound.size() + 6);
  // With ticks on what is to go, the same rows read the other way round.
  EXPECT_EQ(texts(planTrash(pointers(rows), false, w.library, w.files))[0],
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
  const ApplyReport report = w.apply(plan, options);
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
  EXPECT_EQ(TemporaryFolder::read(run->files[0].item.trashedPath), sound + "abc");
  EXPECT_EQ(run->files[1].state, ChangeState::planned);

  plan.library.version = "1";
  EXPECT_THROW(w.apply(plan), LibraryError);
}

TEST(TrashGuard, OnlyASoundFileReplacesAnother) {
  namespace fs = std::filesystem;
  const std::string kept = "the file that is kept ";
  struct Case {
    std::string name;
    std::function<void(const std::string& path)> make;
    std::string reason;
  };
  const std::vector<Case> cases = {
      {"folder", [](const auto& path) { fs::create_directory(path); }, kept + "is no regular file"},
      {"device", [](const auto& path) { fs::create_symlink("/dev/zero", path); },
       kept + "is no regular file"},
      {"pipe", [](const auto& path) { ::mkfifo(path.c_str(), 0600); }, kept + "is no regular file"},
      {"empty", [](const auto& path) { std::ofstream file(path); }, kept + "is empty"},
      {"text", [](const auto& path) { std::ofstream(path) << std::string(999, 'x'); },
       kept + "cannot be read as audio"},
      {"link", [](const auto& path) { fs::create_symlink(path + " copy", path); },
       "a keeper has the same file under another path"}};
  GuardWorld w;
  std::vector<TrackBuilder> tracks;
  std::vector<std::size_t> keepers;
  for (const Case& one : cases) {
    keepers.push_back(tracks.size());
    for (const std::string& name : {one.name, one.name + " copy"})
      tracks.push_back(w.file(name, static_cast<std::int32_t>(keepers.size())));
  }
  const Plan good = w.plan(tracks, keepers);
  for (const Case& one : cases) {
    fs::remove(w.folder / one.name);
    one.make(w.folder / one.name);
  }
  const Plan unsound = w.plan(tracks, keepers);
  const ApplyReport report = w.apply(good);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(good.files[i].heldBack.english(), "") << cases[i].name;
    EXPECT_EQ(unsound.files[i].heldBack.english(), cases[i].reason) << cases[i].name;
    EXPECT_EQ(report.outcomes[i].reason.english(), cases[i].reason) << cases[i].name;
  }
}

TEST(TrashGuard, OnlyTheLibrarysMusicGoesUnlessMoreIsAskedFor) {
  GuardWorld w;
  ::setenv("XDG_STATE_HOME", (w.folder / "state").c_str(), 1);
  ::setenv("XDG_DATA_HOME", (w.folder / "share").c_str(), 1);
  std::filesystem::create_directories(w.folder / "state/Kestrel/deep");
  std::filesystem::create_directory_symlink("state/Kestrel/deep", w.folder / "link");
  w.library.file = w.folder.write("Media/Library.xml", sound);
  TrackBuilder cloud = track("cloud").cloud().inGroup(2);
  cloud.item.locationType = LocationType::remote;
  const std::vector<TrackBuilder> tracks = {
      w.file("Media/A/keeper", 1),
      cloud,
      w.file("Media/B/copy", 1),
      w.file("Media/B/other", 2),
      track("text").path(w.folder.write("Media/text", "text")).inGroup(1),
      w.file("Media/../outside", 1),
      w.file("share/Kestrel/Demo/Media/demo", 1),
      track("document").path(w.library.file).inGroup(1),
      w.file("link/own", 1)};
  // By each track: what is said of it, if it stays.
  const auto check = [&](const std::vector<std::string>& expected) {
    const Plan plan = w.plan(tracks, {0, 1});
    Plan byHand = plan;
    for (PlannedFile& file : byHand.files) file.heldBack = {};
    TrashCheck again(byHand, w.library, w.files, w.guard);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(plan.files[i].heldBack.english(), expected[i]) << plan.files[i].path;
      EXPECT_EQ(again.reasonToStay(byHand.files[i]).english(), expected[i]);
    }
  };
  const std::string outside = "it lies outside the library's media folder",
                    text = "it cannot be read as audio", xml = "it is the library's own file",
                    own = "it is one of Kestrel's own files";
  w.library.folder = w.folder / "Media/";
  check({"", "", text, outside, outside, xml, own});
  w.library.folder = w.folder / "Media/B";
  check({"", "", outside, outside, outside, xml, own});
  // One that is not here, or in which much else lies, says nothing: the kept file does.
  for (const std::string& none : {std::string(), w.folder / "none", w.folder.path()}) {
    w.library.folder = none;
    check({outside, outside, outside, outside, outside, xml, own});
  }
  w.guard = {true, true, false};
  check({"", "the copy that is kept is only in the cloud", "", "", "", xml, own});
  ::unsetenv("XDG_STATE_HOME");
  ::unsetenv("XDG_DATA_HOME");
}

TEST(TrashGuard, APlanIsNotTrustedWithWhatItNames) {
  GuardWorld w;
  const Plan plan = w.plan({w.file("k1", 1), w.file("a", 1), w.file("k2", 2), w.file("b", 2),
                            w.file("alone", 3), track("twin").path(w.folder / "a").inGroup(1)},
                           {0, 2, 4});
  const auto reason = [&](const auto& change) {
    Plan changed = plan;
    change(changed);
    return TrashCheck(changed, w.library, w.files, {}).reasonToStay(changed.files[0]).english();
  };
  const auto takes = [&](const std::string& name, std::uint64_t track) {
    return [&w, name, track](Plan& changed) {
      PlannedFile& file = changed.files[0];
      const FileStatus is = *w.files.status(w.folder / name);
      file = {w.folder / name, track,           name, 0, is.size, is.device,
              is.inode,        file.keeperPath, {},   1};
    };
  };
  EXPECT_EQ(reason([](Plan&) {}), "");
  EXPECT_EQ(reason(takes("k2", 3)), "a keeper has the same file under another path");
  EXPECT_EQ(reason(takes("b", 2)), "it is not the file of its track");
  EXPECT_EQ(reason([](Plan& changed) { changed.files[0].otherTracks.clear(); }),
            "another track of the library has the same file");
  EXPECT_EQ(reason([](Plan& changed) { changed.files[0].keeper = 9; }),
            "what is kept in its place is not in the library");
  EXPECT_EQ(reason([](Plan& changed) { changed.files[0].keeperPath.clear(); }),
            "what is kept in its place is not in the library");
  EXPECT_EQ(reason([](Plan& changed) { changed.files[0].keeper.reset(); }), "")
      << "as plans of earlier versions are";
}

TEST(TrashGuard, NothingGoesThatTheHistoryDoesNotKnow) {
  GuardWorld w;
  const Plan plan = w.plan(
      {w.file("keeper", 1), w.file("first", 1), w.file("second", 1), w.file("third", 1)}, {0});
  WatchedTrash trash(w.trash, [&](WatchedTrash::Step step, int number) {
    if (step == WatchedTrash::Step::reserved && number == 2)
      HistoryDatabase(w.history.path())
          .execute(
              "CREATE TRIGGER fails BEFORE UPDATE ON file_change BEGIN "
              "SELECT RAISE(FAIL, 'broken'); END");
  });
  const ApplyReport report = applyTrash(plan, w.library, trash, w.files, w.history);
  EXPECT_EQ(report.state, RunState::brokenOff);
  EXPECT_NE(report.problem.english().find("the history cannot be used"), std::string::npos);
  EXPECT_EQ(report.count(Outcome::Kind::done), 1U);
  EXPECT_EQ(report.count(Outcome::Kind::notReached), 1U);
  EXPECT_NE(report.lines()[0].find("Broke off before 1 file."), std::string::npos);
  EXPECT_NE(report.outcomes[1].reason.english().find("was not moved"), std::string::npos);
  EXPECT_TRUE(w.files.exists(w.folder / "second") && w.files.exists(w.folder / "third"));
  const RunRecord run = *w.history.run(*report.run);
  EXPECT_EQ(run.summary.state, RunState::brokenOff);
  EXPECT_EQ(inspectRun(run, w.library, w.files).files[0].state, UndoState::ready);
}

}  // namespace
}  // namespace kestrel
