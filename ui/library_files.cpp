#include "ui/library_files.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>

#include "musicapp/file_url.h"
#include "musicapp/requests.h"
#include "platform/files.h"
#include "platform/log.h"
#include "ui/process.h"

namespace kestrel::TextSorter {
namespace {

using namespace std::chrono_literals;

constexpr int maximumPolls = 40;

/// Whether the XML file dates from after the reference and holds all that the database does. Files
/// without a date count as the application's last word, since no later one can be seen.
bool isWritten(const std::optional<Moment>& xml, Moment referenceDate,
               const std::optional<Moment>& database) {
  if (!xml) return true;
  return *xml > referenceDate && (!database || *xml >= *database);
}

/// The first letter of each word in upper case, the others in lower case, in every locale alike.
std::string capitalized(std::string_view text) {
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  icu::CaseMap::utf8ToTitle("", 0, nullptr, {text.data(), static_cast<std::int32_t>(text.size())},
                            sink, nullptr, status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  return result;
}

}  // namespace

std::optional<std::string> urlForBookmark(std::string_view bookmark) {
  std::string path;
  if (!pathOfFileUrl(bookmark, path)) return std::nullopt;
  return std::string(bookmark);
}

std::optional<std::string> applicationDataDirectory() {
  auto folder = process().with.files.applicationSupportDirectory();
  if (folder) *folder += "/Kestrel";
  return folder;
}

std::optional<Moment> modDateOfFile(const std::string& path) {
  return process().with.files.modificationDate(path);
}

void waitForItunesToUpdate(Moment referenceDate, const std::string& xmlFile,
                           const std::string& itlFile) {
  Log& log = process().with.log;
  for (int poll = 0; poll < maximumPolls; ++poll) {
    if (isWritten(modDateOfFile(xmlFile), referenceDate, modDateOfFile(itlFile))) break;
    log.line("wait...");
    process().with.clock.sleepFor(1s);
  }
  log.line("--> LIBRARY UPDATED");
}

Moment dateBeforeChange(const std::string& xmlFile) {
  constexpr auto coarsestGrain = 2s;
  const Moment recently = process().with.clock.now() - coarsestGrain;
  return std::min(recently, modDateOfFile(xmlFile).value_or(recently));
}

std::string_view fileAvailable(const std::string& path) {
  return process().with.files.exists(path) ? "AVAILABLE" : "UNAVAILABLE";
}

std::optional<std::string> cloudStatusByTrackPid(std::string_view hexpid) {
  auto status = request::trackCloudStatus(process().with.application, hexpid);
  if (status) status = capitalized(*status);
  return status;
}

std::optional<std::string> locationByTrackPid(std::string_view hexpid) {
  return request::trackLocation(process().with.application, hexpid);
}

}  // namespace kestrel::TextSorter
