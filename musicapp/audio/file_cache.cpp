#include "musicapp/audio/file_cache.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <numeric>
#include <optional>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/all_cores.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::size_t;

constexpr const char* stateColumns = "path,size,modified,inode";

/// Whether a new file is the remedy: one that is none of SQLite's, or has other tables.
bool isDamaged(const SqliteError& error) {
  const int code = error.code & 0xFF;
  return error.kind == SqliteError::Kind::damaged || code == SQLITE_ERROR ||
         code == SQLITE_MISMATCH;
}

/// Whether a file is no more, as far as can be told from the folders above it that are there: an
/// empty one, or one for disks, may be where a disk belongs.
bool isGone(const std::string& path) {
  static constexpr std::string_view ofDisks[] = {"/media", "/mnt", "/run/media", "/Volumes"};
  std::error_code error;
  if (std::filesystem::symlink_status(path, error).type() != std::filesystem::file_type::not_found)
    return false;
  std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const auto isThere = [&] { return std::filesystem::is_directory(folder, error); };
  while (folder.has_relative_path() && !isThere()) folder = folder.parent_path();
  const bool isOwn = folder == std::filesystem::path(path).parent_path();
  const bool isOfDisks =
      !folder.has_relative_path() ||
      std::any_of(std::begin(ofDisks), std::end(ofDisks), [&](std::string_view parent) {
        return folder == parent || folder.parent_path() == parent;
      });
  return (isOwn || !isOfDisks) && !std::filesystem::is_empty(folder, error) && !error;
}

/// What the paths of files below a folder lie between.
struct Below {
  explicit Below(std::string_view folder)
      : first(folder.ends_with('/') ? folder : std::string(folder) + '/'), end(first) {
    ++end.back();
  }
  std::string first, end;
};

}  // namespace

std::vector<AudioFile> audioFilesAt(std::span<const std::string> paths) {
  std::vector<AudioFile> files(paths.size());
  for (size_t i = 0; i < paths.size(); ++i) {
    files[i].path = paths[i];
    struct stat info {};
    if (::stat(paths[i].c_str(), &info) != 0) continue;
    files[i].size = static_cast<std::uint64_t>(info.st_size);
    files[i].modified = fileStatus(info).modified.time_since_epoch().count();
    files[i].inode = info.st_ino;
  }
  return files;
}

FileCache::FileCache(Table table, const FileService& files, Log& log)
    : table_(std::move(table)), log_(log) {
  const auto cache = files.cacheDirectory();
  if (!cache) return;
  path_ = *cache + "/Kestrel/" + table_.name;
  open(files);
}

void FileCache::open(const FileService& files) {
  try {
    // It holds nothing but what can be read again.
    const_cast<FileService&>(files).createDirectories(path_.substr(0, path_.rfind('/')));
  } catch (const FileError& error) {
    return log_.line(error.what());
  }
  for (int attempt = 0; attempt < 2 && !database_; ++attempt) {
    try {
      database_ = std::make_unique<SqliteDatabase>(
          path_, SqliteOptions{.access = SqliteOptions::Access::create,
                               .patience = std::chrono::milliseconds(1000)});
      begin();
    } catch (const SqliteError& error) {
      log_.line(path_ + ": " + error.what());
      database_.reset();
      if (!isDamaged(error)) return;
      removeIfDamaged(error);
    }
  }
}

/// Makes the table where there is none.
void FileCache::begin() {
  ::chmod(path_.c_str(), 0600);
  database_->execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  const std::string columns = std::string(stateColumns) + "," + table_.columns;
  const auto version = database_->number("PRAGMA user_version");
  if (version == 0 && database_->number("PRAGMA schema_version") == 0) {
    SqliteTransaction transaction(*database_);
    database_->execute("CREATE TABLE IF NOT EXISTS file (" + columns +
                       ", PRIMARY KEY (path)) WITHOUT ROWID; PRAGMA user_version = " +
                       std::to_string(table_.version));
    transaction.commit();
  } else if (version != table_.version) {
    throw SqliteError(path_, SQLITE_MISMATCH, "is of another version");
  }
  database_->prepare("SELECT " + columns + " FROM file LIMIT 1").next();
}

void FileCache::removeIfDamaged(const SqliteError& error) const {
  if (isDamaged(error))
    for (const char* part : {"", "-wal", "-shm"}) ::unlink((path_ + part).c_str());
}

/// What fails ends the use of the database; one that is damaged goes, so that the next is whole.
template <typename Use>
void FileCache::use(Use&& use) {
  if (!database_) return;
  try {
    use();
  } catch (const SqliteError& error) {
    log_.line(path_ + ": " + error.what());
    database_.reset();
    removeIfDamaged(error);
  }
}

void FileCache::lookUp(std::span<const AudioFile> files, Known known, Unknown unknown) {
  std::vector<size_t> order(files.size());  // by path
  std::iota(order.begin(), order.end(), size_t{0});
  const auto before = [&](size_t a, size_t b) { return files[a].path < files[b].path; };
  if (!std::is_sorted(order.begin(), order.end(), before))
    std::stable_sort(order.begin(), order.end(), before);
  size_t next = 0;
  use([&] {
    SqliteStatement row =
        database_->prepare(std::string("SELECT ") + stateColumns + "," + table_.columns +
                           " FROM file WHERE path >= ? ORDER BY path");
    bool hasRow = false;
    const auto seek = [&](std::string_view path) {
      row.again();
      row << Blob{path};
      hasRow = row.next();
    };
    for (; next < order.size(); ++next) {
      const AudioFile& file = files[order[next]];
      if (next == 0) seek(file.path);
      // Rows in between are passed over while they are few.
      for (int passed = 0; hasRow && row.view(0) < file.path; ++passed)
        passed < 16 ? void(hasRow = row.next()) : seek(file.path);
      const bool isIt = hasRow && row.view(0) == file.path;
      if (isIt && row.id(1) == file.size && row.integer(2) == file.modified &&
          row.id(3) == file.inode)
        known(order[next], row);
      else
        unknown(order[next], isIt ? &row : nullptr);
    }
  });
  for (; next < order.size(); ++next) unknown(order[next], nullptr);
}

void FileCache::forEachBelow(std::string_view folder,
                             FunctionRef<void(AudioFile&&, const SqliteStatement&)> known) {
  const Below below(folder);
  use([&] {
    SqliteStatement row =
        database_->prepare(std::string("SELECT ") + stateColumns + "," + table_.columns +
                           " FROM file WHERE path > ? AND path < ? ORDER BY path");
    row << Blob{below.first} << Blob{below.end};
    while (row.next()) known({row.text(0), row.id(1), row.integer(2), row.id(3)}, row);
  });
}

FileCache::Reading FileCache::readAnew(std::span<const AudioFile> files,
                                       std::span<const size_t> places, const LoadWatch& watch,
                                       FunctionRef<Finding(size_t file)> read) {
  Reading reading;
  if (places.empty()) return reading;
  constexpr size_t filesATransaction = 1000;
  constexpr auto interval = std::chrono::milliseconds(100);
  constexpr auto betweenWrites = std::chrono::seconds(5);
  std::optional<SqliteStatement> insert;
  use([&] {
    database_->execute("BEGIN");
    const std::string columns = std::string(stateColumns) + "," + table_.columns;
    std::string parameters;
    for (const char c : columns) parameters += c == ',' ? "?," : "";
    insert.emplace(*database_,
                   "INSERT OR REPLACE INTO file (" + columns + ") VALUES (" + parameters + "?)");
  });
  auto written = std::chrono::steady_clock::now(), nextTold = written;
  size_t unwritten = 0;
  const auto keep = [&](const AudioFile& file, const Finding& finding, bool& isDelivered) {
    *insert << Blob{file.path} << file.size << file.modified << file.inode;
    isDelivered = true;
    finding.deliver(&*insert);
    insert->next();
    insert->again();
    // A program that is killed loses a few seconds of its work.
    const auto now = std::chrono::steady_clock::now();
    if (++unwritten < filesATransaction && now - written < betweenWrites) return;
    unwritten = 0;
    written = now;
    database_->execute("COMMIT; BEGIN");
  };

  std::mutex mutex;
  std::atomic<bool> isStopped{false};
  const size_t known = files.size() - places.size();
  withAllCores(places.size(), [&](size_t i) {
    if (isStopped) return;
    const AudioFile& file = files[places[i]];
    const Finding finding = read(places[i]);
    // What is closed to the user may be opened without a trace in size or time.
    const bool isFinal = finding.isFinal || ::access(file.path.c_str(), R_OK) == 0;
    const std::scoped_lock lock(mutex);
    if (finding.deliver) {
      ++reading.done;
      bool isDelivered = false;
      if (isFinal && insert) use([&] { keep(file, finding, isDelivered); });
      if (!database_) insert.reset();
      if (!isDelivered) finding.deliver(nullptr);
    }
    if (watch.cancelled && watch.cancelled()) isStopped = reading.isCancelled = true;
    if (const auto now = std::chrono::steady_clock::now(); watch.progress && now >= nextTold) {
      nextTold = now + interval;
      watch.progress(known + reading.done, files.size());
    }
  });
  insert.reset();
  use([&] { database_->execute("COMMIT"); });
  return reading;
}

void FileCache::forgetOthers(std::string_view folder, std::span<const AudioFile> files) {
  const Below below(folder);
  use([&] {
    std::vector<std::string> gone;
    {
      SqliteStatement row =
          database_->prepare("SELECT path FROM file WHERE path > ? AND path < ? ORDER BY path");
      row << Blob{below.first} << Blob{below.end};
      size_t at = 0;
      while (row.next()) {
        while (at < files.size() && files[at].path < row.view(0)) ++at;
        if (at == files.size() || files[at].path != row.view(0)) gone.push_back(row.text(0));
      }
    }
    if (gone.empty()) return;
    SqliteTransaction transaction(*database_);
    SqliteStatement remove = database_->prepare("DELETE FROM file WHERE path = ?");
    for (const std::string& path : gone) remove.run(Blob{path});
    transaction.commit();
  });
}

void FileCache::forgetGone(std::size_t rows) {
  use([&] {
    database_->execute("CREATE TABLE IF NOT EXISTS looked (path)");
    std::string last;
    std::vector<std::string> gone;
    {
      SqliteStatement from = database_->prepare("SELECT path FROM looked");
      if (from.next()) last = from.text(0);
      SqliteStatement row =
          database_->prepare("SELECT path FROM file WHERE path > ? ORDER BY path LIMIT ?");
      row << Blob{last} << static_cast<std::uint64_t>(rows);
      last.clear();  // from the beginning, when these are the last
      for (std::size_t count = 0; row.next();) {
        const std::string path = row.text(0);
        if (++count == rows) last = path;
        if (isGone(path)) gone.push_back(path);
      }
    }
    SqliteTransaction transaction(*database_);
    SqliteStatement remove = database_->prepare("DELETE FROM file WHERE path = ?");
    for (const std::string& path : gone) remove.run(Blob{path});
    database_->execute("DELETE FROM looked");
    database_->prepare("INSERT INTO looked VALUES(?)").run(Blob{last});
    transaction.commit();
  });
}

}  // namespace kestrel
