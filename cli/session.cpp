#include "cli/session.h"

#include "cli/filtered_output.h"
#include "foundation/library_error.h"
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
    : cancel_(preferences.liveInteger(settings::cancelGetDupes)),
      interrupt_(preferences),
      log_(makeLog(verbose)),
      process({.openLibrary = nullptr,
               .preferences = preferences,
               .mainQueue = mainQueue_,
               .log = *log_,
               .clock = clock,
               .random = random,
               .files = files}),
      progress(process.textSorter.window) {
  settings::registerFirstValues(preferences);
}

std::shared_ptr<MediaLibrary> Session::open(const std::string& path) {
  progress.show("Reading " + path + " ...");
  // Opened here rather than on first use, so that what is wrong with it reaches the user.
  auto library = openLibrary(path, {files, *log_, random, clock});
  process.with.openLibrary = [library] { return library; };
  progress.clear();
  return library;
}

bool Session::interrupted() const { return cancel_.load(std::memory_order_relaxed) == 1; }

int Session::stopped() {
  progress.clear();
  complain("stopped; nothing was changed");
  return 1;
}

}  // namespace kestrel
