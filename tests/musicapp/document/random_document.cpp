#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <random>
#include <unicode/unistr.h>
#include <utility>
#include <vector>

#include "tests/musicapp/document/described_document.h"

namespace kestrel::testing {
namespace {

enum class Encoding { utf8, utf8WithMark, utf16Little, utf16Big, latin1 };

std::string encoded(const std::string& text, Encoding encoding) {
  if (encoding == Encoding::utf8) return text;
  if (encoding == Encoding::utf8WithMark) return "\xEF\xBB\xBF" + text;
  const auto units =
      icu::UnicodeString::fromUTF8(encoding == Encoding::latin1 ? text : "\xEF\xBB\xBF" + text);
  const char* name = encoding == Encoding::latin1        ? "ISO-8859-1"
                     : encoding == Encoding::utf16Little ? "UTF-16LE"
                                                         : "UTF-16BE";
  std::string bytes(text.size() * 4, '\0');
  bytes.resize(static_cast<std::size_t>(units.extract(
      0, units.length(), bytes.data(), static_cast<std::uint32_t>(bytes.size()), name)));
  return bytes;
}

template <typename... Texts>
std::vector<std::string> listOf(const Texts&... texts) {
  return {std::string(texts)...};
}

// What looks like the end of a track and the next one's beginning, and other traps.
const auto comments =
    listOf("", " a comment ", "</dict>\n\t<key>7</key>\n\t<dict>", "<key>", "]]>", "'",
           "&undeclared;", "</dict><key>8</key><dict></dict></dict></plist>");
const auto texts = listOf(
    "", " ", "A", "Caf\u00E9", "Cafe\u0301", "\u65E5\u672C", "\U0001F600\U0001F3B5", "Tom & Jerry",
    "<b>\"'</b>", "]]>", "a\nb", "tab\t", "\x01\x1F", "1", "0 ", "&amp;", "\u00FF\u00A0",
    "</dict>\n\t<key>5</key>\n\t<dict>", "</dict><key>6</key><dict><key>Name</key>", "R&B; soul",
    std::string(255, 'x'), "cr\rlf\r\nend\r", "--> <!-- ");
const auto locations =
    listOf("file:///Volumes/Music/A%20B/01%20Caf%C3%A9.mp3", "file://localhost/Users/u/a+b%25.m4a",
           "file://localhost/L:/Music/x%23.mp3", "http://radio.example.org:8000/a%20b",
           "file:///a%2", "file:///%zz%00%41", "file:///", "file:///folder/", "file:///a.bundle//",
           "file:////", "", "file://localhost", "file:///caf%65%CC%81/e\u0301.mp3");
const auto numbers = listOf("0", "1", "2019", "256", "-1", "+7", " 44100 ", "27852939",
                            "5368709120", "9223372036854775807", "-9223372036854775808", "0x1F");

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {
    plain_ = chance(2);
    encoding_ = static_cast<Encoding>(chance(2) ? 0 : below(5));
    lineEnd_ = chance(4) ? "\r\n" : chance(8) ? "\r" : "\n";
    indent_ = chance(4) ? "  " : chance(6) ? "" : "\t";
  }

  std::string document(int mostTracks) {
    prologue();
    open("plist", " version=\"1.0\"");
    container("dict", [&] {
      std::vector<int> sections = {0, 1, 2, 3};
      if (chance(2)) std::shuffle(sections.begin(), sections.end(), random_);
      if (chance(10)) std::erase(sections, 2);  // no playlists
      for (const int section : sections) {
        if (section == 0) header();
        if (section == 1) tracks(mostTracks);
        if (section == 2) playlists();
        if (section == 3 && chance(2)) unknown(0);
      }
    });
    space();
    out_ += "</plist>";
    space();
    return encoded(out_, encoding_);
  }

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool chance(int outOf) { return below(outOf) == 0; }
  bool odd(int outOf) { return !plain_ && chance(outOf); }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
  }

  void prologue() {
    const bool latin1 = encoding_ == Encoding::latin1;
    const bool utf16 = encoding_ == Encoding::utf16Little || encoding_ == Encoding::utf16Big;
    if (latin1 || !odd(2)) {
      const char* name = latin1 ? "iso-8859-1" : utf16 ? "UTF-16" : "UTF-8";
      out_.append("<?xml version=\"1.0\" encoding=\"").append(name).append("\"?>");
    }
    space();
    if (odd(3)) return;
    out_ += odd(2) ? "<!DOCTYPE plist [<!-- ]>' --><!ENTITY a \"]>\"><!ELEMENT plist ANY>]>"
                   : "<!DOCTYPE plist SYSTEM \"http://example.org/PropertyList-1.0.dtd\">";
  }

  /// Between elements: line end and indentation, or anything that counts as nothing.
  void space() {
    if (!odd(3)) out_ += lineEnd_;
    for (int i = 0; i < depth_; ++i) out_ += indent_;
    if (odd(8)) out_.append("<!--").append(oneOf(comments)).append("-->");
    if (odd(20)) out_ += "<?note </dict> ?>";
  }

  void open(const std::string& name, const std::string& attributes = {}) {
    out_ += "<" + name + attributes;
    if (odd(10)) out_ += " a=\"/>'\" xml:b = 'c>\"'";
    if (odd(10)) out_ += "\n ";
    out_ += ">";
  }
  void close(const std::string& name) { out_ += "</" + name + (odd(10) ? " >" : ">"); }
  void empty(const std::string& name) {
    if (odd(4)) return open(name), close(name);
    out_ += "<" + name + (odd(5) ? " a='b' />" : "/>");
  }

  template <typename Content>
  void container(const std::string& name, Content&& content) {
    open(name);
    ++depth_;
    content();
    --depth_;
    space();
    close(name);
  }

  void scalar(const std::string& name, const std::string& text) {
    if (text.empty() && odd(2)) return empty(name);
    open(name);
    spell(text);
    close(name);
  }

  /// `text` in random spelling. Line ends are written as they are: any spelling reads as LF.
  void spell(const std::string& text) {
    const bool latin1 = encoding_ == Encoding::latin1;
    const auto points = icu::UnicodeString::fromUTF8(text);
    const bool fits = !latin1 || encoded(text, Encoding::latin1).find('\x1A') == std::string::npos;
    if (odd(4) && fits && text.find("]]>") == std::string::npos) {
      out_.append("<![CDATA[").append(text).append("]]>");
      return;
    }
    for (int at = 0; at < points.length(); at = points.moveIndex32(at, 1)) {
      const UChar32 c = points.char32At(at);
      if ((latin1 && c > 0xFF) || odd(12)) {
        std::array<char, 16> reference{};
        std::snprintf(reference.data(), reference.size(), chance(2) ? "&#%u;" : "&#x%04X;",
                      static_cast<unsigned>(c));
        out_ += reference.data();
      } else if (c == '&') {
        out_ += "&amp;";
      } else if (c == '<') {
        out_ += "&lt;";
      } else if (c == '>') {
        out_ += "&gt;";
      } else if (c == '"' && odd(2)) {
        out_ += "&quot;";
      } else {
        icu::UnicodeString(c).toUTF8String(out_);
      }
      if (odd(30)) out_.append("<!--").append(oneOf(comments)).append("-->");
    }
  }

  void key(const std::string& name) {
    space();
    scalar("key", name);
    if (odd(6)) space();
  }
  void keyed(const std::string& name, const char* type, const std::string& text) {
    key(name);
    scalar(type, text);
  }
  void flag(const std::string& name) {
    key(name);
    empty(chance(4) ? "false" : "true");
  }
  void number(const std::string& name) {
    if (odd(10))
      keyed(name, "real", chance(2) ? "12.75" : " +12.75\n");
    else
      keyed(name, "integer", oneOf(numbers));
  }
  void date(const std::string& name) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d%sZ", 1904 + below(137),
                  1 + below(12), 1 + below(28), below(24), below(60), below(60),
                  chance(10) ? ".000" : "");
    keyed(name, "date", odd(10) ? "\n\t" + std::string(text.data()) + " " : text.data());
  }
  std::string id(int outOf) {
    if (chance(40)) return oneOf(std::array{"0000000000000000", "12345G", "", "-1"});
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llX",
                  0x0123456789ABULL * static_cast<unsigned>(1 + below(outOf)));
    return text.data();
  }

  void unknown(int level) {
    key(oneOf(std::array{"Unknown", "Track", "Nam", "Tracks 2", "Date Modified UTC", ""}));
    anything(level);
  }
  void anything(int level) {
    const int sort = below(level < 4 ? 8 : 6);
    if (sort == 0) scalar("string", oneOf(texts));
    if (sort == 1) scalar("integer", "99999999999999999999");  // is not looked at
    if (sort == 2) scalar("data", "AAEC AwQ=");
    if (sort == 3) empty("true");
    if (sort == 4) scalar("real", "1e5");
    if (sort == 5) chance(2) ? empty("dict") : empty("array");
    if (sort == 6)
      container("array", [&] {
        for (int i = below(4); i > 0; --i) space(), anything(level + 1);
      });
    if (sort == 7)
      container("dict", [&] {
        for (int i = below(4); i > 0; --i) unknown(level + 1);
      });
  }

  void header() {
    keyed("Major Version", "integer", "1");
    if (chance(2)) keyed("Application Version", "string", oneOf(texts));
    if (chance(2)) keyed("Music Folder", "string", oneOf(locations));
    if (chance(2)) keyed("Library Persistent ID", "string", id(1000));
    if (chance(2)) date("Date");
  }

  void tracks(int most) {
    key("Tracks");
    const int count = below(most + 1);
    if (count == 0 && odd(2)) return empty("dict");
    container("dict", [&] {
      for (int i = 0; i < count; ++i) {
        // Increasing, with gaps; now and then a repeated one, a huge one, or no number at all.
        lastTrackID_ += 1 + below(3);
        const std::int64_t trackID = chance(20)    ? 1 + below(static_cast<int>(lastTrackID_))
                                     : chance(200) ? 9007199254740993 + i
                                                   : lastTrackID_;
        trackIDs_.push_back(trackID);
        key(odd(100) ? "n" + std::to_string(i) : std::to_string(trackID));
        if (chance(2)) out_ += lineEnd_;
        if (chance(50))
          empty("dict");
        else
          container("dict", [&] { track(trackID); });
      }
    });
  }

  void track(std::int64_t trackID) {
    const int common = 1 + below(3);
    std::vector<std::function<void()>> keys;
    const auto add = [&](int outOf, std::function<void()> write) {
      keys.push_back([this, outOf, write = std::move(write)] {
        if (chance(outOf)) write();
        if (odd(40)) write();  // again: the later one counts
      });
    };
    for (const auto& field : textFields)
      add(common, [&] { keyed(field.key, "string", oneOf(texts)); });
    for (const auto& field : numberFields) add(common, [&] { number(field.key); });
    for (const auto& field : dateFields) add(common, [&] { date(field.key); });
    for (const char* name : {"Podcast", "TV Show", "Music Video", "Movie", "Has Video",
                             "Apple Music", "Matched", "Uploaded", "Purchased", "Compilation"})
      add(12, [this, name] { flag(name); });
    const auto types = listOf("File", "URL", "Remote", "", "file");
    add(1, [&] { keyed("Track Type", "string", oneOf(types)); });
    add(2, [&] { keyed("Location", "string", oneOf(locations)); });
    for (int i = 0; i < 5; ++i) add(12, [&] { unknown(0); });
    keys.push_back([&] { keyed("Track ID", "integer", std::to_string(trackID)); });
    if (!chance(10)) keys.push_back([&] { keyed("Persistent ID", "string", id(5000)); });
    if (chance(2)) std::shuffle(keys.begin(), keys.end(), random_);
    for (const auto& write : keys) write();
  }

  void playlists() {
    key("Playlists");
    container("array", [&] {
      for (int i = below(6); i > 0; --i) {
        space();
        container("dict", [&] { playlist(); });
      }
    });
  }

  void playlist() {
    if (!chance(8)) keyed("Name", "string", oneOf(texts));
    if (!chance(8)) keyed("Playlist Persistent ID", "string", id(100));
    if (chance(3)) keyed("Parent Persistent ID", "string", id(100));
    if (chance(3))
      keyed("Distinguished Kind", "integer", oneOf(std::array{"4", "5", "6", "31", "47", "206"}));
    for (const char* name : {"Master", "Visible", "All Items", "Folder", "Music"})
      if (chance(5)) flag(name);
    if (chance(8)) keyed("Genius Track ID", "integer", "3");
    for (const char* name : {"Smart Info", "Smart Criteria"})
      if (chance(6)) keyed(name, "data", "\n\tAQEAAw==\n\t");
    if (chance(4)) unknown(0);
    if (chance(5)) return;
    key("Playlist Items");
    container("array", [&] {
      for (int i = below(30); i > 0; --i) {
        space();
        // Some that the document does not define.
        const std::int64_t trackID =
            trackIDs_.empty() || chance(10) ? 100'000 + below(9) : oneOf(trackIDs_);
        container("dict", [&] {
          if (odd(10)) unknown(0);
          keyed("Track ID", "integer", std::to_string(trackID));
          if (odd(20)) keyed("Track ID", "integer", std::to_string(trackID));
        });
      }
    });
  }

  std::mt19937 random_;
  bool plain_;
  Encoding encoding_;
  std::string lineEnd_, indent_;
  int depth_ = 0;
  std::int64_t lastTrackID_ = 0;
  std::vector<std::int64_t> trackIDs_;
  std::string out_;
};

}  // namespace

std::string randomDocument(std::uint32_t seed, int tracks) {
  return Generator(seed).document(tracks);
}

}  // namespace kestrel::testing
