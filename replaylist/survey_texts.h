/// What the replaylist window says about the keeper rule: its header, the keepers' title, and a
/// caption for each track with the value by which keepers were chosen.
///
/// The operations of the class ReplaylistControl take the rule that is in force; the functions
/// beneath take it as an argument and read no settings. A rule number outside 1 to 15 has empty
/// captions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/track_record.h"
#include "models/styled_text.h"

namespace kestrel {

class ShortDateTimeFormatter;

/// "Oldest Date Added".
std::string_view ruleTitleCaption(std::int64_t rule) noexcept;
/// "Date Added".
std::string_view ruleAttributeCaption(std::int64_t rule) noexcept;

/// The window's header, 12 points throughout. The bold of "Show Tracks." begins and ends one
/// character early, deliberately: users know the header by its looks.
StyledText replaylistHeader(std::int64_t rule);
/// "Keepers: Oldest Date Added", centred.
StyledText keepersTitle(std::int64_t rule);
/// "Date Added: 8/13/09, 8:05 PM"; the rules without a value to show have a remark in place of it.
/// The value is empty when the track has no such date.
StyledText attributeCaption(std::int64_t rule, const TrackRecord& track,
                            ShortDateTimeFormatter& dates);

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

/// The window's header for the rule in force.
StyledText configureMeTitle();

/// Sets the tracks panel's titles: the plain one to this text, the keepers' to the rule in force.
/// On the main thread.
void configureTitleFilterInfoForPlaylist(std::string_view name);

/// The track's caption for the rule in force. On the main thread.
StyledText configureFilterInfo(const TrackRecord& track);

/// The clock text of a duration in milliseconds.
std::string transformRealTime(std::int64_t milliseconds);

}  // namespace kestrel::ReplaylistControl
