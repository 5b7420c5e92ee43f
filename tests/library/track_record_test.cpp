#include "library/track_record.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include "tests/musicapp/recording_application.h"
#include "tests/ui/library_harness.h"
#include "ui/launch.h"
#include "ui/library_files.h"
#include "ui/uncalled_operations.h"

namespace kestrel::testing {
namespace {

struct Expected {
  std::string key;
  Value value;
};

void expectValues(const LibraryHarness& library, const std::string& hexpid,
                  const std::vector<Expected>& expected) {
  for (const auto& [key, value] : expected)
    EXPECT_TRUE(library.value(hexpid, key) == value)
        << key << " is \"" << library.value(hexpid, key).text() << "\" / "
        << library.value(hexpid, key).number();
}

TEST(TrackRecord, HoldsWhatTheItemSays) {
  LibraryHarness library;
  library.files.put("/m/Ann/3.m4a", "x");
  library.document(
      song(1, "ABCDEF0123", "/m/Ann/3.m4a",
           text("Name", "Tea &amp; Rain") + text("Artist", "Ann") +
               text("Album Artist", "Various") + text("Album", "Kettle") + text("Composer", "Bo") +
               text("Genre", "Folk") + text("Grouping", "G") + text("Comments", "two\nlines") +
               text("Kind", "Purchased") + number("Year", 1999) + number("Rating", 80) +
               number("Bit Rate", 256) + number("Sample Rate", 44100) + number("Play Count", 7) +
               number("Skip Count", 2) + number("BPM", 120) + flag("Compilation") +
               number("Track Number", 3) + number("Track Count", 12) + number("Disc Number", 1) +
               number("Total Time", 215040) + number("Size", 4200000)));
  TextSorter::buildLibrary();
  expectValues(library, "ABCDEF0123", {{"tName", "Tea & Rain"},     {"tArtist", "Ann"},
                                       {"tAlbumArtist", "Various"}, {"tAlbum", "Kettle"},
                                       {"tComposer", "Bo"},         {"tGenre", "Folk"},
                                       {"tGrouping", "G"},          {"tComments", "two\nlines"},
                                       {"tKind", "Purchased"},      {"tType", "File"},
                                       {"tYearString", "1999"},     {"tPurch", "YES"},
                                       {"tProtected", "NO"},        {"tTrackNumString", "3 of 12"},
                                       {"tDiscNumString", "1"},     {"tSize", "4.2 MB"},
                                       {"tLoc", "/m/Ann/3.m4a"},    {"tFileName", "3.m4a"},
                                       {"hexpid", "ABCDEF0123"},    {"decpid", "737894400291"},
                                       {"fileAvail", "1"},          {"tYear", 1999},
                                       {"realRating", 80},          {"tBit", 256},
                                       {"tSample", 44100},          {"tPlayCount", 7},
                                       {"tSkipCount", 2},           {"tBPM", 120},
                                       {"tCompilation", true},      {"tTrackNum", 3},
                                       {"tTrackCount", 12},         {"tDiscNum", 1},
                                       {"tDiscCount", 0},           {"realTime", 215040},
                                       {"realSize", 4200000},       {"tCheckbox", true}});
}

TEST(TrackRecord, HoldsPlainValuesOfAnItemThatSaysNothing) {
  LibraryHarness library;
  library.document(song(1, "00000000000000FF", "/gone.mp3"));
  TextSorter::buildLibrary();
  const std::string_view never = "1966-06-15T11:32:17Z";
  expectValues(library, "FF",
               {{"tName", ""},           {"tAlbumArtist", ""},    {"tYear", 0},
                {"tYearString", ""},     {"tCompilation", false}, {"tSize", ""},
                {"realSize", 0},         {"tTrackNumString", ""}, {"realPlayDate", never},
                {"realSkipDate", never}, {"realModDate", never},  {"realAddDate", never},
                {"tWork", ""},           {"tMoveNum", 0},         {"tCloudStatus", ""},
                {"hexpid", "FF"},        {"decpid", "255"},       {"tPlayDate", Value()},
                {"tGroupID", Value()},   {"tShow", Value()},      {"tname", Value()}});
}

TEST(TrackRecord, TellsWhereATrackIs) {
  struct Case {
    std::string type, location, kind;
    std::string_view tType, fileAvail, tLoc, tFileName;
  };
  // The names of the types are shifted by one against their numbers; others compare with them.
  const Case cases[] = {
      {"File", "file:///m/here.mp3", "", "File", "1", "/m/here.mp3", "here.mp3"},
      {"File", "file://localhost/m/he%72e.mp3", "", "File", "1", "/m/here.mp3", "here.mp3"},
      {"File", "file:///m/gone.mp3", "", "File", "0", "", ""},
      {"URL", "http://radio.example/a", "", "Remote", "0", "", ""},
      {"Remote", "", "Apple Music AAC audio file", "Unknown", "2", "Cloud", ""},
  };
  for (const Case& c : cases) {
    LibraryHarness library;
    library.files.put("/m/here.mp3", "x");
    library.document("<key>1</key><dict>" + number("Track ID", 1) + text("Persistent ID", "A") +
                     text("Track Type", c.type) + text("Kind", c.kind) +
                     (c.location.empty() ? "" : text("Location", c.location)) + "</dict>");
    TextSorter::buildLibrary();
    SCOPED_TRACE(c.type + " " + c.location);
    expectValues(library, "A",
                 {{"tType", c.tType},
                  {"fileAvail", c.fileAvail},
                  {"tLoc", c.tLoc},
                  {"tFileName", c.tFileName}});
    EXPECT_EQ(library.files.reachableCalls() > 0, c.type == "File");
  }
}

TEST(TrackRecord, ReadsPurchaseAndProtectionOffTheBeginningOfTheKind) {
  const std::vector<std::tuple<std::string, std::string_view, std::string_view>> cases = {
      {"Purchased AAC audio file", "YES", "NO"},
      {"purchased AAC audio file", "NO", "NO"},
      {"Protected AAC audio file", "NO", "YES"},
      {"AAC audio file, Purchased", "NO", "NO"},
      {"Purchase", "YES", "NO"},
      {"Purchas", "NO", "NO"}};
  LibraryHarness library;
  for (const auto& [kind, purchased, isProtected] : cases) {
    library.document(song(1, "A", "/a.mp3", text("Kind", kind)));
    TextSorter::buildLibrary();
    expectValues(library, "A", {{"tPurch", purchased}, {"tProtected", isProtected}});
  }
}

TEST(TrackRecord, WritesDatesInLocalTimeWithAZThatMeansNothing) {
  icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Kolkata"));
  LibraryHarness library;
  library.document(song(1, "A", "/a.mp3", date("Date Added", "2019-02-28T20:59:59Z")));
  TextSorter::buildLibrary();
  expectValues(library, "A",
               {{"realAddDate", "2019-03-01T02:29:59Z"}, {"tAddDate", Date{1551387599}}});
  icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
}

TEST(TrackFiles, AskTheApplicationAndPassOnItsAnswer) {
  LibraryHarness library;
  RecordingApplication application;
  library.process.with.application = &application;
  using Answer = std::optional<std::string>;
  for (const auto& [answer, capitalized] : std::initializer_list<std::pair<Answer, Answer>>{
           {"matched", "Matched"},
           {"no longer AVAILABLE", "No Longer Available"},
           {"éTÉ à l'ombre", "Été À L'ombre"},
           {"", ""},
           {std::nullopt, std::nullopt}}) {
    application.answer.text = answer;
    EXPECT_EQ(TextSorter::cloudStatusByTrackPid("A1"), capitalized);
    EXPECT_EQ(TextSorter::locationByTrackPid("A1"), answer);
  }
  EXPECT_EQ(application.commands[0], Command(command::TrackCloudStatus{0xA1}));
  EXPECT_EQ(application.commands[1], Command(command::TrackLocation{0xA1}));
  EXPECT_FALSE(TextSorter::locationByTrackPid("no ID"));
  TextSorter::addtohook("/a.mp3");
  EXPECT_EQ(application.commands.back(), Command(command::AddFile{"/a.mp3"}));
  EXPECT_TRUE(library.log.lines().empty());
  application.answer.failure = CommandFailure{Message::verbatim("no\nsuch file"), -43};
  TextSorter::addtohook("/a.mp3");
  EXPECT_EQ(library.log.lines(),
            std::vector<std::string>{"Error while adding: no such file (-43)"});
}

TEST(TrackKeys, FindsFieldsAsPeopleWriteThem) {
  for (const std::string_view text :
       {"tAlbumArtist", "album-artist", "Album Artist", "album_artist", "ALBUM-ARTIST"})
    EXPECT_EQ(fieldNamed(text), TrackKey::tAlbumArtist) << text;
  for (const std::string_view text : {"", "talbumartist", "album--artist", "tGroupID", "sound"})
    EXPECT_FALSE(fieldNamed(text)) << text;
  for (const TrackKeyInfo& info : trackKeys()) {
    if (info.origin != TrackKeyOrigin::record) continue;
    EXPECT_EQ(fieldNamed(fieldWord(info.key)), info.key) << "two fields with one word?";
  }
  EXPECT_EQ(nearestFields("artsit", 1), std::vector<std::string_view>{"artist"});
  EXPECT_EQ(nearestFields("tAlbmu", 1), std::vector<std::string_view>{"album"});
  for (const std::string_view word : nearestFields("tGroupID", 1000))
    EXPECT_TRUE(fieldNamed(word)) << word;
}

}  // namespace
}  // namespace kestrel::testing
