/// A library document in a folder of a test's own, with all that an application needs to change it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "musicapp/document/document_library.h"
#include "musicapp/scripted/script_language.h"
#include "tests/musicapp/application_world.h"
#include "tests/musicapp/document/described_document.h"

namespace kestrel::testing {

class DocumentWorld : public ApplicationWorld<DocumentLibrary> {
 public:
  explicit DocumentWorld(const std::string& bytes, const std::filesystem::path& parent =
                                                       std::filesystem::temp_directory_path())
      : ApplicationWorld(parent), path(folder.write("Music/Library.xml", bytes)) {
    open();
  }

  /// Reads the document as it is now, as another run of the program would.
  void open() {
    app.reset();
    app = std::make_unique<DocumentLibrary>(path, services(), options);
  }
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

  CommitOptions options;
  std::string path;
};

/// Tracks called a to d with the persistent IDs A to D, and these playlists: the master (ID 10),
/// "Purchased" (11, distinguished), "Mix" (12) with a b a c, an empty "Empty" (13), a folder
/// "Folder" (14) with "Inner" (15), which holds b, a smart "Smart" (16) with c, and another "Mix"
/// (17) with d.
inline std::string smallLibrary() {
  return writePropertyList(libraryDocument(
      {playlist("Library", 0x10, {0xA, 0xB, 0xC, 0xD}).master(),
       playlist("Purchased", 0x11, {0xD}).distinguished(19),
       playlist("Mix", 0x12, {0xA, 0xB, 0xA, 0xC}), playlist("Empty", 0x13, {}),
       folder("Folder", 0x14, {0xB}), playlist("Inner", 0x15, {0xB}).in(0x14),
       playlist("Smart", 0x16, {0xC}).kind(PlaylistKind::smart), playlist("Mix", 0x17, {0xD})},
      4, 0xA));
}

}  // namespace kestrel::testing
