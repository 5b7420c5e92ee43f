/// A real Music Player Daemon of a test's own: its music, lists, socket and settings lie in a
/// folder of the test, it is heard by none, and ends with the test.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "musicapp/mpd/mpd_library.h"
#include "tests/musicapp/application_world.h"
#include "tools/make_library/audio_files.h"
#include "tools/make_library/audio_tags.h"

namespace kestrel::testing {

class MpdTestServer : public ApplicationWorld<MpdLibrary> {
 public:
  static bool isInstalled() { return std::system("command -v mpd >/dev/null") == 0; }

  /// With the songs a to d, by two artists, and without playlists. `settings` are lines of its own.
  explicit MpdTestServer(std::string settings = {}, std::string password = {})
      : settings_(std::move(settings)), password_(std::move(password)) {
    for (const char* title : {"a", "b", "c", "d"})
      addSong(std::string("songs/") + title + ".mp3", title);
    folder.write("playlists/.keep", "");
    start();
    connection().tell({"update"});
    waitForUpdate();
  }
  ~MpdTestServer() { end(SIGKILL); }
  MpdTestServer(const MpdTestServer&) = delete;
  MpdTestServer& operator=(const MpdTestServer&) = delete;

  void start() {
    const std::string conf = folder.write(
        "mpd.conf", "music_directory \"" + folder / "music" + "\"\nplaylist_directory \"" +
                        folder / "playlists" + "\"\ndb_file \"" + folder / "db" +
                        "\"\nsticker_file \"" + folder / "stickers" + "\"\nlog_file \"" +
                        folder / "log" + "\"\nbind_to_address \"" + socket() +
                        "\"\nauto_update \"no\"\nzeroconf_enabled \"no\"\nmetadata_to_use "
                        "\"+comment,+grouping\"\n"
                        "audio_output {\n type \"null\"\n name \"null\"\n}\n" +
                        settings_);
    ::unlink(socket().c_str());
    process_ = ::fork();
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::setenv("HOME", folder.path().c_str(), 1);
      const int nowhere = ::open("/dev/null", O_RDWR);
      for (const int stream : {0, 1, 2}) ::dup2(nowhere, stream);
      ::execlp("mpd", "mpd", "--no-daemon", conf.c_str(), nullptr);
      ::_exit(127);
    }
    for (int tries = 0; tries < 500; ++tries) {
      try {
        static_cast<void>(connection());
        return;
      } catch (const LibraryError&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      }
    }
    throw std::runtime_error("mpd does not start: " + TemporaryFolder::read(folder / "log"));
  }
  void end(int signal) {
    if (process_ <= 0) return;
    ::kill(process_, signal);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
  }

  [[nodiscard]] std::string socket() const { return folder / "socket"; }
  [[nodiscard]] std::string address() const { return "mpd:" + socket(); }
  [[nodiscard]] MpdConnection connection() const {
    return MpdConnection({socket(), 0, password_, {}});
  }
  void waitForUpdate() const {
    MpdConnection asked = connection();
    while (!asked.value({"status"}, "updating_db").empty())
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  /// A file of half a second, below the music.
  std::string addSong(const std::string& name, const std::string& title) const {
    make_library::Track track;
    static const make_library::Format mp3{"MPEG audio file", "mp3"};
    track.format = &mp3;
    track.name = title;
    track.artist = "artist of " + title;
    track.genre = "Genre";
    return folder.write("music/" + name,
                        withTags(make_library::makeAudio("mp3", 500, 32, 440).bytes, track));
  }
  /// Each time it is written a list is a second younger.
  void writeList(const std::string& name, const std::vector<std::string>& uris) {
    std::string lines;
    for (const std::string& uri : uris) lines += uri + "\n";
    const std::string path = folder.write("playlists/" + name + ".m3u", lines);
    const timespec time{1'700'000'000 + ++writes_, 0}, times[] = {time, time};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
  }
  [[nodiscard]] std::vector<std::string> stored(const std::string& name) const {
    std::vector<std::string> lines;
    std::ifstream file(folder / ("playlists/" + name + ".m3u"));
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  /// Reads what the server has, as another run of the program would. `behind` the address.
  void open(const std::string& behind = {}) {
    app = std::make_unique<MpdLibrary>(address() + behind, services());
  }

 private:
  std::string settings_, password_;
  pid_t process_ = 0;
  time_t writes_ = 0;
};

}  // namespace kestrel::testing
