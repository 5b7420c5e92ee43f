#include "musicapp/document/document_lock.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>

#include "foundation/library_error.h"
#include "musicapp/document/document_edit.h"
#include "musicapp/document/document_tracks.h"
#include "musicapp/file_url.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {

std::string realPathOf(const std::string& document) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(document.c_str(), nullptr),
                                                    std::free);
  if (real) return real.get();
  throw FileError::fromCode(document, Message::tr("cannot be found"), errno);
}

LibraryIdentity documentIdentity(const std::string& path, std::string id,
                                 const FileStatus& status) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
  std::string version;
  for (const std::uint64_t number :
       {status.size, static_cast<std::uint64_t>(status.modified.time_since_epoch().count()),
        status.device, status.inode})
    version.append(version.empty() ? "" : "-").append(std::to_string(number));
  return {fileUrlOfPath(real ? real.get() : path), std::move(id), std::move(version)};
}

std::string supportFolder(FileService& files, const std::string& document,
                          const std::string& subfolder) {
  const auto support = files.applicationSupportDirectory();
  if (!support)
    throw LibraryError(
        document, {},
        Message::tr("cannot be changed: there is no folder for backups, as the system does not "
                    "say where the user's home is"),
        Message::tr("Set HOME."));
  std::string folder = *support + "/Kestrel/" + subfolder;
  try {
    files.createDirectories(*support + "/Kestrel");
    files.createDirectories(folder);
  } catch (const FileError& error) {
    throw LibraryError(
        document, {},
        Message::tr("cannot be changed: Kestrel's folder %1 %2").arg(folder).arg(error.problem),
        error.remedy);
  }
  return folder;
}

std::string documentHash(const std::string& realPath) {
  return paddedHex(derivedPersistentID(realPath, {}));
}

DocumentLock::DocumentLock(FileService& files, std::string realPath)
    : document_(std::move(realPath)) {
  const std::string path =
      supportFolder(files, document_, "Locks") + "/" + documentHash(document_) + ".lock";
  file_ = Descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  const bool opened = static_cast<bool>(file_);
  if (opened && ::flock(file_.number(), LOCK_EX | LOCK_NB) == 0) return;
  if (opened && errno == EWOULDBLOCK)
    throw LibraryError(document_, {}, Message::tr("another Kestrel is changing this library"),
                       Message::tr("Wait until it has finished, or close it."));
  const FileError error = FileError::fromCode(path, Message::tr("cannot be locked"), errno);
  throw LibraryError(document_, {},
                     Message::tr("cannot be changed: %1: %2").arg(path).arg(error.problem),
                     error.remedy);
}

}  // namespace kestrel
