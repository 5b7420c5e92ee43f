/// A disk in memory, for tests: fast, empty at first, and broken on request.
#pragma once

#include <cerrno>
#include <map>
#include <mutex>
#include <utility>

#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {

/// Paths are compared as they are written. Each write moves the file's date on by a second.
class MemoryFiles final : public FileService {
 public:
  /// Puts a file there, with the folders above it; without a date it is just written.
  void put(const std::string& path, std::string bytes, std::optional<Moment> modified = {}) {
    const std::lock_guard lock(mutex_);
    addFolders(parent(path));
    files_[path] = {std::move(bytes), modified ? *modified : tick(), ++lastInode_};
  }
  /// Lets the operation that comes after the next `successes` ones throw FileError with `code`,
  /// those of the queries that cannot fail not counted.
  void failAfter(int successes, int code) {
    const std::lock_guard lock(mutex_);
    successesLeft_ = successes;
    failure_ = code;
  }
  /// How often `reachable` was asked.
  [[nodiscard]] std::size_t reachableCalls() const {
    const std::lock_guard lock(mutex_);
    return reachableCalls_;
  }

  [[nodiscard]] bool reachable(const char* path) const noexcept override {
    const std::lock_guard lock(mutex_);
    ++reachableCalls_;
    return files_.contains(path) || (*path && isFolder(path));
  }
  [[nodiscard]] std::optional<FileStatus> status(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    return statusOf(path);
  }
  [[nodiscard]] std::string readAll(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    return existing(path, Message::tr("cannot be read")).bytes;
  }
  [[nodiscard]] MappedFile map(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    return {existing(path, Message::tr("cannot be read")).bytes, *statusOf(path)};
  }
  void writeAtomically(const std::string& path, std::string_view bytes) override {
    const std::lock_guard lock(mutex_);
    failIfAsked(path, Message::tr("cannot be written"));
    if (folders_.contains(path))
      throw FileError::fromCode(path, Message::tr("cannot be written"), EISDIR);
    if (!isFolder(parent(path)))
      throw FileError::fromCode(path, Message::tr("cannot be written"), ENOENT);
    files_[path] = {std::string(bytes), tick(), ++lastInode_};
  }
  void createDirectories(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    failIfAsked(path, Message::tr("cannot be created"));
    addFolders(path);
  }
  bool remove(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    failIfAsked(path, Message::tr("cannot be removed"));
    if (folders_.contains(path) && !namesIn(path).empty())
      throw FileError::fromCode(path, Message::tr("cannot be removed"), ENOTEMPTY);
    return files_.erase(path) + folders_.erase(path) > 0;
  }
  void rename(const std::string& from, const std::string& to) override {
    const std::lock_guard lock(mutex_);
    File file = existing(from, Message::tr("cannot be moved to %1").arg(to));
    if (!isFolder(parent(to)))
      throw FileError::fromCode(from, Message::tr("cannot be moved to %1").arg(to), ENOENT);
    files_.erase(from);
    files_[to] = std::move(file);
  }
  [[nodiscard]] std::vector<std::string> list(const std::string& folder) const override {
    const std::lock_guard lock(mutex_);
    failIfAsked(folder, Message::tr("cannot be listed"));
    if (!isFolder(folder))
      throw FileError::fromCode(folder, Message::tr("cannot be listed"), ENOENT);
    return namesIn(folder);
  }

  [[nodiscard]] std::optional<std::string> applicationSupportDirectory() const override {
    return support;
  }
  [[nodiscard]] std::optional<std::string> configurationDirectory() const override {
    return configuration;
  }
  [[nodiscard]] std::optional<std::string> stateDirectory() const override { return state; }
  [[nodiscard]] std::optional<std::string> cacheDirectory() const override { return cache; }

  std::optional<std::string> support = "/home/user/.local/share";
  std::optional<std::string> configuration = "/home/user/.config";
  std::optional<std::string> state = "/home/user/.local/state";
  std::optional<std::string> cache = "/home/user/.cache";

 private:
  struct File {
    std::string bytes;
    Moment modified;
    std::uint64_t inode = 0;
  };

  static std::string parent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
  }
  [[nodiscard]] bool isFolder(const std::string& path) const {
    return path.empty() || path == "/" || folders_.contains(path);
  }
  void addFolders(std::string path) {
    for (; !path.empty(); path = parent(path)) {
      if (files_.contains(path))
        throw FileError::fromCode(path, Message::tr("cannot be created"), EEXIST);
      folders_.try_emplace(path, ++lastInode_);
    }
  }
  Moment tick() { return now_ += std::chrono::seconds(1); }

  [[nodiscard]] std::optional<FileStatus> statusOf(const std::string& path) const {
    if (const auto file = files_.find(path); file != files_.end())
      return FileStatus{FileStatus::Kind::file, file->second.bytes.size(), file->second.modified, 1,
                        file->second.inode};
    if (const auto folder = folders_.find(path); folder != folders_.end())
      return FileStatus{FileStatus::Kind::folder, 0, {}, 1, folder->second};
    return std::nullopt;
  }
  [[nodiscard]] const File& existing(const std::string& path, const Message& failed) const {
    failIfAsked(path, failed);
    const auto file = files_.find(path);
    if (file != files_.end()) return file->second;
    throw FileError::fromCode(path, failed, isFolder(path) ? EISDIR : ENOENT);
  }
  [[nodiscard]] std::vector<std::string> namesIn(const std::string& folder) const {
    const std::string start = folder.ends_with('/') ? folder : folder + "/";
    std::map<std::string, int> names;
    const auto collect = [&](const auto& entries) {
      for (auto entry = entries.lower_bound(start);
           entry != entries.end() && entry->first.starts_with(start); ++entry)
        if (entry->first.find('/', start.size()) == std::string::npos)
          names[entry->first.substr(start.size())];
    };
    collect(files_);
    collect(folders_);
    std::vector<std::string> result;
    for (const auto& [name, unused] : names) result.push_back(name);
    return result;
  }
  void failIfAsked(const std::string& path, const Message& failed) const {
    if (failure_ == 0 || successesLeft_-- > 0) return;
    throw FileError::fromCode(path, failed, std::exchange(failure_, 0));
  }

  mutable std::mutex mutex_;
  std::map<std::string, File> files_;
  std::map<std::string, std::uint64_t> folders_;
  std::uint64_t lastInode_ = 0;
  Moment now_{std::chrono::seconds(1'600'000'000)};
  mutable std::size_t reachableCalls_ = 0;
  mutable int successesLeft_ = 0;
  mutable int failure_ = 0;
};

}  // namespace kestrel
