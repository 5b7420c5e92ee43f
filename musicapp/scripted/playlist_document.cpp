#include "musicapp/scripted/playlist_document.h"

#include <array>
#include <charconv>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <unicode/decimfmt.h>
#include <unordered_set>
#include <utility>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/property_list.h"
#include "foundation/text_helpers.h"
#include "musicapp/document/document_edit.h"
#include "musicapp/scripted/script_texts.h"
#include "platform/clock.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/mapped_file.h"

namespace kestrel::script {
namespace {

using std::string_view;
using namespace std::chrono_literals;

// In the order in which they are copied.
constexpr std::array<string_view, 7> headerKeys{
    "Features", "Application Version",   "Major Version", "Minor Version",
    "Date",     "Library Persistent ID", "Music Folder"};

/// Reads ID texts as a person's locale writes plain whole numbers.
class NumberReader {
 public:
  std::optional<std::int64_t> read(const std::string& text) {
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && stop == end) return number;
    return readInLocale(text);
  }

 private:
  std::optional<std::int64_t> readInLocale(const std::string& text) {
    UErrorCode error = U_ZERO_ERROR;
    if (!format_) {
      format_ = std::make_unique<icu::DecimalFormat>(
          "#", new icu::DecimalFormatSymbols(localeNamed({}), error), error);
      format_->setParseIntegerOnly(true);
    }
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
    icu::Formattable number;
    icu::ParsePosition place;
    format_->parse(wide, number, place);
    if (U_FAILURE(error) || wide.isEmpty() || place.getIndex() != wide.length())
      return std::nullopt;
    const std::int64_t whole = number.getInt64(error);
    return U_FAILURE(error) ? std::nullopt : std::optional(whole);
  }

  std::unique_ptr<icu::DecimalFormat> format_;
};

/// The entries of the new playlist, one for each ID.
PropertyList playlistItems(std::span<const std::string> trackIDs) {
  NumberReader numbers;
  PropertyList::Array items;
  items.reserve(trackIDs.size());
  for (const std::string& id : trackIDs) {
    PropertyList& item = items.emplace_back();
    if (const auto number = numbers.read(id)) item.set("Track ID", *number);
  }
  return items;
}

/// The seconds since 1970 with six decimals.
std::string fileNameAt(Moment moment) {
  return fixedDecimals(std::chrono::duration<double>(moment.time_since_epoch()).count(), 6) +
         ".xml";
}

/// Whether the format can hold a date: the years 1 to 9999.
bool isWritable(const PropertyList& date) {
  constexpr std::int64_t first = -62'135'596'800, last = 253'402'300'799;
  return !date.isDate() || (date.date().seconds >= first && date.date().seconds <= last);
}

/// Supplies the header values that very old libraries lack and every playlist document has: "Date"
/// is then the day the file was written, the others are neutral.
void completeHeader(StoredDocument& stored) {
  PropertyList& header = stored.header;
  const auto supply = [&](string_view key, PropertyList value) {
    if (!header.find(key)) header.set(key, std::move(value));
  };
  supply("Features", 0);
  supply("Application Version", "");
  supply("Major Version", 1);
  supply("Minor Version", 1);
  if (stored.status())
    supply("Date", Date{std::chrono::floor<std::chrono::seconds>(stored.status()->modified)
                            .time_since_epoch()
                            .count()});
  supply("Library Persistent ID", "0000000000000000");
  supply("Music Folder", "");
}

}  // namespace

void refresh(StoredDocument& stored, const std::string& path, FileService& files) {
  const auto status = files.status(path);
  if (status && stored.path() == path && stored.status() == status) return;
  StoredDocument fresh = StoredDocument::ofFile(path, files);
  completeHeader(fresh);
  stored = std::move(fresh);
}

void makePlaylistDocument(const StoredDocument& stored, std::span<const std::string> trackIDs,
                          string_view name, FunctionRef<void(string_view)> write) {
  PropertyList root;
  for (const string_view key : headerKeys) {
    const PropertyList* value = stored.header.find(key);
    if (!value)
      throw LibraryError(stored.path(), {}, Message::tr("the library has no %1").arg(inQuotes(key)),
                         Message::tr("Export the library again from a current music application."));
    root.set(key, *value);
  }
  PropertyList playlist;
  playlist.set("Name", name);
  playlist.set("Playlist Items", playlistItems(trackIDs));
  root.set("Playlists", PropertyList::Array{std::move(playlist)});

  // The track entries go in as bytes, behind all that is written as values.
  constexpr string_view end = "</dict>\n</plist>\n";
  const std::string values = writePropertyList(root);
  write(string_view(values).substr(0, values.size() - end.size()));
  write("\t<key>Tracks</key>\n\t<dict>\n");
  std::unordered_set<string_view> written;
  for (const std::string& id : trackIDs) {
    const auto entry = stored.entry(id);
    if (!entry || !written.insert(id).second) continue;
    write("\t\t");
    write(*entry);
    write("\n");
  }
  write("\t</dict>\n");
  write(end);
}

std::string replaceByDocument(const StoredDocument& stored, std::span<const std::string> trackIDs,
                              const std::string& name, const std::string& oldPid,
                              const ReplacingServices& with) {
  const std::string path = with.folder + fileNameAt(with.clock.now());
  const auto wait = [&](std::chrono::milliseconds duration) {
    if (!with.answersWhenDone) with.clock.sleepFor(duration);
  };
  if (const PropertyList* date = stored.header.find("Date"); date && !isWritable(*date))
    with.log.line("can't save as XML");
  const auto cannotBeMade = [&](const std::exception& error) {
    with.log.line(std::string("error serializing to xml: ") + error.what());
    return std::string();
  };
  std::optional<MappedFile> document;
  try {
    // A playlist of a whole library must not take gigabytes of memory.
    ScratchFile scratch;
    TextSink sink([&](string_view piece) { scratch.append(piece); });
    makePlaylistDocument(stored, trackIDs, name, [&](string_view piece) { sink.append(piece); });
    sink.flush();
    document = scratch.map();
  } catch (const std::out_of_range& error) {
    return cannotBeMade(error);
  } catch (const FileError& error) {
    return cannotBeMade(error);
  }
  try {
    with.files.writeAtomically(path, {document->bytes().data(), document->bytes().size()});
  } catch (const FileError&) {  // the imports will tell
  }
  wait(200ms);
  importAndReplace(path, name, oldPid, with.scripts, with.log);
  wait(500ms);
  return path;
}

void importAndReplace(const std::string& path, const std::string& name, const std::string& oldPid,
                      ScriptRunner* scripts, Log& log) {
  const auto step = [&](const char* failure, const std::string& text, const Command& command) {
    const ScriptResult result = send(scripts, text, command);
    if (result.failed()) log.line(failure + result.error->description());
  };
  const std::string import = scriptText(Template::ImportPlaylistFile, {path});
  const auto old = numberFromHex(oldPid);
  step("Error while adding 1: ", import, command::AddFile{path});
  step("Error while deleting: ", scriptText(Template::DeleteSameNamedPlaylists, {name, oldPid}),
       command::DeleteSameNamedPlaylists{name, old, true});
  step("Error while adding 2: ", import, command::AddFile{path});
  step("Error while deleting: ", scriptText(Template::DeletePlaylistByPid, {oldPid}),
       command::DeletePlaylist{old.value_or(0)});
}

}  // namespace kestrel::script
