// Playlist files as programs write them, byte by byte: what a change touches and what it leaves.
#include "musicapp/folder/playlist_file.h"

#include <gtest/gtest.h>
#include <map>

#include "foundation/library_error.h"
#include "musicapp/folder/playlist_paths.h"
#include "tests/musicapp/folder/folder_world.h"

namespace kestrel::testing {
namespace {

using namespace command;

/// {M} stands for the music folder. Edits: "2=new" replaces, "-2" deletes, "+new" appends, "=a b"
/// sets; several are separated by ";". Lists lie in {M}/Lists.
struct Case {
  const char* ending;
  std::string before, edits, after;
};

const Case cases[] = {
    {".m3u8", "../A/old.mp3\n", "1=new", "../B/new.mp3\n"},
    {".m3u",
     "#EXTM3U\r\n#EXTINF:123,Art - Old\r\n../A/old.mp3\r\n#EXTINF:5,x\r\n../A/other.mp3\r\n",
     "1=new",
     "#EXTM3U\r\n#EXTINF:1,Neu - New\r\n../B/new.mp3\r\n#EXTINF:5,x\r\n../A/other.mp3\r\n"},
    {".m3u8", "#EXTINF:-1,Old\n../A/old.mp3\n", "1=new", "#EXTINF:-1,New\n../B/new.mp3\n"},
    {".m3u8", "#EXTINF:9 logo=\"a,b\", Art - Old\n../A/old.mp3", "1=new",
     "#EXTINF:1 logo=\"a,b\", Neu - New\n../B/new.mp3"},
    {".m3u8", "\xEF\xBB\xBF{M}/A/old.mp3\n{M}/A/../A//old.mp3\n", "2=new",
     "\xEF\xBB\xBF{M}/A/old.mp3\n{M}/B/new.mp3\n"},
    {".m3u", "..\\A\\old.mp3\r\n", "1=new", "..\\B\\new.mp3\r\n"},
    {".m3u", "file://{M}/A/B%C3%A9%20la.mp3\nfile://localhost{M}/A/old.mp3\n", "1=new;2=bela",
     "file://{M}/B/new.mp3\nfile://localhost{M}/A/B%C3%A9%20la.mp3\n"},
    {".m3u8", "../A/B%C3%A9%20la.mp3\n../A/B\u00E9 la.mp3\n", "1=hash",
     "../B/%231%20h%C3%AF.mp3\n../A/B\u00E9 la.mp3\n"},
    // In Windows-1252, and what it cannot say.
    {".m3u", "# caf\xE9\n../A/B\xE9 la.mp3\n../A/old.mp3\n", "2=hash;1=new",
     "# caf\xE9\n../B/new.mp3\n../B/#1 h\xEF.mp3\n"},
    {".m3u", "../A/B\xE9 la.mp3\n../A/old.mp3\n", "2=japan",
     "../A/B\xE9 la.mp3\nfile://{M}/B/%E6%97%A5.mp3\n"},
    {".m3u", "#EXTINF:1,\x93Q\x94\n../A/B\xE9 la.mp3\n", "1=japan",
     "#EXTINF:1,?\n"
     "file://{M}/B/%E6%97%A5.mp3\n"},
    // Lines in UTF-8 among those in Windows-1252.
    {".m3u", "#EXTINF:1,caf\xE9\n../A/B\u00E9 la.mp3\n../A/B\xE9 la.mp3\n../A/old.mp3\n",
     "1=hash;2=hash;3=japan",
     "#EXTINF:1,Hi\n../B/#1 h\u00EF.mp3\n../B/#1 h\xEF.mp3\n../B/\u65E5.mp3\n"},
    // White space may be a part of the name, or stand before it.
    {".m3u8", " lead.mp3\n  ../A/old.mp3\n\t../gone.mp3\n lead.mp3\n", "1=new;2=lead",
     "../B/new.mp3\n./ lead.mp3\n\t../gone.mp3\n lead.mp3\n"},
    {".m3u8", "../A/old.mp3", "+new;+other", "../A/old.mp3\n../B/new.mp3\n../A/other.mp3"},
    {".m3u8", "", "+new", "../B/new.mp3\n"},
    {".m3u8", "#EXTM3U\n", "+new", "#EXTM3U\n#EXTINF:1,Neu - New\n../B/new.mp3\n"},
    {".m3u8",
     "#EXTM3U\n#EXTINF:3,x\n# mine\n#EXTVLCOPT:start-time=1\n../A/old.mp3\n\n../A/other.mp3\n",
     "-1", "#EXTM3U\n# mine\n\n../A/other.mp3\n"},
    // What is not of this library stays where it is.
    {".m3u8",
     "http://radio/a.mp3\n../A/old.mp3\n../gone.mp3\nC:\\Music\\x.mp3\n../A/old.mp3\ncdda://1\n",
     "2=new",
     "http://radio/a.mp3\n../A/old.mp3\n../gone.mp3\nC:\\Music\\x.mp3\n../B/new.mp3\ncdda://1\n"},
    {".m3u8", "../A/old.mp3\n../gone.mp3\n../A/other.mp3\n../A/old.mp3\n", "=other new new",
     "../A/other.mp3\n../gone.mp3\n../B/new.mp3\n../B/new.mp3\n"},
    {".m3u8", "../A/old.mp3\n../gone.mp3\n../A/other.mp3\n", "=old new other",
     "../A/old.mp3\n../B/new.mp3\n../gone.mp3\n../A/other.mp3\n"},
    {".m3u8", "../a/OLD.MP3\n../A/Be\u0301 la.mp3\n", "1=new",
     "../B/new.mp3\n../A/Be\u0301 la.mp3\n"},
    {".m3u", "../A/old.mp3\r../A/other.mp3\r", "2=new", "../A/old.mp3\r../B/new.mp3\r"},
    {".m3u8", "../A/old.mp3\n../A/other.mp3\n", "=", ""},

    {".pls",
     "[playlist]\nFile1=../A/old.mp3\nTitle1=Art - Old\nLength1=200\nFile2=../A/other.mp3\n"
     "NumberOfEntries=2\nVersion=2\n",
     "1=new",
     "[playlist]\nFile1=../B/new.mp3\nTitle1=Neu - New\nLength1=1\nFile2=../A/other.mp3\n"
     "NumberOfEntries=2\nVersion=2\n"},
    {".pls",
     "[playlist]\r\nnumberofentries = 3\r\nfile1 = ../A/old.mp3\r\nfile2 = http://radio\r\n"
     "file3 = ../A/other.mp3\r\ntitle1 = Old\r\ntitle3 = x\r\nlength3 = -1\r\n; note\r\n",
     "-1",
     "[playlist]\r\nnumberofentries = 2\r\nfile1 = http://radio\r\nfile2 = ../A/other.mp3\r\n"
     "title2 = x\r\nlength2 = -1\r\n; note\r\n"},
    {".pls", "[playlist]\nFile2=../A/other.mp3\nFile1=../A/old.mp3\nNumberOfEntries=9\n", "2=new",
     "[playlist]\nFile2=../B/new.mp3\nFile1=../A/old.mp3\nNumberOfEntries=9\n"},
    {".pls", "[playlist]\nFile1=../A/old.mp3\nTitle1=Old\nFile2=../gone.mp3\nNumberOfEntries=2",
     "+new;1=other",
     "[playlist]\nFile1=../A/other.mp3\nTitle1=Andere\nFile2=../gone.mp3\nFile3=../B/new.mp3\n"
     "Title3=Neu - New\nLength3=1\nNumberOfEntries=3"},
    {".pls", "[playlist]\nNumberOfEntries=0\n", "+new",
     "[playlist]\nFile1=../B/new.mp3\nTitle1=Neu - New\nLength1=1\nNumberOfEntries=1\n"},

    {".xspf",
     "<?xml version='1.0'?>\n<playlist xmlns=\"http://xspf.org/ns/0/\">\n<!-- <track> -->\n"
     " <trackList>\n  <track><location>file://{M}/A/B%C3%A9%20la.mp3</location>\n"
     "   "
     "<title>B&#233;&amp;</title><creator><![CDATA[C&D]]></creator><album/><duration>9</duration>\n"
     "   <extension application='x'><location>z</location></extension></track>\n"
     "  <track><location>file://{M}/A/old.mp3</location></track>\n </trackList>\n</playlist>\n",
     "1=new",
     "<?xml version='1.0'?>\n<playlist xmlns=\"http://xspf.org/ns/0/\">\n<!-- <track> -->\n"
     " <trackList>\n  <track><location>file://{M}/B/new.mp3</location>\n"
     "   <title>New</title><creator>Neu</creator><album>A &lt; B</album><duration>480</duration>\n"
     "   <extension application='x'><location>z</location></extension></track>\n"
     "  <track><location>file://{M}/A/old.mp3</location></track>\n </trackList>\n</playlist>\n"},
    {".xspf",
     "<playlist><trackList><track><location>{M}/A/B\u00E9 la.mp3</location></track>"
     "<track><location>../A/old.mp3</location><location>http://x</location></track></trackList></"
     "playlist>",
     "1=hash;2=bela",
     "<playlist><trackList><track><location>{M}/B/%231%20h%C3%AF.mp3</location></track>"
     "<track><location>../A/B%C3%A9%20la.mp3</location></track></trackList></playlist>"},
    {".xspf",
     "<playlist>\r\n\t<trackList>\r\n\t\t<track>\r\n\t\t\t<location>../A/old.mp3</location>\r\n"
     "\t\t</track>\r\n\t\t<track>\r\n\t\t\t<location>../gone.mp3</location>\r\n\t\t</track>\r\n"
     "\t</trackList>\r\n</playlist>\r\n",
     "-1;+new",
     "<playlist>\r\n\t<trackList>\r\n\t\t<track>\r\n\t\t\t<location>../gone.mp3</location>\r\n"
     "\t\t</track>\r\n\t\t<track>\r\n\t\t\t<location>../B/new.mp3</location>\r\n"
     "\t\t\t<title>New</title>\r\n\t\t\t<creator>Neu</creator>\r\n\t\t\t<album>A &lt; B</album>\r\n"
     "\t\t\t<duration>480</duration>\r\n\t\t</track>\r\n\t</trackList>\r\n</playlist>\r\n"},
    {".xspf", "<x:playlist>\n  <x:trackList />\n</x:playlist>", "+other",
     "<x:playlist>\n  <x:trackList >\n    <x:track>\n      <x:location>file://{M}/A/other.mp3"
     "</x:location>\n      <x:title>Andere</x:title>\n      <x:duration>480</x:duration>\n"
     "    </x:track>\n  </x:trackList>\n</x:playlist>"},
    {".xspf",
     "<?xml version=\"1.0\" "
     "encoding=\"ISO-8859-1\"?><playlist><trackList><track><title>\xE9</title>"
     "<location>../A/B\xE9 la.mp3</location></track></trackList></playlist>",
     "1=japan",
     "<?xml version=\"1.0\" "
     "encoding=\"ISO-8859-1\"?><playlist><trackList><track><title>&#26085;</title>"
     "<location>../B/%E6%97%A5.mp3</location></track></trackList></playlist>"}};

class Lists : public FolderWorld {
 public:
  Lists() {
    song("A/old", "old", "Old", "Art");
    song("A/other", "other", "Andere", "");
    song("A/B\u00E9 la", "bela", "Bela", "");
    song("B/new", "new", "New", "Neu", "A < B");
    song("B/#1 h\u00EF", "hash", "Hi", "");
    song("B/\u65E5", "japan", "\u65E5", "");
    song("Lists/ lead", "lead", "Lead", "");
  }
  void song(const std::string& path, const std::string& name, const std::string& title,
            const std::string& artist, const std::string& album = {}) {
    titles[name] = title;
    tag(folder.write("Music/" + path + ".mp3", sampleAudio("mp3")),
        {{"TITLE", title}, {"ARTIST", artist}, {"ALBUM", album}});
  }
  [[nodiscard]] std::string filled(std::string text) const {
    for (std::size_t at; (at = text.find("{M}")) != std::string::npos;)
      text.replace(at, 3, folder / "Music");
    return text;
  }
  void edit(std::uint64_t playlist, std::string edits) {
    std::istringstream all(edits);
    for (std::string one; std::getline(all, one, ';');) {
      const std::size_t equals = one.find('=');
      Command command = DuplicateTracks{{track(titles[one.substr(1)])}, playlist};
      if (one[0] == '-') command = DeleteEntries{playlist, {std::stoull(one.substr(1))}};
      if (equals == 0) {
        std::istringstream names(one.substr(1));
        std::vector<std::uint64_t> tracks;
        for (std::string name; names >> name;) tracks.push_back(track(titles[name]));
        command = SetEntries{playlist, tracks};
      } else if (equals != std::string::npos) {
        command =
            ReplaceEntries{playlist, {{std::stoull(one), track(titles[one.substr(equals + 1)])}}};
      }
      const CommandResult result = app->run(command);
      EXPECT_FALSE(result.failed()) << one << ": " << result.failure->message.english();
    }
  }

  std::map<std::string, std::string> titles;
};

TEST(PlaylistPaths, WriteNoNameThatReadersTakeForAnAddress) {
  const struct {
    const char* name;
    bool isEncoded;
    char separator;
    const char* text;
  } cases[] = {{"http:foo.mp3", true, '/', "./http:foo.mp3"},
               {"C:win.mp3", false, '/', "./C:win.mp3"},
               {"C:win.mp3", false, '\\', ".\\C:win.mp3"},
               {"file:x/a.mp3", false, '/', "./file:x/a.mp3"},
               {"a/b:c.mp3", false, '/', "a/b:c.mp3"}};
  for (const auto& [name, isEncoded, separator, text] : cases) {
    const std::string path = std::string("/M/") + name;
    EXPECT_EQ(spelled(path, "/M", {{}, false, isEncoded, false, separator}), text);
    const auto readings = readingsOf(text, "/M", isEncoded);
    EXPECT_TRUE(std::any_of(readings.begin(), readings.end(), [&](const PathReading& one) {
      return one.path == path;
    })) << text;
  }
}

TEST(PlaylistFile, ChangesNothingButTheEntriesThatAreToChange) {
  Lists world;
  std::vector<std::string> names, before;
  for (const Case& one : cases) {
    const std::string name = "list " + std::to_string(names.size());
    names.push_back(
        world.folder.write("Music/Lists/" + name + one.ending, world.filled(one.before)));
    before.push_back(TemporaryFolder::read(names.back()));
  }
  world.open();
  std::string reversal;
  {
    const auto batch = world.app->beginBatch();
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      SCOPED_TRACE(i);
      world.edit(world.id("list " + std::to_string(i)), cases[i].edits);
    }
    batch->commit([&](std::string_view bytes) { reversal = bytes; });
  }
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(TemporaryFolder::read(names[i]), world.filled(cases[i].after))
        << i << cases[i].ending << ": " << cases[i].edits;
  const std::string inMemory = world.playlists();
  world.open();
  EXPECT_EQ(world.playlists(), inMemory);
  const auto batch = world.app->beginBatch();
  EXPECT_TRUE(batch->revert(reversal));
  batch->commit();
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(TemporaryFolder::read(names[i]), before[i]) << i;
}

TEST(PlaylistFile, SaysWhatIsNoPlaylist) {
  const std::pair<const char*, std::string> faults[] = {
      {"a.xspf", ""},
      {"a.xspf", "<playlist><trackList><track></trackList></playlist>"},
      {"a.xspf", "<playlist><trackList>"},
      {"a.xspf", "<playlist/>"},
      {"a.xspf", "<playlist><trackList><track"},
      {"a.m3u", std::string("\xFF\xFE#\0", 4)}};
  for (const auto& [name, bytes] : faults)
    EXPECT_THROW(PlaylistFile::read(name, bytes), LibraryError) << bytes;
  // Of every beginning of a whole one there is an answer.
  for (const Case& one : cases)
    for (std::size_t size = 0; size <= one.before.size(); ++size) try {
        const std::string bytes = one.before.substr(0, size);
        const auto file = PlaylistFile::read(std::string("a") + one.ending, bytes);
        std::vector<PlaylistSlot> same(file->entries().size());
        for (std::size_t i = 0; i < same.size(); ++i) same[i].from = i;
        EXPECT_EQ(file->written(same), bytes);
      } catch (const LibraryError&) {
      }
}

}  // namespace
}  // namespace kestrel::testing
