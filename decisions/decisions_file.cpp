#include "decisions/decisions_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <utility>

#include "decisions/decisions_json.h"
#include "foundation/identifiers.h"
#include "musicapp/file_url.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

/// Whether the library is a file that is no longer there.
bool hasMoved(const FileService& files, const std::string& uri) {
  std::string path;
  return pathOfFileUrl(uri, path) && !files.exists(path);
}

}  // namespace

DecisionsFile::DecisionsFile(FileService& files, LibraryIdentity library)
    : files_(files), library_(std::move(library)) {
  const auto support = files.applicationSupportDirectory();
  if (!support) return;
  folder_ = *support + "/Kestrel/Decisions";
  path_ = folder_ + "/" + paddedHex(derivedPersistentID(plainUri(library_.uri), {})) + ".json";
}

Decisions DecisionsFile::load() const {
  if (path_.empty()) return {};
  if (files_.exists(path_)) return decisionsFromText(files_.readAll(path_), path_).decisions;
  if (library_.id.empty() || !files_.exists(folder_)) return {};
  for (const std::string& name : files_.list(folder_)) {
    if (!name.ends_with(".json")) continue;
    try {
      const std::string other = folder_ + "/" + name;
      ReadDecisions read = decisionsFromText(files_.readAll(other), other);
      if (read.library.id == library_.id &&
          (library_.isServer() || plainUri(read.library.uri) == plainUri(library_.uri) ||
           hasMoved(files_, plainUri(read.library.uri))))
        return std::move(read.decisions);
    } catch (const LibraryError&) {
      // Another library's file, which is for whoever opens that to mend.
    }
  }
  return {};
}

Decisions DecisionsFile::change(const std::function<void(Decisions&)>& edit) {
  if (path_.empty())
    throw LibraryError(
        "decisions", {}, Message::tr("there is no place to keep it"),
        Message::tr("Set HOME, or XDG_DATA_HOME to a folder in which Kestrel may keep its data."));
  files_.createDirectories(folder_);
  // The file itself is replaced when it is written, so that it cannot bear the lock.
  const Descriptor lock(
      ::open((folder_ + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (lock) static_cast<void>(::flock(lock.number(), LOCK_EX));
  Decisions decisions = load();
  edit(decisions);
  decisions.maps.clear();
  files_.writeAtomically(path_, decisionsText(decisions, library_));
  return decisions;
}

}  // namespace kestrel
