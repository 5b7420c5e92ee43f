#include "musicapp/document/document_library.h"

#include <utility>

#include "foundation/library_error.h"
#include "musicapp/document/document_commit.h"
#include "musicapp/document/document_lock.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {

DocumentLibrary::DocumentLibrary(std::string path, FileService& files, Log& log)
    : path_(std::move(path)), files_(files), log_(log) {
  read();
}

void DocumentLibrary::reload() {
  if (files_.status(path_) != status_) read();
}

LibraryIdentity DocumentLibrary::identity() {
  return documentIdentity(path_, document_.persistentID, status_);
}

void DocumentLibrary::read() {
  try {
    clearLeftoversOf(path_, files_, log_);
    const MappedFile file = files_.map(path_);
    document_ = readLibraryDocument(file, path_);
    status_ = file.status();
  } catch (const FileError& error) {
    throw LibraryError(path_, {}, error.problem, error.remedy);
  }
  if (document_.droppedItems > 0)
    log_.line(path_ + ": dropped " + std::to_string(document_.droppedItems) +
              " playlist entries whose Track ID the library does not define");
}

}  // namespace kestrel
