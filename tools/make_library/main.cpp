// kestrel-make-library: writes invented libraries of any size, for tests, benchmarks and the demo.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <string>

#include "tools/make_library/demo.h"
#include "tools/make_library/document.h"
#include "tools/make_library/replace_file.h"

using kestrel::make_library::Layout;
using kestrel::make_library::Options;
using kestrel::make_library::replaceFile;

int main(int argc, char** argv) {
  CLI::App app{"Writes an invented music library document."};
  std::string path;
  Options options;
  std::uint32_t playlists = 0;
  app.add_option("document", path, "The document to write")->required();
  auto* const tracksOption =
      app.add_option("--tracks", options.tracks, "How many tracks")->capture_default_str();
  auto* const seedOption =
      app.add_option("--seed", options.seed, "The same seed gives the same library")
          ->capture_default_str();
  auto* const duplicatesOption =
      app.add_option("--duplicates", options.duplicatePercent,
                     "How many of a hundred tracks are copies of another one")
          ->check(CLI::Range(0, 90))
          ->capture_default_str();
  auto* const playlistsOption =
      app.add_option("--playlists", playlists, "How many playlists beside those of every library")
          ->check(CLI::Range(0, 100'000));
  auto* const folderOption =
      app.add_option("--media-folder", options.mediaFolder, "Absolute folder of the media files")
          ->check([](const std::string& folder) {
            return folder.starts_with('/') && !folder.ends_with('/')
                       ? std::string{}
                       : "The media folder must be absolute, without a slash at its end";
          })
          ->capture_default_str();
  app.add_flag("--demo", options.demo,
               "Write the demo library: few tracks, and real media files beside the document")
      ->excludes(folderOption);
  app.add_flag("--one-key", options.oneKey, "All tracks have the same name and artist");
  app.add_option("--layout", options.layout, "How the document is set out")
      ->transform(
          CLI::CheckedTransformer(std::map<std::string, Layout>{{"tabs", Layout::tabs},
                                                                {"crlf", Layout::crlf},
                                                                {"spaces", Layout::spaces},
                                                                {"compact", Layout::compact}}));
  CLI11_PARSE(app, argc, argv);
  if (*playlistsOption) options.playlists = playlists;
  if (options.demo && !*seedOption) options.seed = kestrel::make_library::kDemoSeed;
  if (options.demo && !*tracksOption) options.tracks = kestrel::make_library::kDemoTracks;
  if (options.demo && !*duplicatesOption) {
    options.duplicatePercent = kestrel::make_library::kDemoDuplicatePercent;
  }

  try {
    if (options.demo) {
      writeDemo(path, options);
    } else {
      replaceFile(path, [&](std::ostream& out) { writeDocument(out, options); });
    }
  } catch (const std::exception& error) {
    std::cerr << "kestrel-make-library: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
