// The controller's part that is about files which are not where the library says.

#include <utility>

#include "app/controller/app_delegate.h"
#include "library/unsearched.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {

void AppDelegate::countMissing() {
  MissingFiles missing;
  std::size_t count = 0;
  if (const auto tracks = TextSorter::groomedTracksDictionary()) {
    missing = missingFiles(*tracks);
    // Results still show the songs that have left the library.
    count = tracks->size() - tracks->carriedOver();
  }
  process_.with.mainQueue.post(
      [this, missing = std::move(missing), count, notes = notesOn(application_->library())] {
        missing_ = missing;
        trackCount_ = count;
        notes_ = notes;
      });
}

bool AppDelegate::findFilesIn(const std::string& folder,
                              std::function<void(const FoundElsewhere&)> found) {
  if (!application_) return false;
  const auto result = std::make_shared<FoundElsewhere>();
  const auto search = [this, folder, result] {
    // Maps are for locations as the library has them.
    const auto plain = opener_(libraryPath_, {});
    *result = findElsewhere(*plain, maps_, folder, process_.with.files);
  };
  return run(search, [result, found = std::move(found)] { found(*result); });
}

bool AppDelegate::keepMaps(const std::vector<MapSuggestion>& suggestions) {
  if (isBusy() || !application_) return false;
  std::vector<PathMaps::Map> maps = maps_.list();
  for (const MapSuggestion& suggestion : suggestions) maps.push_back(suggestion.map);
  kestrel::keepMaps(process_.with.preferences, libraryPath_, PathMaps(std::move(maps)));
  searchAfterOpening_ = hasSearched_;
  return openLibrary(libraryPath_);
}

bool AppDelegate::compareWithoutFiles() {
  if (isBusy() || !application_) return false;
  process_.textSorter.withoutFiles = true;
  return renew();
}

bool AppDelegate::compareWithFiles() {
  if (isBusy() || !application_) return false;
  process_.textSorter.withoutFiles = false;
  return renew();
}

bool AppDelegate::comparesWithoutFiles() const { return process_.textSorter.withoutFiles; }

}  // namespace kestrel
