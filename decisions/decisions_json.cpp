#include "decisions/decisions_json.h"

#include <algorithm>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <utility>

#include "dupes/keeper_rules.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using DecisionsJson = nlohmann::ordered_json;

/// A value of the file and where it stands, for messages.
struct Place {
  const DecisionsJson& json;
  std::string path;
  const std::string& file;

  [[noreturn]] void fail(Message expected) const {
    throw LibraryError(file, {},
                       Message::tr("these are no decisions that can be read: %1 is not %2")
                           .arg(path)
                           .arg(std::move(expected)),
                       Message::tr("Mend the file, or take a copy of it that was saved earlier."));
  }
  template <typename Visit>
  void forEach(const char* key, Visit&& visit) const {
    if (!json.is_object()) fail(Message::tr("an object"));
    const auto found = json.find(key);
    if (found == json.end()) return;
    Place{*found, path + "." + key, file}.forEach(visit);
  }
  template <typename Visit>
  void forEach(Visit&& visit) const {
    if (!json.is_array()) fail(Message::tr("a list"));
    std::size_t number = 0;
    for (const DecisionsJson& item : json)
      visit(Place{item, path + "[" + std::to_string(number++) + "]", file});
  }
  [[nodiscard]] std::string text() const {
    if (!json.is_string()) fail(Message::tr("a text"));
    return json.get<std::string>();
  }
  /// Empty where there is none.
  [[nodiscard]] std::string text(const char* key) const {
    if (!json.is_object()) fail(Message::tr("an object"));
    const auto found = json.find(key);
    return found == json.end() ? std::string() : Place{*found, path + "." + key, file}.text();
  }
  [[nodiscard]] std::vector<std::string> texts(const char* key) const {
    std::vector<std::string> texts;
    forEach(key, [&](const Place& place) { texts.push_back(place.text()); });
    return texts;
  }
  [[nodiscard]] std::uint64_t track() const {
    const auto id = json.is_string() ? numberFromHex(json.get_ref<const std::string&>())
                                     : std::optional<std::uint64_t>();
    if (!id) fail(Message::tr("a hexadecimal ID"));
    return *id;
  }
  [[nodiscard]] TrackIDs tracks() const {
    TrackIDs ids;
    forEach([&](const Place& place) { ids.push_back(place.track()); });
    return ids;
  }
  [[nodiscard]] TrackIDs tracks(const char* key) const {
    TrackIDs ids;
    forEach(key, [&](const Place& place) { ids.push_back(place.track()); });
    return ids;
  }
};

using Keys = std::initializer_list<std::string_view>;

/// Notes the keys of an object that are none of these.
void noteOthers(const Place& place, Keys known, std::vector<Message>& notes) {
  if (!place.json.is_object()) return;
  for (const auto& [key, value] : place.json.items())
    if (std::find(known.begin(), known.end(), key) == known.end())
      notes.push_back(Message::tr("%1.%2 has no meaning").arg(place.path).arg(printable(key)));
}

Preset presetOf(const Place& place, std::vector<Message>& notes) {
  noteOthers(place, {"name", "keep", "folders", "kinds", "loose"}, notes);
  Preset preset{place.text("name"), place.texts("keep"), place.texts("folders"),
                place.texts("kinds")};
  if (place.json.contains("loose")) preset.loose = place.texts("loose");
  for (const std::string& word : preset.keep)
    if (!keeperRuleNamed(word))
      notes.push_back(Message::tr("%1: there is no rule %2")
                          .arg(place.path + ".keep")
                          .arg(inQuotes(printable(word))));
  return preset;
}

DecisionsJson parsed(std::string_view text, const std::string& name) {
  try {
    return DecisionsJson::parse(text);
  } catch (const DecisionsJson::parse_error& error) {
    throw LibraryError(name, placeOf(text, error.byte > 0 ? error.byte - 1 : 0),
                       Message::tr("this is no JSON"),
                       Message::tr("Mend the file, or take a copy of it that was saved earlier."));
  }
}

}  // namespace

std::string decisionsText(const Decisions& decisions, const LibraryIdentity& library,
                          FunctionRef<std::string(std::uint64_t)> songOf) {
  DecisionsJson file = {{"kestrelDecisions", decisionsVersion},
                        {"library", {{"uri", library.uri}, {"id", library.id}}}};
  const auto addSong = [&](DecisionsJson& object, std::uint64_t track) {
    if (std::string song = songOf(track); !song.empty()) object["song"] = std::move(song);
  };
  file["picks"] = DecisionsJson::array();
  for (const KeeperPick& pick : decisions.picks.list()) {
    DecisionsJson& object = file["picks"].emplace_back(DecisionsJson::object());
    addSong(object, pick.keepers.empty() ? pick.members.front() : pick.keepers.front());
    object["keep"] = TextSorter::batchDecToHex(pick.keepers);
    object["group"] = TextSorter::batchDecToHex(pick.members);
  }
  file["notDuplicates"] = DecisionsJson::array();
  for (const TrackIDs& set : decisions.notDuplicates.list())
    file["notDuplicates"].push_back(TextSorter::batchDecToHex(set));
  file["presets"] = DecisionsJson::array();
  for (const Preset& preset : decisions.presets) {
    DecisionsJson& object =
        file["presets"].emplace_back(DecisionsJson{{"name", preset.name}, {"keep", preset.keep}});
    if (!preset.folders.empty()) object["folders"] = preset.folders;
    if (!preset.kinds.empty()) object["kinds"] = preset.kinds;
    if (preset.loose) object["loose"] = *preset.loose;
  }
  if (!decisions.maps.empty()) file["maps"] = DecisionsJson::array();
  for (const PathMaps::Map& map : decisions.maps)
    file["maps"].push_back({{"from", map.from}, {"to", map.to}});
  return file.dump(1, ' ', false, DecisionsJson::error_handler_t::replace) + "\n";
}

std::string decisionsText(const Decisions& decisions, const LibraryIdentity& library) {
  return decisionsText(decisions, library, [](std::uint64_t) { return std::string(); });
}

ReadDecisions decisionsFromText(std::string_view text, const std::string& name) {
  const DecisionsJson json = parsed(text, name);
  const Place file{json, "$", name};
  const auto version = json.is_object() ? json.find("kestrelDecisions") : json.end();
  if (!json.is_object() || version == json.end() || !version->is_number_integer())
    file.fail(Message::tr("a file of decisions"));
  if (*version != decisionsVersion)
    throw LibraryError(name, {}, Message::tr("another version of Kestrel has written it"),
                       Message::tr("Use that version."));
  ReadDecisions read;
  noteOthers(file, {"kestrelDecisions", "library", "picks", "notDuplicates", "presets", "maps"},
             read.notes);
  if (const auto library = json.find("library"); library != json.end()) {
    const Place place{*library, "$.library", name};
    read.library.uri = place.text("uri");
    read.library.id = place.text("id");
  }
  file.forEach("picks", [&](const Place& pick) {
    noteOthers(pick, {"song", "keep", "group"}, read.notes);
    read.decisions.picks.set(pick.tracks("keep"), pick.tracks("group"));
  });
  file.forEach("notDuplicates",
               [&](const Place& set) { read.decisions.notDuplicates.add(set.tracks()); });
  file.forEach("presets", [&](const Place& place) {
    Preset preset = presetOf(place, read.notes);
    // Else no command could take it.
    if (preset.name.empty() || preset.name.find(',') != std::string::npos ||
        keeperRuleNamed(preset.name))
      Place{place.json, place.path + ".name", name}.fail(
          Message::tr("a name without a comma that no rule has"));
    read.decisions.setPreset(std::move(preset));
  });
  file.forEach("maps", [&](const Place& place) {
    noteOthers(place, {"from", "to"}, read.notes);
    PathMaps::Map map{place.text("from"), place.text("to")};
    if (map.from.empty() || !map.to.starts_with('/'))
      place.fail(Message::tr("a map with \"from\" and a path from the root in \"to\""));
    read.decisions.maps.push_back(std::move(map));
  });
  return read;
}

}  // namespace kestrel
