#include "app/choices/field_previews.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "dupes/criteria_preview.h"
#include "foundation/identifiers.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"

namespace kestrel {
namespace {

constexpr int beforePreview = 50;  // milliseconds

/// What is to be counted: with what is ticked, and with each field beside it.
struct Previewed {
  std::vector<std::vector<std::string>> lists;  ///< of criteria; the first is what is ticked
  std::vector<std::size_t> fields;              ///< of the other lists, their places
  GroupingOptions options;
  std::optional<GroupingOptions> withTime;      ///< where the time is a tolerance and not ticked
  std::vector<std::vector<std::string>> fewer;  ///< what is ticked, but for one
  std::vector<std::size_t> fieldsLess;          ///< of those lists, their places
  bool withoutTolerance = false;                ///< it is ticked and may be left out, too
};

Previewed previewedBy(const Preferences& preferences) {
  Previewed previewed;
  const std::vector<std::string> chosen = searchCriteria(preferences);
  previewed.lists.push_back(chosen);
  previewed.options = groupingOptions(preferences);
  const auto with = [&](std::string_view key, std::size_t field) {
    std::vector<std::string> list = chosenCriteria(preferences);
    list.emplace_back(key);
    // The exact time is the last of a search's criteria.
    if (chosen.size() == list.size() && chosen.back() != list.back()) list.push_back(chosen.back());
    previewed.lists.push_back(std::move(list));
    previewed.fields.push_back(field);
  };
  const auto without = [&](std::string_view key, std::size_t field) {
    std::vector<std::string> list = chosen;
    std::erase(list, key);
    if (list.empty()) return;
    previewed.fewer.push_back(std::move(list));
    previewed.fieldsLess.push_back(field);
  };
  std::size_t field = 0;
  for (const Criterion& choice : criterionChoices()) {
    if (std::find(chosen.begin(), chosen.end(), choice.key) != chosen.end())
      without(choice.key, field);
    if (std::find(chosen.begin(), chosen.end(), choice.key) == chosen.end())
      with(choice.key, field);
    ++field;
  }
  if (preferences.boolean(settings::criteriaCBTime)) {
    previewed.withoutTolerance = preferences.boolean(settings::useAproxValue);
    if (!previewed.withoutTolerance) without("realTime", field);
    return previewed;
  }
  if (preferences.boolean(settings::useAproxValue)) {
    previewed.withTime = previewed.options;
    previewed.withTime->toleranceSeconds = toleranceFor(preferences.integer(settings::aproxValue));
  } else {
    with("realTime", field);
  }
  return previewed;
}

FieldPreview countedIn(const TrackStore& store, std::span<const std::uint64_t> items,
                       const Previewed& wanted, FunctionRef<bool()> cancelled) {
  FieldPreview preview;
  preview.withField.resize(criterionChoices().size() + 1);
  const auto tracks = tracksOf(store, items);
  const auto counts = previewCriteria(store, tracks, wanted.lists, wanted.options, cancelled);
  preview.now = counts.front();
  for (std::size_t i = 0; i < wanted.fields.size(); ++i)
    preview.withField[wanted.fields[i]] = counts[i + 1];
  if (wanted.withTime)
    preview.withField.back() =
        previewCriteria(store, tracks, {wanted.lists.data(), 1}, *wanted.withTime, cancelled)
            .front();
  if (preview.now != 0) return preview;
  // Which of the fields keeps duplicates apart?
  preview.withoutField.resize(preview.withField.size());
  const auto fewer = previewCriteria(store, tracks, wanted.fewer, wanted.options, cancelled);
  for (std::size_t i = 0; i < wanted.fieldsLess.size(); ++i)
    preview.withoutField[wanted.fieldsLess[i]] = fewer[i];
  if (wanted.withoutTolerance) {
    GroupingOptions anyTime = wanted.options;
    anyTime.toleranceSeconds = 0;
    preview.withoutField.back() =
        previewCriteria(store, tracks, {wanted.lists.data(), 1}, anyTime, cancelled).front();
  }
  return preview;
}

/// With each further thing that may be passed over.
void countLooser(FieldPreview& preview, const TrackStore& store,
                 std::span<const std::uint64_t> items, const Previewed& wanted,
                 FunctionRef<bool()> cancelled) {
  const auto tracks = tracksOf(store, items);
  for (const LooseInfo& info : loosenings()) {
    GroupingOptions looser = wanted.options;
    looser.loose |= bitOf(info.loose);
    preview.withLoose.push_back(
        looser.loose == wanted.options.loose
            ? preview.now
            : previewCriteria(store, tracks, {wanted.lists.data(), 1}, looser, cancelled).front());
  }
}

}  // namespace

FieldPreviews::FieldPreviews(AppDelegate& delegate)
    : delegate_(delegate),
      pause_(new QTimer(this)),
      wanted_(std::make_shared<std::atomic<int>>(0)) {
  pause_->setSingleShot(true);
  pause_->setInterval(beforePreview);
  connect(pause_, &QTimer::timeout, this, &FieldPreviews::count);
  observe(this, delegate_.observers, [this] {
    if (!isKnown_ && !delegate_.isBusy()) pause_->start();
  });
  observe(this, delegate_.libraryObservers, [this] { outdate(); });
  observe(this, delegate_.summaryObservers, [this] {
    if (counted_.now) tell();
  });
}

void FieldPreviews::outdate() {
  ++*wanted_;
  isKnown_ = false;
  counted_ = {};
  Q_EMIT counted({});
  pause_->start();
}

void FieldPreviews::count() {
  const Preferences& preferences = delegate_.process().with.preferences;
  const auto store = TextSorter::groomedTracksDictionary();
  if (isKnown_ || delegate_.isBusy() || !delegate_.hasSearched() || !delegate_.canSearch() ||
      !store || searchCriteria(preferences).empty())
    return;
  isKnown_ = true;
  const int number = ++*wanted_;
  const auto preview = std::make_shared<FieldPreview>();
  const auto items = std::make_shared<std::vector<std::uint64_t>>();
  const auto previewed = std::make_shared<const Previewed>(previewedBy(preferences));
  const auto cancelled = [wanted = wanted_, number] { return wanted->load() != number; };
  const auto take = [owner = QPointer<FieldPreviews>(this), preview, number] {
    if (!owner || !preview->now || *owner->wanted_ != number) return;
    owner->counted_ = *preview;
    owner->tell();
  };
  delegate_.ask(
      [preview, items, store, previewed, cancelled,
       playlist = delegate_.playlists().returnSelectedPopupItem().decpid,
       &library = delegate_.application()->library()] {
        const auto playlists = library.allPlaylists();
        for (const Playlist& one : *playlists)
          if (decimalText(one.persistentID) == playlist) {
            *items = one.items;
            *preview = countedIn(*store, *items, *previewed, cancelled);
            return;
          }
      },
      [this, preview, items, store, previewed, cancelled, take,
       owner = QPointer<FieldPreviews>(this)] {
        take();
        // Asked for less often, and each by a pass of its own.
        if (owner && preview->now)
          delegate_.ask(
              [preview, items, store, previewed, cancelled] {
                countLooser(*preview, *store, *items, *previewed, cancelled);
              },
              take);
      });
}

void FieldPreviews::tell() {
  const Process& process = delegate_.process();
  const bool isOfThese =
      delegate_.situation() == Situation::result &&
      process.textSorter.storedCriteria == searchCriteria(process.with.preferences);
  const std::size_t groups = delegate_.summary().groups;
  const auto shown = isOfThese && groups <= *counted_.now ? std::optional(groups) : std::nullopt;
  if (shown == counted_.shown && shown) return;
  counted_.shown = shown;
  Q_EMIT counted(counted_);
}

}  // namespace kestrel
