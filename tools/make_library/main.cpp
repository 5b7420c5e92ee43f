// kestrel-make-library: writes invented libraries of any size, for tests, benchmarks and the demo.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <exception>
#include <getopt.h>
#include <iostream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>

#include "tools/make_library/demo.h"
#include "tools/make_library/document.h"
#include "tools/make_library/replace_file.h"

namespace kestrel::make_library {
namespace {

constexpr char help[] =
    "Usage: kestrel-make-library [OPTIONS] DOCUMENT\n"
    "Writes an invented music library document.\n"
    "  --tracks N            how many tracks (10000)\n"
    "  --seed N              the same seed gives the same library (1)\n"
    "  --duplicates N        how many of a hundred tracks are copies of another one, to 90 (12)\n"
    "  --playlists N         how many playlists beside those of every library, to 100000\n"
    "  --media-folder PATH   absolute folder of the media files, without a slash at its end\n"
    "  --layout NAME         how the document is set out: tabs, crlf, spaces or compact\n"
    "  --one-key             all tracks have the same name and artist\n"
    "  --demo                the demo library: few tracks, and real media files beside the "
    "document\n";

// Their places are what getopt_long says of them.
enum Choice { tracks, seed, duplicates, playlists, mediaFolder, layout, oneKey, demo, helping };
constexpr option choices[] = {{"tracks", required_argument, nullptr, tracks},
                              {"seed", required_argument, nullptr, seed},
                              {"duplicates", required_argument, nullptr, duplicates},
                              {"playlists", required_argument, nullptr, playlists},
                              {"media-folder", required_argument, nullptr, mediaFolder},
                              {"layout", required_argument, nullptr, layout},
                              {"one-key", no_argument, nullptr, oneKey},
                              {"demo", no_argument, nullptr, demo},
                              {"help", no_argument, nullptr, helping},
                              {nullptr, 0, nullptr, 0}};

template <typename Number>
Number number(std::string_view text, Number most) {
  Number value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value > most)
    throw std::invalid_argument(std::string(text) + " is no number from 0 to " +
                                std::to_string(most));
  return value;
}

Layout layoutNamed(std::string_view name) {
  constexpr std::string_view names[] = {"tabs", "crlf", "spaces", "compact"};
  const auto* found = std::find(std::begin(names), std::end(names), name);
  if (found == std::end(names))
    throw std::invalid_argument(std::string(name) + " is none of tabs, crlf, spaces, compact");
  return static_cast<Layout>(found - names);
}

int run(int argc, char** argv) {
  Options options;
  std::optional<std::uint32_t> trackCount, duplicatePercent;
  std::optional<std::uint64_t> seedGiven;
  std::optional<std::string> folder;
  for (int choice; (choice = getopt_long(argc, argv, "", choices, nullptr)) != -1;) {
    const std::string value = optarg ? optarg : "";
    if (choice == helping) return std::cout << help, EXIT_SUCCESS;
    if (choice == '?') return EXIT_FAILURE;
    if (choice == tracks) trackCount = number<std::uint32_t>(value, UINT32_MAX);
    if (choice == seed) seedGiven = number<std::uint64_t>(value, UINT64_MAX);
    if (choice == duplicates) duplicatePercent = number<std::uint32_t>(value, 90);
    if (choice == playlists) options.playlists = number<std::uint32_t>(value, 100'000);
    if (choice == mediaFolder) folder = value;
    if (choice == layout) options.layout = layoutNamed(value);
    if (choice == oneKey) options.oneKey = true;
    if (choice == demo) options.demo = true;
  }
  if (optind + 1 != argc) throw std::invalid_argument("one document is to be named");
  if (folder && (options.demo || !folder->starts_with('/') || folder->ends_with('/')))
    throw std::invalid_argument(
        "the media folder must be absolute, without a slash at its end; the demo has its own");
  if (folder) options.mediaFolder = *folder;
  options.tracks = trackCount.value_or(options.demo ? kDemoTracks : options.tracks);
  options.seed = seedGiven.value_or(options.demo ? kDemoSeed : options.seed);
  options.duplicatePercent =
      duplicatePercent.value_or(options.demo ? kDemoDuplicatePercent : options.duplicatePercent);
  const std::string path = argv[optind];
  if (options.demo)
    writeDemo(path, options);
  else
    replaceFile(path, [&](std::ostream& out) { writeDocument(out, options); });
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace kestrel::make_library

int main(int argc, char** argv) {
  try {
    return kestrel::make_library::run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "kestrel-make-library: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
