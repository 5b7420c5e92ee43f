#include "musicapp/mpd/mpd_journal.h"

#include <algorithm>
#include <mpd/protocol.h>
#include <optional>
#include <string_view>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/library_files.h"
#include "musicapp/music_application.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

constexpr std::string_view journalFolder = "MPD", journalEnding = ".edit";

/// A line each, as no name of a list and no URI has line breaks: the address, the list, its
/// entries, then the steps, which are told by their first characters.
struct BrokenEdit {
  std::string address, list;
  MpdEntries entries;
  std::vector<MpdStep> steps;
};

std::string textOf(const BrokenEdit& edit) {
  std::string text = "@" + edit.address + "\n#" + edit.list + '\n';
  for (const std::string& uri : edit.entries) text.append(1, '=').append(uri).append(1, '\n');
  for (const MpdStep& step : edit.steps)
    text.append(1, step.kind == MpdStep::Kind::add ? '+' : '-')
        .append(std::to_string(step.position))
        .append(1, ' ')
        .append(step.uri)
        .append(1, '\n');
  return text;
}

BrokenEdit editOf(std::string_view text) {
  BrokenEdit edit;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty()) continue;
    const std::string_view rest = line.substr(1);
    const std::size_t space = std::min(rest.find(' '), rest.size() - (rest.empty() ? 0 : 1));
    if (line[0] == '@') edit.address = rest;
    if (line[0] == '#') edit.list = rest;
    if (line[0] == '=') edit.entries.emplace_back(rest);
    if (line[0] == '+' || line[0] == '-')
      edit.steps.push_back(
          {line[0] == '+' ? MpdStep::Kind::add : MpdStep::Kind::remove,
           static_cast<std::size_t>(numberFromDecimal(rest.substr(0, space)).value_or(0)),
           std::string(rest.substr(space + 1))});
  }
  return edit;
}

std::string journalFolderOf(const FileService& files) {
  const auto support = files.applicationSupportDirectory();
  return support ? *support + "/Kestrel/" + std::string(journalFolder) : std::string();
}

std::vector<std::string> journalsIn(const FileService& files) {
  const std::string folder = journalFolderOf(files);
  std::vector<std::string> paths;
  if (folder.empty() || !files.exists(folder)) return paths;
  for (const std::string& name : files.list(folder))
    if (name.ends_with(journalEnding)) paths.push_back(folder + "/" + name);
  return paths;
}

std::optional<MpdEntries> entriesIfThere(MpdConnection& connection, const std::string& list) {
  try {
    return readMpdEntries(connection, list);
  } catch (const MpdRefusal& refusal) {
    if (refusal.code != MPD_SERVER_ERROR_NO_EXIST) throw;
    return std::nullopt;
  }
}

}  // namespace

MpdJournal::MpdJournal(FileService& files, const std::string& address, const std::string& list,
                       const MpdEntries& entries, const std::vector<MpdStep>& steps)
    : files_(files),
      path_(supportFolder(files, address, std::string(journalFolder)) + "/" + libraryHash(address) +
            std::string(journalEnding)) {
  files.writeAtomically(path_, textOf({address, list, entries, steps}));
}

void MpdJournal::remove() noexcept {
  try {
    files_.remove(path_);
  } catch (const std::exception&) {
  }
}

bool MpdJournal::exists(const FileService& files) { return !journalsIn(files).empty(); }

bool MpdJournal::restore(MpdConnection& connection, const ApplicationServices& services) {
  bool isChanged = false;
  const std::string address = connection.server().address();
  for (const std::string& path : journalsIn(services.files)) {
    const BrokenEdit edit = editOf(services.files.readAll(path));
    const auto found = entriesIfThere(connection, edit.list);
    const auto done =
        found ? stepsDone(*found, edit.entries, edit.steps) : std::optional<std::size_t>();
    if (!done && edit.address != address) continue;
    if (!done) {
      services.log.line(address + ": the playlist " + edit.list +
                        " was left half changed, and is neither that nor what it was");
    } else if (*done > 0 && *done < edit.steps.size()) {
      takeBackMpdEdit(connection, edit.list, edit.entries, edit.steps);
      services.log.line(address + ": gave the playlist " + edit.list + " its old entries back");
      isChanged = true;
    }
    services.files.remove(path);
  }
  return isChanged;
}

}  // namespace kestrel
