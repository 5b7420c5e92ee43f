#include "changes/plan_json.h"

#include <nlohmann/json.hpp>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "changes/carrying.h"
#include "foundation/bytes.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/name_table.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/file_url.h"

namespace kestrel {
namespace {

using Json = nlohmann::ordered_json;
using TextSorter::decToHex;

constexpr NameTable<LeftOut::What, 4> whatNames{{{LeftOut::What::group, "group"},
                                                 {LeftOut::What::playlist, "playlist"},
                                                 {LeftOut::What::folder, "folder"},
                                                 {LeftOut::What::automatic, "automatic"}}};

// The fields of a plan are listed once, further down, for a Writer and a Reader: both have an
// operation for each kind of value, which takes its key and where it stands in memory.

/// Writes values of a plan into an object.
class Writer {
 public:
  static constexpr bool reads = false;
  explicit Writer(Json& json) : json_(json) { json_ = Json::object(); }

  void text(const char* key, const std::string& text) { json_[key] = text; }
  void message(const char* key, const Message& message) { json_[key] = message.english(); }
  void number(const char* key, std::uint64_t number) { json_[key] = number; }
  void number(const char* key, std::int64_t number) { json_[key] = number; }
  void boolean(const char* key, bool value) { json_[key] = value; }
  void hex(const char* key, std::uint64_t id) { json_[key] = decToHex(id); }
  void hex(const char* key, const std::optional<std::uint64_t>& id) {
    if (id) json_[key] = decToHex(*id);
  }
  void hexes(const char* key, std::span<const std::uint64_t> ids) {
    json_[key] = TextSorter::batchDecToHex(ids);
  }
  void positions(const char* key, const std::vector<std::uint64_t>& positions, std::uint64_t) {
    json_[key] = positions;
  }
  /// Paths are bytes, and JSON is UTF-8: one that is not is for the eye only, beside its bytes.
  void path(const char* key, const std::string& path) {
    const bool isText = firstInvalidUtf8(path) == std::string::npos;
    json_[key] = isText ? path : quotedStart(path);
    if (isText) return;
    std::string bytes;
    appendBase64(path, bytes);
    json_[std::string(key) + "Bytes"] = bytes;
  }
  void what(const char* key, LeftOut::What what) { json_[key] = nameOf(whatNames, what); }
  template <typename Item, typename Each>
  void list(const char* key, const std::vector<Item>& items, Each&& each) {
    Json list = Json::array();
    for (const Item& item : items) {
      Writer writer(list.emplace_back());
      each(writer, item);
    }
    json_[key] = std::move(list);
  }

  void date(const char* key, const OptionalDate& date) {
    json_[key] = date ? Json(std::int64_t{date.seconds}) : Json();
  }
  void words(const char* key, TrackValueSet values) {
    Json list = Json::array();
    for (const TrackValue value : values.list()) list.push_back(nameOf(trackValueNames, value));
    json_[key] = std::move(list);
  }
  template <typename Each>
  void object(const char* key, Each&& each) {
    Writer writer(json_[key]);
    each(writer);
  }

  /// For what is written only.
  Json& operator[](const char* key) { return json_[key]; }

 private:
  Json& json_;
};

/// Reads them back, and knows the place of each for messages.
class Reader {
 public:
  static constexpr bool reads = true;
  Reader(const Json& json, std::string place, const std::string& file)
      : json_(json), place_(std::move(place)), file_(file) {}

  [[noreturn]] void fail(Message expected) const {
    throw LibraryError(file_, {},
                       Message::tr("this is no plan that can be applied: %1 is not %2")
                           .arg(place_)
                           .arg(std::move(expected)),
                       Message::tr("Make the plan again."));
  }
  [[nodiscard]] bool has(const std::string& key) const {
    return json_.is_object() && json_.contains(key);
  }
  [[nodiscard]] Reader at(const std::string& key) const {
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
  /// A position in a list of `count`, behind the one `before`.
  [[nodiscard]] std::uint64_t position(std::uint64_t before, std::uint64_t count) const {
    const std::uint64_t position = this->count();
    if (position <= before || position > count)
      fail(Message::tr("a position of the playlist, in ascending order"));
    return position;
  }
  template <typename Value>
  [[nodiscard]] Value known(const std::optional<Value>& value) const {
    if (!value) fail(Message::tr("one of the known words"));
    return *value;
  }
  [[nodiscard]] std::string word() const {
    return json_.is_string() ? json_.get<std::string>() : std::string();
  }

  void text(const char* key, std::string& text) const { text = at(key).text(); }
  void message(const char* key, Message& message) const {
    message = Message::verbatim(at(key).text());
  }
  void number(const char* key, std::uint64_t& number) const { number = at(key).count(); }
  void number(const char* key, std::int64_t& number) const { number = at(key).integer(); }
  void boolean(const char* key, bool& value) const {
    const Reader json = at(key);
    if (!json.json_.is_boolean()) json.fail(Message::tr("true or false"));
    value = json.json_.get<bool>();
  }
  void hex(const char* key, std::uint64_t& id) const { id = at(key).hex(); }
  void hex(const char* key, std::optional<std::uint64_t>& id) const {
    if (has(key)) id = at(key).hex();
  }
  void hexes(const char* key, std::vector<std::uint64_t>& ids) const {
    at(key).forEach([&](const Reader& id) { ids.push_back(id.hex()); });
  }
  void positions(const char* key, std::vector<std::uint64_t>& positions,
                 std::uint64_t count) const {
    std::uint64_t last = 0;
    at(key).forEach([&](const Reader& position) {
      positions.push_back(last = position.position(last, count));
    });
  }
  void path(const char* key, std::string& path) const {
    const std::string bytesKey = std::string(key) + "Bytes";
    if (!has(bytesKey)) return text(key, path);
    const Reader bytes = at(bytesKey);
    auto decoded = bytesOfBase64(bytes.text());
    if (!decoded) bytes.fail(Message::tr("Base64"));
    path = std::move(*decoded);
  }
  void what(const char* key, LeftOut::What& what) const {
    const Reader json = at(key);
    what = json.known(valueNamed(whatNames, json.word()));
  }
  void date(const char* key, OptionalDate& date) const {
    if (const Reader json = at(key); !json.json_.is_null()) date = OptionalDate{json.integer()};
  }
  void words(const char* key, TrackValueSet& values) const {
    at(key).forEach([&](const Reader& word) {
      values.add(word.known(valueNamed(trackValueNames, word.word())));
    });
  }
  template <typename Each>
  void object(const char* key, Each&& each) const {
    Reader inner = at(key);
    each(inner);
  }
  template <typename Item, typename Each>
  void list(const char* key, std::vector<Item>& items, Each&& each) const {
    at(key).forEach([&](Reader item) { each(item, items.emplace_back()); });
  }

 private:
  const Json& json_;
  std::string place_;
  const std::string& file_;
};

/// `playlist`, where it is known, is shown with its entries.
template <typename Fields, typename Planned>
void playlistFields(Fields& fields, Planned& planned, RunKind kind, const Playlist* playlist) {
  fields.hex("hexpid", planned.playlist);
  fields.text("name", planned.name);
  fields.hex("folder", planned.folder);
  fields.text("folderName", planned.folderName);
  fields.boolean("shown", planned.shown);
  fields.number("entryCount", planned.entryCount);
  fields.hex("fingerprint", planned.entries);
  if constexpr (!Fields::reads)
    if (playlist) fields.hexes("items", playlist->items);
  if (kind == RunKind::cleanUp)
    return fields.positions("deleteIndexes", planned.deleteIndexes, planned.entryCount);
  if constexpr (!Fields::reads)
    if (playlist) fields.hexes("newItems", newEntries(planned, playlist->items));
  if (kind == RunKind::addToPlaylist) return fields.hexes("additions", planned.additions);
  if constexpr (!Fields::reads) {
    // As a list at first: finding a key again in an ordered object looks at every key.
    Json::object_t pairs;
    std::unordered_set<std::uint64_t> paired;
    for (const Replacement& change : planned.replacements)
      if (paired.insert(change.oldTrack).second)
        pairs.push_back({decToHex(change.oldTrack), decToHex(change.newTrack)});
    fields["pairs"] = std::move(pairs);
  }
  std::uint64_t last = 0;
  fields.list("entries", planned.replacements, [&](auto& entry, auto& change) {
    if constexpr (Fields::reads)
      last = change.position = entry.at("position").position(last, planned.entryCount);
    else
      entry.number("position", change.position);
    entry.hex("old", change.oldTrack);
    entry.hex("new", change.newTrack);
    entry.text("reason", change.reason);
  });
  fields.list("creates_repeats", planned.repeats, [&](auto& made, auto& repeat) {
    made.hex("hexpid", repeat.track);
    made.positions("positions", repeat.positions, planned.entryCount);
  });
  bool deletes = !planned.deleteIndexes.empty();
  if constexpr (Fields::reads) deletes = fields.has("deleteIndexes");
  if (deletes) fields.positions("deleteIndexes", planned.deleteIndexes, planned.entryCount);
}

template <typename Fields, typename Planned>
void fileFields(Fields& fields, Planned& file, RunKind kind) {
  fields.path("path", file.path);
  if (kind == RunKind::addToLibrary) return;
  fields.hex("hexpid", file.track);
  fields.text("name", file.name);
  fields.number("tGroupID", file.group);
  fields.number("size", file.size);
  fields.number("device", file.device);
  fields.number("inode", file.inode);
  fields.path("keeperPath", file.keeperPath);
  fields.message("heldBack", file.heldBack);
  fields.hex("keeper", file.keeper);
  bool hasOthers = !file.otherTracks.empty();
  if constexpr (Fields::reads) hasOthers = fields.has("otherTracks");
  if (hasOthers) fields.hexes("otherTracks", file.otherTracks);
}

template <typename Fields, typename Values>
void valueFields(Fields& fields, Values& values) {
  fields.number("plays", values.plays);
  fields.date("lastPlayed", values.lastPlayed);
  fields.number("rating", values.rating);
  fields.date("added", values.added);
  fields.text("comments", values.comments);
}

/// Those that are carried over. `gainOf` tells what a kept track gains.
template <typename Fields, typename AnyPlan>
void carriedFields(Fields& fields, AnyPlan& plan) {
  bool carries = !plan.carries.empty();
  if constexpr (Fields::reads) carries = fields.has("carry");
  if (!carries) return;
  fields.words("carry", plan.carries);
  std::unordered_map<std::uint64_t, Message> gains;
  if constexpr (!Fields::reads)
    for (const CarriedValues& carried : carriedBy(plan))
      gains.emplace(carried.planned->keeper,
                    gainOf(plan.carries, carried.planned->before, carried.after));
  fields.list("carried", plan.carried, [&](auto& one, auto& carried) {
    one.hex("keeper", carried.keeper);
    one.text("name", carried.name);
    one.number("tGroupID", carried.group);
    if constexpr (!Fields::reads) one["gains"] = gains[carried.keeper].english();
    one.object("before", [&](auto& inner) { valueFields(inner, carried.before); });
    one.list("copies", carried.copies, [](auto& inner, auto& copy) {
      inner.hex("hexpid", copy.track);
      valueFields(inner, copy.values);
    });
  });
}

/// The lists of a plan, those that its kind has. `playlistOf` gives the playlist to be shown.
template <typename Fields, typename AnyPlan, typename PlaylistOf>
void listFields(Fields& fields, AnyPlan& plan, PlaylistOf&& playlistOf) {
  const RunKind kind = plan.kind;
  if (!isAboutFiles(kind))
    fields.list("playlists", plan.playlists, [&](auto& one, auto& planned) {
      playlistFields(one, planned, kind, playlistOf(planned));
    });
  if (kind == RunKind::remove)
    fields.list("tracks", plan.tracks, [](auto& one, auto& track) {
      one.hex("hexpid", track.track);
      one.text("name", track.name);
      one.number("tGroupID", track.group);
      one.message("heldBack", track.heldBack);
      one.hex("keeper", track.keeper);
    });
  if (isAboutFiles(kind) || kind == RunKind::remove)
    fields.list("files", plan.files, [&](auto& one, auto& file) { fileFields(one, file, kind); });
  bool isHeard = !plan.heard.empty();
  if constexpr (Fields::reads) isHeard = fields.has("heard");
  if (isHeard)
    fields.list("heard", plan.heard, [](auto& one, auto& heard) {
      one.hex("hexpid", heard.track);
      one.path("path", heard.path);
      one.number("size", heard.size);
      one.number("modified", heard.modified);
    });
  carriedFields(fields, plan);
  fields.list("leftOut", plan.leftOut, [](auto& one, auto& left) {
    one.what("what", left.what);
    one.text("id", left.id);
    one.text("name", left.name);
    one.message("reason", left.reason);
  });
}

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

}  // namespace

Json jsonOf(const Plan& plan, std::span<const Playlist> library) {
  Json json;
  Writer fields(json);
  fields["version"] = planVersion;
  fields["kind"] = nameOf(plan.kind);
  fields["made"] = plan.made.time_since_epoch().count();
  fields["library"] = {
      {"uri", plan.library.uri}, {"id", plan.library.id}, {"version", plan.library.version}};
  std::unordered_map<std::uint64_t, const Playlist*> byID;
  for (const Playlist& playlist : library) byID.try_emplace(playlist.persistentID, &playlist);
  listFields(fields, plan, [&](const PlannedPlaylist& planned) {
    const auto playlist = byID.find(planned.playlist);
    return playlist == byID.end() ? nullptr : playlist->second;
  });
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
  const Reader kind = root.at("kind");
  plan.kind = kind.known(runKindNamed(kind.word()));
  if (plan.kind == RunKind::undo) kind.fail(Message::tr("one of the known words"));
  plan.made = Moment(std::chrono::nanoseconds(root.at("made").integer()));
  const Reader library = root.at("library");
  plan.library = version == 1 ? readFormerLibrary(library)
                              : LibraryIdentity{library.at("uri").text(), library.at("id").text(),
                                                library.at("version").text()};
  listFields(root, plan, [](const PlannedPlaylist&) -> const Playlist* { return nullptr; });
  return plan;
}

}  // namespace kestrel
