#include "decisions/seen_groups.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/identifiers.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

constexpr std::string_view firstWords = "kestrel-seen-groups 1 ";

}  // namespace

bool SeenGroups::isNew(std::span<const std::uint64_t> members) const {
  std::optional<std::uint32_t> group;
  for (const std::uint64_t member : members) {
    const auto found = groupOf_.find(member);
    if (found == groupOf_.end() || (group && *group != found->second)) return true;
    group = found->second;
  }
  return false;
}

void SeenGroups::add(std::span<const std::uint64_t> members) {
  for (const std::uint64_t member : members) groupOf_[member] = groups_;
  ++groups_;
}

std::string SeenGroups::text(Moment when) const {
  std::vector<std::pair<std::uint32_t, std::uint64_t>> all;
  all.reserve(groupOf_.size());
  for (const auto& [track, group] : groupOf_) all.emplace_back(group, track);
  std::sort(all.begin(), all.end());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(when).time_since_epoch().count();
  std::string text = std::string(firstWords) + std::to_string(seconds);
  std::optional<std::uint32_t> last;
  for (const auto& [group, track] : all) {
    text.push_back(std::exchange(last, group) == group ? ' ' : '\n');
    text += TextSorter::decToHex(track);
  }
  return text + "\n";
}

std::optional<SeenGroups> SeenGroups::read(std::string_view text, Moment& when) {
  if (!text.starts_with(firstWords)) return std::nullopt;
  std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const auto seconds = numberFromDecimal(text.substr(firstWords.size(), end - firstWords.size()));
  if (!seconds) return std::nullopt;
  when = Moment(std::chrono::seconds(*seconds));
  SeenGroups seen;
  std::vector<std::uint64_t> members;
  for (std::size_t begin = end + 1; begin < text.size(); begin = end + 1) {
    end = std::min(text.find('\n', begin), text.size());
    members.clear();
    for (std::size_t at = begin; at < end;) {
      const std::size_t next = std::min(text.find(' ', at), end);
      const auto track = numberFromHex(text.substr(at, next - at));
      if (!track) return std::nullopt;
      members.push_back(*track);
      at = next + 1;
    }
    seen.add(members);
  }
  return seen;
}

SeenGroupsFile::SeenGroupsFile(FileService& files, const std::string& libraryUri,
                               const std::string& search)
    : files_(files) {
  const auto state = files.stateDirectory();
  if (!state) return;
  folder_ = *state + "/Kestrel/Seen";
  path_ = folder_ + "/" + paddedHex(derivedPersistentID(libraryUri, search)) + ".groups";
}

std::optional<SeenGroups> SeenGroupsFile::load(Moment& when) const {
  if (path_.empty() || !files_.exists(path_)) return std::nullopt;
  try {
    return SeenGroups::read(files_.readAll(path_), when);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

void SeenGroupsFile::save(const SeenGroups& groups, Moment when) {
  if (path_.empty()) return;
  files_.createDirectories(folder_);
  files_.writeAtomically(path_, groups.text(when));
}

}  // namespace kestrel
