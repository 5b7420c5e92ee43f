#include "ui/result_filters.h"

#include <charconv>
#include <vector>

#include "dupes/keeper_pass.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/process.h"

namespace kestrel {

FilterSettings filterSettings(const Preferences& preferences) {
  FilterSettings wanted;
  wanted.rule = preferences.text(settings::filterMatrixButton);
  wanted.ruleNumber = preferences.integer(settings::filterMatrixButton);
  wanted.keeper.folder = preferences.text(settings::filterFolderLoc);
  wanted.keeper.alwaysUnCheck = preferences.boolean(settings::alwaysUnCheck);
  if (preferences.boolean(settings::useFileType))
    wanted.fileType = preferences.text(settings::thisFileType);
  if (preferences.boolean(settings::useBitType))
    wanted.bitRate = preferences.text(settings::thisBitType);
  return wanted;
}

}  // namespace kestrel

namespace kestrel::TextSorter {
namespace {

/// The number that is written exactly so; -1, which no group has, for another text.
std::int32_t groupNumber(std::string_view text) {
  std::int32_t number = -1;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool isExact = error == std::errc() && stop == end && std::to_string(number) == text;
  return isExact ? number : -1;
}

void showProgress(std::size_t groups, std::int64_t ruleNumber) {
  process().with.mainQueue.post([groups, ruleNumber] {
    MainWindowReferences& window = process().textSorter.window;
    window.mainProgressSpinner.setMinimum(0);
    window.mainProgressSpinner.setMaximum(static_cast<double>(groups));
    window.mainProgressSpinner.setValue(0);
    window.mainProgressSpinner.setHidden(false);
    const std::optional<KeeperRule> rule = keeperRule(ruleNumber);
    window.mainProgressSpinnerStatus.setText(
        Message::tr("Filtering by %1")
            .arg(rule ? Message::tr(keeperRuleInfo(*rule).name) : Message()));
  });
}

void endProgress() {
  process().with.mainQueue.post([] {
    ProgressBar& bar = process().textSorter.window.mainProgressSpinner;
    bar.setMaximum(0);
    bar.setValue(0);
    bar.setHidden(true);
  });
}

}  // namespace

bool filterArray(std::span<const std::string> groupNumbers) {
  return filterArray(groupNumbers, [](std::string_view, const GroupDecision&) {});
}

bool filterArray(std::span<const std::string> groupNumbers,
                 FunctionRef<void(std::string_view, const GroupDecision&)> decided) {
  Process& here = process();
  MainWindowReferences& window = here.textSorter.window;
  const FilterSettings wanted = filterSettings(here.with.preferences);
  showProgress(groupNumbers.size(), wanted.ruleNumber);
  std::vector<ResultTrack*> rows;
  rows.reserve(window.bigArrayController.size());
  for (ResultTrack& row : window.bigArrayController.arrangedRows()) rows.push_back(&row);
  std::vector<std::int32_t> numbers;
  numbers.reserve(groupNumbers.size());
  for (const std::string& text : groupNumbers) numbers.push_back(groupNumber(text));
  setKeepers(groupRows(rows, numbers), wanted, here.with.preferences.boolean(settings::keeperMode),
             here.with.random, [&](std::size_t group, const GroupDecision& decision) {
               here.with.mainQueue.postAdvance(window.mainProgressSpinner, 1.0);
               decided(groupNumbers[group], decision);
             });
  endProgress();
  return true;
}

}  // namespace kestrel::TextSorter
