// tracks: every song of a library.

#include <iostream>

#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "foundation/text_helpers.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

void writeJson(std::ostream& out, const TrackStore& tracks, const Session& session) {
  out << '[';
  const char* separator = "\n";
  for (const TrackRecord& record : tracks.records()) {
    if (session.interrupted()) return;
    Json object = Json::object();
    addKeys(object, record);
    out << separator << dump(object);
    separator = ",\n";
  }
  out << (tracks.empty() ? "]\n" : "\n]\n");
}

void writeText(std::ostream& out, const TrackStore& tracks, const Session& session) {
  using Align = TextTable::Align;
  TextTable table({{"ID", Align::left, 16},
                   {"Name", Align::left, 40},
                   {"Artist", Align::left, 32},
                   {"Album", Align::left, 32},
                   {"Time", Align::right},
                   {"Kind", Align::left, 28},
                   {"Size", Align::right}});
  for (const TrackRecord& record : tracks.records()) {
    if (session.interrupted()) return;
    const MediaItem& item = record.item();
    table.add({std::string(record.value(TrackKey::hexpid).text()), std::string(item.title.view()),
               std::string(item.artist.view()), std::string(item.album.view()),
               TextSorter::makeTimeHumanReadable(item.totalTime), std::string(item.kind.view()),
               std::string(record.value(TrackKey::tSize).text())});
  }
  table.write(out, "", [&] { return session.interrupted(); });
}

int listTracks(Session& session, const ReadingOptions& options) {
  const auto tracks = session.snapshot(*session.open(options.library));
  if (session.interrupted()) return session.stopped();
  if (options.json)
    writeJson(std::cout, *tracks, session);
  else
    writeText(std::cout, *tracks, session);
  return session.interrupted() ? session.stopped() : 0;
}

}  // namespace

void addTracksCommand(CLI::App& app, Action& chosen) {
  addReadingCommand(app, chosen, "tracks", "List every song",
                    "Write JSON, with every key of every record", listTracks);
}

}  // namespace kestrel
