#include "musicapp/audio/audio_index.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iterator>
#include <mutex>
#include <new>
#include <numeric>
#include <optional>
#include <sqlite3.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::size_t;

/// To be raised whenever the same file gives other facts, or the table changes.
constexpr int indexVersion = 3;

struct IndexError {
  int code;
  std::string message;
  /// Whether a new file is the remedy.
  [[nodiscard]] bool isDamaged() const {
    return code == SQLITE_NOTADB || code == SQLITE_CORRUPT || code == SQLITE_ERROR ||
           code == SQLITE_MISMATCH;
  }
};

/// "path, size, modified, inode, audio, title, ..." with `suffix` behind each.
std::string columns(const char* suffix = "") {
  std::string list;
  for (const char* name : {"path", "size", "modified", "inode", "audio"})
    list.append(list.empty() ? "" : ",").append(name).append(suffix);
  for (const TextFact& fact : textFacts) list.append(",").append(fact.name).append(suffix);
  for (const NumberFact& fact : numberFacts) list.append(",").append(fact.name).append(suffix);
  return list;
}

class Statement {
 public:
  Statement(sqlite3* database, const std::string& sql) : database_(database) {
    check(sqlite3_prepare_v2(database, sql.c_str(), -1, &statement_, nullptr));
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// The bytes must live until the next `reset`.
  Statement& blob(std::string_view bytes) {
    check(sqlite3_bind_blob64(statement_, ++parameter_, bytes.data() ? bytes.data() : "",
                              bytes.size(), SQLITE_STATIC));
    return *this;
  }
  Statement& number(std::int64_t value) {
    check(sqlite3_bind_int64(statement_, ++parameter_, value));
    return *this;
  }
  bool step() {
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE) check(code);
    return code == SQLITE_ROW;
  }
  void reset() {
    sqlite3_reset(statement_);
    parameter_ = 0;
  }
  [[nodiscard]] std::int64_t integer(int column) const {
    return sqlite3_column_int64(statement_, column);
  }
  [[nodiscard]] std::string_view bytes(int column) const {
    const void* data = sqlite3_column_blob(statement_, column);
    const auto size = static_cast<size_t>(sqlite3_column_bytes(statement_, column));
    return data ? std::string_view(static_cast<const char*>(data), size) : std::string_view();
  }

 private:
  void check(int code) const {
    if (code != SQLITE_OK) throw IndexError{code & 0xFF, sqlite3_errmsg(database_)};
  }
  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
  int parameter_ = 0;
};

void readRow(const Statement& row, AudioFacts& facts) {
  int column = 5;
  for (const TextFact& fact : textFacts) (facts.*fact.fact).assign(row.bytes(column++));
  for (const NumberFact& fact : numberFacts) facts.*fact.fact = row.integer(column++);
}

}  // namespace

class AudioIndex::Database {
 public:
  explicit Database(const std::string& path) {
    const int code = sqlite3_open_v2(path.c_str(), &database_,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    try {
      if (code != SQLITE_OK) throw IndexError{code & 0xFF, "cannot be opened"};
      ::chmod(path.c_str(), 0600);
      sqlite3_busy_timeout(database_, 1000);
      execute("PRAGMA journal_mode = WAL");
      execute("PRAGMA synchronous = NORMAL");
      const auto version = pragma("user_version");
      if (version == 0 && pragma("schema_version") == 0) {
        execute("BEGIN IMMEDIATE");
        execute("CREATE TABLE IF NOT EXISTS file (" + columns() +
                ", PRIMARY KEY (path)) WITHOUT ROWID");
        execute("PRAGMA user_version = " + std::to_string(indexVersion));
        execute("COMMIT");
      } else if (version != indexVersion) {
        throw IndexError{SQLITE_MISMATCH, "is of another version"};
      }
      Statement(database_, "SELECT " + columns() + " FROM file LIMIT 1").step();
    } catch (...) {
      sqlite3_close_v2(database_);
      throw;
    }
  }
  ~Database() { sqlite3_close_v2(database_); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void execute(const std::string& sql) { Statement(database_, sql).step(); }
  [[nodiscard]] sqlite3* handle() const { return database_; }

 private:
  std::int64_t pragma(const std::string& name) {
    Statement row(database_, "PRAGMA " + name);
    return row.step() ? row.integer(0) : 0;
  }
  sqlite3* database_ = nullptr;
};

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

AudioIndex::AudioIndex(const FileService& files, Log& log) : log_(log) {
  const auto cache = files.cacheDirectory();
  if (!cache) return;
  path_ = *cache + "/Kestrel/audio.sqlite";
  open(files);
}

AudioIndex::~AudioIndex() = default;

void AudioIndex::open(const FileService& files) {
  try {
    // It holds nothing but what can be read again.
    const_cast<FileService&>(files).createDirectories(path_.substr(0, path_.rfind('/')));
  } catch (const FileError& error) {
    return log_.line(error.what());
  }
  for (int attempt = 0; attempt < 2 && !database_; ++attempt) {
    try {
      database_ = std::make_unique<Database>(path_);
    } catch (const IndexError& error) {
      log_.line(path_ + ": " + error.message);
      if (!error.isDamaged()) return;
      for (const char* part : {"", "-wal", "-shm"}) ::unlink((path_ + part).c_str());
    }
  }
}

/// What fails ends the use of the database; one that is damaged goes, so that the next is whole.
template <typename Use>
void AudioIndex::use(Use&& use) {
  if (!database_) return;
  try {
    use();
  } catch (const IndexError& error) {
    log_.line(path_ + ": " + error.message);
    database_.reset();
    if (error.isDamaged())
      for (const char* part : {"", "-wal", "-shm"}) ::unlink((path_ + part).c_str());
  }
}

/// What is asked for, and how far that is.
struct AudioIndex::Wanted {
  explicit Wanted(std::span<const AudioFile> files_) : files(files_), order(files_.size()) {
    std::iota(order.begin(), order.end(), size_t{0});
    const auto before = [this](size_t a, size_t b) { return files[a].path < files[b].path; };
    if (!std::is_sorted(order.begin(), order.end(), before))
      std::stable_sort(order.begin(), order.end(), before);
  }
  std::span<const AudioFile> files;
  std::vector<size_t> order;  ///< by path
  struct New {
    size_t file;
    std::int64_t added;  ///< what an earlier state of the file said of its age; 0 for none
  };
  std::vector<New> unknown;
  Reading reading;
};

AudioIndex::Reading AudioIndex::read(std::span<const AudioFile> files, const LoadWatch& watch,
                                     Found found) {
  Wanted wanted(files);
  readKnown(wanted, found);
  readAnew(wanted, watch, found);
  std::sort(wanted.reading.failed.begin(), wanted.reading.failed.end());
  return std::move(wanted.reading);
}

void AudioIndex::readKnown(Wanted& wanted, Found found) {
  size_t next = 0;
  use([&] {
    Statement row(database_->handle(),
                  "SELECT " + columns() + " FROM file WHERE path >= ? ORDER BY path");
    AudioFacts facts;
    bool hasRow = false;
    const auto seek = [&](std::string_view path) {
      row.reset();
      hasRow = row.blob(path).step();
    };
    for (; next < wanted.order.size(); ++next) {
      const size_t place = wanted.order[next];
      const AudioFile& file = wanted.files[place];
      if (next == 0) seek(file.path);
      // Rows in between are passed over while they are few.
      for (int passed = 0; hasRow && row.bytes(0) < file.path; ++passed)
        passed < 16 ? void(hasRow = row.step()) : seek(file.path);
      const bool isIt = hasRow && row.bytes(0) == file.path;
      if (!isIt || row.integer(1) != static_cast<std::int64_t>(file.size) ||
          row.integer(2) != file.modified ||
          row.integer(3) != static_cast<std::int64_t>(file.inode)) {
        if (isIt) readRow(row, facts);
        wanted.unknown.push_back({place, isIt ? facts.added : 0});
      } else if (row.integer(4) == 0) {
        wanted.reading.failed.push_back(place);
      } else {
        readRow(row, facts);
        found(place, facts);
      }
    }
  });
  for (; next < wanted.order.size(); ++next) wanted.unknown.push_back({wanted.order[next], 0});
}

void AudioIndex::readAnew(Wanted& wanted, const LoadWatch& watch, Found found) {
  if (wanted.unknown.empty()) return;
  constexpr size_t filesATransaction = 1000;
  constexpr auto interval = std::chrono::milliseconds(100);
  std::optional<Statement> insert;
  use([&] {
    database_->execute("BEGIN");
    std::string places;
    for (const char c : columns()) places += c == ',' ? "?," : "";
    insert.emplace(database_->handle(),
                   "INSERT OR REPLACE INTO file (" + columns() + ") VALUES (" + places + "?)");
  });
  const auto keep = [&](const AudioFile& file, const AudioFacts* facts) {
    static const AudioFacts none;
    const AudioFacts& kept = facts ? *facts : none;
    insert->blob(file.path)
        .number(static_cast<std::int64_t>(file.size))
        .number(file.modified)
        .number(static_cast<std::int64_t>(file.inode))
        .number(facts ? 1 : 0);
    for (const TextFact& fact : textFacts) insert->blob(kept.*fact.fact);
    for (const NumberFact& fact : numberFacts) insert->number(kept.*fact.fact);
    insert->step();
    insert->reset();
    if (wanted.reading.readAnew % filesATransaction == 0) {
      database_->execute("COMMIT");
      database_->execute("BEGIN");
    }
  };

  std::mutex mutex;
  std::atomic<size_t> next{0};
  std::atomic<bool> isStopped{false};
  auto nextTold = std::chrono::steady_clock::now();
  const size_t known = wanted.files.size() - wanted.unknown.size();
  const auto work = [&] {
    for (size_t i = 0; !isStopped && (i = next++) < wanted.unknown.size();) {
      const auto [place, added] = wanted.unknown[i];
      const AudioFile& file = wanted.files[place];
      std::optional<AudioFacts> facts;
      try {
        facts = readAudioFacts(file.path);
      } catch (const std::exception&) {  // a damaged file that asks for too much memory
      }
      if (facts && added != 0) facts->added = std::min(facts->added, added);
      // What is closed to the user may be opened without a trace in size or time.
      const bool isFinal = facts || ::access(file.path.c_str(), R_OK) == 0;
      const std::scoped_lock lock(mutex);
      ++wanted.reading.readAnew;
      if (isFinal && insert) use([&] { keep(file, facts ? &*facts : nullptr); });
      if (!database_) insert.reset();
      facts ? found(place, *facts) : wanted.reading.failed.push_back(place);
      if (watch.cancelled && watch.cancelled()) isStopped = wanted.reading.isCancelled = true;
      if (const auto now = std::chrono::steady_clock::now(); watch.progress && now >= nextTold) {
        nextTold = now + interval;
        watch.progress(known + wanted.reading.readAnew, wanted.files.size());
      }
    }
  };
  {
    const size_t cores = std::clamp<size_t>(std::thread::hardware_concurrency(), 1, 8);
    std::vector<std::jthread> others;
    for (size_t i = 1; i < std::min(cores, wanted.unknown.size()); ++i) others.emplace_back(work);
    work();
  }
  insert.reset();
  use([&] { database_->execute("COMMIT"); });
}

void AudioIndex::forgetOthers(std::string_view folder, std::span<const AudioFile> files) {
  use([&] {
    std::vector<std::string> gone;
    const std::string first = std::string(folder) + "/", end = std::string(folder) + "0";
    {
      Statement row(database_->handle(),
                    "SELECT path FROM file WHERE path > ? AND path < ? ORDER BY path");
      row.blob(first).blob(end);
      size_t at = 0;
      while (row.step()) {
        while (at < files.size() && files[at].path < row.bytes(0)) ++at;
        if (at == files.size() || files[at].path != row.bytes(0)) gone.emplace_back(row.bytes(0));
      }
    }
    if (gone.empty()) return;
    database_->execute("BEGIN IMMEDIATE");
    {
      Statement remove(database_->handle(), "DELETE FROM file WHERE path = ?");
      for (const std::string& path : gone) {
        remove.blob(path).step();
        remove.reset();
      }
    }
    database_->execute("COMMIT");
  });
}

}  // namespace kestrel
