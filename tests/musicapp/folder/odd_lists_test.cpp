// Playlist files as many programs may have left them, made at random: replacing entries changes the
// lines of these entries alone, and taking it back gives every byte back.
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "musicapp/file_url.h"
#include "tests/musicapp/folder/folder_world.h"

namespace kestrel::testing {
namespace {

using Random = std::mt19937;

/// The songs of the music folder, below it.
const std::string songs[] = {
    "A/One.mp3",          "A/100%25 #2.mp3",      "A/B & <C>/Z\u00FCrich.mp3",
    " lead.mp3",          "x:y/Colon.mp3",        "\u65E5/\u672C.mp3",
    "Lists/here.mp3",     "Lists/~Sub/tilde.mp3", "A/two  gaps.mp3",
    "A/semi;'\"quote.mp3"};

template <typename Container>
auto anyOf(const Container& all, Random& random) {
  return all[random() % std::size(all)];
}

/// A playlist in the folder Lists, line by line. `entry`: the place of the entry that a line speaks
/// of among those whose songs are there.
struct OddList {
  struct Line {
    std::string text;
    std::optional<std::size_t> entry;
  };
  std::string name;
  std::vector<Line> lines;
  std::vector<std::string> tracks;  ///< of the known entries, in order
  std::string mark, end = "\n";
  bool isEnded = true;

  void add(std::string text, std::optional<std::size_t> entry = {}) {
    lines.push_back({std::move(text), entry});
  }
  [[nodiscard]] std::string bytes() const {
    std::string all = mark;
    for (std::size_t i = 0; i < lines.size(); ++i)
      all += lines[i].text + (i + 1 < lines.size() || isEnded ? end : "");
    return all;
  }
};

std::string upFromLists(const std::string& song) {
  return song.starts_with("Lists/") ? song.substr(6) : "../" + song;
}
std::string encodedPath(const std::string& path) {
  std::string url = fileUrlOfPath("/" + path).substr(sizeof "file:///" - 1);
  return url;
}

/// A line that leads to a song, in one of the ways in which programs write it.
std::string spelling(const std::string& song, const std::string& root, bool isXml, Random& random) {
  const std::string up = upFromLists(song), path = root + "/" + song;
  // What a line of text says otherwise: a drive, an address, a slash of the other system.
  const bool isPlain = up.find(':') == std::string::npos && up.find('#') == std::string::npos &&
                       up.find('%') == std::string::npos && !up.starts_with(' ');
  switch (random() % (isXml || !isPlain ? 4 : 8)) {
    case 0:
      return fileUrlOfPath(path);
    case 1:
      return "file://localhost" + fileUrlOfPath(path).substr(sizeof "file://" - 1);
    case 2:
      return isXml ? "./" + encodedPath(up) : "./" + up;
    case 3:
      return isXml ? "../Lists/../Lists/" + encodedPath(up) : path;
    case 4:
      return up;
    case 5:
      return "../Lists/" + up;
    case 6: {
      std::string turned = up;
      std::replace(turned.begin(), turned.end(), '/', '\\');
      return turned;
    }
    default:
      return root + "/Lists//./" + up;
  }
}

const std::string strangers[] = {
    "C:\\Music\\x.mp3",      "http://radio/a?b=c",        "../gone/x.mp3",
    "\\\\nas\\share\\y.mp3", "file:///nowhere/z%20z.mp3", "cdda://1"};

void addTextLines(OddList& list, const std::string& root, Random& random) {
  const std::string comments[] = {"", "# mine", "#EXTGRP:g", "#PLAYLIST:p", "   ", "#EXTALB:x"};
  if (random() % 2 == 0) list.add("#EXTM3U");
  for (auto count = 1 + random() % 12; count > 0; --count) {
    while (random() % 3 == 0) list.add(anyOf(comments, random));
    const bool isKnown = random() % 4 != 0, hasInformation = random() % 2 == 0;
    const auto entry = isKnown ? std::optional(list.tracks.size()) : std::nullopt;
    if (hasInformation) list.add("#EXTINF:" + std::to_string(random() % 300) + ",An - T", entry);
    if (!isKnown) {
      list.add(anyOf(strangers, random));
      continue;
    }
    list.tracks.push_back(anyOf(songs, random));
    list.add(spelling(list.tracks.back(), root, false, random) + (random() % 5 == 0 ? " " : ""),
             entry);
  }
}

void addNumberedLines(OddList& list, const std::string& root, Random& random) {
  list.add("[playlist]");
  const auto count = 1 + random() % 8;
  list.add("NumberOfEntries=" + std::to_string(count));
  for (std::size_t number = 1; number <= count; ++number) {
    const bool isKnown = random() % 4 != 0;
    const auto entry = isKnown ? std::optional(list.tracks.size()) : std::nullopt;
    const std::string n = std::to_string(number);
    if (random() % 3 == 0) list.add("; note " + n);
    if (random() % 2 == 0) list.add("Title" + n + "=An - T", entry);
    if (isKnown) {
      list.tracks.push_back(anyOf(songs, random));
      list.add("File" + n + "=" + spelling(list.tracks.back(), root, false, random), entry);
    } else {
      list.add("File" + n + "=" + anyOf(strangers, random));
    }
    if (random() % 2 == 0) list.add("Length" + n + "=-1", entry);
    if (random() % 4 == 0) list.add("X-Own" + n + "=kept");
  }
  list.add("Version=2");
}

void addXmlLines(OddList& list, const std::string& root, Random& random) {
  const std::string unknown[] = {"<extension application=\"http://x\"><a>&amp;</a></extension>",
                                 "<!-- <track><location>no</location></track> -->",
                                 "<meta rel=\"r\">v</meta>",
                                 "<annotation><![CDATA[<b>]]></annotation>"};
  list.add("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  list.add("<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><title>T</title><trackList>");
  for (auto count = 1 + random() % 8; count > 0; --count) {
    if (random() % 3 == 0) list.add(unknown[1]);
    list.add("<track>");
    if (random() % 2 == 0) list.add(anyOf(unknown, random));
    if (random() % 4 == 0) {
      list.add("<location>http://radio/a</location>");
    } else {
      const std::size_t entry = list.tracks.size();
      list.tracks.push_back(anyOf(songs, random));
      std::string text = spelling(list.tracks.back(), root, true, random);
      for (std::size_t at = 0; (at = text.find('&', at)) != std::string::npos; at += 5)
        text.replace(at, 1, "&amp;");
      list.add("\t<location>" + text + "</location>", entry);
      if (random() % 2 == 0) list.add("  <title>&#84;</title><trackNum>3</trackNum>", entry);
      if (random() % 2 == 0) list.add("<duration>5</duration>", entry);
    }
    if (random() % 2 == 0) list.add(anyOf(unknown, random));
    list.add("</track>");
  }
  list.add("</trackList></playlist>");
}

OddList oddList(std::size_t number, const std::string& root, Random& random) {
  const std::string endings[] = {".m3u8", ".m3u", ".pls", ".xspf"};
  const std::string ending = anyOf(endings, random);
  OddList list;
  list.name = "list " + std::to_string(number) + ending;
  if (random() % 3 == 0) list.end = "\r\n";
  list.isEnded = random() % 3 != 0;
  if (ending != ".pls" && random() % 4 == 0) list.mark = "\xEF\xBB\xBF";
  if (ending == ".pls")
    addNumberedLines(list, root, random);
  else if (ending == ".xspf")
    addXmlLines(list, root, random);
  else
    addTextLines(list, root, random);
  return list;
}

std::vector<std::string> linesOf(const std::string& bytes) {
  std::vector<std::string> lines(1);
  for (const char c : bytes) {
    lines.back() += c;
    if (c == '\n') lines.emplace_back();
  }
  return lines;
}

TEST(OddLists, ChangeInTheLinesOfReplacedEntriesAloneAndComeBackToTheByte) {
  constexpr std::size_t count = 240;
  FolderWorld world;
  const std::string root = world.folder / "Music";
  for (const std::string& song : songs)
    tag(world.folder.write("Music/" + song, sampleAudio("mp3")), {{"TITLE", song}});
  Random random(5);
  std::vector<OddList> lists;
  for (std::size_t i = 0; i < count; ++i) {
    lists.push_back(oddList(i, root, random));
    world.folder.write("Music/Lists/" + lists.back().name, lists.back().bytes());
  }
  world.open();
  ASSERT_EQ(world.app->unreadPlaylists(), std::vector<std::string>{});
  const auto idOf = [&](const OddList& list) {
    return world.id(list.name.substr(0, list.name.rfind('.')));
  };
  const auto titles = [&](const OddList& list) {
    std::vector<std::string> found;
    const auto names = titlesIn(*world.app);
    for (const std::uint64_t item : world.list(list.name.substr(0, list.name.rfind('.'))).items)
      found.push_back(names.at(item));
    return found;
  };
  std::vector<std::vector<std::string>> wanted;
  std::string reversal;
  {
    const auto batch = world.app->beginBatch();
    for (const OddList& list : lists) {
      SCOPED_TRACE(list.bytes());
      ASSERT_EQ(titles(list), list.tracks);
      command::ReplaceEntries replace{idOf(list), {}};
      wanted.push_back(list.tracks);
      for (std::size_t i = 0; i < list.tracks.size(); ++i)
        if (random() % 3 == 0) {
          wanted.back()[i] = anyOf(songs, random);
          replace.entries.push_back({i + 1, world.track(wanted.back()[i])});
        }
      EXPECT_EQ(world.failureOf(replace), "");
    }
    batch->commit([&](std::string_view bytes) { reversal = bytes; });
  }
  world.open();
  for (std::size_t i = 0; i < count; ++i) {
    const OddList& list = lists[i];
    const std::string after = TemporaryFolder::read(root + "/Lists/" + list.name);
    SCOPED_TRACE(list.bytes() + "---- became ----\n" + after);
    EXPECT_EQ(titles(list), wanted[i]);
    const auto before = linesOf(list.bytes()), now = linesOf(after);
    ASSERT_EQ(now.size(), before.size());
    for (std::size_t line = 0; line < before.size(); ++line) {
      const auto entry = line < list.lines.size() ? list.lines[line].entry : std::nullopt;
      const bool mayChange = entry && wanted[i][*entry] != list.tracks[*entry];
      if (!mayChange) {
        EXPECT_EQ(now[line], before[line]);
      }
    }
  }
  const auto batch = world.app->beginBatch();
  ASSERT_TRUE(batch->revert(reversal));
  batch->commit();
  for (const OddList& list : lists)
    EXPECT_EQ(TemporaryFolder::read(root + "/Lists/" + list.name), list.bytes()) << list.name;
}

}  // namespace
}  // namespace kestrel::testing
