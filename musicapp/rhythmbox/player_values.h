/// What Rhythmbox has of a song's values, in its file and while it runs, and changing the file.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "musicapp/track_values.h"
#include "platform/session_bus.h"

namespace kestrel::rhythmbox {

/// Texts by the names of elements: those that say a value and are there.
using ValueElements = std::map<std::string, std::string>;

/// Why the running player is given none; a sentence without full stop.
Message whyNoComments();

TrackValues valuesOf(const ValueElements& elements);
/// The elements among the properties of a song.
ValueElements valueElements(const std::map<std::string, std::string>& properties);
/// As the player takes them while it runs: nothing is a zero, or an empty text.
std::map<std::string, SessionBus::Property> propertiesOf(TrackValueSet which,
                                                         const TrackValues& values);

/// The elements of the songs at these places in the player's file. Throws LibraryError in the name
/// of `file`.
std::map<std::string, ValueElements> storedValues(std::string_view document,
                                                  const std::string& file,
                                                  const std::map<std::string, TrackValues>& wanted);
/// The file with songs, by their places, given values of these sorts: in place, all else stays to
/// the byte. Throws likewise.
struct GivenByUri {
  TrackValueSet which;
  TrackValues values;
};
std::string withValues(std::string_view document, const std::string& file,
                       const std::map<std::string, GivenByUri>& given);

}  // namespace kestrel::rhythmbox
