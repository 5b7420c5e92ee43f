#include "platform/file_error.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace kestrel {
namespace {

std::string remedyFor(int code) {
  switch (code) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return "Check the path.";
    case EACCES:
    case EPERM:
      return "Check the permissions of the file and its folder.";
    case EROFS:
      return "Choose a place that can be written to.";
    case EISDIR:
      return "Give a file, not a folder.";
    case EEXIST:
    case ENOTEMPTY:
      return "Move away what is there, or choose another name.";
    case ENOSPC:
    case EDQUOT:
      return "Free some space and try again.";
    case EXDEV:
      return "Choose a place on the same volume.";
    default:
      return "Check that the volume is mounted and in order, then try again.";
  }
}

}  // namespace

FileError::FileError(std::string path_, std::string problem_, std::string remedy_, int code_)
    : std::runtime_error(path_ + ": " + problem_ + "." + (remedy_.empty() ? "" : " " + remedy_)),
      path(std::move(path_)),
      problem(std::move(problem_)),
      remedy(std::move(remedy_)),
      code(code_) {}

FileError FileError::fromCode(const std::string& path, std::string_view failed, int code) {
  return {path, std::string(failed) + ": " + std::generic_category().message(code), remedyFor(code),
          code};
}

}  // namespace kestrel
