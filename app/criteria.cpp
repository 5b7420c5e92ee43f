#include "app/criteria.h"

#include <algorithm>
#include <limits>
#include <string>

#include "app/settings.h"
#include "platform/settings.h"

namespace kestrel {
namespace {

constexpr std::string_view exactTime = "realTime";

// Titles are marked for translation where they are shown.
constexpr Criterion choices[] = {
    {"tName", "Name"},
    {"tArtist", "Artist"},
    {"tAlbum", "Album"},
    {"tAlbumArtist", "Album Artist"},
    {"tComposer", "Composer"},
    {"tGenre", "Genre"},
    {"tGrouping", "Grouping"},
    {"tYear", "Year"},
    {"tTrackNum", "Track Number"},
    {"tDiscNum", "Disc Number"},
    {"tKind", "Kind"},
    {"tBit", "Bit Rate"},
    {"tBPM", "Beats per Minute"},
    {"realSize", "Size"},
    {"tFileName", "File Name"},
    {"tComments", "Comments"},
};

}  // namespace

std::span<const Criterion> criterionChoices() noexcept { return choices; }

std::string criterionName(std::string_view key) {
  std::string name(key);
  if (key == exactTime) name = "Time";
  const auto* found = std::find_if(std::begin(choices), std::end(choices),
                                   [&](const Criterion& choice) { return choice.key == key; });
  if (found != std::end(choices)) name = found->title;
  if (found == std::end(choices) && key != exactTime) return name;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return name;
}

std::vector<std::string> chosenCriteria(const Preferences& preferences) {
  std::vector<std::string> keys = preferences.textArray(settings::criteria);
  std::erase(keys, exactTime);
  return keys;
}

void setCriterion(Preferences& preferences, std::string_view key, bool chosen) {
  std::vector<std::string> keys = chosenCriteria(preferences);
  std::erase(keys, key);
  if (chosen) keys.emplace_back(key);
  preferences.set(settings::criteria, std::move(keys));
}

std::vector<std::string> searchCriteria(const Preferences& preferences) {
  std::vector<std::string> keys = chosenCriteria(preferences);
  if (preferences.boolean(settings::criteriaCBTime) &&
      !preferences.boolean(settings::useAproxValue))
    keys.emplace_back(exactTime);
  return keys;
}

int timeTolerance(const Preferences& preferences) {
  if (!preferences.boolean(settings::useAproxValue)) return 0;
  constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
  return static_cast<int>(
             std::clamp<std::int64_t>(preferences.integer(settings::aproxValue), 0, most)) +
         1;
}

void setTimeTolerance(Preferences& preferences, int seconds) {
  preferences.set(settings::useAproxValue, seconds > 0);
  if (seconds > 0) preferences.set(settings::aproxValue, std::int64_t{seconds} - 1);
}

}  // namespace kestrel
