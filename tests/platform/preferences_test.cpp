#include "platform/preferences.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

#include "platform/log.h"
#include "platform/settings.h"
#include "tests/platform/memory_files.h"

namespace kestrel {
namespace {

using Texts = std::vector<std::string>;
using Number = std::int64_t;

TEST(Preferences, AreReadInTheTypeThatIsAskedFor) {
  const struct {
    PreferenceValue value;
    bool boolean;
    std::int64_t integer;
    std::string text;
    Texts texts;
  } cases[] = {
      {true, true, 1, "1", {}},
      {false, false, 0, "0", {}},
      {Number{-7}, true, -7, "-7", {}},
      {"YES", true, 0, "YES", {}},
      {"no", false, 0, "no", {}},
      {"0", false, 0, "0", {}},
      {" -012 of", true, -12, " -012 of", {}},
      {"", false, 0, "", {}},
      {Texts{"1", ""}, false, 0, "", {"1", ""}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Preferences preferences;
    preferences.set("key", c.value);
    EXPECT_EQ(preferences.boolean("key"), c.boolean);
    EXPECT_EQ(preferences.integer("key"), c.integer);
    EXPECT_EQ(preferences.text("key"), c.text);
    EXPECT_EQ(preferences.textArray("key"), c.texts);
    EXPECT_EQ(preferences.liveInteger("key"), c.integer);
  }
}

TEST(Preferences, DefaultsCountUntilSomethingIsSet) {
  Preferences preferences;
  const auto& live = preferences.liveInteger("key");
  EXPECT_FALSE(preferences.contains("key"));
  EXPECT_EQ(live, 0);
  preferences.registerDefault("key", Number{5});
  EXPECT_TRUE(preferences.contains("key"));
  EXPECT_EQ(live, 5);
  preferences.set("key", "7");
  preferences.registerDefault("key", Number{6});
  EXPECT_EQ(preferences.integer("key"), 7);
  EXPECT_EQ(live, 7);
  preferences.remove("key");
  EXPECT_EQ(preferences.text("key"), "6");
  EXPECT_EQ(live, 6);
}

TEST(Preferences, ASearchSeesItsCancellationFromAnotherThread) {
  Preferences preferences;
  const auto& cancel = preferences.liveInteger(settings::cancelGetDupes);
  std::thread window([&] { preferences.set(settings::cancelGetDupes, true); });
  while (cancel != 1) std::this_thread::yield();
  window.join();
  EXPECT_EQ(preferences.integer(settings::cancelGetDupes), 1);
}

class StoredPreferences : public testing::Test {
 protected:
  FilePreferences open() { return {path, files, log}; }

  const std::string path = "/home/user/.config/kestrel/settings.ini";
  MemoryFiles files;
  MemoryLog log;
};

TEST_F(StoredPreferences, EveryValueComesBack) {
  std::vector<PreferenceValue> values = {Number{-42}, true, Texts{},
                                         Texts{"", "a, \"b\"", "\u00FC\n"}};
  for (const char* text :
       {"plain text = with signs ; #", "", "  edges ", "\"quoted\"", "[not a list", "two\nlines\\",
        "/media/caf\xE9/raw bytes", "\u2605 \u00DCn\u00EF"})
    values.emplace_back(text);
  for (std::size_t i = 0; i < values.size(); ++i) open().set("key" + std::to_string(i), values[i]);
  FilePreferences again = open();
  for (std::size_t i = 0; i < values.size(); ++i) {
    Preferences expected;
    expected.set("key", values[i]);
    const std::string key = "key" + std::to_string(i);
    EXPECT_TRUE(again.contains(key)) << i;
    EXPECT_EQ(again.text(key), expected.text("key")) << i;
    EXPECT_EQ(again.integer(key), expected.integer("key")) << i;
    EXPECT_EQ(again.textArray(key), expected.textArray("key")) << i;
  }
  EXPECT_EQ(log.lines(), Texts{});
}

TEST_F(StoredPreferences, WhatAUserWroteStays) {
  files.put(path,
            "; mine\r\n[other]\nsortColumn=theirs\n\n[settings]\n# note\nkeeperMode = 1\n"
            "not a setting\nfuture=x\nsortColumn=tArtist\ncopyToPlaylist=[1,2]\n[last]\nx=y");
  FilePreferences preferences = open();
  EXPECT_EQ(log.lines(), (Texts{path + ", line 8: this is no setting and is passed over.",
                                path + ", line 11: this is no setting and is passed over."}));
  EXPECT_EQ(preferences.text(settings::sortColumn), "tArtist");
  EXPECT_TRUE(preferences.boolean(settings::keeperMode));
  preferences.set(settings::sortColumn, "tName");
  preferences.set(settings::caseSensitive, true);
  preferences.remove(settings::keeperMode);
  EXPECT_EQ(files.readAll(path),
            "; mine\r\n[other]\nsortColumn=theirs\n\n[settings]\n# note\n"
            "not a setting\nfuture=x\nsortColumn=tName\ncopyToPlaylist=[1,2]\ncaseSensitive=1\n"
            "[last]\nx=y");
}

TEST_F(StoredPreferences, WhatConcernsOneRunIsNotStored) {
  files.put(path, "[settings]\ncompletedLaunch=1\n");
  FilePreferences preferences = open();
  EXPECT_FALSE(preferences.boolean(settings::completedLaunch));
  for (const auto key :
       {settings::cancelGetDupes, settings::completedLaunch, settings::trackLibraryInitialized}) {
    preferences.set(key, true);
    EXPECT_TRUE(preferences.boolean(key));
  }
  EXPECT_EQ(files.readAll(path), "[settings]\ncompletedLaunch=1\n");
}

TEST_F(StoredPreferences, AFileThatCannotBeWrittenIsLoggedAndLeftAlone) {
  files.put(path, "[settings]\na=1\n");
  FilePreferences preferences = open();
  Texts told;
  preferences.whenUnwritable([&](const Message& reason) { told.push_back(reason.english()); });
  files.failAfter(0, EACCES);  // reading what is to be changed
  preferences.set("a", "2");
  files.failAfter(1, ENOSPC);
  preferences.set("a", "3");
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_EQ(log.lines()[1],
            path + ": cannot be written: No space left on device. Free some space and try again.");
  EXPECT_EQ(told, Texts{log.lines()[0]}) << "once";
  EXPECT_EQ(preferences.text("a"), "3");
  EXPECT_EQ(files.readAll(path), "[settings]\na=1\n");
}

}  // namespace
}  // namespace kestrel
