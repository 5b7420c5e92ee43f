/// Operations of several classes that neither program calls, and the containers that they keep.
///
/// Such operations that need the inside of their class stand there: SortDescriptor::copyWithZone,
/// reversedSortDescriptor and compareObject, ValueTransformer::resultClass and
/// allowsReverseTransformation, KSPlaylistController::addNewItem, getFolders and
/// lastSelectedPlaylist, ReplaylistControl::configureFilterInfo.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <future>
#include <iterator>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/identifiers.h"
#include "foundation/property_list.h"
#include "foundation/value.h"
#include "library/result_track.h"
#include "musicapp/scripted/stored_document.h"
#include "platform/clock.h"
#include "platform/programs.h"
#include "platform/trash.h"
#include "ui/rem_dupes_controller.h"
#include "ui/replaylist_control.h"

namespace kestrel {

/// What replacing the entries of a scripted application's playlists keeps. One run at a time may
/// use it; applications that can change entries where they are need none of it.
struct PlaylistDocumentState {
  StoredDocument storedXML;
  bool applicationAnswersWhenDone = false;  ///< see script::ReplacingServices
  PropertyList remDupesXML;                 ///< RemDupesController::storedXML
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// Brings tracks into display order by the criteria of the last search and numbers their groups;
/// see orderGroups. Returns its argument.
std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks);

/// The keeper among `candidates` (in table order, one or more) by the rule that `opt` numbers, with
/// the settings "alwaysUnCheck" and "filterFolderLoc"; nullptr when none is kept.
const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt);

/// Whether the file of one of the tracks is missing.
bool anyDead(std::span<const ResultTrack* const> tracks) noexcept;

/// Sets every track's keeper flag, `tCheckbox`.
void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept;

/// Adds a media file to the application's library. A failure is only logged.
void addtohook(std::string_view path);

/// The first of the playlist dictionaries (as library documents have them) whose "Playlist
/// Persistent ID" is `pid`. Callers ask only for one that is there; else std::out_of_range.
const PropertyList& returnPlaylistRowIn(std::span<const PropertyList> playlists,
                                        std::string_view pid);

/// Roman numeral, with 4000 to 9999 as repeated M. Empty for 0, below, and from 10000 on.
std::string romain(std::int64_t value);

/// Title of a movement, such as "Work: II. Movement", from the values that `lookup` gives for
/// "Work", "Movement Name" and "Movement Number" (absent ones absent). Empty unless both names are
/// there; without a number its numeral and ". " are left out.
std::string parseWork(FunctionRef<Value(std::string_view)> lookup);

/// The asset name of a colour: "mycolor_darkred" for code 0, "mycolor_darkblue" for 2; empty, for
/// the platform's own text colour, for every other.
std::string_view buildKindColor(std::int64_t code) noexcept;

/// Whether one of the keys equals the text but for letter case.
bool objectForCaseInsensitiveKey(std::string_view text, std::span<const std::string> keys);

/// The hexadecimal form of a persistent ID of which only the decimal text is at hand: what the
/// system's printf program prints for `decimal`, the same as `decToHex` gives for the number, or
/// for a text that is no number its complaint. Machines without that program get the conversion
/// alone, and nothing for such a text. Blocking.
std::string hexFromStr(const std::string& decimal, ProgramRunner& programs);

}  // namespace kestrel::TextSorter

namespace kestrel::TextManipulator {

/// Reads a date text by one pattern of Unicode's date field symbols and writes it by another, both
/// in the user's zone and locale. Nothing when the whole text does not follow the source pattern.
std::optional<std::string> dateStringFromString(std::string_view text,
                                                std::string_view sourceFormat,
                                                std::string_view destinationFormat);

/// Indexes, ascending, of the entries for which `predicate(entry)` is true. Long lists are divided
/// between threads, so the predicate must be free of side effects; what it throws is passed on.
template <std::ranges::random_access_range List,
          std::predicate<std::ranges::range_reference_t<const List>> Condition>
std::vector<std::size_t> indexesFromArray(const List& list, const Condition& predicate) {
  constexpr std::size_t worthAThread = 16384;
  const auto size = static_cast<std::size_t>(std::ranges::size(list));
  const auto search = [&](std::size_t from, std::size_t end) {
    std::vector<std::size_t> found;
    const auto first = std::ranges::begin(list);
    for (std::size_t i = from; i < end; ++i)
      if (predicate(first[static_cast<std::ranges::range_difference_t<const List>>(i)]))
        found.push_back(i);
    return found;
  };

  const std::size_t parts = std::clamp<std::size_t>(
      size / worthAThread, 1, std::max(1U, std::thread::hardware_concurrency()));
  std::vector<std::future<std::vector<std::size_t>>> others;
  for (std::size_t part = 1; part < parts; ++part)
    others.push_back(
        std::async(std::launch::async, search, size * part / parts, size * (part + 1) / parts));
  std::vector<std::size_t> indexes = search(0, size / parts);
  for (auto& other : others) {
    const std::vector<std::size_t> found = other.get();
    indexes.insert(indexes.end(), found.begin(), found.end());
  }
  return indexes;
}

/// Hands the last component of `path` to the trash, and that alone, so by itself this never removes
/// a file of the library. Reports nothing. What is to be trashed for good goes through
/// `Trash::recycle` with full paths.
void sendToTrash(const std::string& path, Trash& trash);

}  // namespace kestrel::TextManipulator

namespace kestrel::ReplaylistControl {

/// The keeper of a non-keeper, by hexadecimal ID; nothing for other tracks. Knows the non-keepers
/// of the last `clickedOK`, none before.
std::optional<std::string> processAPid(std::string_view hexpid);
/// The rows inside the folder with this hexadecimal ID, recursively.
std::vector<ReplaylistRow> getFolders(std::string_view hexpid);
/// Adds nothing: the records do not have the keys by which it would climb, so that only the direct
/// parents of affected playlists take part.
inline void containerIDsLoop(const SharedRecords<ReplaylistRecord>&,
                             const SharedRecords<ReplaylistRecord>&) {}

/// The hexadecimal form; "0" for a missing number.
inline std::string decToHex(std::optional<std::uint64_t> number) {
  return TextSorter::decToHex(number.value_or(0));
}
using TextSorter::batchDecToHex;

/// The stored library document, empty until the controller fills it; shared by all callers.
StoredDocument& storedXML();

/// Fills `storedXML` from the library document at `path`, unless it was filled from that file and
/// the file is still the same. Throws LibraryError, and leaves the stored document as it was, when
/// the file cannot be read.
void refreshStoredXML(const std::string& path);

/// "<application support>/Kestrel/", with the slash. Not created here.
std::string appSupportFolder();

/// The property list in a file; nothing when it is missing or does not parse. Only the XML format
/// is known here.
std::optional<PropertyList> returnContentsOfFile(const std::string& path);

/// Nothing when the file system does not tell.
std::optional<Moment> modDateOfFile(const std::string& path);

/// See script::replaceByDocument.
void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid);

/// See script::importAndReplace.
void addtohook(const std::string& path, const std::string& name, const std::string& oldPid);

}  // namespace kestrel::ReplaylistControl

namespace kestrel::RemDupesController {

PropertyList& storedXML();

/// The rows inside the folder with this hexadecimal ID, recursively.
std::vector<RemDupesRow> getFolders(std::string_view hexpid);
/// Adds nothing: no folder above the parents of affected playlists is shown. A climb would need the
/// parents' parents, which these records do not name under the key it looks at.
inline void containerIDsLoop(const SharedRecords<RemDupesRecord>&,
                             const SharedRecords<RemDupesRecord>&) {}

using ReplaylistControl::batchDecToHex;
using ReplaylistControl::decToHex;
using ReplaylistControl::returnContentsOfFile;

}  // namespace kestrel::RemDupesController
