#include "musicapp/document/document_library.h"

#include <gtest/gtest.h>

#include "foundation/library_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/musicapp/document/random_document.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

std::string oneTrack(const std::string& name) {
  return "<plist><dict><key>Tracks</key><dict><key>7</key><dict><key>Name</key><string>" + name +
         "</string></dict></dict><key>Playlists</key><array><dict><key>Playlist Items</key><array>"
         "<dict><key>Track ID</key><integer>7</integer></dict>"
         "<dict><key>Track ID</key><integer>8</integer></dict></array></dict></array>"
         "<key>Music Folder</key><string>file:///Music%20Folder/</string></dict></plist>";
}

std::string firstTitle(const MediaItems& items) {
  std::string title;
  items.forEach([&](const MediaItem& item) { title = item.title.view(); });
  return title;
}

class DocumentLibraryTest : public ::testing::Test {
 protected:
  std::string write(const std::string& bytes) {
    files.writeAtomically(path, bytes);
    return path;
  }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  std::string path = folder / "Library.xml";
};

TEST_F(DocumentLibraryTest, ReadsFilesOfEveryEncodingAsItReadsMemory) {
  // Documents of 100 kB and more, so that pages are given back while reading.
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const std::string bytes = randomDocument(seed, 300);
    const DocumentLibrary library(write(bytes), files, log);
    EXPECT_EQ(firstDifference(outcome(bytes, 1, onePart), described(library.document())), "")
        << "seed " << seed;
  }
}

TEST_F(DocumentLibraryTest, ReloadsWhatChangedAndLeavesWhatIsHeld) {
  DocumentLibrary library(write(oneTrack("first")), files, log);
  EXPECT_EQ(log.lines(), std::vector<std::string>{
                             path + ": dropped 1 playlist entries whose Track ID the library does "
                                    "not define"});
  EXPECT_EQ(library.mediaFolder(), "/Music Folder/");
  const auto held = library.allMediaItems();
  library.reload();
  EXPECT_EQ(library.allMediaItems(), held) << "nothing has changed";

  write(oneTrack("second"));
  library.reload();
  EXPECT_EQ(firstTitle(*library.allMediaItems()), "second");
  EXPECT_EQ(firstTitle(*held), "first");

  write("<plist>");
  EXPECT_THROW(library.reload(), LibraryError);
  EXPECT_EQ(firstTitle(*library.allMediaItems()), "second") << "the last that could be read";
  EXPECT_EQ(library.allPlaylists()->front().items.size(), 1U);
}

TEST_F(DocumentLibraryTest, NamesTheFileThatCannotBeRead) {
  for (const std::string& wrong :
       {folder / "none.xml", folder.path(), folder.write("empty.xml", "")}) {
    try {
      DocumentLibrary(wrong, files, log);
      ADD_FAILURE() << wrong << " was read";
    } catch (const LibraryError& error) {
      EXPECT_EQ(error.file, wrong);
      EXPECT_FALSE(error.problem.empty());
      EXPECT_FALSE(error.remedy.empty()) << error.what();
    }
  }
}

}  // namespace
}  // namespace kestrel::testing
