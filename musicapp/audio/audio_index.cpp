#include "musicapp/audio/audio_index.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

namespace kestrel {
namespace {

using std::size_t;

/// To be raised whenever the same file gives other facts, or the table changes.
constexpr int indexVersion = 3;

/// "audio, title, ...": whether there are facts, and they.
std::string columns() {
  std::string list = "audio";
  for (const TextFact& fact : textFacts) list.append(",").append(fact.name);
  for (const NumberFact& fact : numberFacts) list.append(",").append(fact.name);
  return list;
}

void readRow(const SqliteStatement& row, AudioFacts& facts) {
  int column = FileCache::firstColumn + 1;
  for (const TextFact& fact : textFacts) (facts.*fact.fact).assign(row.view(column++));
  for (const NumberFact& fact : numberFacts) facts.*fact.fact = row.integer(column++);
}

void bindRow(SqliteStatement& row, const AudioFacts* facts) {
  static const AudioFacts none;
  const AudioFacts& kept = facts ? *facts : none;
  row << std::int64_t{facts ? 1 : 0};
  for (const TextFact& fact : textFacts) row << Blob{kept.*fact.fact};
  for (const NumberFact& fact : numberFacts) row << kept.*fact.fact;
}

}  // namespace

AudioIndex::AudioIndex(const FileService& files, Log& log)
    : cache_({"audio.sqlite", indexVersion, columns()}, files, log) {}

void AudioIndex::readKnown(std::string_view folder,
                           FunctionRef<void(AudioFile&&, const AudioFacts*)> found) {
  AudioFacts facts;
  cache_.forEachBelow(folder, [&](AudioFile&& file, const SqliteStatement& row) {
    const bool isAudio = row.integer(FileCache::firstColumn) != 0;
    if (isAudio) readRow(row, facts);
    found(std::move(file), isAudio ? &facts : nullptr);
  });
}

AudioIndex::Reading AudioIndex::read(std::span<const AudioFile> files, const LoadWatch& watch,
                                     Found found) {
  Reading reading;
  std::vector<size_t> unknown;
  std::vector<std::pair<size_t, std::int64_t>> ages;  // that earlier states say, by place
  AudioFacts known;
  cache_.lookUp(
      files,
      [&](size_t file, const SqliteStatement& row) {
        if (row.integer(FileCache::firstColumn) == 0) return reading.failed.push_back(file);
        readRow(row, known);
        found(file, known);
      },
      [&](size_t file, const SqliteStatement* earlier) {
        unknown.push_back(file);
        if (!earlier) return;
        readRow(*earlier, known);
        if (known.added != 0) ages.emplace_back(file, known.added);
      });
  std::sort(ages.begin(), ages.end());

  const auto readFile = [&](size_t file) {
    std::optional<AudioFacts> facts;
    try {
      facts = readAudioFacts(files[file].path);
    } catch (const std::exception&) {  // a damaged file that asks for too much memory
    }
    const auto age = std::lower_bound(ages.begin(), ages.end(), std::pair(file, INT64_MIN));
    if (facts && age != ages.end() && age->first == file)
      facts->added = std::min(facts->added, age->second);
    const bool isFinal = facts.has_value();
    return FileCache::Finding{isFinal, [&, file, facts = std::move(facts)](SqliteStatement* row) {
                                facts ? found(file, *facts) : reading.failed.push_back(file);
                                if (row) bindRow(*row, facts ? &*facts : nullptr);
                              }};
  };
  const FileCache::Reading anew = cache_.readAnew(files, unknown, watch, readFile);
  reading.readAnew = anew.done;
  reading.isCancelled = anew.isCancelled;
  std::sort(reading.failed.begin(), reading.failed.end());
  return reading;
}

}  // namespace kestrel
