// The values of Rhythmbox's tracks: asked for, and given.
#include <utility>

#include "foundation/library_error.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "platform/files.h"

namespace kestrel {

using std::string;

std::vector<std::optional<TrackValues>> RhythmboxLibrary::valuesOf(
    std::span<const std::uint64_t> tracks) {
  auto values = valuesIn(*this, tracks);
  std::map<string, TrackValues> wanted;
  for (std::size_t i = 0; i < tracks.size(); ++i)
    if (values[i] && !given_.contains(tracks[i]))
      wanted.emplace(*ids_.uriOf(tracks[i]), *values[i]);
  if (wanted.empty()) return values;
  std::map<string, rhythmbox::ValueElements> found;
  if (isLive_) {
    try {
      for (const auto& [uri, held] : wanted)
        if (const auto properties = player_.properties(uri); !properties.empty())
          found.emplace(uri, rhythmbox::valueElements(properties));
    } catch (const BusError& error) {
      fail(Message::tr("Rhythmbox does not answer: %1").arg(error.message),
           Message::tr("Reload the library and try again."));
    }
  } else {
    const MappedFile file = services_.files.map(databasePath_);
    file.checked([&] {
      found = rhythmbox::storedValues({file.bytes().data(), file.bytes().size()}, databasePath_,
                                      wanted);
      return true;
    });
  }
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (!values[i]) continue;
    const auto held = found.find(*ids_.uriOf(tracks[i]));
    if (held == found.end()) continue;
    if (isLive_)
      values[i] = rhythmbox::valuesOf(held->second);
    else  // as they are read, with what the files say
      values[i]->stored = rhythmbox::valuesOf(held->second).stored;
  }
  return values;
}

void RhythmboxLibrary::commitValues() {
  if (given_.empty()) return;
  if (isLive_) {
    giveToPlayer();
    for (const auto& [track, given] : given_) give(taken_, track, given.first, given.second);
    given_.clear();
    return;
  }
  std::map<string, rhythmbox::GivenByUri> byUri;
  for (const auto& [track, given] : given_)
    byUri.emplace(*ids_.uriOf(track), rhythmbox::GivenByUri{given.first, given.second});
  const string bytes =
      rhythmbox::withValues(services_.files.readAll(databasePath_), databasePath_, byUri);
  replaceLibraryFile({realPathOf(databasePath_), databaseStatus_.value_or(FileStatus())},
                     services_.files, services_.log, options_,
                     [&](TextSink& sink) { sink.append(bytes); });
  given_.clear();
  tracks_.reset();
  static_cast<void>(this->tracks());
}

/// All of them, or none as far as the player lets it.
void RhythmboxLibrary::giveToPlayer() {
  std::vector<std::pair<string, rhythmbox::GivenByUri>> before;
  const auto tell = [&](const string& uri, const rhythmbox::GivenByUri& given) {
    player_.setProperties(uri, rhythmbox::propertiesOf(given.which, given.values));
  };
  try {
    for (const auto& [track, given] : given_) {
      const string& uri = *ids_.uriOf(track);
      const auto now = rhythmbox::valuesOf(rhythmbox::valueElements(player_.properties(uri)));
      before.push_back({uri, {given.first, now}});
      tell(uri, {given.first, given.second});
    }
  } catch (const BusError& error) {
    try {
      for (const auto& [uri, given] : before) tell(uri, given);
    } catch (const BusError&) {  // it is gone: what it was told last is in the history
    }
    fail(Message::tr("Rhythmbox does not take what it is given: %1").arg(error.message),
         Message::tr("Reload the library and try again."));
  }
}

}  // namespace kestrel
