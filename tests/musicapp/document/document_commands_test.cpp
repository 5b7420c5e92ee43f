// What scripts do to a library document, and that they do nothing else.
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <set>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/revealer.h"
#include "musicapp/scripted/script_texts.h"
#include "platform/file_error.h"
#include "platform/programs.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {
namespace {

using script::scriptText;
using script::Template;
using TextSorter::decToHex;

const std::string before =
    "Library: a b c d; Purchased: d; Mix: a b a c; Empty:; Folder: b; Folder/Inner: b; Smart: c; "
    "Mix: d";

/// What is there before, but for one part.
std::string beforeWith(const std::string& part, const std::string& instead) {
  return std::string(before).replace(before.find(part), part.size(), instead);
}

std::string deletePlaylist(const char* id) {
  return scriptText(Template::DeletePlaylistByPid, {id});
}

TEST(DocumentCommands, DoWhatTheySay) {
  const struct {
    std::string script, result, after;
  } cases[] = {
      {scriptText(command::DeleteEntries{0x12, {1, 4}}), "", beforeWith("a b a c", "b a")},
      // One after the other: the second position is one of what the first has left.
      {"tell application \"Music\"\ntell some user playlist whose persistent ID is \"12\"\n"
       "delete track 1\ndelete track 1\ndelete track 2\nend tell\nend tell",
       "", beforeWith("a b a c", "a")},
      {scriptText(command::DeleteAllEntries{0x12}), "", beforeWith(" a b a c", "")},
      {scriptText(command::DuplicateTracks{{0xD, 0xD, 0xA}, 0x13}), "",
       beforeWith("Empty:", "Empty: d d a")},
      {scriptText(command::DeleteTracks{{0xB, 0xD}}), "",
       "Library: a c; Purchased:; Mix: a a c; Empty:; Folder:; Folder/Inner:; Smart: c; Mix:"},
      {scriptText(command::MovePlaylist{0x12, 0x14}), "",
       beforeWith("Mix: a b a c", "Folder/Mix: a b a c")},
      {deletePlaylist("14"), "", beforeWith(" Folder: b; Folder/Inner: b;", "")},
      {scriptText(Template::DeleteSameNamedPlaylists, {"Mix", "12"}), "",
       beforeWith("; Mix: d", "")},
      {scriptText(Template::DeleteSameNamedPlaylists, {"mix", "12"}), "", before},
      {scriptText(Template::DeleteSameNamedPlaylists, {"Smart", "12"}), "", before},
      {scriptText(Template::DeleteSameNamedPlaylists, {"Library", "12"}), "", before},
      {scriptText(Template::TrackLocation, {"A"}), "/music/a.mp3", before},
      {scriptText(Template::TrackCloudStatus, {"A"}), "unknown", before},
      // Within `try` a missing object is neither a result nor an error.
      {scriptText(Template::TrackLocation, {"FF"}), "", before},
      {deletePlaylist("FF"), "", before},
      {deletePlaylist("10"), "", before},
      {deletePlaylist("11"), "", before},
      // What belongs to the application stays as it is.
      {scriptText(command::DeleteAllEntries{0x10}),
       "error The playlist \"Library\" fills itself: its entries cannot be changed (-10004)",
       before},
      {scriptText(command::DuplicateTracks{{0xA}, 0x16}),
       "error The playlist \"Smart\" fills itself: its entries cannot be changed (-10004)", before},
      {scriptText(command::MovePlaylist{0x14, 0x14}),
       "error The playlist \"Folder\" cannot be moved into itself (-10004)", before},
      {scriptText(command::MovePlaylist{0x12, 0x13}),
       "error The playlist \"Empty\" is no folder (-10004)", before},
      {scriptText(command::DeleteEntries{0x12, {5}}),
       "error The playlist has no entry at a position (-1719)", before},
      {scriptText(command::DuplicateTracks{{0xA, 0xFF}, 0x13}),
       "error There is no track with the persistent ID FF (-1728)", before},
      {scriptText(command::MovePlaylist{0xFF, 0x14}),
       "error There is no playlist with the persistent ID FF (-1728)", before},
      {deletePlaylist("no ID"), "", before},
      {scriptText(command::DeleteAllEntries{0x12}) +
           "\ntell application \"Music\" to delete some playlist whose persistent ID is \"no ID\"",
       "error There is nothing with the persistent ID no ID (-1728)", before},
      // One that fails half-way has changed nothing.
      {scriptText(command::DeleteAllEntries{0x12}) + "\n" +
           scriptText(command::MovePlaylist{0xFF, 0x14}),
       "error There is no playlist with the persistent ID FF (-1728)", before},
      {"tell application \"Music\" to jump",
       "error Line 1, column 29: expected a command, found 'jump'", before},
  };
  for (const auto& [script, result, after] : cases) {
    SCOPED_TRACE(script);
    DocumentWorld world(smallLibrary());
    EXPECT_EQ(world.run(script), result);
    EXPECT_EQ(world.playlists(), after);
    EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
    if (after == before) {
      EXPECT_EQ(world.bytes(), smallLibrary());
    }
  }
}

TEST(DocumentCommands, ImportedEntriesFindTheirTracks) {
  DocumentWorld world(smallLibrary());
  using Dictionary = PropertyList::Dictionary;
  PropertyList import = libraryDocument(
      {playlist("One & <", 1, {7, 0xA, 2, 2, 8, 0xA, 99}), playlist("Empty", 2, {})});
  import.set("Tracks", Dictionary{{"110",
                                   Dictionary {
                                     { "Persistent ID",
                                       "A" }
                                   }},  // the same Track ID there
                                  {"102",
                                   Dictionary {
                                     { "Persistent ID",
                                       "C" }
                                   }},  // another one
                                  {"107",
                                   Dictionary {
                                     {"Persistent ID", "77"},
                                     { "Location",
                                       "file://localhost/music/d.mp3" }
                                   }},
                                  { "108",
                                    Dictionary {
                                      { "Persistent ID",
                                        "88" }
                                    } }});  // unknown
  const std::string path = world.folder.write("two \"lists\".xml", writePropertyList(import));
  const std::string script =
      "tell application \"Music\"\nadd POSIX file " + script::textExpression(path) + "\nend tell";
  EXPECT_EQ(world.run(script), "");
  EXPECT_EQ(world.playlists(), before + "; One & <: d a c c a; Empty:");
  EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");

  const PropertyList document = world.parsed();
  const PropertyList& added = document.find("Playlists")->values()[8];
  EXPECT_EQ(added.textAt("Name"), "One & <");
  EXPECT_EQ(added.find("Playlist ID")->integer(), 1009) << "above every Track ID and Playlist ID";
  EXPECT_EQ(added.textAt("Playlist Persistent ID").size(), 16U);
  EXPECT_EQ(added.find("Parent Persistent ID"), nullptr);
  std::set<std::uint64_t> ids;
  for (const Playlist& playlist : *world.app->library().allPlaylists())
    ids.insert(playlist.persistentID);
  EXPECT_EQ(ids.size(), 10U);
}

TEST(DocumentCommands, FilesThatCannotBeAddedAreErrors) {
  DocumentWorld world(smallLibrary());
  const std::pair<std::string, const char*> cases[] = {
      {world.folder / "missing.mp3", "(-43)"},
      {world.folder / "Music", "(-1731)"},
      {world.folder.write("text.mp3", "no audio at all"), "(-1731)"},
      {world.folder.write("broken.xml", "<plist><dict><key>Tracks</key>"), "(-1731)"},
      {world.folder.write("other.xml", "<plist><dict></dict></plist>"), "(-1731)"},
      {world.folder.write("empty", ""), "(-1731)"},
  };
  for (const auto& [path, number] : cases) {
    const std::string result = world.run(scriptText(Template::ImportPlaylistFile, {path}));
    EXPECT_TRUE(result.ends_with(number)) << path << ": " << result;
    EXPECT_NE(result.find(path), std::string::npos) << result;
  }
  EXPECT_EQ(world.bytes(), smallLibrary());
}

TEST(DocumentCommands, AMediaFileBecomesATrackOfTheLibrary) {
  DocumentWorld world(smallLibrary());
  const std::string title = "S\u00FC\u00DFe <N\u00E4chte>";
  const std::string path = world.folder.write("50% \u00E9/a b.mp3", sampleAudio("mp3"));
  tag(path, {{"TITLE", title}, {"ARTIST", "A & B"}, {"TRACKNUMBER", "3/12"}, {"DATE", "1999"}});
  const std::string script = scriptText(Template::AddFileToMusic, {path});
  EXPECT_EQ(world.run(script), "");
  EXPECT_EQ(world.run(script), "") << "it is there already";

  std::optional<MediaItem> item;
  world.app->library().allMediaItems()->forEach([&](const MediaItem& last) { item = last; });
  EXPECT_EQ(item->title.view(), title);
  EXPECT_EQ(item->artist.view(), "A & B");
  EXPECT_EQ(item->kind.view(), "MPEG audio file");
  EXPECT_EQ(filePath(*item), path);
  EXPECT_EQ(item->trackNumber * 100 + item->trackCount, 312);
  EXPECT_EQ(item->year, 1999);
  EXPECT_EQ(item->sampleRate, 48'000);
  EXPECT_NEAR(static_cast<double>(item->totalTime), 500, 30);
  EXPECT_EQ(item->added.seconds, 1'700'000'000);
  EXPECT_EQ(world.run(scriptText(Template::TrackLocation, {decToHex(item->persistentID)})), path);
  EXPECT_EQ(world.app->library().allPlaylists()->front().items.back(), item->persistentID);
  EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
  EXPECT_EQ(world.parsed().find("Tracks")->entries().size(), 5U);
}

TEST(DocumentCommands, RevealsFilesAndPlaylistsThroughTheRevealer) {
  struct Recorder : Revealer {
    void revealFile(const std::string& path) override { seen += "file " + path + "\n"; }
    void revealPlaylist(std::uint64_t id) override {
      if (id == 0x13) throw FileError("x", Message::verbatim("cannot be shown"), {});
      seen += "playlist " + decToHex(id) + "\n";
    }
    std::string seen;
  } recorder;
  DocumentWorld world(smallLibrary());
  EXPECT_FALSE(world.app->capabilities().reveals);
  world.revealer = &recorder;
  world.open();
  EXPECT_TRUE(world.app->capabilities().reveals);
  world.run(scriptText(Template::RevealTrack, {"A"}));
  world.run(scriptText(Template::RevealTrackInPlaylist, {"12", "B"}));
  world.run(scriptText(Template::RevealTrackInPlaylist, {"13", "B"}));  // not in it
  world.run(scriptText(Template::RevealPlaylist, {"12"}));
  world.run(scriptText(Template::RevealPlaylist, {"13"}));
  EXPECT_EQ(recorder.seen, "file /music/a.mp3\nfile /music/b.mp3\nplaylist 12\n");
}

TEST(DocumentCommands, FilesAndFoldersAreShownByTheDesktop) {
  const TemporaryFolder folder;
  const std::string seen = folder / "seen", path = std::getenv("PATH");
  SystemPrograms programs;
  FileManagerRevealer revealer(programs);
  EXPECT_THROW(revealer.revealPlaylist(1), FileError);

  const std::string opener =
      folder.write("bin/xdg-open", "#!/bin/sh\nprintf %s \"$1\" >\"" + seen + ".new\"\nmv \"" +
                                       seen + ".new\" \"" + seen + "\"\nsleep 5\n");
  std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
  ::setenv("PATH", (folder / "bin:" + path).c_str(), 1);
  // The file manager is asked first, and has the file itself. The folder is opened without waiting
  // for its window to be closed.
  for (const bool answers : {true, false}) {
    std::filesystem::remove(seen);
    const std::string bus =
        folder.write("bin/dbus-send", "#!/bin/sh\nprintf '%s\\n' \"$@\" >\"" + (folder / "call") +
                                          "\"\nexit " + (answers ? "0\n" : "1\n"));
    std::filesystem::permissions(bus, std::filesystem::perms::owner_all);
    revealer.revealFile("/a $HOME'b/c,d.mp3");
    EXPECT_NE(
        TemporaryFolder::read(folder / "call")
            .find("FileManager1.ShowItems\narray:string:file:///a%20$HOME'b/c%2Cd.mp3\nstring:\n"),
        std::string::npos);
    for (int i = 0; i < (answers ? 10 : 400) && !std::filesystem::exists(seen); ++i)
      SystemClock().sleepFor(std::chrono::milliseconds(10));
    EXPECT_EQ(TemporaryFolder::read(seen), answers ? "" : "/a $HOME'b");
  }

  std::filesystem::create_symlink("/bin/sh", folder / "sh");
  ::setenv("PATH", folder.path().c_str(), 1);
  EXPECT_THROW(revealer.revealFile("/song.mp3"), FileError);
  ::setenv("PATH", path.c_str(), 1);
}

TEST(DocumentCommands, KeepNamesThatXmlCannotHoldOnlyWhereTheLibraryHasThem) {
  std::string library = smallLibrary();
  library.replace(library.find("Mix"), 3, "M\x01x");
  DocumentWorld world(library);
  const std::string imported = writePropertyList(
      libraryDocument({playlist("M\x01x", 1, {}), playlist("N\x01\uFFFFw", 2, {})}));
  world.run(scriptText(Template::ImportPlaylistFile, {world.folder.write("p.xml", imported)}));
  world.run(scriptText(command::CreatePlaylist{"a\"b\\\n\x02"}));
  const auto lists = world.app->library().allPlaylists();
  EXPECT_EQ((*lists)[8].name, "M\x01x");
  EXPECT_EQ((*lists)[9].name, "N\uFFFD\uFFFDw");
  EXPECT_EQ((*lists)[10].name, "a\"b\\\n\uFFFD");
  EXPECT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
}

// ------------------------------------------------------------------------------------ properties

PropertyList without(PropertyList dictionary, std::initializer_list<const char*> keys) {
  for (const char* key : keys) dictionary.remove(key);
  return dictionary;
}

/// What no command changes of playlists, by persistent ID, of those that have one alone.
std::map<std::string, PropertyList> untouchedPlaylists(const PropertyList& document) {
  std::map<std::string, PropertyList> found;
  std::set<std::string> repeated{""};
  const PropertyList* lists = document.find("Playlists");
  if (!lists) return found;
  for (const PropertyList& list : lists->values()) {
    const std::string id(list.textAt("Playlist Persistent ID"));
    if (!found.emplace(id, without(list, {"Playlist Items", "Parent Persistent ID"})).second)
      repeated.insert(id);
  }
  for (const std::string& id : repeated) found.erase(id);
  return found;
}

/// Nothing for a document with numbers that no property list in memory holds.
std::optional<PropertyList> parsedIfSmall(const std::string& bytes) {
  try {
    return parsePropertyList(bytes, "document");
  } catch (const LibraryError& error) {
    EXPECT_NE(std::string(error.what()).find("64 bits"), std::string::npos) << error.what();
    return std::nullopt;
  }
}

/// A random command; one in several fails.
Command randomCommand(std::mt19937& random, MediaLibrary& library, const std::string& import) {
  const auto below = [&](std::size_t limit) { return limit ? random() % limit : 0; };
  const auto lists = library.allPlaylists();
  std::vector<std::uint64_t> tracks{1};
  library.allMediaItems()->forEach(
      [&](const MediaItem& item) { tracks.push_back(item.persistentID); });
  static const Playlist none;
  const Playlist& list = lists->empty() ? none : (*lists)[below(lists->size())];
  const auto someTracks = [&](std::size_t most) {
    std::vector<std::uint64_t> chosen;
    for (std::size_t i = below(most + 1); i > 0; --i)
      chosen.push_back(tracks[below(tracks.size())]);
    return chosen;
  };
  std::vector<std::uint64_t> positions;
  for (std::size_t i = below(5); i > 0; --i) positions.push_back(1 + below(list.items.size()));
  const std::uint64_t folder = lists->empty() ? 1 : (*lists)[below(lists->size())].persistentID;
  command::ReplaceEntries replace{list.persistentID, {}};
  for (const std::uint64_t position : std::set(positions.begin(), positions.end()))
    replace.entries.push_back({position, tracks[below(tracks.size())]});
  command::SetEntries set{list.persistentID, list.items};
  for (std::size_t i = below(6); i > 0 && !set.tracks.empty(); --i) {
    const auto at = set.tracks.begin() + static_cast<std::ptrdiff_t>(below(set.tracks.size()));
    if (random() % 2)
      set.tracks.erase(at);
    else
      set.tracks.insert(at, tracks[below(tracks.size())]);
  }
  const Command commands[] = {replace,
                              set,
                              command::DeleteEntries{list.persistentID, positions},
                              command::DeleteAllEntries{list.persistentID},
                              command::DuplicateTracks{someTracks(20), list.persistentID},
                              command::DeleteTracks{someTracks(3)},
                              command::MovePlaylist{list.persistentID, folder},
                              command::CreatePlaylist{"<\u00E9 & \"" + std::to_string(below(3))},
                              command::DeletePlaylist{list.persistentID},
                              command::AddFile{import}};
  return commands[below(std::size(commands))];
}

TEST(DocumentCommands, AnySequenceLeavesADocumentThatReadsAsMemorySaysAndIsElseUntouched) {
  int changes = 0, kept = 0;
  for (std::uint32_t seed = 0; seed < 80; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string original = randomDocument(seed, 25);
    DocumentWorld world(original);
    const std::string import = world.folder.write("import.xml", randomDocument(seed + 1, 25));
    std::unique_ptr<Batch> batch;
    for (int step = 0; step < 12; ++step) {
      if (!batch && random() % 3 == 0) batch = world.app->beginBatch();
      const auto earlier = world.app->library().allPlaylists();
      const std::vector<Playlist> copy = *earlier;
      changes +=
          world.app->run(randomCommand(random, world.app->library(), import)).failed() ? 0 : 1;
      ASSERT_EQ(earlier->size(), copy.size()) << "a list that is held was changed";
      if (batch && random() % 4 == 0) {
        if (random() % 3) batch->commit();
        batch.reset();
      }
      if (batch) continue;
      ASSERT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");
    }
    batch.reset();
    ASSERT_EQ(firstDifference(world.onDisk(), world.inMemory()), "");

    // Every track and playlist that is left is what it was, value for value and in the same order
    // of keys, but for a playlist's entries and folder; and so is everything else.
    const std::optional<PropertyList> parsed = parsedIfSmall(original);
    if (!parsed) continue;
    const PropertyList &old = *parsed, now = world.parsed();
    const PropertyList &oldTracks = *old.find("Tracks"), &tracks = *now.find("Tracks");
    for (const auto& [key, value] : tracks.entries())
      ASSERT_EQ(*tracks.find(key), *oldTracks.find(key)) << key;
    const auto oldLists = untouchedPlaylists(old);
    for (const auto& [id, list] : untouchedPlaylists(now)) {
      const auto found = oldLists.find(id);
      kept += found == oldLists.end() ? 0 : 1;
      ASSERT_TRUE(found == oldLists.end() || found->second == list) << id;
    }
    ASSERT_EQ(without(now, {"Tracks", "Playlists"}), without(old, {"Tracks", "Playlists"}));
  }
  EXPECT_GT(changes, 300);
  EXPECT_GT(kept, 20);
}

}  // namespace
}  // namespace kestrel::testing
