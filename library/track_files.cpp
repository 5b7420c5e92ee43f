#include "library/track_files.h"

#include <new>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>

#include "library/process.h"
#include "scripting/send.h"

namespace kestrel::TextSorter {
namespace {

script::Sender sender() {
  const Collaborators& with = process().with;
  return {with.scripts, with.log};
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

std::optional<std::string> cloudStatusByTrackPid(std::string_view hexpid) {
  auto status = sender().trackCloudStatus(hexpid);
  if (status) status = capitalized(*status);
  return status;
}

std::optional<std::string> locationByTrackPid(std::string_view hexpid) {
  return sender().trackLocation(hexpid);
}

void addtohook(std::string_view path) { sender().addFileToMusic(path); }

}  // namespace kestrel::TextSorter
