/// What an edit of a stored playlist is about to do, kept in a file while it goes on: so that a
/// list which a killed program, or a lost server, left half changed gets its old entries back.
#pragma once

#include <string>
#include <vector>

#include "musicapp/mpd/mpd_list_edit.h"

namespace kestrel {

struct ApplicationServices;
class FileService;

/// One file an address, in the application-support folder. Whoever makes one or has lists restored
/// holds the lock of the servers.
class MpdJournal final {
 public:
  /// Writes the file. Throws LibraryError.
  MpdJournal(FileService& files, const std::string& address, const std::string& list,
             const MpdEntries& entries, const std::vector<MpdStep>& steps);
  /// The list is whole, or as it was. Never throws: what is left is recognised as carried out.
  void remove() noexcept;

  /// Whether any edit, of whatever server, has not come to its end.
  [[nodiscard]] static bool exists(const FileService& files);
  /// Gives lists of this server that are in the midst of an edit their old entries back. A server
  /// may have several addresses: an edit is known by the list's name and by what the list holds.
  /// An edit of this address whose list has become something else is forgotten, which the log
  /// tells. Returns whether a list was changed. Throws LibraryError or MpdEditError.
  static bool restore(MpdConnection& connection, const ApplicationServices& services);

 private:
  FileService& files_;
  std::string path_;
};

}  // namespace kestrel
