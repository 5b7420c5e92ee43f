#include "cli/session.h"

#include "cli/filtered_output.h"
#include "library/snapshot.h"
#include "musicapp/applications.h"
#include "platform/settings.h"

namespace kestrel {
namespace {

std::unique_ptr<Log> makeLog(bool verbose) {
  if (verbose) return std::make_unique<StreamLog>();
  return std::make_unique<NullLog>();
}

}  // namespace

Session::Session(bool verbose)
    : log_(makeLog(verbose)),
      process({.openLibrary = nullptr,
               .preferences = preferences_,
               .mainQueue = mainQueue_,
               .log = *log_,
               .clock = clock,
               .random = random,
               .files = files}) {
  settings::registerFirstValues(preferences_);
}

std::shared_ptr<MediaLibrary> Session::open(const std::string& path) {
  progress.show("Reading " + path + " ...");
  // Opened here rather than on first use, so that what is wrong with it reaches the user.
  auto library = openLibrary(path, {files, *log_, random, clock});
  progress.clear();
  return library;
}

std::shared_ptr<const TrackStore> Session::snapshot(MediaLibrary& library, bool checkbox) {
  const auto items = library.allMediaItems();
  progress.count("Itemizing music library...", items->size());
  auto tracks =
      takeSnapshot(items, files, *log_, checkbox, nullptr, [this] { progress.advance(); });
  progress.clear();
  return tracks;
}

int Session::stopped() {
  progress.clear();
  complain("stopped; nothing was changed");
  return 1;
}

}  // namespace kestrel
