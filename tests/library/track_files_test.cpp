#include "library/track_files.h"

#include <gtest/gtest.h>

#include "scripting/templates.h"
#include "tests/library/library_harness.h"
#include "tests/scripting/recording_runner.h"

namespace kestrel::testing {
namespace {

TEST(TrackFiles, AskTheApplicationAndPassOnItsAnswer) {
  LibraryHarness library;
  RecordingRunner application;
  library.process.with.scripts = &application;
  using Answer = std::optional<std::string>;
  for (const auto& [answer, capitalized] : std::initializer_list<std::pair<Answer, Answer>>{
           {"matched", "Matched"},
           {"no longer AVAILABLE", "No Longer Available"},
           {"éTÉ à l'ombre", "Été À L'ombre"},
           {"", ""},
           {std::nullopt, std::nullopt}}) {
    application.answer.text = answer;
    EXPECT_EQ(TextSorter::cloudStatusByTrackPid("A1"), capitalized);
    EXPECT_EQ(TextSorter::locationByTrackPid("A1"), answer);
  }
  EXPECT_EQ(application.scripts[0], scriptText(script::Template::TrackCloudStatus, {"A1"}));
  EXPECT_EQ(application.scripts[1], scriptText(script::Template::TrackLocation, {"A1"}));
  TextSorter::addtohook("/a.mp3");
  EXPECT_EQ(application.scripts.back(), scriptText(script::Template::AddFileToMusic, {"/a.mp3"}));
  EXPECT_TRUE(library.log.lines().empty());
}

}  // namespace
}  // namespace kestrel::testing
