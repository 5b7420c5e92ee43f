#include <cstdlib>

#include "tests/cli/command_line.h"
#include "tests/sound/encoder.h"

namespace kestrel::testing {
namespace {

/// Two songs with copies in other formats, one of which is tagged wrong and one another take.
class SoundCommand : public CommandLine {
 protected:
  SoundCommand() {
    setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  }
  ~SoundCommand() override {
    unsetenv("XDG_CACHE_HOME");
    unsetenv("XDG_DATA_HOME");
  }
  std::string library() const {
    constexpr double seconds = 8;
    const Tune tea{.melody = 1, .seconds = seconds}, rain{.melody = 2, .seconds = seconds};
    encode(folder / "tea.wav", tea);
    encode(folder / "tea.flac", tea, {.codec = "flac"});
    encode(folder / "tea.mp3", tea, {.codec = "libmp3lame", .kilobits = 48});
    encode(folder / "rain.wav", rain);
    encode(folder / "take.wav", Tune{.melody = 30, .seconds = seconds});
    folder.write("torn.mp3", "no audio");
    const auto make = [&](int id, const char* file, const char* name, int plays) {
      return song(id, std::to_string(id) + "F", folder / file,
                  text("Name", name) + text("Artist", "Ann") + number("Play Count", plays));
    };
    return document(make(1, "tea.wav", "Tea", 9) + make(2, "tea.flac", "Tea", 1) +
                        make(3, "rain.wav", "Rain", 9) + make(4, "take.wav", "Rain", 1) +
                        make(5, "torn.mp3", "Tea", 0) + make(6, "tea.mp3", "Unknown", 0),
                    playlist("Library", "100", flag("Master"), {1, 2, 3, 4, 5, 6}));
  }
};

TEST_F(SoundCommand, SaysHowAlikeCopiesSoundAndDoubtsThem) {
  const std::string path = library();
  const Json plain = json({"find", path, "--json"});
  EXPECT_FALSE(plain["groups"][0].contains("sound"));
  const Json found = json({"find", path, "--rule", "2", "--sound", "--json"});
  ASSERT_EQ(found["groups"].size(), 2U);
  const Json &rain = found["groups"][1], &tea = found["groups"][0];
  ASSERT_EQ(tea["tracks"].size(), 3U);
  EXPECT_EQ(tea["sound"]["kind"], "sameAudio");
  EXPECT_FALSE(tea["tracks"][0].contains("sound")) << "the keeper";
  EXPECT_EQ(tea["tracks"][1]["sound"],
            Json({{"kind", "sameAudio"}, {"likeness", 100}, {"later", 0.0}, {"longer", 0}}));
  EXPECT_EQ(tea["tracks"][1]["tSound"], "same audio");
  EXPECT_EQ(tea["tracks"][2]["sound"], Json({{"kind", "unknown"}, {"fault", "noAudio"}}));
  EXPECT_FALSE(tea.contains("doubts"));
  EXPECT_EQ(rain["sound"]["kind"], "different");
  EXPECT_LT(rain["sound"]["likeness"], 60);
  EXPECT_EQ(rain["doubts"][0]["kind"], "sound");

  const ProgramResult text = run({"find", path, "--rule", "2", "--sound", "--doubtful"});
  expectIn(text.output, "Group 1 of 1");
  expectIn(text.output, "doubtful: sounds different: only ");
  expectIn(text.errors, "torn.mp3, it cannot be read as audio");
}

TEST_F(SoundCommand, HoldsBackWhatDoesNotSoundTheSame) {
  const std::string path = library();
  const Texts options = {
      path,    "--rule", "2", "--only-same-sound", "--other-files", "--outside-media-folder",
      "--json"};
  const Json trash = json(joined({"trash"}, options));
  std::map<std::string, std::string> reasons;
  for (const Json& file : trash["files"]) {
    const std::string whole = file["path"];
    reasons[whole.substr(whole.rfind('/') + 1)] = file["heldBack"];
  }
  EXPECT_EQ(reasons["tea.flac"], "");
  EXPECT_TRUE(reasons["take.wav"].starts_with("it sounds different from what is kept"));
  EXPECT_EQ(reasons["torn.mp3"],
            "it is not known whether it sounds the same: it cannot be read as audio");
  const Json remove = json(joined({"remove", "--keep-files"}, options));
  std::map<std::string, bool> leaves;
  for (const Json& track : remove["tracks"])
    leaves[track["hexpid"]] = track["heldBack"].get<std::string>().empty();
  EXPECT_EQ(leaves, (std::map<std::string, bool>{{"2F", true}, {"4F", false}, {"5F", false}}));
}

TEST_F(SoundCommand, LeavesWhatWasChangedSinceItWasListenedTo) {
  const std::string path = library(), plan = folder / "plan.json";
  const Texts options = {"--rule", "2", "--only-same-sound", "--outside-media-folder"};
  const auto outcomes = [&](const char* command, const std::string& changed) {
    library();
    const bool isPlan = std::string_view(command) == "plan";
    std::ofstream(plan)
        << run(joined({command, path, isPlan ? "--trash" : "--json"}, options)).output;
    if (!changed.empty())  // the same size
      encode(folder / changed, Tune{.melody = 7, .seconds = 8}, {.codec = "pcm_s16le"});
    std::map<std::string, std::string> reasons;
    const Json report =
        Json::parse(run({"apply", plan, "--outside-media-folder", "--json"}).output)["report"];
    for (const Json& one : report["outcomes"])
      reasons[std::string(one["what"]) + " " + std::string(one["id"])] = one["reason"];
    return reasons;
  };
  const char* reason = "it, or what is kept in its place, was changed since it was listened to";
  EXPECT_EQ(outcomes("plan", "tea.wav")["file 2F"], reason) << "the kept one";
  EXPECT_EQ(outcomes("trash", "tea.wav")["file 2F"], reason);
  EXPECT_EQ(outcomes("remove", "tea.wav")["track 2F"], reason);
  EXPECT_EQ(outcomes("plan", "")["file 2F"], "");
}

TEST_F(SoundCommand, FindsWhatSoundsTheSameWhateverItsTags) {
  const std::string path = library();
  const Json found = json({"find", path, "--by-sound", "--rule", "2", "--json"});
  EXPECT_EQ(found["bySound"], true);
  ASSERT_EQ(found["groups"].size(), 1U);
  Texts ids;
  for (const Json& track : found["groups"][0]["tracks"]) ids.push_back(track["hexpid"]);
  EXPECT_EQ(ids, (Texts{"1F", "2F", "6F"}));
  EXPECT_EQ(found["groups"][0]["tracks"][2]["sound"]["kind"], "same");
  // What follows a search goes on with these groups.
  EXPECT_EQ(json({"trash", path, "--by-sound", "--rule", "2", "--json"})["files"].size(), 2U);
  EXPECT_EQ(run({"find", path, "--by-sound", "--match", "tName"}).status, 2);
  EXPECT_EQ(run({"find", path, "--by-sound", "--without-files"}).status, 2);
  for (const char* file : {"tea.wav", "tea.flac", "tea.mp3", "rain.wav", "take.wav", "torn.mp3"})
    std::filesystem::remove(folder / file);
  const ProgramResult gone = run({"find", path, "--by-sound"});
  EXPECT_EQ(gone.status, 2);
  expectIn(gone.errors, "none of the files of 6 songs is here");
}

}  // namespace
}  // namespace kestrel::testing
