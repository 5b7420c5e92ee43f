// What is special about the library of Rhythmbox: its files, its lists, and the player while it
// runs.
#include <fstream>
#include <gtest/gtest.h>

#include "foundation/library_error.h"
#include "musicapp/applications.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/musicapp/rhythmbox/rhythmbox_world.h"

namespace kestrel::testing {
namespace {

using namespace command;
using rhythmbox::ListEdit;
using rhythmbox::PlaylistsFile;
using Uris = std::vector<std::string>;

Lines itemsOf(const std::string& entries, const std::string& prolog = {}) {
  DerivedIDs ids("track");
  rhythmbox::PlayerTracks tracks(ids);
  tracks.read(prolog + "<rhythmdb version='2.0'>" + entries + "</rhythmdb>", "test");
  LibraryDocument document;
  document.items = std::const_pointer_cast<MediaItems>(tracks.items());
  document.playlists = std::make_shared<std::vector<Playlist>>();
  Lines lines = described(document);
  lines.pop_back();  // of the document
  return lines;
}

TEST(RhythmboxTracks, AreReadWithAllThatTheFileSaysOfThem) {
  const std::pair<const char*, Lines> cases[] = {
      {"<entry type='song'><title>T &amp; <![CDATA[<x>]]></title><artist>A</artist><album>B</album>"
       "<album-artist>C</album-artist><composer>D</composer><genre>E</genre><comment>F</comment>"
       "<track-number>3</track-number><track-total>12</track-total><disc-number>1</disc-number>"
       "<disc-total>2</disc-total><duration>200</duration><file-size>5000000000</file-size>"
       "<location>file:///m/a%20b/%C3%A9.mp3</location><mtime>1600000001</mtime>"
       "<first-seen>1600000002</first-seen><last-seen>1700000000</last-seen><rating>3.5</rating>"
       "<play-count>7</play-count><last-played>1600000003</last-played><bitrate>192</bitrate>"
       "<date>726833</date><media-type>audio/mpeg</media-type>"
       "<beats-per-minute>119.6</beats-per-minute><hidden>1</hidden><new><title>x</title></new>"
       "</entry>",
       {"Name=T & <x>",
        "Artist=A",
        "Album Artist=C",
        "Album=B",
        "Composer=D",
        "Genre=E",
        "Comments=F",
        "Kind=MPEG audio file",
        "Year=1991",
        "Rating=70",
        "Bit Rate=192",
        "Play Count=7",
        "BPM=120",
        "Track Number=3",
        "Track Count=12",
        "Disc Number=1",
        "Disc Count=2",
        "Total Time=200000",
        "Size=5000000000",
        "Date Added=1600000002",
        "Date Modified=1600000001",
        "Play Date UTC=1600000003",
        "folder=/m/a b",
        "name=\xC3\xA9.mp3",
        "locationType=1"}},
      {"<entry type='song'><title>Unknown</title><artist>Unknown</artist><album>Unknown</album>"
       "<genre>Unknown</genre><comment>Unknown</comment><date>0</date><last-played>0</last-played>"
       "<location>smb://host/x.mp3</location></entry>",
       {"Name=Unknown", "Comments=Unknown", "name=smb://host/x.mp3", "locationType=2"}},
      {"<entry type='song'><location>file:///a</location></entry>"
       "<entry type='song'><location>file:///a</location></entry>",
       {"folder=", "name=a", "locationType=1"}},
      {"<entry type='iradio'><location>http://x</location></entry><entry type='ignore'><location>"
       "file:///x</location></entry><entry type='song'><title>nowhere</title></entry>",
       {}}};
  for (const auto& [entries, expected] : cases) {
    const Lines lines = itemsOf(entries);
    ASSERT_EQ(lines.size(), expected.empty() ? 0U : 1U) << entries;
    for (const std::string& part : expected)
      EXPECT_NE((lines[0] + " |").find(" | " + part + " |"), std::string::npos)
          << part << " in " << lines[0];
    if (!lines.empty()) {
      const auto parts = std::count(lines[0].begin(), lines[0].end(), '|');
      EXPECT_EQ(parts, static_cast<std::ptrdiff_t>(expected.size()) + 2) << lines[0];
    }
  }
}

/// Long ones are read in halves, unless they say their encoding.
TEST(RhythmboxTracks, OfALongFileAreThoseOfTheWhole) {
  const std::string whole = "<?xml version='1.0' encoding='UTF-8'?>";
  const auto songs = [](int from, int count) {
    std::string text;
    for (int i = from; i < from + count; ++i)
      text += "<entry type='song'><title>T\u00E9 " + std::to_string(i) + "</title><artist>A " +
              std::to_string(i % 7) + "</artist><comment>" + std::string(200, 'c') +
              "</comment><location>file:///m/" + std::to_string(i % 3000) +
              ".mp3</location></entry>\n";
    return text;
  };
  const std::string some = songs(0, 2000), more = songs(2000, 2000);
  const Lines expected = itemsOf(some + more, whole);
  ASSERT_EQ(expected.size(), 3000U) << "each place once";
  EXPECT_EQ(firstDifference(expected, itemsOf(some + more)), "");
  std::string ends;  // that are none
  for (int i = 0; i < 400; ++i) ends += "</entry>";
  for (const auto& [before, after] : {std::pair("<!-- ", " -->"), {"<x><![CDATA[", "]]></x>"}})
    EXPECT_EQ(firstDifference(expected, itemsOf(some + before + ends + after + more)), "")
        << before;
  const auto problemOf = [&](const std::string& prolog) -> std::string {
    try {
      itemsOf(some + more + "<entry>", prolog);
    } catch (const LibraryError& error) {
      return error.what();
    }
    return {};
  };
  EXPECT_NE(problemOf({}).find("line 4001"), std::string::npos) << problemOf({});
}

TEST(RhythmboxTracks, TellWhereTheFileIsDamaged) {
  const std::pair<const char*, const char*> cases[] = {{"<rhythmdb>\n<entry></rhythmdb>", "line 2"},
                                                       {"<plist></plist>", "rhythmdb"},
                                                       {"<rhythmdb>", "no element"},
                                                       {"", "no element"}};
  for (const auto& [document, said] : cases) {
    DerivedIDs ids("track");
    try {
      rhythmbox::PlayerTracks(ids).read(document, "test.xml");
      ADD_FAILURE() << document << " was read";
    } catch (const LibraryError& error) {
      EXPECT_NE(std::string(error.what()).find(said), std::string::npos) << error.what();
    }
  }
}

TEST(RhythmboxPlaylists, AreEditedWhereTheyChangeAlone) {
  const std::string head = "<?xml version=\"1.0\"?>\n<rhythmdb-playlists>\n",
                    tail = "\n</rhythmdb-playlists>\n";
  const std::string two =
      "\t<playlist name=\"A\" x='1' type='static'>\r\n\t\t<location>u</location><!-- of v -->\r\n"
      "\t\t<location><![CDATA[v]]></location>\r\n\t\t<!-- end -->\r\n\t</playlist>";
  const std::string one = "\t<playlist name=\"B\" type=\"static\"/>";
  const auto first = [](Uris uris) { return std::vector<ListEdit>{{0, "", std::move(uris)}}; };
  const auto made = [](Uris uris) { return std::vector<ListEdit>{{{}, "\xC3\xA9\"<", uris}}; };
  const std::string madeText =
      "\n  <playlist name=\"&#233;&#34;&#60;\" show-browser=\"false\" browser-position=\"180\" "
      "search-type=\"search-match\" type=\"static\">\n    <location>n&#38;</location>\n"
      "  </playlist>";
  const auto begin = two.substr(0, two.find("\r\n"));
  const std::string u = "\r\n\t\t<location>u</location>",
                    v = "<!-- of v -->\r\n\t\t<location><![CDATA[v]]></location>",
                    close = "\r\n\t\t<!-- end -->\r\n\t</playlist>";
  struct Case {
    std::string before;
    std::vector<ListEdit> edits;
    std::string after;
  };
  const Case cases[] = {
      {head + two + tail, first({"u", "v"}), head + two + tail},
      {head + two + tail, first({"n&", "v"}),
       head + begin + "\r\n\t\t<location>n&#38;</location>" + v + close + tail},
      {head + two + tail, first({"v", "u"}), head + begin + v + u + close + tail},
      {head + two + tail, first({}), head + begin + close + tail},
      {head + one + tail, first({"n"}),
       head + "\t<playlist name=\"B\" type=\"static\">\n    <location>n</location>\n  </playlist>" +
           tail},
      {head + one + "\n" + two + tail,
       {{0, "", std::nullopt}},
       head.substr(0, head.size() - 1) + "\n" + two + tail},
      {head + one + tail, made({"n&"}), head + one + madeText + tail},
      {"<rhythmdb-playlists/>", made({"n&"}),
       "<rhythmdb-playlists>" + madeText + "\n</rhythmdb-playlists>"},
      {"<rhythmdb-playlists></rhythmdb-playlists>", made({"n&"}),
       "<rhythmdb-playlists>" + madeText + "</rhythmdb-playlists>"}};
  for (const auto& [before, edits, after] : cases) {
    const std::string edited = PlaylistsFile(before, "test").edited(edits);
    EXPECT_EQ(edited, after);
    const auto lists = PlaylistsFile(edited, "test").lists();
    if (!edits[0].uris) continue;
    EXPECT_EQ((edits[0].list ? lists.front() : lists.back()).uris, *edits[0].uris);
  }
}

/// Also where other entries have come in meanwhile.
TEST(RhythmboxPlaylists, ComeBackInTheirOwnSpelling) {
  const std::string begin = "<rhythmdb-playlists>\n\t<playlist name='A' type='static'>",
                    u = "<!-- of u -->\n\t\t<location>u&amp;</location>",
                    v = "\n<location>v&#x26;&#38;</location>",
                    end = "\n</playlist><playlist name='B'";
  const std::string file = begin + u + v + end + " type='static'/></rhythmdb-playlists>";
  const PlaylistsFile before(file, "test");
  const ListEdit edits[] = {{0, "", Uris{"n", "v&&"}}, {1, "", Uris{"n"}}};
  const rhythmbox::FormerList formers[] = {before.former(edits[0]), before.former(edits[1])};
  const PlaylistsFile after(before.edited(edits), "test");
  EXPECT_EQ(after.lists()[0].uris, (Uris{"n", "v&&"}));
  EXPECT_EQ(after.edited(std::vector<ListEdit>{{0, "", Uris{"u&", "v&&"}, &formers[0]},
                                               {1, "", Uris{}, &formers[1]}}),
            file);
  const PlaylistsFile others(after.edited(std::vector<ListEdit>{{0, "", Uris{}}}), "test");
  EXPECT_NE(others.edited(std::vector<ListEdit>{{0, "", Uris{"u&"}, &formers[0]}}).find(u),
            std::string::npos);
}

TEST(RhythmboxLibrary, GivesEntriesBackAsTheirFileHadThem) {
  RhythmboxWorld world;
  std::string text = world.stored();
  const std::string uri = world.uri("a");
  for (std::size_t at = 0; (at = text.find(uri, at)) != std::string::npos; at += uri.size() + 4)
    text.replace(at, 1, "&#" + std::to_string(static_cast<int>(uri[0])) + ";");
  world.folder.write(world.playlists.substr(world.folder.path().size() + 1), text);
  world.open();
  const auto lists = world.app->allPlaylists();
  const auto list = std::find_if(lists->begin(), lists->end(), [&](const Playlist& one) {
    return one.kind == PlaylistKind::regular && !one.isMaster && one.items.size() > 1;
  });
  ASSERT_NE(list, lists->end());
  const std::uint64_t id = list->persistentID;
  const std::vector<std::uint64_t> items = list->items;
  std::string recorded;
  const auto set = [&](std::vector<std::uint64_t> tracks, const std::string& recalled) {
    world.open();
    const auto batch = world.app->beginBatch();
    batch->recall(recalled);
    EXPECT_FALSE(world.app->run(command::SetEntries{id, std::move(tracks)}).failed());
    batch->commit([&](std::string_view reversal) { recorded = reversal; });
  };
  set({}, {});
  const std::string then = recorded;
  EXPECT_NE(world.stored(), text);
  set(items, then);
  EXPECT_EQ(world.stored(), text);
  set({}, {});
  for (const char* broken : {"", "nothing"}) {
    set(items, broken);
    EXPECT_EQ(PlaylistsFile(world.stored(), "test").lists().size(),
              PlaylistsFile(text, "test").lists().size());
    set({}, {});
  }
}

TEST(RhythmboxLibrary, IsFoundByItsAddressesAndStartsNoPlayer) {
  RhythmboxWorld world;
  const std::string data = world.folder / "data/rhythmbox";
  const std::string uri = "rhythmbox:" + data;
  EXPECT_EQ(rhythmboxApplication().found(world.services()), Uris{uri});
  for (const std::string& address :
       {std::string("rhythmbox:"), uri, uri + "/", data + "/rhythmdb.xml"})
    EXPECT_EQ(openLibrary(address, world.services())->identity().uri, uri) << address;
  EXPECT_THROW(openLibrary("rhythmbox:/nowhere", world.services()), LibraryError);

  // Of two lists of one name, each is itself.
  EXPECT_EQ(world.shown("Mix"), "ab");
  std::vector<std::string> names;
  std::uint64_t last = 0;
  for (const Playlist& playlist : *world.app->allPlaylists()) {
    names.push_back(playlist.name);
    last = playlist.persistentID;
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Music", "Mix", "Empty", "Inner", "Smart", "Mix"}));
  const std::string before = world.stored();
  EXPECT_FALSE(world.app->run(SetEntries{last, {world.track("c")}}).failed());
  const std::string old = "<location>" + world.uri("d");
  std::string expected = before;
  expected.replace(expected.find(old), old.size(), "<location>" + world.uri("c"));
  EXPECT_EQ(world.stored(), expected);
  EXPECT_TRUE(world.app->run(SetEntries{world.id("Smart"), {}}).failed());
  EXPECT_FALSE(world.bus->hasStarted());
}

TEST(RhythmboxLibrary, IsRefusedAgainAsLongAsItsFileMayNotBeWritten) {
  RhythmboxWorld world;
  world.open();
  std::filesystem::permissions(world.playlists, std::filesystem::perms::owner_read);
  const std::string before = world.stored();
  for (int attempt = 0; attempt < 2; ++attempt)
    EXPECT_NE(world.failureOf(DeleteAllEntries{world.id("Inner")}), "") << attempt;
  for (int attempt = 0; attempt < 2; ++attempt)
    EXPECT_ANY_THROW(world.app->beginBatch()) << attempt;
  EXPECT_NO_THROW(
      LibraryLock(world.files, realPathOf(world.folder / "data/rhythmbox/rhythmdb.xml")));
  EXPECT_EQ(world.stored(), before);
}

TEST(RhythmboxLibrary, MakesListsInItsFile) {
  RhythmboxWorld world;
  EXPECT_FALSE(world.app->run(CreatePlaylist{"N\"<\xC3\xA9"}).failed());
  EXPECT_FALSE(world.app->run(SetEntries{world.id("N\"<\xC3\xA9"), {world.track("c")}}).failed());
  world.open();
  EXPECT_EQ(world.shown("N\"<\xC3\xA9"), "c");
  EXPECT_EQ(world.shown("Mix"), "ab");
}

TEST(RhythmboxLibrary, LeavesAListAloneThatCouldNotBeGivenBack) {
  RhythmboxWorld world;
  std::string text = world.stored();
  const std::string entry = "<location>" + world.uri("b") + "</location>";
  const std::size_t at = text.find(entry, text.find("\"Inner\""));
  ASSERT_NE(at, std::string::npos);
  std::ofstream(world.playlists) << text.insert(at, entry);
  world.open();
  EXPECT_NE(world.app->reasonNotToChange(world.id("Inner")).english(), "");
  EXPECT_EQ(world.app->reasonNotToChange(world.id("Mix")).english(), "");
}

TEST(RhythmboxLibrary, WaitsForAnotherReadingWhenThePlayerStartsOrEnds) {
  RhythmboxWorld world;
  const auto set = [&] {
    return !world.app->run(SetEntries{world.id("Inner"), {world.track("d")}}).failed();
  };
  const std::string before = world.stored();
  auto batch = world.app->beginBatch();
  EXPECT_TRUE(set());
  auto app = std::move(world.app);
  world.startPlayer();
  EXPECT_THROW(batch->commit(), LibraryError);
  batch.reset();
  app.reset();
  EXPECT_EQ(world.stored(), before);
  world.endPlayer();
  EXPECT_FALSE(set());
  world.app->reload();
  EXPECT_TRUE(set());
}

TEST(RunningRhythmbox, RefusesWhatWouldLoseAnEntry) {
  RhythmboxWorld world;
  // Of "Inner", the player does not show a file that is away, and keeps it where it was.
  world.startPlayer(true);
  const auto set = [&](const std::string& list, const std::string& titles) {
    return world.failureOf(SetEntries{world.id(list), tracksCalled(*world.app, titles)});
  };
  const auto say = [](const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  };
  EXPECT_PRED2(say, set("Mix", "a"), "shares its name");
  EXPECT_EQ(set("Empty", "abc"), "");
  std::ofstream(world.playlists) << PlaylistsFile().edited(
      std::vector<ListEdit>{{{}, "Empty", Uris{world.uri("a"), world.uri("b"), world.uri("c")}},
                            {{}, "Inner", Uris{world.uri("other"), world.uri("b")}}});
  std::filesystem::rename(world.folder / "music/b \xC3\xA9.wav", world.folder / "away");
  world.open();
  ASSERT_EQ(world.shown("Empty"), "abc");
  const std::string before = world.player->described();
  const int changes = world.player->changes;
  EXPECT_PRED2(say, set("Empty", "dbc"), "would lose the entry");
  EXPECT_PRED2(say, set("Empty", "acb"), "would lose the entry");
  EXPECT_PRED2(say, set("Empty", "abb"), "list a track twice");
  EXPECT_EQ(world.player->described(), before);
  EXPECT_EQ(world.player->changes, changes);
  EXPECT_EQ(world.shown("Empty"), "abc");
  EXPECT_EQ(set("Empty", "bcd"), "") << "what goes, goes in front of it, and what comes, behind";
  EXPECT_EQ(world.player->uris("Empty"), (Uris{world.uri("b"), world.uri("c"), world.uri("d")}));
  EXPECT_EQ(set("Empty", "ad"), "") << "it is what goes";
  EXPECT_EQ(world.player->uris("Empty"), (Uris{world.uri("a"), world.uri("d")}));
}

/// Between the command and the commit.
TEST(RunningRhythmbox, LooksAgainBeforeItChangesAList) {
  RhythmboxWorld world;
  world.startPlayer();
  ASSERT_EQ(world.failureOf(SetEntries{world.id("Empty"), tracksCalled(*world.app, "abc")}), "");
  const std::string file = world.folder / "music/b \xC3\xA9.wav";
  for (const bool isFile : {true, false}) {
    const auto batch = world.app->beginBatch();
    ASSERT_FALSE(
        world.app->run(SetEntries{world.id("Empty"), tracksCalled(*world.app, "cab")}).failed());
    if (isFile)
      std::filesystem::rename(file, world.folder / "away");
    else
      world.player->set("Empty", {world.uri("c"), world.uri("b")});
    const std::string before = world.player->described();
    const int changes = world.player->changes;
    EXPECT_THROW(batch->commit(), LibraryError) << isFile;
    EXPECT_EQ(world.player->described(), before);
    EXPECT_EQ(world.player->changes, changes) << "it would lose the entry whose file is away";
    if (isFile) std::filesystem::rename(world.folder / "away", file);
  }
}

TEST(RunningRhythmbox, IsNotAskedForListsThatHoldNothing) {
  RhythmboxWorld world;
  world.startPlayer(true);
  const auto set = [&](const std::string& titles) {
    return world.failureOf(SetEntries{world.id("Empty"), tracksCalled(*world.app, titles)});
  };
  EXPECT_EQ(set("ac"), "");
  EXPECT_EQ(world.shown("Empty"), "ac");
  EXPECT_EQ(set(""), "");
  EXPECT_EQ(world.player->uris("Empty"), Uris());
  world.open();
  EXPECT_EQ(world.shown("Empty"), "");
  EXPECT_EQ(world.player->windows, 0);
}

TEST(RunningRhythmbox, GivesTheListsBackWhenItFailsPartWay) {
  for (int change = 0; change < 5; ++change) {
    SCOPED_TRACE(change);
    RhythmboxWorld world;
    world.startPlayer();
    const std::string before = world.player->described();
    const auto batch = world.app->beginBatch();
    ASSERT_FALSE(
        world.app->run(SetEntries{world.id("Mix"), {world.track("c"), world.track("b")}}).failed());
    ASSERT_FALSE(world.app->run(SetEntries{world.id("Inner"), {world.track("a")}}).failed());
    world.player->failAt(change, 1);
    EXPECT_THROW(batch->commit(), LibraryError);
    EXPECT_EQ(world.player->described(), before);
    EXPECT_EQ(world.shown("Mix"), "ab");
  }
}

TEST(RunningRhythmbox, OpenedAfterItWasKilledGivesTheListsBackInTheFileToo) {
  RhythmboxWorld world;
  world.startPlayer();
  world.player->dieAt(3);
  inChild([&] {
    world.open();
    const auto batch = world.app->beginBatch();
    world.app->run(SetEntries{world.id("Mix"), {world.track("c"), world.track("b")}});
    batch->commit();
  });
  Uris left = world.player->uris("Mix");
  EXPECT_NE(left, (Uris{world.uri("a"), world.uri("b")}));
  // The player writes what it has, with what was added to it since, and ends.
  left.push_back(world.uri("d"));
  std::ofstream(world.playlists) << PlaylistsFile().edited(
      std::vector<ListEdit>{{{}, "Mix", left}, {{}, "Other", Uris{world.uri("a")}}});
  world.endPlayer();
  world.open();
  EXPECT_EQ(world.shown("Mix"), "abd");
  EXPECT_EQ(world.shown("Other"), "a");
  EXPECT_EQ(PlaylistsFile(world.stored(), "").lists()[0].uris.size(), 3U);
  EXPECT_FALSE(world.log.lines().empty());
  ASSERT_FALSE(world.app->run(SetEntries{world.id("Mix"), {world.track("b")}}).failed());
  world.open();
  EXPECT_EQ(world.shown("Mix"), "b") << "it is given back once";
}

TEST(RhythmboxLibrary, WhatTheRunningPlayerWritesOfItselfIsNoChange) {
  RhythmboxWorld world;
  world.startPlayer();
  const std::uint64_t inner = world.id("Inner");
  ASSERT_EQ(world.failureOf(SetEntries{inner, {world.track("d")}}), "");
  const auto inserted = [](std::string text, const char* behind, const std::string& more) {
    const std::size_t place = text.find(behind);
    return text.insert(place + std::string_view(behind).size(), more);
  };
  std::string lists = world.stored();
  const std::size_t begin = lists.find("<location>", lists.find("\"Inner\""));
  lists.erase(begin, lists.find("</playlist>", begin) - begin);
  for (const std::string& uri : world.player->uris("Inner"))
    lists.insert(lists.find("</playlist>", begin), "<location>" + uri + "</location>");
  world.folder.write("data/rhythmbox/playlists.xml", lists);
  const std::string songs = TemporaryFolder::read(world.folder / "data/rhythmbox/rhythmdb.xml");
  const std::string end = "<title>a</title>";
  const auto write = [&](const std::string& element) {
    world.folder.write("data/rhythmbox/rhythmdb.xml", inserted(songs, end.c_str(), element));
  };
  write("<play-count>7</play-count>");
  EXPECT_FALSE(world.app->hasChanged());
  write("<mtime>1600000000</mtime>");
  EXPECT_TRUE(world.app->hasChanged()) << "its tags were edited";
  write("</entry><entry type='song'><location>file:///new.mp3</location>");
  EXPECT_TRUE(world.app->hasChanged()) << "another song";
}

}  // namespace
}  // namespace kestrel::testing
