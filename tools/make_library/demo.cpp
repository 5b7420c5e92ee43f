#include "tools/make_library/demo.h"

#include <ostream>
#include <set>
#include <string>

#include "tools/make_library/audio_files.h"
#include "tools/make_library/audio_tags.h"
#include "tools/make_library/cover_art.h"
#include "tools/make_library/document.h"
#include "tools/make_library/random.h"
#include "tools/make_library/replace_file.h"

namespace kestrel::make_library {
namespace {

constexpr std::uint32_t kMissingPerMille = 40;
constexpr std::uint32_t kCoverlessPerMille = 250;
// Files are small because their bit rates are: this much lower than those of real music.
constexpr std::uint32_t kBitRateDivisor = 5;

class MediaFiles {
 public:
  explicit MediaFiles(std::uint64_t seed)
      : random_(seed, Stream::mediaFile), covers_(seed, Stream::cover) {}

  // Writes the track's file and takes over into the track what is true of the file.
  void write(Track& track) {
    if (track.path.empty()) return;
    takeFreePath(track);
    Audio audio = makeAudio(track.format->extension, track.totalTime,
                            track.bitRate / kBitRateDivisor, random_.between(220, 880));
    track.totalTime = audio.milliseconds;
    track.bitRate = audio.bitRate;
    track.sampleRate = audio.sampleRate;
    const std::string bytes = withTags(audio.bytes, track);
    track.size = bytes.size();
    if (random_.chance(kMissingPerMille)) return;
    const std::filesystem::path path = track.path;
    std::filesystem::create_directories(path.parent_path());
    writeFile(path, bytes);
    const std::filesystem::path folder = path.parent_path();
    if (!withCovers_.insert(folder).second || covers_.chance(kCoverlessPerMille)) return;
    writeFile(folder / "cover.png", coverArt(covers_.below(UINT32_MAX)));
  }

 private:
  static void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    replaceFile(path, [&](std::ostream& out) {
      out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
  }

  // Two albums of one artist can bear the same title.
  void takeFreePath(Track& track) {
    while (!taken_.insert(track.path).second) {
      track.path.insert(track.path.size() - track.format->extension.size() - 1, " bis");
    }
  }

  Random random_, covers_;
  std::set<std::string> taken_;
  std::set<std::filesystem::path> withCovers_;
};

}  // namespace

void writeDemo(const std::filesystem::path& document, Options options) {
  const std::filesystem::path folder =
      std::filesystem::absolute(document).lexically_normal().parent_path();
  options.demo = true;
  options.mediaFolder = (folder / "Media").string();
  std::filesystem::create_directories(folder);
  MediaFiles files(options.seed);
  replaceFile(document, [&](std::ostream& out) {
    writeDocument(out, options, [&](Track& track) { files.write(track); });
  });
}

}  // namespace kestrel::make_library
