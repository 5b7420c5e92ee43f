/// A library document in a folder of a test's own, with all that an application needs to change it.
#pragma once

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/property_list.h"
#include "musicapp/document/document_library.h"
#include "musicapp/scripted/script_language.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {

class DocumentWorld {
 public:
  explicit DocumentWorld(const std::string& bytes)
      : path(folder.write("Music/Library.xml", bytes)) {
    ::setenv("XDG_DATA_HOME", (folder / "support").c_str(), 1);
    open();
  }

  /// Reads the document as it is now, as another run of the program would.
  void open() {
    app.reset();
    app = std::make_unique<DocumentLibrary>(path, services(), options);
  }
  [[nodiscard]] ApplicationServices services() { return {files, log, random, clock, revealer}; }
  /// The result text; an error as its number, place and message.
  std::string run(std::string_view script) const {
    const ScriptResult result = script::interpret(script, *app);
    return result.failed() ? "error " + result.error->description() : result.text.value_or("");
  }
  std::string run(const Command& command) const {
    const CommandResult result = app->run(command);
    return result.failed() ? "error " + lineOf(result.failure->whole()) : result.text.value_or("");
  }
  [[nodiscard]] std::string bytes() const { return TemporaryFolder::read(path); }
  [[nodiscard]] PropertyList parsed() const { return parsePropertyList(bytes(), path); }

  /// The application's lists, and what is read from the document.
  [[nodiscard]] Lines inMemory() const {
    LibraryDocument document = readLibraryDocument(bytes(), path);
    document.items = std::const_pointer_cast<MediaItems>(app->library().allMediaItems());
    document.playlists =
        std::const_pointer_cast<std::vector<Playlist>>(app->library().allPlaylists());
    return described(document);
  }
  [[nodiscard]] Lines onDisk() const { return described(readLibraryDocument(bytes(), path)); }

  /// "NAME: TITLE TITLE" for each playlist, separated by "; ", with "FOLDER/" before the name.
  [[nodiscard]] std::string playlists() const {
    const auto items = app->library().allMediaItems();
    const auto lists = app->library().allPlaylists();
    std::ostringstream out;
    for (const Playlist& list : *lists) {
      out << (&list == &lists->front() ? "" : "; ");
      for (const Playlist& other : *lists)
        if (list.parentID == other.persistentID) out << other.name << "/";
      out << list.name << ":";
      for (const std::uint64_t id : list.items)
        items->forEach([&](const MediaItem& item) {
          if (item.persistentID == id) out << " " << item.title.view();
        });
    }
    return out.str();
  }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  ManualClock clock{Moment(std::chrono::seconds(1'700'000'000))};
  SeededRandom random{1};
  Revealer* revealer = nullptr;
  CommitOptions options;
  std::string path;
  std::unique_ptr<DocumentLibrary> app;
};

/// Tracks 1 to 4, called a to d with the persistent IDs A to D, and these playlists: the master (ID
/// 10), "Purchased" (11, distinguished), "Mix" (12) with a b a c, an empty "Empty" (13), a folder
/// "Folder" (14) with "Inner" (15), which holds b, a smart "Smart" (16) with c, and another "Mix"
/// (17) with d. Laid out as music applications do.
std::string smallLibrary();

}  // namespace kestrel::testing
