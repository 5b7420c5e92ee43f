#include "platform/scratch_file.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

#include "platform/file_error.h"

namespace kestrel {
namespace {

std::string temporaryFolder() {
  const char* named = std::getenv("TMPDIR");
  return named && *named ? named : "/tmp";
}

Descriptor openNameless(const std::string& folder) {
  Descriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (file) return file;
  // Not every file system has nameless files.
  std::string name = folder + "/kestrel-XXXXXX";
  file = Descriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!file) throw FileError::fromCode(folder, Message::tr("cannot hold a temporary file"), errno);
  ::unlink(name.c_str());
  return file;
}

}  // namespace

ScratchFile::ScratchFile() : folder_(temporaryFolder()), file_(openNameless(folder_)) {}

void ScratchFile::append(std::string_view bytes) {
  if (const int error = file_.write(bytes))
    throw FileError::fromCode(folder_, Message::tr("cannot hold a temporary file"), error);
}

}  // namespace kestrel
