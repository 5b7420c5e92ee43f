#include "history/history.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/name_table.h"
#include "history/entry_codec.h"
#include "history/history_database.h"
#include "history/playlist_lineage.h"
#include "history/run_locks.h"
#include "history/value_codec.h"
#include "musicapp/file_url.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

constexpr NameTable<RunKind, 7> kindNames{{{RunKind::replaylist, "replaylist"},
                                           {RunKind::cleanUp, "cleanup"},
                                           {RunKind::trash, "trash"},
                                           {RunKind::undo, "undo"},
                                           {RunKind::addToPlaylist, "add to playlist"},
                                           {RunKind::addToLibrary, "add to library"},
                                           {RunKind::remove, "remove"}}};
constexpr NameTable<RunState, 6> runStateNames{{{RunState::running, "running"},
                                                {RunState::finished, "finished"},
                                                {RunState::cancelled, "cancelled"},
                                                {RunState::failed, "failed"},
                                                {RunState::incomplete, "incomplete"},
                                                {RunState::brokenOff, "broken off"}}};
constexpr NameTable<ChangeState, 4> changeStateNames{{{ChangeState::planned, "planned"},
                                                      {ChangeState::done, "done"},
                                                      {ChangeState::skipped, "skipped"},
                                                      {ChangeState::failed, "failed"}}};

template <typename Value, std::size_t size>
Value valueOf(const NameTable<Value, size>& names, const std::string& text,
              const std::string& file) {
  if (const auto value = valueNamed(names, text)) return *value;
  throw HistoryError(
      file, Message::tr("the history cannot be read: it says %1 of a run").arg(inQuotes(text)),
      true);
}

std::int64_t nanoseconds(Moment moment) { return moment.time_since_epoch().count(); }
Moment momentOf(std::int64_t nanoseconds) { return Moment(std::chrono::nanoseconds(nanoseconds)); }

std::optional<std::uint64_t> idOf(std::optional<std::int64_t> value) {
  return value ? std::optional(static_cast<std::uint64_t>(*value)) : std::nullopt;
}

std::optional<std::int64_t> modified(const FileChange& change) {
  return change.mark ? std::optional(nanoseconds(change.mark->modified)) : std::nullopt;
}

std::optional<std::uint64_t> content(const FileChange& change) {
  return change.mark ? std::optional(change.mark->content) : std::nullopt;
}

constexpr const char* changeTables[] = {"playlist_change", "file_change", "track_change",
                                        "value_change"};

void insert(HistoryDatabase& database, std::int64_t run, std::span<PlaylistChange> changes) {
  SqliteStatement statement = database.prepare(
      "INSERT INTO playlist_change (run, state, lost, old_playlist, new_playlist, name, folder, "
      "folder_name, old_entries, new_entries, unknown_at, note) VALUES (?,?,?,?,?,?,?,?,?,?,?,?)");
  for (PlaylistChange& change : changes) {
    statement.run(run, nameOf(change.state), std::int64_t{change.lost}, change.oldPlaylist,
                  change.newPlaylist, change.name, change.folder, change.folderName,
                  Blob{bytesOfEntries(change.oldEntries)},
                  Blob{bytesOfChange(change.oldEntries, change.newEntries)},
                  Blob{change.unknownAt.empty() ? "" : bytesOfEntries(change.unknownAt)},
                  change.note);
    change.id = database.lastID();
  }
}

void insert(HistoryDatabase& database, std::int64_t run, std::span<FileChange> changes) {
  SqliteStatement statement = database.prepare(
      "INSERT INTO file_change (run, state, track, size, original, trashed, info, fingerprint, "
      "modified, content, note) VALUES (?,?,?,?,?,?,?,?,?,?,?)");
  for (FileChange& change : changes) {
    statement.run(run, nameOf(change.state), change.track, change.size,
                  Blob{change.item.originalPath}, Blob{change.item.trashedPath},
                  Blob{change.item.infoPath}, change.fingerprint, modified(change), content(change),
                  change.note);
    change.id = database.lastID();
  }
}

void insert(HistoryDatabase& database, std::int64_t run, std::span<TrackChange> changes) {
  SqliteStatement statement =
      database.prepare("INSERT INTO track_change (run, state, track, name) VALUES (?,?,?,?)");
  for (TrackChange& change : changes) {
    statement.run(run, nameOf(change.state), change.track, change.name);
    change.id = database.lastID();
  }
}

void insert(HistoryDatabase& database, std::int64_t run, std::span<ValueChange> changes) {
  SqliteStatement statement = database.prepare(
      "INSERT INTO value_change (run, state, track, name, leaves, sorts, old_values, new_values) "
      "VALUES (?,?,?,?,?,?,?,?)");
  for (ValueChange& change : changes) {
    statement.run(run, nameOf(change.state), change.track, change.name, std::int64_t{change.leaves},
                  wordsOf(change.which), textOfValues(change.before), textOfValues(change.after));
    change.id = database.lastID();
  }
}

constexpr const char* summaries =
    "SELECT id, kind, state, process, started, ended, library_uri, library_id, undoes, "
    "(SELECT count(*) FROM playlist_change c WHERE c.run = run.id AND c.state = 'done'), "
    "(SELECT count(*) FROM file_change c WHERE c.run = run.id AND c.state = 'done'), "
    "(SELECT count(*) FROM track_change c WHERE c.run = run.id AND c.state = 'done'), "
    "(SELECT count(*) FROM playlist_change c WHERE c.run = run.id AND c.undone_by NOT NULL) + "
    "(SELECT count(*) FROM file_change c WHERE c.run = run.id AND c.undone_by NOT NULL) + "
    "(SELECT count(*) FROM track_change c WHERE c.run = run.id AND c.undone_by NOT NULL) + "
    "(SELECT count(*) FROM value_change c WHERE c.run = run.id AND c.undone_by NOT NULL), "
    "reversal, "
    "(SELECT count(*) FROM value_change c WHERE c.run = run.id AND c.state = 'done') FROM run ";

/// Whether the library was a file that is no longer there.
bool hasLeft(const std::string& uri) {
  std::string path;
  std::error_code error;
  return pathOfFileUrl(plainUri(uri), path) && !std::filesystem::exists(path, error);
}

/// Whether a run over a library that had this address and name is one over `library`.
bool isOf(const std::string& uri, const std::string& id, const LibraryIdentity& library) {
  return plainUri(uri) == plainUri(library.uri) ||
         (!library.id.empty() && id == library.id && (library.isServer() || hasLeft(uri)));
}

RunSummary readSummary(const SqliteStatement& row, const std::string& file, const RunLocks& locks) {
  RunSummary run;
  run.id = row.integer(0);
  run.kind = valueOf(kindNames, row.text(1), file);
  run.state = valueOf(runStateNames, row.text(2), file);
  if (run.state == RunState::running && !locks.isAlive(run.id, row.text(3)))
    run.state = RunState::brokenOff;
  run.started = momentOf(row.integer(4));
  if (const auto ended = row.optional(5)) run.ended = momentOf(*ended);
  run.libraryUri = row.text(6);
  run.libraryID = row.text(7);
  run.undoes = row.optional(8);
  run.playlists = row.id(9);
  run.files = row.id(10);
  run.tracks = row.id(11);
  run.undone = row.id(12);
  run.values = row.id(14);
  return run;
}

}  // namespace

std::string_view nameOf(RunKind kind) noexcept { return nameOf(kindNames, kind); }
std::optional<RunKind> runKindNamed(std::string_view name) noexcept {
  return valueNamed(kindNames, name);
}
std::string_view nameOf(RunState state) noexcept { return nameOf(runStateNames, state); }
std::string_view nameOf(ChangeState state) noexcept { return nameOf(changeStateNames, state); }

HistoryError::HistoryError(std::string file_, Message problem, bool unreadable_)
    : MessageError((unreadable_
                        ? Message::tr("%1: %2. Nothing was changed. Have it moved aside to begin a "
                                      "new history; the old file is kept.")
                        : Message::tr("%1: %2."))
                       .arg(file_)
                       .arg(std::move(problem))),
      file(std::move(file_)),
      unreadable(unreadable_) {}

std::string History::pathIn(const std::string& folder) { return folder + "history.sqlite"; }

History::History(std::string path, const Clock& clock)
    : path_(std::move(path)),
      clock_(&clock),
      database_(std::make_unique<HistoryDatabase>(path_)),
      locks_(std::make_unique<RunLocks>(path_ + "-runs")) {}
History::~History() = default;
History::History(History&&) noexcept = default;
History& History::operator=(History&&) noexcept = default;

namespace {

/// Throws HistoryError unless the file is there and has something that cannot be read.
void refuseIfReadable(const std::string& path, const Clock& clock) {
  if (std::error_code error; !std::filesystem::exists(path, error)) return;
  try {
    History history(path, clock);
    for (const RunSummary& run : history.runs()) static_cast<void>(history.run(run.id));
  } catch (const HistoryError& error) {
    if (error.unreadable) return;
    throw;
  }
  throw HistoryError(path, Message::tr("the history can be read, so it was left where it is"),
                     false);
}

}  // namespace

std::string History::moveAside(const std::string& path, const Clock& clock, bool evenIfReadable) {
  if (!evenIfReadable) refuseIfReadable(path, clock);
  const std::string name =
      path + ".aside-" + std::to_string(nanoseconds(clock.now()) / 1'000'000'000);
  // A folder is made only where nothing is, so that nothing in it can be in the way.
  std::string folder = name;
  for (int number = 2; ::mkdir(folder.c_str(), 0700) != 0; ++number) {
    if (errno != EEXIST) throw FileError::fromCode(folder, Message::tr("cannot be created"), errno);
    folder = name + "-" + std::to_string(number);
  }
  const std::string to = folder + path.substr(path.rfind('/'));
  // The write-ahead log belongs to the file: what it holds must not enter the new history.
  for (const char* part : {"-wal", "-shm", ""}) {
    if (std::rename((path + part).c_str(), (to + part).c_str()) == 0) continue;
    const int code = errno;
    if (code == ENOENT && *part) continue;
    ::rmdir(folder.c_str());
    throw FileError::fromCode(path + part, Message::tr("cannot be moved to %1").arg(to + part),
                              code);
  }
  return to;
}

std::int64_t History::begin(RunKind kind, const LibraryIdentity& library, const RunChanges& changes,
                            std::optional<std::int64_t> undoes) {
  SqliteTransaction transaction(*database_);
  SqliteStatement last =
      database_->prepare("SELECT max(seq) FROM sqlite_sequence WHERE name = 'run'");
  const std::int64_t run = last.next() ? last.integer(0) + 1 : 1;
  database_
      ->prepare(
          "INSERT INTO run (id, kind, state, process, started, library_uri, library_id, undoes) "
          "VALUES (?,?,?,?,?,?,?,?)")
      .run(run, nameOf(kind), nameOf(RunState::running), locks_->hold(run),
           nanoseconds(clock_->now()), library.uri, library.id, undoes);
  insert(*database_, run, changes.playlists);
  insert(*database_, run, changes.files);
  insert(*database_, run, changes.tracks);
  insert(*database_, run, changes.values);
  transaction.commit();
  return run;
}

void History::add(std::int64_t run, std::span<PlaylistChange> playlists) {
  SqliteTransaction transaction(*database_);
  insert(*database_, run, playlists);
  transaction.commit();
}

void History::record(std::span<const PlaylistChange> playlists) {
  SqliteTransaction transaction(*database_);
  SqliteStatement statement = database_->prepare(
      "UPDATE playlist_change SET state = ?, lost = ?, new_playlist = ?, note = ? WHERE id = ?");
  for (const PlaylistChange& change : playlists)
    statement.run(nameOf(change.state), std::int64_t{change.lost}, change.newPlaylist, change.note,
                  change.id);
  transaction.commit();
}

void History::record(std::span<const FileChange> files) {
  SqliteTransaction transaction(*database_);
  SqliteStatement statement = database_->prepare(
      "UPDATE file_change SET state = ?, track = ?, size = ?, trashed = ?, info = ?, "
      "fingerprint = ?, modified = ?, content = ?, note = ? WHERE id = ?");
  for (const FileChange& change : files)
    statement.run(nameOf(change.state), change.track, change.size, Blob{change.item.trashedPath},
                  Blob{change.item.infoPath}, change.fingerprint, modified(change), content(change),
                  change.note, change.id);
  transaction.commit();
}

void History::record(std::span<const TrackChange> tracks) {
  SqliteTransaction transaction(*database_);
  SqliteStatement statement = database_->prepare("UPDATE track_change SET state = ? WHERE id = ?");
  for (const TrackChange& change : tracks) statement.run(nameOf(change.state), change.id);
  transaction.commit();
}

void History::record(std::span<const ValueChange> values) {
  SqliteTransaction transaction(*database_);
  SqliteStatement statement =
      database_->prepare("UPDATE value_change SET state = ?, new_values = ? WHERE id = ?");
  for (const ValueChange& change : values)
    statement.run(nameOf(change.state), textOfValues(change.after), change.id);
  transaction.commit();
}

void History::recordReversal(std::int64_t run, std::string_view reversal) {
  SqliteTransaction transaction(*database_);
  database_->prepare("UPDATE run SET reversal = ? WHERE id = ?").run(Blob{reversal}, run);
  transaction.commit();
}

void History::finish(std::int64_t run, RunState state, const RunChangeIDs& undone) {
  // Also when this cannot be written: then nothing says what became of the run.
  struct Release {
    ~Release() { locks.release(run); }
    RunLocks& locks;
    std::int64_t run;
  } release{*locks_, run};
  SqliteTransaction transaction(*database_);
  database_->prepare("UPDATE run SET state = ?, ended = ? WHERE id = ?")
      .run(nameOf(state), nanoseconds(clock_->now()), run);
  const std::span<const std::int64_t> taken[] = {undone.playlists, undone.files, undone.tracks,
                                                 undone.values};
  for (std::size_t i = 0; i < std::size(changeTables); ++i) {
    const std::string update = std::string("UPDATE ") + changeTables[i] + " SET ";
    if (state == RunState::failed)
      database_->prepare(update + "state = 'failed' WHERE run = ?").run(run);
    SqliteStatement mark =
        database_->prepare(update + "undone_by = ?, state = 'done' WHERE id = ?");
    for (const std::int64_t change : taken[i]) mark.run(run, change);
  }
  transaction.commit();
}

std::vector<RunSummary> History::runs(const LibraryIdentity* library) {
  std::vector<RunSummary> runs;
  SqliteStatement row = database_->prepare(std::string(summaries) + "ORDER BY id DESC");
  while (row.next()) {
    RunSummary run = readSummary(row, path_, *locks_);
    if (!library || isOf(run.libraryUri, run.libraryID, *library)) runs.push_back(std::move(run));
  }
  if (library)
    for (std::size_t i = 0; i < runs.size(); ++i)
      runs[i].number = static_cast<std::int64_t>(runs.size() - i);
  return runs;
}

std::int64_t History::numberOf(std::int64_t run, const LibraryIdentity& library) {
  std::int64_t number = 0;
  bool isOfLibrary = false;
  SqliteStatement row =
      database_->prepare("SELECT id, library_uri, library_id FROM run WHERE id <= ?");
  row << run;
  while (row.next())
    if (isOf(row.text(1), row.text(2), library)) {
      ++number;
      isOfLibrary |= row.integer(0) == run;
    }
  return isOfLibrary ? number : 0;
}

namespace {

/// What all runs made of playlists.
std::vector<PlaylistLink> allLinks(HistoryDatabase& database) {
  std::vector<PlaylistLink> links;
  SqliteStatement row = database.prepare(
      "SELECT playlist_change.id, run, old_playlist, new_playlist, run.kind = 'undo' "
      "FROM playlist_change JOIN run ON run.id = run "
      "WHERE playlist_change.state = 'done' AND new_playlist NOT NULL ORDER BY playlist_change.id");
  while (row.next())
    links.push_back({row.integer(0), row.integer(1), row.id(2), row.id(3), row.integer(4) != 0});
  return links;
}

}  // namespace

std::optional<RunRecord> History::run(std::int64_t id) {
  RunRecord record;
  SqliteStatement row = database_->prepare(std::string(summaries) + "WHERE id = ?");
  row << id;
  if (!row.next()) return std::nullopt;
  record.summary = readSummary(row, path_, *locks_);
  record.reversal = row.text(13);

  SqliteStatement list = database_->prepare(
      "SELECT id, state, lost, old_playlist, new_playlist, name, folder, folder_name, "
      "old_entries, new_entries, note, undone_by, unknown_at FROM playlist_change WHERE run = ? "
      "ORDER BY id");
  list << id;
  while (list.next()) {
    PlaylistChange& change = record.playlists.emplace_back();
    change.id = list.integer(0);
    change.state = valueOf(changeStateNames, list.text(1), path_);
    change.lost = list.integer(2) != 0;
    change.oldPlaylist = list.id(3);
    change.newPlaylist = idOf(list.optional(4));
    change.name = list.text(5);
    change.folder = idOf(list.optional(6));
    change.folderName = list.text(7);
    auto before = entriesOfBytes(list.text(8));
    auto after = before ? entriesOfBytes(list.text(9), *before) : std::nullopt;
    if (!after)
      throw HistoryError(
          path_, Message::tr("the history cannot be read: the entries of a playlist are damaged"),
          true);
    change.oldEntries = std::move(*before);
    change.newEntries = std::move(*after);
    change.note = list.text(10);
    change.undoneBy = list.optional(11);
    change.unknownAt = entriesOfBytes(list.text(12)).value_or(std::vector<std::uint64_t>());
  }
  followPlaylists(record.playlists, allLinks(*database_));

  SqliteStatement file = database_->prepare(
      "SELECT id, state, track, size, original, trashed, info, note, undone_by, fingerprint, "
      "modified, content FROM file_change WHERE run = ? ORDER BY id");
  file << id;
  while (file.next()) {
    FileChange& change = record.files.emplace_back();
    change.id = file.integer(0);
    change.state = valueOf(changeStateNames, file.text(1), path_);
    change.track = file.id(2);
    change.size = file.id(3);
    change.item = {file.text(4), file.text(5), file.text(6)};
    change.note = file.text(7);
    change.undoneBy = file.optional(8);
    change.fingerprint = file.id(9);
    if (const auto modified = file.optional(10))
      change.mark = FileMark{change.size, momentOf(*modified), file.id(11)};
  }

  SqliteStatement track = database_->prepare(
      "SELECT id, state, track, name, undone_by FROM track_change WHERE run = ? ORDER BY id");
  track << id;
  while (track.next())
    record.tracks.push_back({track.integer(0), valueOf(changeStateNames, track.text(1), path_),
                             track.id(2), track.text(3), track.optional(4)});

  SqliteStatement value = database_->prepare(
      "SELECT id, state, track, name, leaves, sorts, old_values, new_values, undone_by "
      "FROM value_change WHERE run = ? ORDER BY id");
  value << id;
  while (value.next()) {
    auto before = valuesOfText(value.text(6)), after = valuesOfText(value.text(7));
    if (!before || !after)
      throw HistoryError(
          path_, Message::tr("the history cannot be read: the values of a track are damaged"),
          true);
    record.values.push_back({value.integer(0), valueOf(changeStateNames, value.text(1), path_),
                             value.id(2), value.text(3), value.integer(4) != 0,
                             valuesOfWords(value.text(5)), std::move(*before), std::move(*after),
                             value.optional(8)});
  }
  return record;
}

}  // namespace kestrel
