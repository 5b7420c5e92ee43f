// libraries: what is found on this machine, each with the address that other commands take.

#include <chrono>
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "musicapp/applications.h"
#include "musicapp/found_libraries.h"

namespace kestrel {
namespace {

// Most libraries are read in less; the first reading of a folder takes longer, and what it has
// read counts at the next.
constexpr auto patience = std::chrono::seconds(3);

FoundLibrary lookAt(Session& session, const std::string& address, const Application& application) {
  ApplicationServices services = session.services(address);
  services.watch.cancelled = [&session] { return session.interrupted(); };
  FoundLibrary found = lookAtLibrary(address, application, services, patience);
  session.progress.clear();
  return found;
}

void writeText(std::ostream& out, const std::vector<FoundLibrary>& libraries) {
  if (libraries.empty()) {
    out << "No library was found in the usual places; every command takes the path of one.\n";
    return;
  }
  TextTable table({{"Address", TextTable::Align::left, 80},
                   {"Kind"},
                   {"Tracks", TextTable::Align::right},
                   {"To be changed", TextTable::Align::left, 120}});
  for (const FoundLibrary& one : libraries)
    table.add({one.address, one.application->name.english(),
               one.tracks ? std::to_string(*one.tracks) : "?",
               one.obstacle.empty() ? "yes" : "no: " + one.obstacle.english()});
  table.write(out);
}

int list(Session& session, bool asJson) {
  std::vector<FoundLibrary> libraries;
  for (const Application& application : applications())
    for (const std::string& address : application.found(session.services({}))) {
      if (session.interrupted()) return session.stopped();
      libraries.push_back(lookAt(session, address, application));
    }
  if (!asJson) {
    writeText(std::cout, libraries);
    return 0;
  }
  Json all = Json::array();
  for (const FoundLibrary& one : libraries)
    all.push_back({{"address", one.address},
                   {"kind", one.application->name.english()},
                   {"tracks", one.tracks ? Json(*one.tracks) : Json()},
                   {"changeable", one.obstacle.empty()},
                   {"obstacle", one.obstacle.empty() ? Json() : Json(one.obstacle.english())}});
  std::cout << dump(all, 1) << '\n';
  return 0;
}

}  // namespace

void addLibrariesCommand(CLI::App& app, Action& chosen) {
  auto json = std::make_shared<bool>(false);
  CLI::App* command = app.add_subcommand("libraries", "List the libraries found on this machine");
  command->add_flag("--json", *json, "Write JSON");
  setAction(*command, chosen, [json](Session& session) { return list(session, *json); });
}

}  // namespace kestrel
