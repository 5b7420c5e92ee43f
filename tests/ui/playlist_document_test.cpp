#include "musicapp/scripted/playlist_document.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

#include "foundation/library_error.h"
#include "platform/programs.h"
#include "tests/dupes/builders.h"
#include "tests/musicapp/scripted/described_script.h"
#include "tests/platform/temporary_folder.h"
#include "ui/uncalled_operations.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using namespace std::string_literals;
using Lines = std::vector<std::string>;

const std::string prologue = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";

/// Odd spellings on purpose: what is copied must come out as it stands.
const std::string odd =
    prologue +
    "<dict><key>Features</key><integer>5</integer><key>Application Version</key>"
    "<string>1.2 &amp; more</string><key>Major Version</key><integer>1</integer>"
    "<key>Minor Version</key><integer>2</integer><key>Date</key><date>2020-01-02T03:04:05Z</date>"
    "<key>Music Folder</key><string>file:///m/</string><key>Tracks</key><dict>\n"
    "<!-- one --><key>7</key> <dict><key>Name</key><string>a&#233;<![CDATA[<]]></string>"
    "<key>Persistent ID</key><string>00000000000000AB</string><key>?</key><array/></dict>\n"
    "<key>12</key><dict><key>Persistent ID</key><string>CD</string></dict>\n"
    "<key>7x&amp;</key><dict/><key>12</key>\n<dict><key>Persistent ID</key><string>EF</string>"
    "<key>Name</key><string>later</string></dict><key>3</key><dict><key>Location</key>"
    "<string>file:///x.mp3</string></dict>"
    "</dict><key>Playlists</key><array/><key>Library Persistent ID</key><string>F00</string>"
    "</dict></plist>";

PropertyList made(const StoredDocument& stored, const Lines& ids, const std::string& name = "P") {
  std::string bytes;
  script::makePlaylistDocument(stored, ids, name, [&](std::string_view piece) { bytes += piece; });
  return parsePropertyList(bytes, "made");
}

TEST(StoredDocument, FindsEntriesAsTheyStand) {
  const StoredDocument stored = StoredDocument::ofBytes(odd, "odd");
  EXPECT_EQ(stored.trackCount(), 4U);
  EXPECT_NE(stored.entry("7")->find("<key>7</key> <dict><key>Name</key><string>a&#233;<![CDATA["),
            std::string_view::npos);
  EXPECT_NE(stored.entry("12")->find("later"), std::string_view::npos) << "the last one counts";
  EXPECT_EQ(stored.entry("7x&"), "<key>7x&amp;</key><dict/>");
  for (const char* absent : {"", "07", "+7", "8", "7 ", "99999999999999999999999"})
    EXPECT_FALSE(stored.entry(absent)) << absent;
  EXPECT_EQ(stored.keyOf(0xAB), "7");
  EXPECT_EQ(stored.keyOf(0xEF), "12");
  EXPECT_FALSE(stored.keyOf(0xCD));
  EXPECT_EQ(stored.header.textAt("Application Version"), "1.2 & more");
  EXPECT_EQ(stored.header.entries().size(), 7U);
}

TEST(StoredDocument, IsReadInAnyEncodingAndRefusesWhatIsNone) {
  std::string wide = "\xFF\xFE";
  for (const char c : odd) wide.append({c, '\0'});
  wide.replace(wide.find("U\0T\0F\0-\0008\0"s), 10, "U\0T\0F\0-\0001\0006\0"s);
  EXPECT_EQ(StoredDocument::ofBytes(wide, "wide").entry("7"),
            StoredDocument::ofBytes(odd, "odd").entry("7"));
  for (const std::string& bad : {odd.substr(0, 700), prologue + "<array/></plist>", "bplist00"s})
    EXPECT_THROW(StoredDocument::ofBytes(bad, "bad"), LibraryError);
}

TEST(StoredDocument, KnowsTracksByAnySpellingOfTheirNumber) {
  const auto track = [](const std::string& key, const std::string& id) {
    return "<key>" + key + "</key><dict><key>Persistent ID</key><string>" + id + "</string></dict>";
  };
  std::string bytes = odd;
  bytes.insert(bytes.find("<key>12"),
               track("0123", "A1") + track("-5", "A2") + track("12x", "A3") + track("07", "AB"));
  const StoredDocument stored = StoredDocument::ofBytes(bytes, "odd");
  EXPECT_EQ(stored.keyOf(0xA1), "0123");
  EXPECT_EQ(stored.keyOf(0xA2), "-5");
  EXPECT_FALSE(stored.keyOf(0xA3)) << "no playlist could list it";
  EXPECT_EQ(stored.keyOf(0xAB), "7");
  const PropertyList document = made(stored, {"0123", "-5"});
  EXPECT_EQ(document.find("Tracks")->entries().size(), 2U);
  const PropertyList& items = *document.find("Playlists")->values()[0].find("Playlist Items");
  EXPECT_EQ(items.values()[0].find("Track ID")->integer(), 123);
  EXPECT_EQ(items.values()[1].find("Track ID")->integer(), -5);
}

TEST(PlaylistDocument, IsAnExcerptOfTheLibrary) {
  const StoredDocument stored = StoredDocument::ofBytes(odd, "odd");
  const PropertyList document = made(stored, {"12", "7", "12", "8", "zwölf", ""}, "A & \"B\"");
  PropertyList whole = parsePropertyList(odd, "odd");
  ASSERT_EQ(document.entries().size(), 9U);
  for (const char* key : {"Features", "Application Version", "Major Version", "Minor Version",
                          "Date", "Library Persistent ID", "Music Folder"})
    EXPECT_EQ(*document.find(key), *whole.find(key)) << key;

  ASSERT_EQ(document.find("Playlists")->values().size(), 1U);
  const PropertyList& playlist = document.find("Playlists")->values().front();
  PropertyList items = PropertyList::Array{};
  for (const std::int64_t id : {12, 7, 12, 8})
    items.append(PropertyList::Dictionary{{"Track ID", id}});
  items.append({});
  items.append({});
  EXPECT_EQ(playlist, PropertyList(PropertyList::Dictionary{{"Name", "A & \"B\""},
                                                            {"Playlist Items", items}}));

  const PropertyList* tracks = document.find("Tracks");
  EXPECT_EQ(tracks->entries().size(), 2U);
  EXPECT_EQ(tracks->find("12")->textAt("Name"), "later");
  EXPECT_EQ(*tracks->find("7"), *whole.find("Tracks")->find("7"));

  const PropertyList empty = made(stored, {});
  EXPECT_TRUE(empty.find("Tracks")->isDictionary() && empty.find("Tracks")->entries().empty());
  EXPECT_TRUE(empty.find("Playlists")->values()[0].find("Playlist Items")->isArray());
}

/// A process with a stored document, whose scripts are written down.
struct DocumentProcess : TestProcess {
  RecordingRunner application;

  DocumentProcess() {
    process.with.scripts = &application;
    files.createDirectories("/home/user/.local/share/Kestrel");
    clock.set(Moment(std::chrono::nanoseconds(1'600'000'000'123'456'789)));
    ReplaylistControl::storedXML() = StoredDocument::ofBytes(odd, "odd");
  }
  void build(const Lines& ids = {"7"}) { ReplaylistControl::buildXMLWith(ids, "Mix", "A1"); }

  const std::string path = "/home/user/.local/share/Kestrel/1600000000.123457.xml";
};

TEST(PlaylistDocument, IsWrittenAndSentInTheFixedOrder) {
  DocumentProcess test;
  const Moment start = test.clock.now();
  test.build();
  EXPECT_EQ(parsePropertyList(test.files.readAll(test.path), "").find("Tracks")->entries().size(),
            1U);
  ASSERT_EQ(test.application.scripts.size(), 4U);
  const std::string import =
      "tell application \"iTunes\" to add (\"" + test.path + "\" as POSIX file as alias)";
  EXPECT_EQ(test.application.scripts[0], import);
  EXPECT_NE(test.application.scripts[1].find("name is \"Mix\" and persistent ID is not \"A1\""),
            std::string::npos);
  EXPECT_EQ(test.application.scripts[2], import);
  EXPECT_NE(test.application.scripts[3].find("delete some playlist whose persistent ID is \"A1\""),
            std::string::npos);
  EXPECT_EQ(test.clock.now() - start, std::chrono::milliseconds(700));
  EXPECT_EQ(test.clock.sleeps(), 2);

  test.process.state<PlaylistDocumentState>().applicationAnswersWhenDone = true;
  test.build();
  EXPECT_EQ(test.clock.sleeps(), 2);
}

TEST(PlaylistDocument, IsNamedAlikeInEveryLocale) {
  // Made for the test: few machines have one with a decimal comma.
  const TemporaryFolder locales;
  SystemPrograms().run(
      {"sh", {"-c", "localedef -i de_DE -f UTF-8 \"$1\"", "sh", locales / "comma"}, {}, true, {}});
  ::setenv("LOCPATH", locales.path().c_str(), 1);
  const bool isThere = std::setlocale(LC_NUMERIC, "comma") != nullptr;
  ::unsetenv("LOCPATH");
  if (!isThere) GTEST_SKIP() << "this machine cannot make locales";
  DocumentProcess test;
  test.build();
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_TRUE(test.files.exists(test.path));
}

TEST(PlaylistDocument, FailuresAreLoggedAndTheSequenceGoesOn) {
  DocumentProcess test;
  test.files.remove("/home/user/.local/share/Kestrel");
  test.application.answer.error = ScriptError{{Message::verbatim("no"), 0}, {}};
  test.build();
  EXPECT_EQ(test.application.scripts.size(), 4U);
  EXPECT_FALSE(test.files.exists(test.path));
  const Lines lines = test.log.lines();
  ASSERT_EQ(lines.size(), 4U);
  for (std::size_t i = 0; const char* start : {"Error while adding 1: ", "Error while deleting: ",
                                               "Error while adding 2: ", "Error while deleting: "})
    EXPECT_TRUE(lines[i++].starts_with(start)) << lines[i - 1];
}

TEST(PlaylistDocument, WhatCannotBeMadeIsNeitherWrittenNorSent) {
  DocumentProcess test;
  ReplaylistControl::storedXML().header.set("Date", Date{std::int64_t{1} << 60});
  test.build();
  ASSERT_EQ(test.log.lines().size(), 2U);
  EXPECT_EQ(test.log.lines()[0], "can't save as XML");
  EXPECT_TRUE(test.log.lines()[1].starts_with("error serializing to xml: "));
  ReplaylistControl::storedXML().header.remove("Date");
  EXPECT_THROW(test.build(), LibraryError);
  EXPECT_FALSE(test.files.exists(test.path));
  EXPECT_TRUE(test.application.scripts.empty());
}

TEST(PlaylistDocument, TheStoredDocumentIsReadAgainWhenItChanged) {
  DocumentProcess test;
  const Moment written(std::chrono::seconds(1'500'000'000));
  test.files.put("/l.xml",
                 prologue +
                     "<dict><key>Tracks</key><dict><key>1</key><dict/></dict>"
                     "</dict></plist>",
                 written);
  ReplaylistControl::refreshStoredXML("/l.xml");
  StoredDocument& stored = ReplaylistControl::storedXML();
  EXPECT_EQ(stored.header.find("Date")->date(), Date{1'500'000'000});
  EXPECT_EQ(made(stored, {"1"}).entries().size(), 9U) << "very old libraries lack some values";
  stored.header.set("mark", true);
  ReplaylistControl::refreshStoredXML("/l.xml");
  EXPECT_TRUE(stored.header.find("mark"));
  test.files.put("/l.xml", odd);
  ReplaylistControl::refreshStoredXML("/l.xml");
  EXPECT_EQ(stored.trackCount(), 4U);
  EXPECT_THROW(ReplaylistControl::refreshStoredXML("/none.xml"), LibraryError);
  EXPECT_EQ(stored.trackCount(), 4U);
  EXPECT_EQ(ReplaylistControl::returnContentsOfFile("/l.xml"), parsePropertyList(odd, ""));
  EXPECT_FALSE(ReplaylistControl::returnContentsOfFile("/none.xml"));
  test.files.put("/half.xml", "<plist><array>");
  EXPECT_FALSE(ReplaylistControl::returnContentsOfFile("/half.xml"));
}

TEST(PlaylistDocument, TheLibraryIsOpenedUntilItOpensAndThenKept) {
  DocumentProcess test;
  int calls = 0;
  test.process.with.openLibrary = [&]() -> std::shared_ptr<MediaLibrary> {
    if (++calls == 1) throw LibraryError("l", {}, Message::verbatim("cannot be read"), {});
    return std::make_shared<PlaylistLibrary>(std::vector<Playlist>{});
  };
  EXPECT_FALSE(ReplaylistControl::storedLib());
  EXPECT_TRUE(ReplaylistControl::storedLib());
  EXPECT_TRUE(ReplaylistControl::storedLib());
  EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace kestrel
