#include "musicapp/revealer.h"

#include <filesystem>

#include "musicapp/file_url.h"
#include "platform/file_error.h"
#include "platform/programs.h"

namespace kestrel {

bool FileManagerRevealer::select(const std::string& path) {
  std::string url;
  for (const char c : fileUrlOfPath(path))  // a comma would end the array's element
    c == ',' ? url.append("%2C") : url.append(1, c);
  try {
    return programs_
               .run({"dbus-send",
                     {"--session", "--print-reply", "--reply-timeout=3000",
                      "--dest=org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                      "org.freedesktop.FileManager1.ShowItems", "array:string:" + url, "string:"},
                     {},
                     false,
                     std::chrono::seconds(5)})
               .status == 0;
  } catch (const FileError&) {  // no such program here
    return false;
  }
}

void FileManagerRevealer::revealFile(const std::string& path) {
  if (select(path)) return;
  const std::string folder = std::filesystem::path(path).parent_path().string();
  // Not every opener ends when the folder's window is there; none is waited for.
  const ProgramCall call{"sh",
                         {"-c",
                          "command -v xdg-open >/dev/null || exit 127\n"
                          "xdg-open \"$1\" </dev/null >/dev/null 2>&1 &",
                          "sh", folder.empty() ? "." : folder},
                         {},
                         false,
                         {}};
  if (programs_.run(call).status != 0)
    throw FileError(path, Message::tr("cannot be shown: this desktop has no xdg-open"),
                    Message::tr("Install the package that has it."));
}

void FileManagerRevealer::revealPlaylist(std::uint64_t) {
  throw FileError("This playlist", Message::tr("cannot be shown: no window here has playlists"),
                  {});
}

}  // namespace kestrel
