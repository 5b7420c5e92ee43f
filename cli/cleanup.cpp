// cleanup: the playlists that list a track more than once, and removing the entries too many.

#include <iostream>
#include <memory>

#include "cli/acting.h"
#include "cli/command.h"
#include "cli/text_table.h"

namespace kestrel {
namespace {

Json json(const RemDupesRecord& record) {
  Json object = Json::object();
  addKeys(object, record);
  if (record.isFolder()) return object;
  object["items"] = record.items();
  object["deleteIndexes"] = record.deleteIndexes();
  return object;
}

Json json(const std::vector<RemDupesRow>& rows) {
  Json list = Json::array();
  for (const RemDupesRow& row : rows) {
    Json object = json(*row.record);
    if (row.Child) object["Child"] = row.Child->empty() ? Json::object() : json(*row.Child);
    list.push_back(std::move(object));
  }
  return list;
}

Json json(const RepeatScan& scan) {
  Json playlists = Json::array();
  for (std::size_t i = 0; i < scan.affected.size(); ++i) {
    const RemDupesRecord& record = *scan.affected[i];
    playlists.push_back({{"hexpid", record.hexpid()},
                         {"name", record.playlist().name},
                         {"items", record.items()},
                         {"deleteIndexes", record.deleteIndexes()},
                         {"shown", static_cast<bool>(scan.shown[i])}});
  }
  return {{"playlists", std::move(playlists)}, {"outline", json(*scan.outline)}};
}

void writeText(std::ostream& out, const RepeatScan& scan, const Plan& plan) {
  if (scan.affected.empty()) {
    out << "No playlist lists a track more than once.\n";
    return;
  }
  TextTable table({{"Playlist", TextTable::Align::left, 48},
                   {"Entries", TextTable::Align::right},
                   {"To delete", TextTable::Align::right},
                   {"At", TextTable::Align::left, 48}});
  for (std::size_t i = 0; i < scan.affected.size(); ++i) {
    const RemDupesRecord& record = *scan.affected[i];
    std::string positions;
    for (const std::uint64_t position : record.deleteIndexes())
      positions.append(positions.empty() ? "" : ", ").append(std::to_string(position));
    table.add({record.playlist().name, std::to_string(record.playlist().items.size()),
               std::to_string(record.deleteIndexes().size()), positions});
  }
  table.write(out);
  writeWarnings(out, plan);
}

}  // namespace

void addCleanupCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string library;
    ActingOptions acting;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("cleanup", "Find playlists that list a track more than once");
  addLibraryOption(*command, options->library);
  addActingOptions(*command, options->acting, "Delete the entries too many; the first ones stay");
  setAction(*command, chosen, [options](Session& session) {
    OpenedApplication opened(session, options->library);
    const RepeatScan scan = findRepeats(opened.playlists());
    if (session.interrupted()) return session.stopped();
    const Plan plan = opened.changes.cleanUpPlan(scan, choicesOf(scan));
    const Ending ending{.options = options->acting,
                        .plan = plan,
                        .found = nullptr,
                        .hasWork = !plan.playlists.empty(),
                        .hint = "Nothing has been changed; --apply deletes these entries.",
                        .json = [&] { return json(scan); },
                        .text = [&](std::ostream& out) { writeText(out, scan, plan); }};
    return ending.finish(opened);
  });
}

}  // namespace kestrel
