#include "ui/uncalled_operations.h"

#include <array>
#include <stdexcept>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "dupes/find_dupes.h"
#include "foundation/collation.h"
#include "foundation/library_error.h"
#include "foundation/text_helpers.h"
#include "musicapp/requests.h"
#include "musicapp/scripted/playlist_document.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "ui/dupe_search.h"
#include "ui/library_files.h"
#include "ui/process.h"

namespace kestrel::TextSorter {

const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt) {
  const Collaborators& with = process().with;
  return chooseKeeper(candidates, keeperRule(opt), filterSettings(with.preferences).keeper,
                      with.random)
      .keeper;
}

std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks) {
  orderGroups(tracks, process().textSorter.storedCriteria);
  return tracks;
}

bool anyDead(std::span<const ResultTrack* const> tracks) noexcept {
  return std::any_of(tracks.begin(), tracks.end(), [](const ResultTrack* track) {
    return track->record->availability() == FileAvailability::missing;
  });
}

void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept {
  for (ResultTrack* track : tracks) track->tCheckbox = keeperVal;
}

void addtohook(std::string_view path) {
  request::addFile(process().with.application, process().with.log, path);
}

const PropertyList& returnPlaylistRowIn(std::span<const PropertyList> playlists,
                                        std::string_view pid) {
  for (const PropertyList& playlist : playlists) {
    const PropertyList* held = playlist.find("Playlist Persistent ID");
    if (held && held->isText() && held->text() == pid) return playlist;
  }
  throw std::out_of_range("no playlist has the persistent ID " + std::string(pid));
}

std::string romain(std::int64_t value) {
  using Digits = std::array<std::string_view, 10>;
  static constexpr Digits thousands = {"",      "M",      "MM",      "MMM",      "MMMM",
                                       "MMMMM", "MMMMMM", "MMMMMMM", "MMMMMMMM", "MMMMMMMMM"};
  static constexpr Digits hundreds = {"", "C", "CC", "CCC", "CD", "D", "DC", "DCC", "DCCC", "CM"};
  static constexpr Digits tens = {"", "X", "XX", "XXX", "XL", "L", "LX", "LXX", "LXXX", "XC"};
  static constexpr Digits units = {"", "I", "II", "III", "IV", "V", "VI", "VII", "VIII", "IX"};
  std::string text;
  if (value < 0 || value >= 10000) return text;
  const auto number = static_cast<std::size_t>(value);
  text += thousands[number / 1000];
  text += hundreds[number / 100 % 10];
  text += tens[number / 10 % 10];
  text += units[number % 10];
  return text;
}

std::string parseWork(FunctionRef<Value(std::string_view)> lookup) {
  const Value work = lookup("Work");
  const Value name = lookup("Movement Name");
  if (work.isAbsent() || name.isAbsent()) return {};
  std::string text(work.text());
  text += ": ";
  if (const Value number = lookup("Movement Number"); !number.isAbsent()) {
    text += romain(integerValue(number));
    text += ". ";
  }
  text += name.text();
  return text;
}

std::string_view buildKindColor(std::int64_t code) noexcept {
  if (code == 0) return "mycolor_darkred";
  return code == 2 ? "mycolor_darkblue" : "";
}

bool objectForCaseInsensitiveKey(std::string_view text, std::span<const std::string> keys) {
  return std::any_of(keys.begin(), keys.end(),
                     [text](const std::string& key) { return sameIgnoringCase(text, key); });
}

std::string hexFromStr(const std::string& decimal, ProgramRunner& programs) {
  try {
    return programs.run({"/usr/bin/printf", {"%lX", decimal}, {}, true, {}}).output;
  } catch (const FileError&) {
    const auto number = numberFromDecimal(decimal);
    return number ? decToHex(*number) : std::string();
  }
}

}  // namespace kestrel::TextSorter

namespace kestrel::TextManipulator {

std::optional<std::string> dateStringFromString(std::string_view text,
                                                std::string_view sourceFormat,
                                                std::string_view destinationFormat) {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format(utf16(sourceFormat), localeNamed({}), status);
  if (U_FAILURE(status)) return std::nullopt;
  format.setLenient(false);
  const icu::UnicodeString source = utf16(text);
  icu::ParsePosition end(0);
  const UDate moment = format.parse(source, end);
  if (end.getErrorIndex() >= 0 || end.getIndex() != source.length()) return std::nullopt;
  format.applyPattern(utf16(destinationFormat));
  icu::UnicodeString destination;
  format.format(moment, destination);
  std::string result;
  destination.toUTF8String(result);
  return result;
}

void sendToTrash(const std::string& path, Trash& trash) {
  std::size_t end = path.size();
  while (end > 1 && path[end - 1] == '/') --end;
  const std::size_t slash = end > 1 ? path.rfind('/', end - 1) : std::string::npos;
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  trash.recycle(std::vector{path.substr(begin, end - begin)});
}

}  // namespace kestrel::TextManipulator

namespace kestrel::ReplaylistControl {
namespace {

PlaylistDocumentState& documents() { return process().state<PlaylistDocumentState>(); }

}  // namespace

std::optional<std::string> processAPid(std::string_view hexpid) {
  const auto track = numberFromHex(hexpid);
  if (!track || !state().confirmed->keeperOf(*track)) return std::nullopt;
  const auto keeper = dbidDictionary().keeperOf(*track);
  return keeper ? std::optional(TextSorter::decToHex(*keeper)) : std::nullopt;
}

std::vector<ReplaylistRow> getFolders(std::string_view hexpid) {
  return openFolder(childPlaylists(), hexpid);
}

StoredDocument& storedXML() { return documents().storedXML; }

void refreshStoredXML(const std::string& path) {
  script::refresh(storedXML(), path, process().with.files);
}

std::string appSupportFolder() {
  return TextSorter::applicationDataDirectory().value_or("/Kestrel") + "/";
}

std::optional<PropertyList> returnContentsOfFile(const std::string& path) {
  try {
    return parsePropertyList(process().with.files.readAll(path), path);
  } catch (const LibraryError&) {
  }
  return std::nullopt;
}

std::optional<Moment> modDateOfFile(const std::string& path) {
  return process().with.files.modificationDate(path);
}

void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid) {
  const Collaborators& with = process().with;
  script::replaceByDocument(storedXML(), trackIDs, name, oldPid,
                            {with.scripts, with.log, with.clock, with.files, appSupportFolder(),
                             documents().applicationAnswersWhenDone});
}

void addtohook(const std::string& path, const std::string& name, const std::string& oldPid) {
  script::importAndReplace(path, name, oldPid, process().with.scripts, process().with.log);
}

}  // namespace kestrel::ReplaylistControl

namespace kestrel::RemDupesController {

PropertyList& storedXML() { return process().state<PlaylistDocumentState>().remDupesXML; }

std::vector<RemDupesRow> getFolders(std::string_view hexpid) {
  return openFolder(childPlaylists(), hexpid);
}

}  // namespace kestrel::RemDupesController
