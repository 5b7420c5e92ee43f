#include "tests/musicapp/rhythmbox/rhythmbox_world.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <systemd/sd-bus.h>

#include "musicapp/file_url.h"

namespace kestrel::testing {
namespace {

constexpr char busName[] = "org.gnome.Rhythmbox3";

bool isThere(const std::string& uri) {
  std::string path;
  return pathOfFileUrl(uri, path) && std::filesystem::exists(path);
}

std::string listElement(const std::string& name, const std::string& type,
                        const std::vector<std::string>& uris) {
  std::string text = "  <playlist name=\"" + name +
                     "\" show-browser=\"false\" browser-position=\"180\" "
                     "search-type=\"search-match\" type=\"" +
                     type + "\"";
  if (uris.empty()) return text + "/>\n";
  text += ">\n";
  for (const std::string& uri : uris) text += "    <location>" + uri + "</location>\n";
  return text + "  </playlist>\n";
}

}  // namespace

PrivateBus::PrivateBus(const TemporaryFolder& folder) : started_(folder / "started") {
  folder.write("services/player.service",
               std::string("[D-BUS Service]\nName=") + busName + "\nExec=/bin/touch " + started_);
  const std::string configuration = folder.write(
      "bus.conf", "<busconfig><type>session</type><listen>unix:dir=" + folder.path() +
                      "</listen><servicedir>" + folder.path() +
                      "/services</servicedir><policy context='default'><allow send_destination='*' "
                      "eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
                      "</busconfig>");
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
  daemon_ = ::fork();
  if (daemon_ == 0) {
    ::dup2(ends[1], 3);
    ::dup2(::open("/dev/null", O_WRONLY), 2);  // what it says of limits
    const std::string config = "--config-file=" + configuration;
    ::execlp("dbus-daemon", "dbus-daemon", config.c_str(), "--nofork", "--print-address=3",
             nullptr);
    ::_exit(127);
  }
  ::close(ends[1]);
  for (char c = 0; ::read(ends[0], &c, 1) == 1 && c != '\n';) address_ += c;
  ::close(ends[0]);
  if (address_.empty()) ADD_FAILURE() << "dbus-daemon did not start";
  ::setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
}

PrivateBus::~PrivateBus() {
  // Another world may have come before this one went.
  const char* address = ::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address && address_ == address) ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ::kill(daemon_, SIGTERM);
  ::waitpid(daemon_, nullptr, 0);
}

StandInPlayer::StandInPlayer(std::vector<List> lists)
    : lists_(std::move(lists)),
      dies_(new (::mmap(nullptr, sizeof *dies_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                        -1, 0)) std::atomic<int>(-1)) {
  sd_bus_open_user(&bus_);
  for (const char* path : {"/org/gnome/Rhythmbox3", "/org/gnome/Rhythmbox3/PlaylistManager",
                           "/org/gnome/Rhythmbox3/RhythmDB"})
    sd_bus_add_object(
        bus_, nullptr, path,
        [](sd_bus_message* m, void* self, sd_bus_error*) { return handle(m, self, nullptr); },
        this);
  EXPECT_GE(sd_bus_request_name(bus_, busName, 0), 0);
  thread_ = std::thread([this] {
    while (!ends_)
      if (sd_bus_process(bus_, nullptr) == 0) sd_bus_wait(bus_, 5000);
  });
}

StandInPlayer::~StandInPlayer() {
  ends_ = true;
  thread_.join();
  sd_bus_flush_close_unref(bus_);
  ::munmap(dies_, sizeof *dies_);
}

StandInPlayer::List* StandInPlayer::find(const std::string& name) {
  const auto found = std::find_if(lists_.begin(), lists_.end(),
                                  [&](const List& list) { return list.name == name; });
  return found == lists_.end() ? nullptr : &*found;
}

std::vector<std::string> StandInPlayer::uris(const std::string& list) {
  const std::lock_guard lock(mutex_);
  return find(list) ? find(list)->uris : std::vector<std::string>{"no such list"};
}

void StandInPlayer::set(const std::string& list, std::vector<std::string> uris) {
  const std::lock_guard lock(mutex_);
  find(list)->uris = std::move(uris);
}

std::string StandInPlayer::described() {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const List& list : lists_) {
    text += list.name + ":";
    for (const std::string& uri : list.uris) text += " " + uri;
    text += "\n";
  }
  return text;
}

int StandInPlayer::handle(sd_bus_message* message, void* self, void*) {
  return static_cast<StandInPlayer*>(self)->answer(message);
}

int StandInPlayer::answer(sd_bus_message* message) {
  const std::lock_guard lock(mutex_);
  const std::string member = sd_bus_message_get_member(message);
  const auto text = [&] {
    const char* read = "";
    return sd_bus_message_read(message, "s", &read) > 0 ? std::string(read) : std::string();
  };
  const auto refuse = [&](const char* why) {
    return sd_bus_reply_method_errorf(message, "org.gnome.Rhythmbox3.Refused", "%s", why);
  };
  if (member == "GetPlaylists") {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(message, &reply);
    sd_bus_message_open_container(reply, 'a', "s");
    for (const List& list : lists_) sd_bus_message_append(reply, "s", list.name.c_str());
    sd_bus_message_close_container(reply);
    const int sent = sd_bus_send(bus_, reply, nullptr);
    sd_bus_message_unref(reply);
    return sent < 0 ? sent : 1;
  }
  if (member == "Activate") {
    const char *action = nullptr, *uri = nullptr;
    int plays = 1;
    sd_bus_message_read(message, "sav", &action, 1, "(sb)", &uri, &plays);
    if (uri && !plays) {
      loaded_.emplace_back(uri);
      if (List* recent = find("Smart")) recent->uris.emplace_back(uri);
    }
    return sd_bus_reply_method_return(message, nullptr);
  }
  if (member == "SetEntryProperties" || member == "GetEntryProperties")
    return answerProperties(message, member.starts_with("Set"));
  const std::string first = text(), second = text();
  List* list = find(first);
  const bool makes = member == "CreatePlaylist";
  if (makes ? list != nullptr : !list || (list->isAutomatic && member != "ExportPlaylist"))
    return refuse("no such playlist, or one too many");
  if (member == "ExportPlaylist") {
    std::string entries;
    int count = 0;
    for (const std::string& uri : list->uris)
      if (isThere(uri))
        entries += "File" + std::to_string(++count) + "=" + uri + "\nTitle1=File1=\n";
    std::string path;
    pathOfFileUrl(second, path);
    if (count == 0) ++windows;
    if (count > 0)
      std::ofstream(path) << "[playlist]\nNumberOfEntries=" << count << "\n" << entries;
    return sd_bus_reply_method_return(message, nullptr);
  }
  if (second != "kestrel:none") {
    const int number = changes++;
    if (number == *dies_) {
      sd_bus_creds* asker = nullptr;
      pid_t process = 0;
      sd_bus_query_sender_creds(message, SD_BUS_CREDS_PID, &asker);
      sd_bus_creds_get_pid(asker, &process);
      sd_bus_creds_unref(asker);
      ::kill(process, SIGKILL);
      return 1;
    }
    if (number >= fails_ && number < fails_ + failures_) return refuse("as it was told to");
  }
  if (makes) lists_.push_back({first, {}});
  if (member == "DeletePlaylist") lists_.erase(lists_.begin() + (list - lists_.data()));
  if (member == "RemoveFromPlaylist") std::erase(list->uris, second);
  if (member == "AddToPlaylist" && isThere(second) &&
      std::find(list->uris.begin(), list->uris.end(), second) == list->uris.end())
    list->uris.push_back(second);
  return sd_bus_reply_method_return(message, nullptr);
}

int StandInPlayer::answerProperties(sd_bus_message* message, bool takes) {
  const char* uri = "";
  sd_bus_message_read(message, "s", &uri);
  const bool isLoaded = std::find(loaded_.begin(), loaded_.end(), uri) != loaded_.end();
  const auto song = songs_.find(uri);
  if (!isLoaded && song == songs_.end())
    return sd_bus_reply_method_errorf(message, "org.gnome.Rhythmbox3.Refused", "no such entry");
  if (isLoaded)
    return sd_bus_reply_method_return(message, "a{sv}", 3, "location", "s", uri, "play-count", "u",
                                      7, "rating", "d", 3.0);
  if (!takes) {
    auto& held = song->second;
    const auto whole = [&](const char* name) { return static_cast<unsigned>(held[name]); };
    return sd_bus_reply_method_return(message, "a{sv}", 6, "location", "s", uri, "comment", "s", "",
                                      "play-count", "u", whole("play-count"), "last-played", "u",
                                      whole("last-played"), "first-seen", "u", whole("first-seen"),
                                      "rating", "d", held["rating"]);
  }
  // The one type that each takes; what comes as another is passed over, without an error.
  sd_bus_message_enter_container(message, 'a', "{sv}");
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* name = "";
    sd_bus_message_read(message, "s", &name);
    const bool isReal = std::string(name) == "rating";
    double real = 0;
    unsigned number = 0;
    if (sd_bus_message_enter_container(message, 'v', isReal ? "d" : "u") > 0) {
      isReal ? sd_bus_message_read(message, "d", &real)
             : sd_bus_message_read(message, "u", &number);
      song->second[name] = isReal ? real : number;
      sd_bus_message_exit_container(message);
    } else {
      sd_bus_message_skip(message, "v");
    }
    sd_bus_message_exit_container(message);
  }
  return sd_bus_reply_method_return(message, nullptr);
}

RhythmboxWorld::RhythmboxWorld() {
  ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  bus = std::make_unique<PrivateBus>(folder);
  std::string database = "<?xml version=\"1.0\" standalone=\"yes\"?>\n<rhythmdb version=\"2.0\">\n";
  for (const std::string title : {"a", "b", "c", "d"}) {
    folder.write("music/" + title + " \xC3\xA9.wav", title);
    database += "  <entry type=\"song\">\n    <title>" + title + "</title>\n    <location>" +
                uri(title) + "</location>\n  </entry>\n";
  }
  folder.write("music/other \xC3\xA9.wav", "other");
  folder.write("data/rhythmbox/rhythmdb.xml", database + "</rhythmdb>\n");
  playlists = folder.write(
      "data/rhythmbox/playlists.xml",
      "<?xml version=\"1.0\"?>\n<rhythmdb-playlists>\n" +
          listElement("Mix", "static", {uri("a"), uri("b")}) + listElement("Empty", "static", {}) +
          listElement("Inner", "static", {uri("other"), uri("b")}) +
          listElement("Smart", "automatic", {}) + listElement("Play Queue", "queue", {uri("a")}) +
          listElement("Mix", "static", {uri("d")}) + "</rhythmdb-playlists>\n");
  open();
}

RhythmboxWorld::~RhythmboxWorld() { app.reset(); }

void RhythmboxWorld::open() {
  app.reset();
  app = std::make_unique<RhythmboxLibrary>(folder / "data/rhythmbox", services(), options);
}

void RhythmboxWorld::startPlayer(bool withNamesakes) {
  std::vector<StandInPlayer::List> lists{{"Empty", {}},
                                         {"Inner", {uri("other"), uri("b")}},
                                         {"Mix", {uri("a"), uri("b")}},
                                         {"Smart", {uri("c")}, true}};
  if (withNamesakes) lists.push_back({"Mix", {uri("d")}});
  player = std::make_unique<StandInPlayer>(std::move(lists));
  for (const char* title : {"a", "b", "c", "d"}) player->know(uri(title));
  open();
}

std::string RhythmboxWorld::uri(const std::string& title) const {
  return fileUrlOfPath(folder / "music/" + title + " \xC3\xA9.wav");
}

std::string RhythmboxWorld::shown(const std::string& name) const {
  std::string text;
  auto titles = titlesIn(*app);
  for (const std::uint64_t entry : list(name).items) text += titles[entry];
  return text;
}

}  // namespace kestrel::testing
