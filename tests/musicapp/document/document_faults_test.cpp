// Documents with faults: each gives one error with its place, or is read completely.
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <random>
#include <sys/resource.h>

#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_reader.h"
#include "platform/file_error.h"
#include "platform/mapped_file.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

/// A library whose Tracks dictionary has the content `tracks`, on one line.
std::string library(const std::string& tracks) {
  return "<plist><dict><key>Tracks</key><dict>" + tracks + "</dict></dict></plist>";
}
std::string track(const std::string& keys) {
  return library("<key>1</key><dict>" + keys + "</dict>");
}

std::optional<LibraryError> errorOf(std::string_view bytes, unsigned threads = 1,
                                    std::size_t partSize = onePart) {
  try {
    readLibraryDocument(bytes, "test", {.threads = threads, .partSize = partSize, .finished = {}});
    return std::nullopt;
  } catch (const LibraryError& error) {
    return error;
  }
}

std::string utf16(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) bytes.append({c, '\0'});
  return bytes;
}

TEST(DocumentFaults, AreSaidWithTheirPlaceAndWhatWasExpected) {
  const std::string date = "expected a date such as 2019-02-28T23:59:59Z";
  const std::string bomb = "<!DOCTYPE plist [<!ENTITY a \"" + std::string(1000, 'x') + "\">\n" +
                           "<!ENTITY b \"" + repeated("&a;", 1000) + "\">\n<!ENTITY c \"" +
                           repeated("&b;", 1000) + "\">]>\n";
  // In the tracks: they begin at column 37; within one, at column 55.
  const struct {
    std::string document, problem;
  } cases[] = {
      {"bplist00\xD1\x01\x02" + std::string(20, '\0'),
       "1:1 this is a binary property list, and an XML one was expected"},
      {"\n  \n", "3:1 expected <plist>, but the document ends here"},
      {"junk <?xml version=\"1.0\"?>",
       "1:1 expected <plist>, found \"junk <?xml version=\"1.0\"\""},
      {"<html><body/></html>", "1:1 expected <plist>, found \"<html><body/></html>\""},
      {"<plist>\n<array/></plist>", "1:8 expected the library's <dict>"},
      {"<plist>\n <dict/>\n</plist>",
       "2:9 this property list is no music library: it has no Tracks"},
      {library("") + "<plist>", "1:59 expected nothing after </plist>, found \"<plist>\""},
      {library("<key>1</key>"), "1:49 expected a value, found \"</dict></dict></plist>\""},
      {library("<key>1</key><key>2</key>"),
       "1:49 expected a value, found \"<key>2</key></dict></dic\""},
      {library("<key>1</key><string/>"), "1:49 expected the track 1 to be a <dict>"},
      {library("<dict/>"), "1:37 expected <key> or </dict>, found \"<dict/></dict></dict></p\""},
      {track("<key>Name</key>\r\n<string>caf\u00E9</strong>"),
       "2:13 expected </string>, found \"</strong></dict></dict><\""},
      {track("<key>Name</key>\r<string>\r\n\n a <b/></string>"),
       "4:4 expected </string>, found \"<b/></string></dict></di\""},
      {track("<key>Name</key><string>R&B</string>"), "1:79 a bare & must be written &amp;"},
      {track("<key>Name</key><string>&#xD800;</string>"), "1:78 &#xD800; is no character"},
      {track("<key>Name</key><string>\xC3\xA9\xE9</string>"), "1:79 this byte is not valid UTF-8"},
      {bomb + track("<key>Name</key><string>&c;</string>"),
       "4:78 the entity &c; is not one of the five that every document has"},
      {track("<key>Date Added</key><date>2019-13-01T00:00:00Z</date>"), "1:76 " + date},
      {track("<key>Skip Date</key><date>2019-02-29T00:00:00Z</date>"), "1:75 " + date},
      {track("<key>Size</key><integer>9223372036854775808</integer>"),
       "1:79 this number does not fit into 64 bits"},
      {track("<key>Size</key><integer>0x8000000000000000</integer>"),
       "1:79 this number does not fit into 64 bits"},
      {track("<key>Size</key><integer>12a</integer>"), "1:79 expected a whole number"},
      {"<?xml version='1.0' encoding='windows-1252'?>" + library(""),
       "1:31 expected the encoding UTF-8, UTF-16 or ISO-8859-1, found \"windows-1252\""},
      {"<?xml version='1.0' encoding='a\xFF\x01'?>" + library(""),
       "1:31 expected the encoding UTF-8, UTF-16 or ISO-8859-1, found \"a\uFFFD?\""},
      {library("<key>" + repeated("\u00E9", 30) + "</key><true/>"),
       "1:78 expected the track " + repeated("\u00E9", 12) + " to be a <dict>"},
      {"\xEF\xBB\xBF<plist><dict></array>", "1:14 expected <key> or </dict>, found \"</array>\""},
      {utf16("<plist>\r\n<dict>") + std::string("\x00\xDC", 2),
       "2:7 half of a UTF-16 surrogate pair stands alone"},
      {utf16("<plist>\r\n<dict>\n") + "<", "3:1 the last UTF-16 character is cut in half"},
  };
  for (const auto& [document, problem] : cases) {
    SCOPED_TRACE(document.substr(0, 150));
    const auto error = errorOf(document);
    ASSERT_TRUE(error);
    EXPECT_EQ(std::to_string(error->place.line) + ":" + std::to_string(error->place.column) + " " +
                  error->problem.english(),
              problem);
    EXPECT_FALSE(error->remedy.empty());
  }
  EXPECT_NE(errorOf(cases[0].document)->remedy.english().find("as XML"), std::string::npos);
  EXPECT_NE(errorOf(cases[1].document)->remedy.english().find("incomplete"), std::string::npos);
}

TEST(DocumentFaults, OfTruncationAtEveryByteGiveAnErrorInsideTheFile) {
  const std::string document =
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!DOCTYPE plist [<!-- ' -->]>\n" +
      library(
          "<key>1</key><dict a='b'><key>Name</key><string>a&amp;\u00E9<![CDATA[<]]></string>"
          "<key>Podcast</key><true></true><key>Size</key><integer>12</integer>"
          "<key>Date Added</key><date>2019-01-01T00:00:00Z</date><!-- c --><key>X</key>"
          "<array><string/><data>AA==</data></array></dict>\n<key>2</key>\n<dict></dict>") +
      "\n";
  const std::size_t complete = document.find("</plist>") + 8;
  const std::string wide = utf16(library("<key>1</key><dict/>"));
  for (std::size_t size = 0; size <= document.size(); ++size) {
    SCOPED_TRACE(size);
    const std::string_view part(document.data(), size);
    const auto error = errorOf(part);
    ASSERT_EQ(!error, size >= complete);
    if (!error || size == 0) continue;
    const auto lines = static_cast<std::size_t>(std::count(part.begin(), part.end(), '\n')) + 1 +
                       (part.ends_with('\r') ? 1 : 0);
    const std::size_t lastLine = size - (part.rfind('\n') + 1);  // npos + 1 is 0
    EXPECT_TRUE(error->place.line >= 1 && error->place.line <= lines);
    EXPECT_GE(error->place.column, 1U);
    if (error->place.line == lines) {
      EXPECT_LE(error->place.column, lastLine + 1);
    }
    EXPECT_EQ(outcome(part, 3, 20), outcome(part, 1, onePart));
  }
  for (std::size_t size = 0; size < wide.size(); ++size)
    EXPECT_TRUE(errorOf(std::string_view(wide).substr(0, size))) << size;
}

TEST(DocumentFaults, OfRandomDamageAreTheSameInAnyParts) {
  std::mt19937 random(1);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const std::string marks = "<>&/;'\"-[]!?=\n\r 0a\xC3\xFF";
  std::vector<std::string> documents;
  for (std::uint32_t seed = 0; seed < 100; ++seed) documents.push_back(randomDocument(seed, 8));
  int read = 0;
  for (std::uint32_t round = 0; round < 2000; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    std::string document = documents[round % documents.size()];
    for (std::size_t i = 1 + below(3); i > 0; --i) {
      const std::size_t at = below(document.size()), length = below(document.size() - at) % 50;
      switch (below(5)) {
        case 0:
          document[at] = static_cast<char>(below(256));
          break;
        case 1:
          document[at] = marks[below(marks.size())];
          break;
        case 2:
          document.erase(at, length);
          break;
        case 3:
          document.insert(below(document.size()), document.substr(at, length));
          break;
        default:
          document.insert(at, 1, marks[below(marks.size())]);
          break;
      }
    }
    const Lines inParts = outcome(document, 1 + round % 3, 250);
    const auto error = errorOf(document);
    if (!error) {
      ++read;
      ASSERT_EQ(firstDifference(outcome(document, 1, onePart), inParts), "");
      continue;
    }
    ASSERT_EQ(inParts, Lines{error->what()});
    ASSERT_GE(error->place.line, 1U) << error->what();
    ASSERT_GE(error->place.column, 1U) << error->what();
    ASSERT_EQ(firstInvalidUtf8(error->what()), std::string_view::npos) << error->what();
  }
  // Some damage makes another document without faults, but it is not the rule.
  EXPECT_GT(read, 50);
  EXPECT_LT(read, 1000);
}

TEST(DocumentFaults, OfFilesThatChangeWhileTheyAreReadAreSaidAndNoCrash) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  std::string tracks;
  for (int i = 1; i < 3000; ++i)
    tracks += "<key>" + std::to_string(i) + "</key><dict><key>Name</key><string>" +
              std::string(100, 'x') + "</string></dict>";
  const std::string document = library(tracks);
  const std::size_t half = document.size() / 2;
  using Change = std::function<void(const std::string&)>;
  const Change changes[] = {
      [&](const std::string& path) { fs::resize_file(path, half); },
      [&](const std::string& path) { std::ofstream(path, std::ios::binary) << document; },
      [&](const std::string& path) {
        std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).seekp(half) << "<a>";
      }};
  for (const Change& change : changes)
    for (const unsigned threads : {1U, 3U})
      for (const bool wide : {false, true}) {
        const std::string path = folder.write("Library.xml", wide ? utf16(document) : document);
        const MappedFile file(path);
        std::once_flag once;
        DocumentReadOptions options{.threads = threads, .partSize = 20'000, .finished = {}};
        options.finished = [&](std::size_t, std::size_t) { std::call_once(once, change, path); };
        if (wide) change(path);
        EXPECT_THROW(readLibraryDocument(file, path, options), FileError);
      }
}

TEST(DocumentFaults, OfHugeFilesThatAreNoDocumentsAreFoundAtOnce) {
  const TemporaryFolder folder;
  for (const std::string& start :
       {std::string(), std::string("<?xml version=\"1.0\"?>"), std::string("<!--"), library(""),
        std::string("<\0", 2), std::string("<?xml version='1.0' encoding='latin1'?>"),
        std::string("<plist><dict><key>Tracks</key><dict><key>1</key><dict>")}) {
    const std::string path = folder.write("zeros.xml", start);
    std::filesystem::resize_file(path, std::uintmax_t{20} << 30);
    // The scanner looks at no more than this; all would be minutes.
    rusage before{}, after{};
    ::getrusage(RUSAGE_SELF, &before);
    EXPECT_THROW(readLibraryDocument(MappedFile(path), path), LibraryError) << start;
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_minflt - before.ru_minflt + after.ru_majflt - before.ru_majflt, 10'000);
  }
}

TEST(DocumentFaults, OfSizeAndDepthAreBounded) {
  // A line of 100 MB is a text like another, and its missing end is found.
  const std::string line = "<key>Name</key><string>" + std::string(100'000'000, 'x');
  const auto document = readLibraryDocument(track(line + "</string>"), "test");
  document.items->forEach(
      [](const MediaItem& item) { EXPECT_EQ(item.title.view().size(), 100'000'000U); });
  EXPECT_LT(document.items->memory(), 110'000'000U);
  EXPECT_EQ(errorOf(track(line))->place.column, 54U + 23 + 100'000'000 + 1);

  const std::string arrays = repeated("<array>", 100'000);
  const std::string dictionaries = repeated("<dict><key>a</key>", 100'000);
  for (const std::string& open : {arrays, dictionaries})
    for (const std::string& bytes :
         {"<plist>" + open, "<plist><dict><key>Other</key>" + open,
          track("<key>Other</key>" + open),
          "<plist><dict><key>Playlists</key><array><dict><key>Other</key>" + open}) {
      const auto error = errorOf(bytes);
      ASSERT_TRUE(error);
      if (!bytes.starts_with("<plist><array>")) {
        EXPECT_EQ(error->problem.english(), "values are nested more than 512 deep");
      }
    }
}

}  // namespace
}  // namespace kestrel::testing
