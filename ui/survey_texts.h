/// What the replaylist window says about the keeper rule: its header, the keepers' title, and a
/// caption for each track with the value by which keepers were chosen.
///
/// The operations of the class ReplaylistControl take the rule that is in force; the functions
/// beneath take it as an argument and read no settings. A number that no rule has has empty
/// captions. Texts are English unless they are asked for in other words.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/message.h"
#include "library/track_record.h"
#include "ui/models/styled_text.h"

namespace kestrel {

class ShortDateTimeFormatter;

/// The window's header, 12 points throughout. The bold of "Show Tracks." begins and ends one
/// character early: users know the header by its looks.
StyledText replaylistHeader(std::int64_t rule, MessageText inWords = inEnglish);
/// "Keepers: Oldest Date Added", centred.
StyledText keepersTitle(std::int64_t rule, MessageText inWords = inEnglish);
/// "Date Added: 8/13/09, 8:05 PM"; the rules without a value to show have a remark in place of it.
/// The value is empty when the track has no such date.
StyledText attributeCaption(std::int64_t rule, const TrackRecord& track,
                            ShortDateTimeFormatter& dates, MessageText inWords = inEnglish);

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

/// For the rule in force: the window's header, and the keepers' title.
StyledText configureMeTitle(MessageText inWords = inEnglish);
StyledText configureKeepersTitle(MessageText inWords = inEnglish);

/// Sets the tracks panel's titles: the plain one to this text, the keepers' to the rule in force.
/// On the main thread.
void configureTitleFilterInfoForPlaylist(Message name);

/// The track's caption for the rule in force. On the main thread.
StyledText configureFilterInfo(const TrackRecord& track);

/// The clock text of a duration in milliseconds.
std::string transformRealTime(std::int64_t milliseconds);

}  // namespace kestrel::ReplaylistControl
