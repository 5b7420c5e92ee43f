#include "app/controller/criteria.h"

#include <gtest/gtest.h>

#include "platform/preferences.h"
#include "platform/settings.h"

namespace kestrel {
namespace {

using Keys = std::vector<std::string>;

struct CriteriaTest : ::testing::Test {
  CriteriaTest() {
    settings::registerFirstValues(preferences);
    settings::registerAppValues(preferences);
  }
  Preferences preferences;
};

TEST_F(CriteriaTest, TheExactTimeIsACriterionAndATolerancesIsNot) {
  EXPECT_EQ(searchCriteria(preferences), (Keys{"tName", "tArtist"}));
  preferences.set(settings::criteriaCBTime, true);
  EXPECT_EQ(searchCriteria(preferences), (Keys{"tName", "tArtist", "realTime"}));
  setTimeTolerance(preferences, 1);
  EXPECT_EQ(searchCriteria(preferences), (Keys{"tName", "tArtist"}));
  // A hand-written list must not undo the tolerance.
  preferences.set(settings::criteria, Keys{"realTime", "tAlbum"});
  EXPECT_EQ(searchCriteria(preferences), Keys{"tAlbum"});
}

TEST_F(CriteriaTest, TheToleranceShownIsTheOneThatTheSearchAccepts) {
  EXPECT_EQ(timeTolerance(preferences), 0);
  setTimeTolerance(preferences, 3);
  EXPECT_EQ(preferences.integer(settings::aproxValue), 2);
  EXPECT_EQ(timeTolerance(preferences), 3);
  setTimeTolerance(preferences, 0);
  EXPECT_FALSE(preferences.boolean(settings::useAproxValue));
  EXPECT_EQ(timeTolerance(preferences), 0);
  preferences.set(settings::useAproxValue, true);
  for (const auto& [stored, shown] : std::vector<std::pair<std::int64_t, int>>{
           {0, 1}, {-5, 1}, {std::int64_t{1} << 40, 2147483647}}) {
    preferences.set(settings::aproxValue, stored);
    EXPECT_EQ(timeTolerance(preferences), shown) << stored;
  }
}

TEST_F(CriteriaTest, FieldsAreKeptInTheOrderOfTicking) {
  setCriterion(preferences, "tAlbum", true);
  setCriterion(preferences, "tName", false);
  setCriterion(preferences, "tAlbum", true);
  setCriterion(preferences, "tName", true);
  EXPECT_EQ(chosenCriteria(preferences), (Keys{"tArtist", "tAlbum", "tName"}));
}

}  // namespace
}  // namespace kestrel
