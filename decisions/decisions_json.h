/// Decisions as JSON, for the file of a library and for files that people save, edit and load
/// elsewhere.
///
///     {"kestrelDecisions": 1, "library": {"uri": "file:///...", "id": "..."},
///      "picks": [{"keep": ["1F"], "group": ["1F", "2F"]}], "notDuplicates": [["3F", "4F"]],
///      "presets": [{"name": "Best sound", "keep": ["lossless-first", "highest-bit-rate"]}],
///      "maps": [{"from": "/C:/Music", "to": "/home/anna/Music"}]}
///
/// Tracks are hexadecimal persistent IDs. Every list may be missing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "decisions/decisions.h"
#include "foundation/function_ref.h"
#include "foundation/message.h"
#include "musicapp/library_identity.h"

namespace kestrel {

inline constexpr int decisionsVersion = 1;

/// `songOf` names a track for the eyes of who reads the file ("song", not read back); an empty text
/// is left out.
std::string decisionsText(const Decisions& decisions, const LibraryIdentity& library,
                          FunctionRef<std::string(std::uint64_t)> songOf);
std::string decisionsText(const Decisions& decisions, const LibraryIdentity& library);

struct ReadDecisions {
  Decisions decisions;
  LibraryIdentity library;  ///< uri and id of the one that they are about
  /// What of the text has no meaning here, as of a slip of the pen: keys, and rules of presets,
  /// which are kept.
  std::vector<Message> notes;
};
/// Throws LibraryError, with `name` for the file, saying where and what is wrong.
ReadDecisions decisionsFromText(std::string_view text, const std::string& name);

}  // namespace kestrel
