#include "library/missing_files.h"

#include "library/track_store.h"
#include "musicapp/map_suggestions.h"

namespace kestrel {

Message MissingFiles::sentence() const {
  return Message::tr("%1 of %Ln files are not where this library says (%2/...)",
                     "%1 of %Ln file is not where this library says (%2/...)",
                     static_cast<std::int64_t>(files))
      .arg(missing)
      .arg(beginning);
}

MissingFiles missingFiles(const TrackStore& tracks) {
  MissingFiles result;
  const auto forEachFile = [&](auto&& visit) {
    for (const TrackRecord& record : tracks.records())
      if (record.item().locationType == LocationType::file &&
          !record.item().locationFolder.isNull())
        visit(record);
  };
  forEachFile([&](const TrackRecord& record) {
    ++result.files;
    result.missing += record.availability() == FileAvailability::missing ? 1 : 0;
  });
  if (!result.areMost()) return result;
  LocationBeginnings beginnings;
  forEachFile([&](const TrackRecord& record) {
    if (record.availability() == FileAvailability::missing)
      beginnings.add(record.item().locationFolder.view());
  });
  result.beginning = shownLocation(beginnings.list().front().folder);
  return result;
}

}  // namespace kestrel
