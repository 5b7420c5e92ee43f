#include "ui/track_files.h"

#include <new>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>

#include "musicapp/requests.h"
#include "ui/process.h"

namespace kestrel::TextSorter {
namespace {

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

std::optional<std::string> cloudStatusByTrackPid(std::string_view hexpid) {
  auto status = request::trackCloudStatus(process().with.application, hexpid);
  if (status) status = capitalized(*status);
  return status;
}

std::optional<std::string> locationByTrackPid(std::string_view hexpid) {
  return request::trackLocation(process().with.application, hexpid);
}

}  // namespace kestrel::TextSorter
