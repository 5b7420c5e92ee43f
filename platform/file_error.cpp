#include "platform/file_error.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace kestrel {
namespace {

Message remedyFor(int code) {
  switch (code) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return Message::tr("Check the path.");
    case EACCES:
    case EPERM:
      return Message::tr("Check the permissions of the file and its folder.");
    case EROFS:
      return Message::tr("Choose a place that can be written to.");
    case EISDIR:
      return Message::tr("Give a file, not a folder.");
    case EEXIST:
    case ENOTEMPTY:
      return Message::tr("Move away what is there, or choose another name.");
    case ENOSPC:
    case EDQUOT:
      return Message::tr("Free some space and try again.");
    case EXDEV:
      return Message::tr("Choose a place on the same volume.");
    default:
      return Message::tr("Check that the volume is mounted and in order, then try again.");
  }
}

}  // namespace

FileError FileError::fromCode(const std::string& path, Message failed, int code) {
  return {path,
          Message::tr("%1: %2").arg(std::move(failed)).arg(std::generic_category().message(code)),
          remedyFor(code), code};
}

}  // namespace kestrel
