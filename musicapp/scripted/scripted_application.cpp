#include "musicapp/scripted/scripted_application.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>
#include <variant>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/scripted/script_texts.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using TextSorter::decToHex;

/// Nothing to be committed, and nothing to be reverted.
class Durable final : public Batch {
 public:
  void commit(const Record&) override {}
  bool revert(std::string_view) override { return false; }
};

CommandResult failure(Message message, int number = CommandFailure::failed) {
  return CommandResult::failing(std::move(message), number);
}

Message whyNoValues() {
  return Message::tr("the scripts by which it is reached have no words for it");
}

}  // namespace

/// One operation a command.
class ScriptedApplication::Commands {
 public:
  explicit Commands(ScriptedApplication& application)
      : application_(application), services_(application.services_) {}

  CommandResult operator()(const command::CreatePlaylist& c) {
    CommandResult result = send(script::scriptText(c), c);
    result.playlist = numberFromHex(std::exchange(result.text, {}).value_or(""));
    if (!result.failed() && !result.playlist)
      return failure(Message::tr("%1 was made, but not told where").arg(inQuotes(c.name)));
    return result;
  }
  CommandResult operator()(const command::ReplaceEntries& c) {
    return replace(c.playlist, [&](std::vector<std::uint64_t> entries) {
      for (const auto& entry : c.entries) entries.at(entry.position - 1) = entry.track;
      return entries;
    });
  }
  CommandResult operator()(const command::SetEntries& c) {
    return replace(c.playlist, [&](const auto&) { return c.tracks; });
  }
  CommandResult operator()(const command::RestoreTracks&) {
    return failure(Message::tr("The music application cannot bring tracks back"),
                   CommandFailure::notAllowed);
  }
  CommandResult operator()(const command::SetValues&) {
    return failure(whyNoValues(), CommandFailure::notAllowed);
  }
  template <typename Other>
  CommandResult operator()(const Other& c) {
    return send(script::scriptText(c), c);
  }

 private:
  using Lists = std::vector<Playlist>;

  CommandResult send(const std::string& text, const Command& command) {
    ScriptResult result = script::send(services_.scripts, text, command);
    if (result.failed()) return {{}, {}, std::move(*result.error)};
    return {std::move(result.text), {}, {}};
  }

  /// By the import-and-replace sequence.
  template <typename Change>
  CommandResult replace(std::uint64_t id, Change&& change) {
    const std::shared_ptr<const Lists> before = application_.library_.allPlaylists();
    const auto old = std::find_if(before->begin(), before->end(), [id](const Playlist& playlist) {
      return playlist.persistentID == id;
    });
    if (old == before->end())
      return failure(
          Message::tr("There is no playlist with the persistent ID %1").arg(decToHex(id)),
          CommandFailure::noSuchObject);
    for (const Playlist& other : *before)
      if (&other != &*old && other.name == old->name && other.kind == PlaylistKind::regular)
        return failure(Message::tr("another playlist has its name, and would be deleted"),
                       CommandFailure::notAllowed);
    const std::vector<std::uint64_t> entries = change(old->items);
    script::refresh(application_.stored_, application_.library_.libraryFile(), services_.files);
    std::vector<std::string> keys;
    for (const std::uint64_t track : entries) {
      auto key = application_.stored_.keyOf(track);
      if (!key)
        return failure(Message::tr("%1 lists an unknown track").arg(inQuotes(old->name)),
                       CommandFailure::noSuchObject);
      keys.push_back(std::move(*key));
    }
    // Without it every import would fail, and the old playlist would be deleted all the same.
    services_.files.createDirectories(services_.folder);
    const std::string document =
        script::replaceByDocument(application_.stored_, keys, old->name, decToHex(id), services_);
    CommandResult result = settle(*before, *old, entries);
    // What was not imported may be all that is left of the list.
    if (!result.failed() && !document.empty()) services_.files.remove(document);
    return result;
  }

  /// Finds what the imports made, takes surplus copies away (the deletion between the imports is no
  /// valid script where the name has a quotation mark), and moves it to the old one's place.
  CommandResult settle(const Lists& before, const Playlist& old,
                       const std::vector<std::uint64_t>& entries) {
    std::unordered_set<std::uint64_t> known;
    for (const Playlist& playlist : before) known.insert(playlist.persistentID);
    const std::shared_ptr<const Lists> now = application_.library_.allPlaylists();
    std::optional<std::uint64_t> made;
    std::vector<std::uint64_t> surplus;
    for (auto playlist = now->rbegin(); playlist != now->rend(); ++playlist) {
      if (known.contains(playlist->persistentID) || playlist->name != old.name) continue;
      if (!made && playlist->items == entries)
        made = playlist->persistentID;
      else
        surplus.push_back(playlist->persistentID);
    }
    if (!made)
      return failure(Message::tr("%1 was not imported. Look at the log, and at %2")
                         .arg(inQuotes(old.name))
                         .arg(services_.folder));
    for (const std::uint64_t copy : surplus) operator()(command::DeletePlaylist{copy});
    if (old.parentID && known.contains(*old.parentID)) {
      CommandResult moved = operator()(command::MovePlaylist{*made, *old.parentID});
      if (moved.failed()) return moved;
    }
    return {{}, made, {}};
  }

  ScriptedApplication& application_;
  const script::ReplacingServices& services_;
};

CommandResult ScriptedApplication::run(const Command& command) {
  try {
    return std::visit(Commands(*this), command);
  } catch (const std::exception& error) {
    return failure(messageOf(error));
  }
}

Capabilities ScriptedApplication::capabilities() const {
  return {.name = "the music application",
          .changesPlaylists = true,
          .deletesTracks = true,
          .addsFiles = true,
          .reveals = true,
          .takesValues = {},
          .whyNoOthers = whyNoValues()};
}

std::unique_ptr<Batch> ScriptedApplication::beginBatch() { return std::make_unique<Durable>(); }

}  // namespace kestrel
