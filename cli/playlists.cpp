// playlists: the playlists of a library, as a list and as a tree of folders.

#include <iostream>
#include <string_view>
#include <unordered_set>

#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "library/playlist_catalogue.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

Json json(const OutlineRow& row) {
  Json object = Json::object();
  addKeys(object, *row.record);
  if (!row.Child) return object;
  Json& children = object["Child"] = row.Child->empty() ? Json::object() : Json::array();
  for (const OutlineRow& child : *row.Child) children.push_back(json(child));
  return object;
}

void writeJson(std::ostream& out, const std::vector<PlaylistRecord>& catalogue,
               const std::vector<OutlineRow>& outline, const Session& session) {
  Json document = {{"playlists", Json::array()}, {"outline", Json::array()}};
  for (const PlaylistRecord& record : catalogue) {
    if (session.interrupted()) return;
    Json object = Json::object();
    addKeys(object, record);
    document["playlists"].push_back(std::move(object));
  }
  for (const OutlineRow& row : outline) document["outline"].push_back(json(row));
  out << dump(document, 1) << '\n';
}

/// What a type code means to a user.
std::string typeName(const std::string& ptype) {
  if (ptype == "u") return "";
  if (ptype == "f") return "folder";
  if (ptype == "s") return "smart";
  if (ptype == "g") return "genius";
  return ptype == "0" ? "library" : "built in";
}

void addRow(TextTable& table, const PlaylistRecord& record, std::size_t depth) {
  table.add({std::string(2 * depth, ' ') + record.pnom, typeName(record.ptype),
             std::to_string(record.itemCount), record.decpid});
}

using Ids = std::unordered_set<std::string_view>;

/// Notes in `written` which playlists the rows were.
void addRows(TextTable& table, const std::vector<OutlineRow>& rows, std::size_t depth,
             Ids& written) {
  for (const OutlineRow& row : rows) {
    addRow(table, *row.record, depth);
    written.insert(row.record->decpid);
    if (row.Child) addRows(table, *row.Child, depth + 1, written);
  }
}

void writeText(std::ostream& out, const std::vector<PlaylistRecord>& catalogue,
               const std::vector<OutlineRow>& outline, const Session& session) {
  using Align = TextTable::Align;
  TextTable table({{"Playlist", Align::left, 60},
                   {"Type", Align::left},
                   {"Items", Align::right},
                   {"ID", Align::right}});
  Ids written;
  for (const PlaylistRecord& record : catalogue) {
    if (const auto type = typeName(record.ptype); type != "library" && type != "built in") continue;
    addRow(table, record, 0);
    written.insert(record.decpid);
  }
  addRows(table, outline, 0, written);
  // What the tree cannot show: the folder that it names is not in the document.
  for (const PlaylistRecord& record : catalogue)
    if (!written.contains(record.decpid)) addRow(table, record, 0);
  table.write(out, "", [&] { return session.interrupted(); });
}

int listPlaylists(Session& session, const ReadingOptions& options) {
  const auto library = session.open(options.library);
  const auto catalogue = playlistCatalogue(*library->allPlaylists());
  const PlaylistOutline outline = playlistOutline(catalogue);
  if (session.interrupted()) return session.stopped();
  if (options.json)
    writeJson(std::cout, catalogue, outline.rows, session);
  else
    writeText(std::cout, catalogue, outline.rows, session);
  return session.interrupted() ? session.stopped() : 0;
}

}  // namespace

void addPlaylistsCommand(CLI::App& app, Action& chosen) {
  addReadingCommand(app, chosen, "playlists", "List the playlists and their folders",
                    "Write JSON: the catalogue and the outline", listPlaylists);
}

}  // namespace kestrel
