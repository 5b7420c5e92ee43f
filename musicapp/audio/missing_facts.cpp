#include "musicapp/audio/missing_facts.h"

#include <vector>

#include "foundation/library_error.h"
#include "musicapp/audio/audio_index.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

bool lacksSomething(const MediaItem& item) {
  return item.bitrate == 0 || item.fileSize == 0 || item.totalTime == 0 || item.kind.isNull() ||
         item.kind.view() == "AAC audio file";
}

template <auto number>
void fillNumber(MediaItem& item, std::int64_t fact) {
  if (item.*number == 0) item.*number = fact;
}

void fillMissing(const AudioFacts& facts, MediaItem& item, TextPool& texts) {
  for (const TextFact& text : textFacts) {
    const bool isKind = text.item == &MediaItem::kind;
    if ((isKind || (item.*text.item).isNull()) && !(facts.*text.fact).empty())
      item.*text.item = texts.share(facts.*text.fact);
  }
  fillNumber<&MediaItem::totalTime>(item, facts.milliseconds);
  fillNumber<&MediaItem::bitrate>(item, facts.bitrate);
  fillNumber<&MediaItem::sampleRate>(item, facts.sampleRate);
  fillNumber<&MediaItem::sampleDepth>(item, facts.sampleDepth);
  fillNumber<&MediaItem::channels>(item, facts.channels);
  fillNumber<&MediaItem::year>(item, facts.year);
  fillNumber<&MediaItem::trackNumber>(item, facts.trackNumber);
  fillNumber<&MediaItem::trackCount>(item, facts.trackCount);
  fillNumber<&MediaItem::discNumber>(item, facts.discNumber);
  fillNumber<&MediaItem::discCount>(item, facts.discCount);
  fillNumber<&MediaItem::beatsPerMinute>(item, facts.beatsPerMinute);
  item.isCompilation |= facts.isCompilation != 0;
}

}  // namespace

void fillMissingFacts(MediaItems& items, const std::string& library, const FileService& files,
                      Log& log, const LoadWatch& watch) {
  std::vector<MediaItem*> lacking;
  std::vector<std::string> paths;
  items.editBlocks([&](std::vector<MediaItem>& block) {
    for (MediaItem& item : block) {
      if (item.locationFolder.isNull() || !lacksSomething(item)) continue;
      lacking.push_back(&item);
      paths.push_back(filePath(item));
    }
  });
  std::vector<AudioFile> found = audioFilesAt(paths);
  std::size_t count = 0;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (found[i].inode == 0) continue;  // not there
    fillNumber<&MediaItem::fileSize>(*lacking[i], static_cast<std::int64_t>(found[i].size));
    lacking[count] = lacking[i];
    if (count != i) found[count] = std::move(found[i]);
    ++count;
  }
  found.resize(count);
  if (found.empty()) return;

  TextPool& texts = items.newPool();
  AudioIndex index(files, log);
  const auto reading = index.read(found, watch, [&](std::size_t file, const AudioFacts& facts) {
    fillMissing(facts, *lacking[file], texts);
  });
  if (reading.isCancelled)
    throw LibraryError(library, {}, Message::tr("was not read to its end, as you stopped it"),
                       Message::tr("Open it again to go on from there."));
}

}  // namespace kestrel
