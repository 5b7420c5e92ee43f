/// The texts of a track record that the record itself words, such as "3 of 12", for people who read
/// another language.
#pragma once

#include <string_view>

#include "foundation/message.h"
#include "library/track_record.h"

namespace kestrel {

/// One of the fixed words of records and of the music application's answers ("YES", "Matched") as a
/// message; any other text as it stands.
Message worded(std::string_view text);

/// The text under this key, in English the same as the record's value. What comes from the library,
/// names for instance, stays as it stands.
Message wordedText(const TrackRecord& record, TrackKey key);

}  // namespace kestrel
