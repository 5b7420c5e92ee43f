/// Changing a stored playlist of a Music Player Daemon where it is.
///
/// The server adds and deletes entries by position, and cuts a list to a length that it does not
/// tell with whatever is done to it, even a deletion that it answers with OK. It also knows entries
/// that cannot be added again, of songs that it no longer has. So a list is never made anew: what
/// changes is added and then deleted entry by entry, from the end. The first command adds, and the
/// list is read back before anything is deleted: where an entry more has its place, nothing that
/// follows can cut the list.
///
/// Broken off at any point, a list is the first entries of the old one and behind them the last of
/// the new one; where entries only go, one of them may stand twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "foundation/message.h"
#include "musicapp/mpd/mpd_connection.h"

namespace kestrel {

/// The entries of a stored playlist, by their URIs.
using MpdEntries = std::vector<std::string>;

/// When each stored playlist was changed last, in the server's words, by name.
std::map<std::string, std::string> mpdListTimes(MpdConnection& connection);

/// Throws MpdRefusal, with MPD_SERVER_ERROR_NO_EXIST when there is no such list.
MpdEntries readMpdEntries(MpdConnection& connection, const std::string& list);

/// One command of an edit. Positions count from 0.
struct MpdStep {
  enum class Kind : std::uint8_t { add, remove };
  Kind kind;
  std::size_t position;
  std::string uri;  ///< of the entry that is added or removed
  friend bool operator==(const MpdStep&, const MpdStep&) = default;
};

/// An entry that is to be replaced, removed or, at the place of the one behind it, put in.
struct MpdChange {
  std::size_t position;  ///< from 0; the list's length for its end
  bool removes = false;
  std::string added;  ///< empty: none
};

/// The steps for changes that come by position; those that put in several at one position, in their
/// order.
std::vector<MpdStep> stepsOf(const MpdEntries& entries, const std::vector<MpdChange>& changes);

MpdEntries afterSteps(MpdEntries entries, const std::vector<MpdStep>& steps);

/// A list could not be changed. Its message is a sentence.
class MpdEditError : public MessageError {
 public:
  MpdEditError(Message problem, bool isUnchanged_, bool isRefused_ = false)
      : MessageError(std::move(problem)), isUnchanged(isUnchanged_), isRefused(isRefused_) {}
  bool isUnchanged;  ///< it is known to be as it was
  bool isRefused;    ///< and the server does not let this list be changed; it may let others
};

/// Carries the steps out on a list that holds `entries`, and reads it back. When the server refuses
/// a step or the connection is lost, what was done is taken back, on a new connection if need be.
/// So it is when another program changes the list meanwhile: then what that did stands.
/// Throws MpdEditError when the list is not what the steps make it.
void editMpdList(MpdConnection& connection, const std::string& list, const MpdEntries& entries,
                 const std::vector<MpdStep>& steps);

/// How many of the steps have been carried out on a list that held `before` and holds `found`;
/// nothing when it is neither of what they make of it on the way.
std::optional<std::size_t> stepsDone(const MpdEntries& found, const MpdEntries& before,
                                     const std::vector<MpdStep>& steps);

/// Undoes those steps that were carried out of an edit that broke off. Throws as editMpdList.
void takeBackMpdEdit(MpdConnection& connection, const std::string& list, const MpdEntries& entries,
                     const std::vector<MpdStep>& steps);

}  // namespace kestrel
