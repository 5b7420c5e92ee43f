/// What a music application offers to Kestrel. Each application is one implementation.
#pragma once

#include <memory>
#include <string>

#include "musicapp/media_library.h"
#include "musicapp/script_runner.h"

namespace kestrel {

/// What an application can be asked for; windows leave out what it cannot.
struct Capabilities {
  std::string name;  ///< of the application, for texts
  bool changesPlaylists = false;
  bool deletesTracks = false;
  bool addsFiles = false;
  bool reveals = false;
};

/// Commands that take effect together. What runs while it is open is seen at once by this program
/// and is made durable by `commit`; destroying it before forgets what was not.
class ScriptBatch {
 public:
  virtual ~ScriptBatch() = default;
  /// Throws LibraryError when the library cannot be written; then nothing has been changed.
  virtual void commit() = 0;
};

class MusicApplication : public ScriptRunner {
 public:
  /// Reflects the commands run so far. `reload` re-reads what others may have changed.
  virtual MediaLibrary& library() = 0;
  [[nodiscard]] virtual Capabilities capabilities() const = 0;
  /// One at a time. Throws LibraryError when the library is in use by another program or has been
  /// changed since it was read. Applications that make each command durable have nothing to do.
  virtual std::unique_ptr<ScriptBatch> beginBatch() = 0;
};

}  // namespace kestrel
