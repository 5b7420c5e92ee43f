#include "musicapp/document/document_commit.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/library_error.h"
#include "musicapp/document/document_backups.h"
#include "musicapp/document/document_edit.h"
#include "musicapp/document/document_lock.h"
#include "platform/descriptor.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

Message failed() { return Message::tr("cannot be written"); }

/// The new document until it takes the old one's name; removed if it never does. Its lock tells
/// others that somebody is at work on it: without one it is a leftover.
class NewDocument {
 public:
  explicit NewDocument(const std::string& document) : document_(document) {
    const std::size_t slash = document.rfind('/');
    folder_ = document.substr(0, slash + 1);
    prefix_ = ".kestrel-" + documentHash(document) + "-";
  }
  ~NewDocument() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  NewDocument(const NewDocument&) = delete;
  NewDocument& operator=(const NewDocument&) = delete;

  void create(const FileService& files) {
    removeLeftovers(files);
    // Private until it has the permissions of the one that it replaces.
    for (int number = 0; !file_ && number < 1000; ++number) {
      path_ = folder_ + prefix_ + std::to_string(::getpid()) + "-" + std::to_string(number);
      file_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
      if (!file_ && errno != EEXIST) break;
    }
    if (!file_) {
      const int code = errno;
      path_.clear();
      check(code);
    }
    // Where there are no locks there is only the name.
    static_cast<void>(::flock(file_.number(), LOCK_EX | LOCK_NB));
  }
  void write(std::string_view bytes) { check(file_.write(bytes)); }
  void takeOverFrom(const std::string& document) {
    struct stat old {};
    if (::stat(document.c_str(), &old) != 0) check(errno);
    // Only root may give files away; everybody else keeps their own.
    if (::fchown(file_.number(), old.st_uid, old.st_gid) != 0 && errno != EPERM) check(errno);
    if (::fchmod(file_.number(), old.st_mode & 07777U) != 0) check(errno);
  }
  void sync() {
    if (::fsync(file_.number()) != 0) check(errno);
  }
  void replaceOld() {
    if (std::rename(path_.c_str(), document_.c_str()) != 0) check(errno);
    path_.clear();
  }
  /// Returns 0, or the system's error number.
  [[nodiscard]] int syncFolder() const {
    const Descriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return errno == EACCES ? 0 : errno;
    // Some file systems cannot do so for folders; there is nothing better to be done on them.
    return ::fsync(folder.number()) != 0 && errno != EINVAL ? errno : 0;
  }
  [[nodiscard]] FileStatus status() const { return file_.status(document_); }

 private:
  void check(int code) const {
    if (code) throw FileError::fromCode(document_, failed(), code);
  }
  void removeLeftovers(const FileService& files) const {
    for (const std::string& name : files.list(folder_)) {
      if (!name.starts_with(prefix_)) continue;
      const std::string leftover = folder_ + name;
      const Descriptor file(::open(leftover.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
      if (file && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0) ::unlink(leftover.c_str());
    }
  }

  std::string document_, folder_, prefix_, path_;
  Descriptor file_;
};

void checkUnchanged(const CommitTarget& target, const FileService& files) {
  if (files.status(target.document) != target.expected) throwChangedMeanwhile(target.document);
}

}  // namespace

void checkWritable(const std::string& document) {
  struct stat info {};
  if (::stat(document.c_str(), &info) != 0) {
    const FileError error = FileError::fromCode(document, failed(), errno);
    throw LibraryError(document, {}, error.problem, error.remedy);
  }
  // Its folder would let it be replaced, and root may do anything, but its owner did not want it
  // changed.
  if ((info.st_mode & 0222U) == 0 || ::access(document.c_str(), W_OK) != 0)
    throw LibraryError(document, {}, Message::tr("is read-only"),
                       Message::tr("Allow writing to it, then try again."));
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
  try {
    DocumentBackups backups(files, document);
    NewDocument file(document);
    try {
      step(CommitStep::check);
      checkUnchanged(target, files);
      checkWritable(document);
      step(CommitStep::create);
      file.create(files);
      TextSink sink([&](std::string_view bytes) {
        step(CommitStep::write);
        file.write(bytes);
      });
      content(sink);
      sink.flush();
      step(CommitStep::protect);
      file.takeOverFrom(document);
      step(CommitStep::sync);
      file.sync();
      step(CommitStep::backUp);
      backup = backups.add();
      step(CommitStep::checkAgain);
      checkUnchanged(target, files);
      step(CommitStep::replace);
      file.replaceOld();
    } catch (...) {
      if (!backup.empty()) ::unlink(backup.c_str());
      throw;
    }
    const FileStatus status = file.status();
    try {
      step(CommitStep::syncFolder);
      if (const int code = file.syncFolder())
        throw FileError::fromCode(
            document, Message::tr("was written, but may not outlast a power cut"), code);
      step(CommitStep::prune);
      backups.prune(options.keptBackups);
    } catch (const FileError& error) {
      log.line(error.what());
    }
    return status;
  } catch (const FileError& error) {
    throw LibraryError(error.path, {}, error.problem, error.remedy);
  }
}

}  // namespace kestrel
