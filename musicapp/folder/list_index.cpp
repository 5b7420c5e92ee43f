#include "musicapp/folder/list_index.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/log.h"
#include "platform/sqlite_database.h"

namespace kestrel {
namespace {

using std::string_view;

/// How what is kept begins, by what the entries are; to be changed when files are read otherwise.
constexpr char urls = 'U', paths = 'P';

/// Such a letter, then text and decoded text of each entry, with a null behind. Nothing where a
/// text has such a byte itself.
std::optional<std::string> packed(const ListedPaths& listed) {
  std::string bytes(1, listed.areUrls ? urls : paths);
  for (const ListedPaths::Spelling& entry : listed.entries)
    for (const std::string* text : {&entry.text, &entry.decoded}) {
      if (text->find('\0') != std::string::npos) return std::nullopt;
      bytes.append(*text).append(1, '\0');
    }
  return bytes;
}

ListedPaths unpacked(string_view bytes) {
  ListedPaths listed;
  listed.areUrls = bytes.starts_with(urls);
  bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 1));
  const auto next = [&] {
    const std::size_t end = std::min(bytes.find('\0'), bytes.size());
    const string_view text = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return std::string(text);
  };
  while (!bytes.empty()) {
    ListedPaths::Spelling& entry = listed.entries.emplace_back();
    entry.text = next();
    entry.decoded = next();
  }
  return listed;
}

/// The device of a file may be numbered otherwise after each start of the system.
bool isSame(const FileStatus& a, const FileStatus& b) {
  return a.kind == b.kind && a.size == b.size && a.modified == b.modified && a.inode == b.inode;
}

std::unique_ptr<SqliteDatabase> opened(const FileService& files) {
  const auto cache = files.cacheDirectory();
  if (!cache) return nullptr;
  auto database = std::make_unique<SqliteDatabase>(
      *cache + "/Kestrel/audio.sqlite",
      SqliteOptions{SqliteOptions::Access::write, std::chrono::seconds(1), nullptr});
  database->execute(
      "CREATE TABLE IF NOT EXISTS list (path PRIMARY KEY, size, modified, inode, entries) "
      "WITHOUT ROWID");
  database->execute("PRAGMA synchronous = NORMAL");
  return database;
}

}  // namespace

template <typename Use>
void ListIndex::use(Use&& use) {
  try {
    use();
  } catch (const SqliteError& error) {
    log_.line(error.file + ": " + error.what());
    database_.reset();
  }
}

ListIndex::ListIndex(const FileService& files, Log& log, std::span<const std::string> folders)
    : log_(log) {
  use([&] {
    database_ = opened(files);
    if (!database_) return;
    for (const std::string& folder : folders) {
      const std::string first = folder == "/" ? folder : folder + '/';
      std::string end = first;
      ++end.back();
      SqliteStatement row = database_->prepare(
          "SELECT path, size, modified, inode, entries FROM list WHERE path >= ? AND path < ?");
      row << Blob{first} << Blob{end};
      while (row.next()) {
        Known& known = known_[row.text(0)];
        known.status.size = row.id(1);
        known.status.modified = Moment(std::chrono::nanoseconds(row.integer(2)));
        known.status.inode = row.id(3);
        known.entries = row.text(4);
      }
    }
  });
}

ListIndex::~ListIndex() = default;

std::optional<ListedPaths> ListIndex::find(const std::string& path, const FileStatus& status) {
  const auto found = known_.find(path);
  if (found == known_.end() || !isSame(found->second.status, status)) return std::nullopt;
  const std::string& entries = found->second.entries;
  if (!entries.starts_with(urls) && !entries.starts_with(paths)) return std::nullopt;
  found->second.use = Known::Use::found;
  return unpacked(found->second.entries);
}

void ListIndex::keep(const std::string& path, const FileStatus& status, const ListedPaths& listed,
                     Moment now) {
  constexpr std::chrono::seconds coarsestTime(3);
  auto entries = packed(listed);
  if (!entries || status.modified > now - coarsestTime) return;
  known_[path] = {status, std::move(*entries), Known::Use::changed};
}

void ListIndex::save() {
  const bool isNeeded = std::any_of(known_.begin(), known_.end(), [](const auto& one) {
    return one.second.use != Known::Use::found;
  });
  if (!database_ || !isNeeded) return;
  use([&] {
    SqliteTransaction transaction(*database_);
    SqliteStatement put = database_->prepare("INSERT OR REPLACE INTO list VALUES(?, ?, ?, ?, ?)"),
                    drop = database_->prepare("DELETE FROM list WHERE path = ?");
    for (const auto& [path, known] : known_) {
      if (known.use == Known::Use::none) drop.run(Blob{path});
      if (known.use == Known::Use::changed)
        put.run(Blob{path}, known.status.size,
                std::int64_t{known.status.modified.time_since_epoch().count()}, known.status.inode,
                Blob{known.entries});
    }
    transaction.commit();
  });
}

void ListIndex::forget(const FileService& files, Log& log, const std::string& path) {
  try {
    if (const auto database = opened(files))
      database->prepare("DELETE FROM list WHERE path = ?").run(Blob{path});
  } catch (const SqliteError& error) {
    log.line(error.file + ": " + error.what());
  }
}

}  // namespace kestrel
