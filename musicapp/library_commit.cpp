#include "musicapp/library_commit.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "musicapp/library_files.h"
#include "platform/atomic_write.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

std::string hiddenPrefix(const std::string& library) {
  return ".kestrel-" + libraryHash(library) + "-";
}

void checkTarget(const CommitTarget& target, const FileService& files) {
  if (files.status(target.file) != target.expected) throwChangedMeanwhile(target.file);
}

}  // namespace

void checkWritable(const std::string& library, std::size_t ownNames) {
  struct stat info {};
  if (::stat(library.c_str(), &info) != 0)
    throw FileError::fromCode(library, Message::tr("cannot be written"), errno);
  // Its folder would let it be replaced, and root may do anything, but its owner did not want it
  // changed.
  if ((info.st_mode & 0222U) == 0 || ::access(library.c_str(), W_OK) != 0)
    throw FileError(library, Message::tr("is read-only"),
                    Message::tr("Allow writing to it, then try again."));
  checkOwnerCanBeKept(library);
  if (info.st_nlink > 1 + ownNames)
    throw FileError(
        library,
        Message::tr("has %1 names (hard links), of which only this one would get the change")
            .arg(std::to_string(info.st_nlink)),
        Message::tr("Make it a file of its own: copy it, and give the copy its name."));
}

void clearLeftoversOf(const std::string& path, FileService& files, Log& log) {
  std::error_code none;
  const std::string library = std::filesystem::canonical(path, none).string();
  if (none) return;
  try {
    clearLeftovers(library, hiddenPrefix(library), [&](const std::string& replaced) {
      LibraryBackups backups(files, library);
      if (!backups.holds(replaced)) backups.add(replaced);
      files.remove(replaced);
    });
  } catch (const MessageError& error) {
    log.line(error.what());
  }
}

FileStatus replaceLibraryFile(const CommitTarget& target, FileService& files, Log& log,
                              const CommitOptions& options,
                              const std::function<void(TextSink&)>& content) {
  const auto step = [&](CommitStep which) {
    if (options.onStep) options.onStep(which);
  };
  const std::string& path = target.file;
  std::string backup;  // to be removed if nothing comes of it
  LibraryBackups backups(files, path);
  SuccessorFile file(path, hiddenPrefix(path));
  try {
    step(CommitStep::check);
    checkTarget(target, files);
    checkWritable(path);
    step(CommitStep::create);
    file.create();
    TextSink sink([&](std::string_view bytes) {
      step(CommitStep::write);
      file.write(bytes);
    });
    content(sink);
    sink.flush();
    step(CommitStep::protect);
    file.takeOver();
    step(CommitStep::sync);
    file.sync();
    step(CommitStep::backUp);
    backup = backups.add();
    step(CommitStep::checkAgain);
    checkTarget(target, files);
    step(CommitStep::replace);
    if (!file.exchange()) {
      file.replace();
    } else {
      // Whatever has come there since it was last looked at is at hand, and can go back.
      try {
        step(CommitStep::compare);
        if (files.entryStatus(file.path()) != target.expected) throwChangedMeanwhile(path);
      } catch (...) {
        file.putBack();
        throw;
      }
    }
  } catch (...) {
    if (!backup.empty()) ::unlink(backup.c_str());
    throw;
  }
  const FileStatus status = file.status();
  try {
    step(CommitStep::syncFolder);
    if (const int code = file.syncFolder())
      throw FileError::fromCode(path, Message::tr("was written, but may not outlast a power cut"),
                                code);
    step(CommitStep::prune);
    backups.prune(options.keptBackups);
  } catch (const FileError& error) {
    log.line(error.what());
  }
  return status;
}

}  // namespace kestrel
