#include "app/controller/criteria.h"

#include <algorithm>
#include <limits>
#include <string>

#include "platform/preferences.h"
#include "platform/settings.h"

namespace kestrel {
namespace {

constexpr std::string_view exactTime = "realTime";

constexpr Criterion choices[] = {
    {"tName", Message::literal("Name"), Message::literal("name")},
    {"tArtist", Message::literal("Artist"), Message::literal("artist")},
    {"tAlbum", Message::literal("Album"), Message::literal("album")},
    {"tAlbumArtist", Message::literal("Album Artist"), Message::literal("album artist")},
    {"tComposer", Message::literal("Composer"), Message::literal("composer")},
    {"tGenre", Message::literal("Genre"), Message::literal("genre")},
    {"tGrouping", Message::literal("Grouping"), Message::literal("grouping")},
    {"tYear", Message::literal("Year"), Message::literal("year")},
    {"tTrackNum", Message::literal("Track Number"), Message::literal("track number")},
    {"tDiscNum", Message::literal("Disc Number"), Message::literal("disc number")},
    {"tKind", Message::literal("Kind"), Message::literal("kind")},
    {"tBit", Message::literal("Bit Rate"), Message::literal("bit rate")},
    {"tBPM", Message::literal("Beats per Minute"), Message::literal("beats per minute")},
    {"realSize", Message::literal("Size"), Message::literal("size")},
    {"tFileName", Message::literal("File Name"), Message::literal("file name")},
    {"tComments", Message::literal("Comments"), Message::literal("comments")},
};

}  // namespace

void settings::registerAppValues(Preferences& preferences) {
  preferences.registerDefault(criteria, std::vector<std::string>{"tName", "tArtist"});
}

std::span<const Criterion> criterionChoices() noexcept { return choices; }

Message criterionName(std::string_view key) {
  if (key == exactTime) return Message::tr("time");
  if (key == "tCompilation") return Message::tr("compilation");
  const auto* found = std::find_if(std::begin(choices), std::end(choices),
                                   [&](const Criterion& choice) { return choice.key == key; });
  return found != std::end(choices) ? Message::tr(found->name)
                                    : Message::verbatim(std::string(key));
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

LooseSet chosenLoose(const Preferences& preferences) {
  return looseSetOf(preferences.textArray(settings::looseMatching));
}

void setLoose(Preferences& preferences, Loose loose, bool chosen) {
  const LooseSet bit = bitOf(loose), before = chosenLoose(preferences);
  const auto now = static_cast<LooseSet>(chosen ? before | bit : before & ~bit);
  std::vector<std::string> words;
  for (const LooseInfo& info : loosenings())
    if (now & bitOf(info.loose)) words.emplace_back(info.word);
  preferences.set(settings::looseMatching, std::move(words));
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
