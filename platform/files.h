/// The files of the system, behind one small interface, so that tests can keep a disk in memory
/// and break it on purpose.
///
/// Paths are bytes, as the system has them. What fails throws FileError, unless said otherwise.
/// Callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/descriptor.h"
#include "platform/mapped_file.h"

namespace kestrel {

class FileService {
 public:
  virtual ~FileService() = default;

  /// Whether something is there, after following links. One system call: it is asked for every
  /// track of a library.
  [[nodiscard]] virtual bool reachable(const char* path) const noexcept = 0;
  [[nodiscard]] bool exists(const std::string& path) const { return reachable(path.c_str()); }
  /// Nothing when it cannot be had, for whatever reason. Follows links.
  [[nodiscard]] virtual std::optional<FileStatus> status(const std::string& path) const = 0;
  /// The same without following a link that the path itself names; such a link has no bytes. The
  /// same as `status` where there are no links.
  [[nodiscard]] virtual std::optional<FileStatus> entryStatus(const std::string& path) const {
    return status(path);
  }
  [[nodiscard]] std::optional<Moment> modificationDate(const std::string& path) const;

  /// Only of regular files, of at most `Descriptor::maximumRead` bytes.
  [[nodiscard]] virtual std::string readAll(const std::string& path) const = 0;
  /// Only regular files can be mapped.
  [[nodiscard]] virtual MappedFile map(const std::string& path) const = 0;
  /// Makes the file hold `bytes`: whatever happens, readers find the old file or the new one, and
  /// the new one is on the disk upon return. A new file is for the user alone; a replaced one's
  /// owner, group, permissions and attributes are kept, or it is not replaced. A link stays and the
  /// file it leads to is replaced. A failure leaves nothing behind.
  virtual void writeAtomically(const std::string& path, std::string_view bytes) = 0;

  /// Makes the folder and those above it that are missing, for the user alone. One of the name
  /// "Kestrel" is the program's own: if it is there and open to others, it and the files in it are
  /// closed to them.
  virtual void createDirectories(const std::string& path) = 0;
  /// Removes a file, a link or an empty folder. Returns whether there was one.
  virtual bool remove(const std::string& path) = 0;
  /// Moves within a volume; replaces a file at `to`.
  virtual void rename(const std::string& from, const std::string& to) = 0;
  /// The names in a folder, in byte order.
  [[nodiscard]] virtual std::vector<std::string> list(const std::string& folder) const = 0;

  /// The folders in which each program has one of its own for the user's data, settings, logs and
  /// the like, and what can be made anew. Nothing when the system names none. They need not exist.
  [[nodiscard]] virtual std::optional<std::string> applicationSupportDirectory() const = 0;
  [[nodiscard]] virtual std::optional<std::string> configurationDirectory() const = 0;
  [[nodiscard]] virtual std::optional<std::string> stateDirectory() const = 0;
  [[nodiscard]] virtual std::optional<std::string> cacheDirectory() const = 0;
};

/// The files of this machine, with the folders of the XDG base directories.
class SystemFiles final : public FileService {
 public:
  [[nodiscard]] bool reachable(const char* path) const noexcept override;
  [[nodiscard]] std::optional<FileStatus> status(const std::string& path) const override;
  [[nodiscard]] std::optional<FileStatus> entryStatus(const std::string& path) const override;
  [[nodiscard]] std::string readAll(const std::string& path) const override;
  [[nodiscard]] MappedFile map(const std::string& path) const override;
  void writeAtomically(const std::string& path, std::string_view bytes) override;
  void createDirectories(const std::string& path) override;
  bool remove(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::vector<std::string> list(const std::string& folder) const override;
  [[nodiscard]] std::optional<std::string> applicationSupportDirectory() const override;
  [[nodiscard]] std::optional<std::string> configurationDirectory() const override;
  [[nodiscard]] std::optional<std::string> stateDirectory() const override;
  [[nodiscard]] std::optional<std::string> cacheDirectory() const override;
};

}  // namespace kestrel
