/// Searches that listen to files: for how members of groups sound, and by sound alone.
#pragma once

#include "cli/search.h"
#include "cli/session.h"
#include "dupes/track_sounds.h"

namespace kestrel {

/// Throws UsageError where no file may be looked for.
void checkListening(const Session& session, const SearchOptions& options);

/// The groups of `items` by sound. Throws UsageError when no file is here.
DupeRows findBySound(Session& session, SearchResult& result, std::span<const std::uint64_t> items);

/// Listens to the members of groups. Stops early when the user interrupts.
void listen(Session& session, SearchResult& result);

/// Compares the members of each group with what is kept of it. Notes on standard error what could
/// not be compared.
void compareSounds(SearchResult& result, std::span<const std::vector<ResultTrack*>> groups);

/// {"kind":"same","likeness":97,"later":0.1,"longer":0} beside what is kept; of what cannot be
/// compared {"kind":"unknown","fault":"tooShort"}. Null of a keeper that can.
Json soundOf(const SearchResult& result, const ResultTrack& track);
/// Of a group: its least alike member as {"kind","likeness"}.
Json soundOf(const FoundGroup& group);

}  // namespace kestrel
