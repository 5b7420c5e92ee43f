/// A library document as a music application: carries commands out on the document itself.
///
/// Commands change this program's memory at once and the document as a whole: the new one is the
/// old one's bytes with what the commands touched cut out or put in, so that every key that
/// Kestrel does not know, the order of keys and the layout stay as they were. (A document that is
/// not in UTF-8 becomes UTF-8 with its first change.) The document that was replaced is kept as a
/// numbered backup in the application-support folder.
///
/// What it costs: the first change of a session scans the document once (about as long as loading
/// it on one core); a commit copies the document once, however many commands it makes durable;
/// commands themselves cost what they touch, deleting tracks a pass over the entries of all
/// playlists. So many commands belong into one batch. Memory grows with what was touched only.
///
/// What commands do where their descriptions leave it open:
/// - A playlist document adds one user playlist at top level for each of its playlists; entries
///   are matched to tracks of this library, those that match none are left out. A media file that
///   is in the library already is not added again.
/// - Entries can be changed in ordinary and genius playlists only: the others are not the user's.
///   The master playlist and the application's own ("distinguished") ones cannot be deleted.
/// - A playlist without a persistent ID has one from its position. It is written down when the
///   position changes or a playlist is moved into it, so that it stays the same.
/// - What XML cannot hold (control characters) becomes U+FFFD in new texts, except in the name of
///   a playlist that the library has already: copies must be found under the same name.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "musicapp/document/document_commit.h"
#include "musicapp/music_application.h"

namespace kestrel {

class Clock;
class FileService;
class Log;
class Random;
class Revealer;

/// What the application works with; everything outlives it.
struct DocumentServices {
  FileService& files;
  Log& log;
  Random& random;  ///< for persistent IDs
  Clock& clock;
  Revealer* revealer = nullptr;  ///< without one nothing can be revealed
};

/// One thread at a time; the lists that `library` hands out may be read by any, and stay as they
/// are. An earlier list that nobody holds any more is changed in place, so hold none in loops over
/// many commands. With large playlists a held list costs a copy of all entries at the next change.
class DocumentMusicApplication final : public MusicApplication {
 public:
  /// Reads the document. Throws LibraryError when it cannot be read.
  DocumentMusicApplication(std::string path, DocumentServices services, CommitOptions options = {});
  ~DocumentMusicApplication() override;

  /// Outside a batch, a command that changes something has changed the document when this returns.
  CommandResult run(const Command& command) override;
  MediaLibrary& library() override;
  [[nodiscard]] Capabilities capabilities() const override;
  /// Holds the document's lock until it is destroyed. May be committed repeatedly.
  std::unique_ptr<kestrel::Batch> beginBatch() override;

 private:
  class Session;
  class Batch;
  std::unique_ptr<Session> session_;
};

}  // namespace kestrel
