#include "changes/plan_json.h"

#include <array>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/file_url.h"

namespace kestrel {
namespace {

using Json = nlohmann::ordered_json;
using TextSorter::decToHex;

template <typename Value, std::size_t size>
using Names = std::array<std::pair<Value, const char*>, size>;
constexpr Names<RunKind, 6> kindNames{{{RunKind::replaylist, "replaylist"},
                                       {RunKind::cleanUp, "cleanup"},
                                       {RunKind::trash, "trash"},
                                       {RunKind::addToPlaylist, "add to playlist"},
                                       {RunKind::addToLibrary, "add to library"},
                                       {RunKind::remove, "remove"}}};
constexpr Names<LeftOut::What, 3> whatNames{{{LeftOut::What::group, "group"},
                                             {LeftOut::What::playlist, "playlist"},
                                             {LeftOut::What::folder, "folder"}}};

template <typename Value, std::size_t size>
const char* nameOf(const Names<Value, size>& names, Value value) {
  for (const auto& [held, name] : names)
    if (held == value) return name;
  return "";
}

Json hexes(std::span<const std::uint64_t> ids) {
  Json list = Json::array();
  for (const std::uint64_t id : ids) list.push_back(decToHex(id));
  return list;
}

Json jsonOf(const LibraryIdentity& library) {
  return {{"uri", library.uri}, {"id", library.id}, {"version", library.version}};
}

/// Paths are bytes, and JSON is UTF-8: one that is not is for the eye only, beside its bytes.
void setPath(Json& json, const std::string& key, const std::string& path) {
  if (firstInvalidUtf8(path) == std::string::npos) {
    json[key] = path;
    return;
  }
  json[key] = quotedStart(path);
  std::string bytes;
  appendBase64(path, bytes);
  json[key + "Bytes"] = bytes;
}

Json jsonOf(const PlannedFile& file, RunKind kind) {
  Json json = Json::object();
  setPath(json, "path", file.path);
  if (kind == RunKind::addToLibrary) return json;
  json["hexpid"] = decToHex(file.track);
  json["name"] = file.name;
  json["tGroupID"] = file.group;
  json["size"] = file.size;
  json["device"] = file.device;
  json["inode"] = file.inode;
  setPath(json, "keeperPath", file.keeperPath);
  json["heldBack"] = file.heldBack.english();
  if (file.keeper) json["keeper"] = decToHex(*file.keeper);
  if (!file.otherTracks.empty()) json["otherTracks"] = hexes(file.otherTracks);
  return json;
}

/// A value of a plan on its way back, with its place for messages.
class Reader {
 public:
  Reader(const Json& json, std::string place, const std::string& file)
      : json_(json), place_(std::move(place)), file_(file) {}

  [[noreturn]] void fail(Message expected) const {
    throw LibraryError(file_, {},
                       Message::tr("this is no plan that can be applied: %1 is not %2")
                           .arg(place_)
                           .arg(std::move(expected)),
                       Message::tr("Make the plan again."));
  }
  [[nodiscard]] bool has(const char* key) const { return json_.is_object() && json_.contains(key); }
  [[nodiscard]] Reader at(const char* key) const {
    static const Json nothing;
    return {has(key) ? json_[key] : nothing, place_ + "." + key, file_};
  }
  template <typename Visit>
  void forEach(Visit&& visit) const {
    if (!json_.is_array()) fail(Message::tr("a list"));
    std::size_t number = 0;
    for (const Json& item : json_)
      visit(Reader(item, place_ + "[" + std::to_string(number++) + "]", file_));
  }
  [[nodiscard]] std::string text() const {
    if (!json_.is_string()) fail(Message::tr("a text"));
    return json_.get<std::string>();
  }
  [[nodiscard]] std::uint64_t hex() const {
    const auto id = json_.is_string() ? numberFromHex(json_.get_ref<const std::string&>())
                                      : std::optional<std::uint64_t>();
    if (!id) fail(Message::tr("a hexadecimal ID"));
    return *id;
  }
  [[nodiscard]] std::uint64_t count() const {
    if (!json_.is_number_unsigned()) fail(Message::tr("a number from 0"));
    return json_.get<std::uint64_t>();
  }
  [[nodiscard]] std::int64_t integer() const {
    if (!json_.is_number_integer()) fail(Message::tr("a whole number"));
    return json_.get<std::int64_t>();
  }
  [[nodiscard]] bool boolean() const {
    if (!json_.is_boolean()) fail(Message::tr("true or false"));
    return json_.get<bool>();
  }
  template <typename Value, std::size_t size>
  [[nodiscard]] Value oneOf(const Names<Value, size>& names) const {
    for (const auto& [value, name] : names)
      if (json_.is_string() && json_.get_ref<const std::string&>() == name) return value;
    fail(Message::tr("one of the known words"));
  }

 private:
  const Json& json_;
  std::string place_;
  const std::string& file_;
};

/// Format 1 had the state of the library's file.
LibraryIdentity readFormerLibrary(const Reader& json) {
  LibraryIdentity library{
      fileUrlOfPath(json.at("path").text()), json.at("persistentID").text(), {}};
  if (!json.has("file")) return library;
  const Reader file = json.at("file");
  library.version = std::to_string(file.at("size").count()) + "-" +
                    std::to_string(file.at("modified").integer()) + "-" +
                    std::to_string(file.at("device").count()) + "-" +
                    std::to_string(file.at("inode").count());
  return library;
}

LibraryIdentity readLibrary(const Reader& json, std::int64_t version) {
  if (version == 1) return readFormerLibrary(json);
  return {json.at("uri").text(), json.at("id").text(), json.at("version").text()};
}

/// A position in a list of `count`, behind the one before.
std::uint64_t readPosition(const Reader& json, std::uint64_t before, std::uint64_t count) {
  const std::uint64_t position = json.count();
  if (position <= before || position > count)
    json.fail(Message::tr("a position of the playlist, in ascending order"));
  return position;
}

PlannedPlaylist readPlaylist(const Reader& json, RunKind kind) {
  PlannedPlaylist planned;
  planned.playlist = json.at("hexpid").hex();
  planned.name = json.at("name").text();
  if (json.has("folder")) planned.folder = json.at("folder").hex();
  planned.folderName = json.at("folderName").text();
  planned.shown = json.at("shown").boolean();
  planned.entryCount = json.at("entryCount").count();
  planned.entries = json.at("fingerprint").hex();
  std::uint64_t last = 0;
  if (kind == RunKind::cleanUp || json.has("deleteIndexes"))
    json.at("deleteIndexes").forEach([&](const Reader& position) {
      planned.deleteIndexes.push_back(last = readPosition(position, last, planned.entryCount));
    });
  if (kind == RunKind::cleanUp) return planned;
  last = 0;
  if (kind == RunKind::addToPlaylist) {
    json.at("additions").forEach([&](const Reader& track) {
      planned.additions.push_back(track.hex());
    });
    return planned;
  }
  json.at("entries").forEach([&](const Reader& entry) {
    last = readPosition(entry.at("position"), last, planned.entryCount);
    planned.replacements.push_back(
        {last, entry.at("old").hex(), entry.at("new").hex(), entry.at("reason").text()});
  });
  json.at("creates_repeats").forEach([&](const Reader& repeat) {
    CreatedRepeat& made = planned.repeats.emplace_back();
    made.track = repeat.at("hexpid").hex();
    std::uint64_t position = 0;
    repeat.at("positions").forEach([&](const Reader& at) {
      made.positions.push_back(position = readPosition(at, position, planned.entryCount));
    });
  });
  return planned;
}

std::string readPath(const Reader& json, const std::string& key) {
  const std::string bytesKey = key + "Bytes";
  if (!json.has(bytesKey.c_str())) return json.at(key.c_str()).text();
  const Reader bytes = json.at(bytesKey.c_str());
  auto path = bytesOfBase64(bytes.text());
  if (!path) bytes.fail(Message::tr("Base64"));
  return std::move(*path);
}

PlannedFile readFile(const Reader& json, RunKind kind) {
  if (kind == RunKind::addToLibrary) {
    PlannedFile file;
    file.path = readPath(json, "path");
    return file;
  }
  PlannedFile file{readPath(json, "path"),
                   json.at("hexpid").hex(),
                   json.at("name").text(),
                   json.at("tGroupID").integer(),
                   json.at("size").count(),
                   json.at("device").count(),
                   json.at("inode").count(),
                   readPath(json, "keeperPath"),
                   Message::verbatim(json.at("heldBack").text())};
  if (json.has("keeper")) file.keeper = json.at("keeper").hex();
  if (json.has("otherTracks"))
    json.at("otherTracks").forEach([&](const Reader& track) {
      file.otherTracks.push_back(track.hex());
    });
  return file;
}

}  // namespace

Json jsonOf(const PlannedPlaylist& planned, RunKind kind, const Playlist* playlist) {
  Json json{{"hexpid", decToHex(planned.playlist)}, {"name", planned.name}};
  if (planned.folder) json["folder"] = decToHex(*planned.folder);
  json["folderName"] = planned.folderName;
  json["shown"] = planned.shown;
  json["entryCount"] = planned.entryCount;
  json["fingerprint"] = decToHex(planned.entries);
  if (playlist) json["items"] = hexes(playlist->items);
  if (kind == RunKind::cleanUp) {
    json["deleteIndexes"] = planned.deleteIndexes;
    return json;
  }
  if (playlist) json["newItems"] = hexes(newEntries(planned, playlist->items));
  if (kind == RunKind::addToPlaylist) {
    json["additions"] = hexes(planned.additions);
    return json;
  }
  // As a list at first: finding a key again in an ordered object looks at every key.
  Json::object_t pairs;
  std::unordered_set<std::uint64_t> paired;
  Json entries = Json::array();
  for (const Replacement& change : planned.replacements) {
    if (paired.insert(change.oldTrack).second)
      pairs.push_back({decToHex(change.oldTrack), decToHex(change.newTrack)});
    entries.push_back({{"position", change.position},
                       {"old", decToHex(change.oldTrack)},
                       {"new", decToHex(change.newTrack)},
                       {"reason", change.reason}});
  }
  json["pairs"] = std::move(pairs);
  json["entries"] = std::move(entries);
  json["creates_repeats"] = Json::array();
  for (const CreatedRepeat& repeat : planned.repeats)
    json["creates_repeats"].push_back(
        {{"hexpid", decToHex(repeat.track)}, {"positions", repeat.positions}});
  if (!planned.deleteIndexes.empty()) json["deleteIndexes"] = planned.deleteIndexes;
  return json;
}

Json jsonOf(const Plan& plan, std::span<const Playlist> library) {
  Json json{{"version", planVersion},
            {"kind", nameOf(kindNames, plan.kind)},
            {"made", plan.made.time_since_epoch().count()},
            {"library", jsonOf(plan.library)}};
  std::unordered_map<std::uint64_t, const Playlist*> byID;
  for (const Playlist& playlist : library) byID.try_emplace(playlist.persistentID, &playlist);
  Json playlists = Json::array(), tracks = Json::array(), files = Json::array(),
       leftOut = Json::array();
  for (const PlannedPlaylist& planned : plan.playlists) {
    const auto playlist = byID.find(planned.playlist);
    playlists.push_back(
        jsonOf(planned, plan.kind, playlist == byID.end() ? nullptr : playlist->second));
  }
  for (const PlannedFile& file : plan.files) files.push_back(jsonOf(file, plan.kind));
  for (const LeftOut& left : plan.leftOut)
    leftOut.push_back({{"what", nameOf(whatNames, left.what)},
                       {"id", left.id},
                       {"name", left.name},
                       {"reason", left.reason.english()}});
  for (const PlannedTrack& track : plan.tracks) {
    Json& planned = tracks.emplace_back(Json{{"hexpid", decToHex(track.track)},
                                             {"name", track.name},
                                             {"tGroupID", track.group},
                                             {"heldBack", track.heldBack.english()}});
    if (track.keeper) planned["keeper"] = decToHex(*track.keeper);
  }
  if (!isAboutFiles(plan.kind)) json["playlists"] = std::move(playlists);
  if (plan.kind == RunKind::remove) json["tracks"] = std::move(tracks);
  if (isAboutFiles(plan.kind) || plan.kind == RunKind::remove) json["files"] = std::move(files);
  json["leftOut"] = std::move(leftOut);
  return json;
}

Plan planFromJson(std::string_view text, const std::string& name) {
  Json json;
  try {
    json = Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw LibraryError(name, placeOf(text, error.byte > 0 ? error.byte - 1 : 0),
                       Message::tr("this is no plan: it is not JSON from here on"),
                       Message::tr("Make the plan again."));
  }
  const Reader root(json, "plan", name);
  const std::int64_t version = root.at("version").integer();
  if (version < 1 || version > planVersion)
    throw LibraryError(name, {},
                       Message::tr("this plan has the format %1, and only format %2 is known")
                           .arg(version)
                           .arg(planVersion),
                       Message::tr("Make the plan again with this version of Kestrel."));
  Plan plan;
  plan.kind = root.at("kind").oneOf(kindNames);
  plan.made = Moment(std::chrono::nanoseconds(root.at("made").integer()));
  plan.library = readLibrary(root.at("library"), version);
  if (plan.kind == RunKind::remove)
    root.at("tracks").forEach([&](const Reader& track) {
      PlannedTrack& planned = plan.tracks.emplace_back();
      planned.track = track.at("hexpid").hex();
      planned.name = track.at("name").text();
      planned.group = track.at("tGroupID").integer();
      if (track.has("keeper")) planned.keeper = track.at("keeper").hex();
      planned.heldBack = Message::verbatim(track.at("heldBack").text());
    });
  if (isAboutFiles(plan.kind) || plan.kind == RunKind::remove)
    root.at("files").forEach(
        [&](const Reader& file) { plan.files.push_back(readFile(file, plan.kind)); });
  if (!isAboutFiles(plan.kind))
    root.at("playlists").forEach([&](const Reader& playlist) {
      plan.playlists.push_back(readPlaylist(playlist, plan.kind));
    });
  root.at("leftOut").forEach([&](const Reader& left) {
    plan.leftOut.push_back({left.at("what").oneOf(whatNames), left.at("id").text(),
                            left.at("name").text(), Message::verbatim(left.at("reason").text())});
  });
  return plan;
}

}  // namespace kestrel
