#include "platform/file_users.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrel {

namespace fs = std::filesystem;

bool isOpenElsewhere(const std::string& path) {
  struct stat wanted {};
  if (::stat(path.c_str(), &wanted) != 0) return false;
  const std::string self = std::to_string(::getpid());
  std::error_code none;
  // Programs end and close files while they are looked at: what fails is not there any more.
  for (fs::directory_iterator program("/proc", none), end; program != end;
       program.increment(none)) {
    const std::string id = program->path().filename().string();
    if (id == self ||
        !std::all_of(id.begin(), id.end(), [](char c) { return c >= '0' && c <= '9'; }))
      continue;
    std::error_code ended;
    for (fs::directory_iterator file(program->path() / "fd", ended), last; file != last;
         file.increment(ended)) {
      struct stat found {};
      if (::stat(file->path().c_str(), &found) == 0 && found.st_ino == wanted.st_ino &&
          found.st_dev == wanted.st_dev)
        return true;
    }
  }
  return false;
}

}  // namespace kestrel
