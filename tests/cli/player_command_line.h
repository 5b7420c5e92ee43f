/// The command line on a Music Player Daemon of the test's own, in which the song b is there twice.
#pragma once

#include "tests/cli/command_line.h"
#include "tests/musicapp/mpd/mpd_server.h"

namespace kestrel::testing {

class PlayerCommandLine : public CommandLine {
 protected:
  void SetUp() override {
    if (!MpdTestServer::isInstalled()) GTEST_SKIP() << "mpd is not installed here";
    serve();
  }
  /// Anew, with lines of settings.
  void serve(const std::string& settings = {}) {
    server.emplace(settings);
    copy = server->addSong(gone, "b");
    server->addSong("more/e.mp3", "e");
    server->connection().tell({"update"});
    server->waitForUpdate();
    std::filesystem::create_directories(server->folder / "support");
    address = server->address();
  }
  void note(const std::string& uri, const char* name, const char* value) const {
    server->connection().tell({"sticker", "set", "song", uri, name, value});
  }
  /// "NAME=VALUE " of each, by name.
  [[nodiscard]] std::string noted(const std::string& uri) const {
    std::string all;
    MpdConnection connection = server->connection();
    for (const auto& [name, value] : mpdStickers(connection, uri)) all += name + "=" + value + " ";
    return all;
  }

  const std::string kept = "songs/b.mp3", gone = "more/copies/b.mp3";
  std::string copy;  ///< the path of `gone`
  std::string address;
  std::optional<MpdTestServer> server;
};

}  // namespace kestrel::testing
