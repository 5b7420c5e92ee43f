// Changing the lists of Rhythmbox: in its file, or by the running player, and what a change that
// broke off has left.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

using std::string;

Message readAgain() { return Message::tr("Reload the library and try again."); }

}  // namespace

void RhythmboxLibrary::change() {
  lock();
  changed_ = true;
}

void RhythmboxLibrary::lock() {
  if (lock_) return;
  lock_.emplace(services_.files, realPathOf(databasePath_));
  try {
    if (!isUsual_ && playerRuns())
      fail(Message::tr("Rhythmbox runs, with this library or another"), closePlayer());
    restoreBroken();
    checkUnchanged();
    if (isLive_) return;
    const string path = realPathOf(playlistsPath_);
    clearLeftoversOf(path, services_.files, services_.log);
    LibraryBackups(services_.files, path).removeUnreplaced();
    checkWritable(path);
  } catch (...) {
    lock_.reset();
    throw;
  }
}

void RhythmboxLibrary::checkUnchanged() {
  if (isRunning() != isLive_)
    fail(isLive_ ? Message::tr("Rhythmbox was closed since its library was read")
                 : Message::tr("Rhythmbox was started since its library was read"),
         readAgain());
  if (!isLive_) {
    if (services_.files.status(playlistsPath_) != playlistsStatus_)
      throwChangedMeanwhile(playlistsPath_);
    return;
  }
  const std::vector<List> now = readLists();
  const bool isSame = std::equal(now.begin(), now.end(), kept_.begin(), kept_.end(),
                                 [](const List& a, const List& b) {
                                   return a.id == b.id && (a.isAutomatic || a.entries == b.entries);
                                 });
  if (!isSame) throwChangedMeanwhile(playlistsPath_);
}

std::vector<RhythmboxLibrary::Change> RhythmboxLibrary::changes() const {
  std::unordered_map<std::uint64_t, const List*> before;
  for (const List& list : kept_) before.emplace(list.id, &list);
  std::vector<Change> changes;
  for (const List& list : lists_) {
    const auto found = before.find(list.id);
    const List* old = found == before.end() ? nullptr : found->second;
    if (old) before.erase(found);
    if (!old || old->entries != list.entries) changes.push_back({old, &list});
  }
  for (const auto& [id, list] : before) changes.push_back({list, nullptr});
  return changes;
}

void RhythmboxLibrary::commit(const Batch::Record& record) {
  if (!changed_) return;
  if (const std::vector<Change> changes = this->changes(); !changes.empty()) {
    if (isLive_) {
      commitToPlayer(changes);
      setLists(std::move(lists_));
    } else {
      commitToFile(changes, record);
      setLists(readLists());
    }
  }
  commitValues();
  changed_ = false;
}

namespace {

using Json = nlohmann::json;

Json::binary_t binary(const string& bytes) { return Json::binary_t({bytes.begin(), bytes.end()}); }
string bytesOf(const Json& json) {
  const auto& bytes = json.get_binary();
  return {bytes.begin(), bytes.end()};
}

/// For the history, so that the format (CBOR) stays readable.
string encodedLists(const std::map<std::uint64_t, rhythmbox::FormerList>& lists) {
  Json all = Json::array();
  for (const auto& [id, list] : lists) {
    Json entries = Json::array();
    for (const auto& [uri, text] : list.entries) entries.push_back({binary(uri), binary(text)});
    all.push_back({{"list", id}, {"tag", binary(list.oneTag)}, {"entries", std::move(entries)}});
  }
  const auto bytes = Json::to_cbor(Json{{"lists", std::move(all)}});
  return {bytes.begin(), bytes.end()};
}

}  // namespace

void RhythmboxLibrary::recall(std::string_view reversal) {
  former_.clear();
  if (reversal.empty()) return;
  try {
    const Json all = Json::from_cbor(reversal);
    for (const Json& entry : all.at("lists")) {
      rhythmbox::FormerList& list = former_[entry.at("list").get<std::uint64_t>()];
      list.oneTag = bytesOf(entry.at("tag"));
      for (const Json& one : entry.at("entries"))
        list.entries.emplace(bytesOf(one.at(0)), bytesOf(one.at(1)));
    }
  } catch (const Json::exception&) {  // they come back in this program's own spelling
    former_.clear();
  }
}

bool RhythmboxLibrary::reads(const string& bytes, const std::vector<Change>& changes) const {
  try {
    const rhythmbox::PlaylistsFile file(bytes, playlistsPath_);
    if (file.lists().size() != stored_.lists().size()) return false;
    return std::all_of(changes.begin(), changes.end(), [&](const Change& change) {
      return change.before && change.after && change.before->stored &&
             file.lists()[*change.before->stored].uris == urisOf(change.after->entries);
    });
  } catch (const LibraryError&) {
    return false;
  }
}

void RhythmboxLibrary::commitToFile(const std::vector<Change>& changes,
                                    const Batch::Record& record) {
  if (isRunning())
    fail(Message::tr("Rhythmbox was started since its library was read"), readAgain());
  std::map<std::uint64_t, rhythmbox::FormerList> formerNow;
  std::vector<rhythmbox::ListEdit> edits;
  for (const Change& change : changes) {
    rhythmbox::ListEdit& edit = edits.emplace_back();
    if (change.before) edit.list = change.before->stored;
    if (!change.after) continue;
    edit.name = change.after->name;
    edit.uris = urisOf(change.after->entries);
    if (!edit.list) continue;
    formerNow.emplace(change.before->id, stored_.former(edit));
    const auto former = former_.find(change.before->id);
    if (former != former_.end()) edit.former = &former->second;
  }
  string bytes = stored_.edited(edits);
  // What comes from a history is not trusted with a file of the player's.
  if (!former_.empty() && !reads(bytes, changes)) {
    for (rhythmbox::ListEdit& edit : edits) edit.former = nullptr;
    bytes = stored_.edited(edits);
  }
  if (record) record(encodedLists(formerNow));
  replaceLibraryFile({realPathOf(playlistsPath_), playlistsStatus_.value_or(FileStatus())},
                     services_.files, services_.log, options_,
                     [&](TextSink& sink) { sink.append(bytes); });
}

void RhythmboxLibrary::checkPossible(const std::vector<Change>& changes) {
  const Uris names = player_.lists(false);
  for (const Change& change : changes)
    if (Message why = reasonAgainst(change, names); !why.empty())
      fail(std::move(why), closePlayer());
}

Message RhythmboxLibrary::reasonAgainst(const Change& change, const Uris& names) {
  const List& list = change.after ? *change.after : *change.before;
  const auto reason = [&](Message why) {
    return Message::tr("the playlist %1 cannot be changed while Rhythmbox runs: %2")
        .arg(inQuotes(list.name))
        .arg(std::move(why));
  };
  const auto count = std::count(names.begin(), names.end(), list.name);
  if (count > (change.before ? 1 : 0)) return reason(Message::tr("another playlist has its name"));
  if (change.before && count == 0) throwChangedMeanwhile(playlistsPath_);
  const IDs none, &before = change.before ? change.before->entries : none;
  const Uris shown = urisOf(before, false);
  if (change.before && !shown.empty() && player_.entries(list.name) != shown)
    throwChangedMeanwhile(playlistsPath_);
  if (!change.after) return {};
  for (std::size_t i = rhythmbox::firstMoved(urisOf(before), urisOf(list.entries));
       i < list.entries.size(); ++i) {
    const string uri = *ids_.uriOf(list.entries[i]);
    string path;
    if (hidden_.contains(list.entries[i]) || !pathOfFileUrl(uri, path) ||
        !services_.files.exists(path))
      return reason(Message::tr("it would lose the entry %1, whose file is not there")
                        .arg(path.empty() ? uri : path));
  }
  return {};
}

void RhythmboxLibrary::carryOut(const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    if (!change.after) continue;
    const List& list = *change.after;
    if (!change.before) player_.create(list.name);
    player_.change(list.name, change.before ? urisOf(change.before->entries) : Uris(),
                   urisOf(list.entries));
    const Uris wanted = urisOf(list.entries, false);
    if (!wanted.empty() && player_.entries(list.name) != wanted)
      fail(Message::tr("Rhythmbox did not make the playlist %1 what it was told to")
               .arg(inQuotes(list.name)),
           readAgain());
  }
  for (const Change& change : changes)
    if (!change.after) player_.remove(change.before->name);
}

void RhythmboxLibrary::commitToPlayer(const std::vector<Change>& changes) {
  std::vector<rhythmbox::ListEdit> journal;
  for (const Change& change : changes) {
    if (!change.after) continue;
    const string& name = change.after->name;
    journal.push_back({{}, name, change.before ? urisOf(change.before->entries) : Uris()});
    journal.push_back({{}, change.before ? name : "", urisOf(change.after->entries)});
  }
  const string path = journalPath();
  Message problem;
  try {
    checkPossible(changes);
    static_cast<void>(supportFolder(services_.files, playlistsPath_, "Rhythmbox"));
    services_.files.writeAtomically(path, rhythmbox::PlaylistsFile().edited(journal));
    try {
      carryOut(changes);
      services_.files.remove(path);
      return;
    } catch (const MessageError& error) {
      problem = error.message;
    }
  } catch (const BusError& error) {
    fail(Message::tr("Rhythmbox does not answer: %1").arg(error.message), readAgain());
  }
  lists_ = kept_;
  try {
    restoreBroken();
  } catch (const MessageError& error) {
    problem = joined(ended(std::move(problem)), error.message);
  }
  fail(std::move(problem), readAgain());
}

void RhythmboxLibrary::rollBack() {
  former_.clear();
  if (!std::exchange(given_, {}).empty()) items_.reset();
  if (!std::exchange(changed_, false)) return;
  lists_ = kept_;
  shown_.reset();
}

string RhythmboxLibrary::journalPath() const {
  const auto support = services_.files.applicationSupportDirectory();
  return support ? *support + "/Kestrel/Rhythmbox/" + libraryHash(folder_) + ".xml" : string();
}

/// The journal has two lists for each that was to be changed: what it held before, and what it was
/// to hold, the latter without a name when it was to be made.
void RhythmboxLibrary::restoreBroken() {
  const string path = journalPath();
  if (!services_.files.exists(path)) return;
  read();
  const rhythmbox::PlaylistsFile journal(services_.files.readAll(path), path);
  const auto& pairs = journal.lists();
  bool isComplete = true;
  std::unordered_set<std::uint64_t> unneeded;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const auto list = std::find_if(lists_.begin(), lists_.end(), [&](const List& other) {
      return other.name == pairs[i].name && !other.isAutomatic;
    });
    const IDs before = idsOf(pairs[i].uris), after = idsOf(pairs[i + 1].uris);
    isComplete = isComplete && list != lists_.end() && list->entries == after;
    if (list == lists_.end()) continue;
    // What has come in since stays, behind the old entries.
    IDs ours = before;
    ours.insert(ours.end(), after.begin(), after.end());
    const std::unordered_set<std::uint64_t> known(ours.begin(), ours.end());
    const IDs now = std::exchange(list->entries, before);
    std::copy_if(now.begin(), now.end(), std::back_inserter(list->entries),
                 [&](std::uint64_t entry) { return !known.contains(entry); });
    if (pairs[i + 1].name.empty() && list->entries.empty()) unneeded.insert(list->id);
  }
  std::erase_if(lists_, [&](const List& list) { return unneeded.contains(list.id); });
  const std::vector<Change> changes = isComplete ? std::vector<Change>() : this->changes();
  try {
    if (isLive_ && !changes.empty()) {
      checkPossible(changes);
      carryOut(changes);
    } else if (!changes.empty()) {
      commitToFile(changes, {});
    }
  } catch (const MessageError& error) {
    lists_ = kept_;
    fail(Message::tr("playlists that Rhythmbox was changing when it broke off were not given their "
                     "old entries back: %1")
             .arg(error.message),
         closePlayer());
  }
  if (!changes.empty())
    services_.log.line(playlistsPath_ + ": gave playlists their old entries back");
  services_.files.remove(path);
  read();
}

}  // namespace kestrel
