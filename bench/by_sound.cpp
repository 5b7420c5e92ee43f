// kestrel-bench-by-sound FOLDER [TRACKS [NOISE]]: how long the search by sound takes once all files
// have been listened to, on fingerprints that are made here and lie in a cache in FOLDER; and how
// many of the planted variations it finds.

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>
#include <unordered_map>

#include "bench/random_sounds.h"
#include "platform/files.h"
#include "platform/log.h"
#include "sound/sound_cache.h"
#include "sound/sound_groups.h"

namespace kestrel::bench {
namespace {

class Stopwatch {
 public:
  /// Seconds since the last call.
  double lap() {
    const auto now = std::chrono::steady_clock::now();
    return std::chrono::duration<double>(now - std::exchange(last_, now)).count();
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

std::vector<AudioFile> files(std::size_t count) {
  std::vector<AudioFile> files(count);
  for (std::size_t i = 0; i < count; ++i) {
    files[i].path = "/music/artist " + std::to_string(i % 997) + "/" + std::to_string(i) + ".mp3";
    files[i].size = files[i].inode = i + 1;
  }
  return files;
}

void fill(const std::string& database, std::span<const AudioFile> files,
          std::span<const Sound> sounds) {
  SqliteDatabase cache(database, {.access = SqliteOptions::Access::write});
  SqliteTransaction transaction(cache);
  SqliteStatement insert = cache.prepare(
      "INSERT OR REPLACE INTO file (path, size, modified, inode, fault, milliseconds, checksum, "
      "fingerprint, silence) VALUES (?, ?, 0, ?, 0, ?, '', ?, ?)");
  for (std::size_t i = 0; i < files.size(); ++i) {
    const auto& items = sounds[i].fingerprint;
    insert.run(Blob{files[i].path}, files[i].size, files[i].inode, sounds[i].milliseconds,
               Blob{{reinterpret_cast<const char*>(items.data()), items.size() * sizeof items[0]}},
               sounds[i].silence);
  }
  transaction.commit();
}

int run(const std::string& folder, std::size_t count, unsigned noise) {
  ::setenv("XDG_CACHE_HOME", folder.c_str(), 1);
  SystemFiles system;
  NullLog log;
  SoundCache cache(system, log);
  const std::vector<AudioFile> wanted = files(count);
  std::vector<std::uint32_t> originals;
  {
    RandomSounds random(1);
    random.noise = noise;
    fill(folder + "/Kestrel/sounds.sqlite", wanted, random.tracks(count, originals));
  }
  const auto never = [] { return false; };
  Stopwatch watch;
  const auto busy = std::clock();
  SoundIndex index;
  cache.readKnown(wanted, [&](std::size_t file, Sound&& sound) {
    index.add(static_cast<std::uint32_t>(file), sound);
  });
  const double reading = watch.lap();
  const std::vector<SoundPair> candidates = index.candidates(never);
  const double indexing = watch.lap();
  std::vector<AudioFile> needed;
  std::vector<std::uint32_t> places;
  std::unordered_map<std::uint32_t, Sound> sounds;
  for (const auto& [one, other] : candidates)
    for (const std::uint32_t file : {one, other})
      if (sounds.try_emplace(file).second) {
        needed.push_back(wanted[file]);
        places.push_back(file);
      }
  cache.readKnown(
      needed, [&](std::size_t file, Sound&& sound) { sounds[places[file]] = std::move(sound); });
  const auto groups = soundGroups(
      candidates,
      [&](std::uint32_t one, std::uint32_t other) {
        return likenessOf(sounds.at(one), sounds.at(other)).soundsSame();
      },
      never);
  const double comparing = watch.lap();
  const double processor = static_cast<double>(std::clock() - busy) / CLOCKS_PER_SEC;
  std::size_t planted = 0, found = 0, wrong = 0;
  for (std::uint32_t i = 0; i < count; ++i) planted += originals[i] != i ? 1 : 0;
  for (const auto& group : groups)
    for (const std::uint32_t file : group) {
      found += file != group.front() && originals[file] == originals[group.front()] ? 1 : 0;
      wrong += originals[file] != originals[group.front()] ? 1 : 0;
    }
  std::cout << "{\"tracks\":" << count << ",\"reading\":" << reading << ",\"indexing\":" << indexing
            << ",\"comparing\":" << comparing << ",\"seconds\":" << reading + indexing + comparing
            << ",\"processor\":" << processor << ",\"candidates\":" << candidates.size()
            << ",\"groups\":" << groups.size() << ",\"planted\":" << planted
            << ",\"found\":" << found << ",\"wrong\":" << wrong << "}\n";
  return 0;
}

}  // namespace
}  // namespace kestrel::bench

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    std::cerr << "usage: kestrel-bench-by-sound FOLDER [TRACKS [NOISE]]\n";
    return 2;
  }
  const auto number = [&](int i, unsigned otherwise) {
    return argc > i ? static_cast<unsigned>(std::strtoul(argv[i], nullptr, 10)) : otherwise;
  };
  return kestrel::bench::run(argv[1], number(2, 100'000), number(3, 60));
}
