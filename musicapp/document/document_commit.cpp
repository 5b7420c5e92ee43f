#include "musicapp/document/document_commit.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/library_error.h"
#include "musicapp/document/document_edit.h"
#include "musicapp/library_files.h"
#include "platform/atomic_write.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

std::string hiddenPrefix(const std::string& document) {
  return ".kestrel-" + libraryHash(document) + "-";
}

void checkUnchanged(const CommitTarget& target, const FileService& files) {
  if (files.status(target.document) != target.expected) throwChangedMeanwhile(target.document);
}

}  // namespace

void checkWritable(const std::string& document) {
  struct stat info {};
  if (::stat(document.c_str(), &info) != 0)
    throw FileError::fromCode(document, Message::tr("cannot be written"), errno);
  // Its folder would let it be replaced, and root may do anything, but its owner did not want it
  // changed.
  if ((info.st_mode & 0222U) == 0 || ::access(document.c_str(), W_OK) != 0)
    throw FileError(document, Message::tr("is read-only"),
                    Message::tr("Allow writing to it, then try again."));
  checkOwnerCanBeKept(document);
  if (info.st_nlink > 1)
    throw FileError(
        document,
        Message::tr("has %1 names (hard links), of which only this one would get the change")
            .arg(std::to_string(info.st_nlink)),
        Message::tr("Make it a file of its own: copy it, and give the copy its name."));
}

void clearLeftoversOf(const std::string& path, FileService& files, Log& log) {
  std::error_code none;
  const std::string document = std::filesystem::canonical(path, none).string();
  if (none) return;
  try {
    clearLeftovers(document, hiddenPrefix(document), [&](const std::string& replaced) {
      LibraryBackups backups(files, document);
      if (!backups.holds(replaced)) backups.add(replaced);
      files.remove(replaced);
    });
  } catch (const MessageError& error) {
    log.line(error.what());
  }
}

void throwChangedMeanwhile(const std::string& document) {
  throw LibraryError(
      document, {},
      Message::tr("was changed by another program since it was read, so nothing was written to it"),
      Message::tr("Reload the library and try again."));
}

FileStatus replaceDocument(const CommitTarget& target, FileService& files, Log& log,
                           const CommitOptions& options,
                           const std::function<void(TextSink&)>& content) {
  const auto step = [&](CommitStep which) {
    if (options.onStep) options.onStep(which);
  };
  const std::string& document = target.document;
  std::string backup;  // to be removed if nothing comes of it
  LibraryBackups backups(files, document);
  SuccessorFile file(document, hiddenPrefix(document));
  try {
    step(CommitStep::check);
    checkUnchanged(target, files);
    checkWritable(document);
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
    checkUnchanged(target, files);
    step(CommitStep::replace);
    if (!file.exchange()) {
      file.replace();
    } else {
      // Whatever has come there since it was last looked at is at hand, and can go back.
      try {
        step(CommitStep::compare);
        if (files.entryStatus(file.path()) != target.expected) throwChangedMeanwhile(document);
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
      throw FileError::fromCode(document,
                                Message::tr("was written, but may not outlast a power cut"), code);
    step(CommitStep::prune);
    backups.prune(options.keptBackups);
  } catch (const FileError& error) {
    log.line(error.what());
  }
  return status;
}

}  // namespace kestrel
