#include "musicapp/scripted/script_language.h"

#include <algorithm>
#include <utility>

#include "foundation/identifiers.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/scripted/script_terms.h"

namespace kestrel::script {
namespace {

using namespace command;

/// What the blocks around a statement say.
struct Scope {
  bool application = false;               ///< the music application is told
  std::optional<std::uint64_t> track;     ///< this track is told
  std::optional<std::uint64_t> playlist;  ///< this playlist is told
  UnknownID unknownID;                    ///< by which what is told is named
  bool considersCase = false;
  std::optional<std::size_t> tryBegin;  ///< number of statements before the `try` block
};

/// What `return` may return, and what that is made of.
struct Answer {
  enum class Kind : std::uint8_t { cloudStatus, location, locationText, path, playlist, id };
  Kind kind;
  std::string name;  ///< of a new playlist
};

class Parser : private TermReader {
 public:
  using TermReader::TermReader;

  std::vector<Statement> script() {
    statements(Scope{});
    if (token().kind != Token::Kind::end) failExpecting("a command");
    settle();
    return std::move(statements_);
  }

 private:
  // Statements.

  void statements(const Scope& scope) {
    while (true) {
      if (token().kind == Token::Kind::lineEnd) advance();
      if (token().kind == Token::Kind::end || at("end")) return;
      statement(scope);
      expectEndOfLine();
    }
  }

  void block(const Scope& scope, std::string_view end) {
    const Nested guard(*this);
    mayContinue_ = false;
    expectEndOfLine();
    statements(scope);
    expect(end);
    mayContinue_ = false;
  }

  void statement(const Scope& scope) {
    Scope inner = scope;
    if (accept("tell")) return tell(inner);
    if (accept("try")) {
      inner.tryBegin = statements_.size();
      return block(inner, "end try");
    }
    if (accept("considering")) {
      expect("case");
      inner.considersCase = true;
      return block(inner, "end considering");
    }
    command(scope);
  }

  void tell(Scope scope) {
    target(scope);
    if (!accept("to")) return block(scope, "end tell");
    mayContinue_ = false;
    command(scope);
    mayContinue_ = false;
  }

  void target(Scope& scope) {
    scope.track.reset();
    scope.playlist.reset();
    scope.unknownID = {};
    if (accept("application")) {
      const bool byIdentifier = accept("id");
      const std::size_t offset = token().offset;
      const std::string name = text();
      if (byIdentifier ? name != "com.apple.Music" : name != "Music" && name != "iTunes")
        throw ScriptFault(offset, "\"" + quotedStart(name) + "\" is not the music application");
      scope.application = true;
      return;
    }
    if (!scope.application) failExpecting("'application'");
    const Reference told = reference();
    (told.kind == Reference::Kind::track ? scope.track : scope.playlist) = told.id;
    scope.unknownID = takeUnknownID();
  }

  void command(const Scope& scope) {
    const std::size_t offset = token().offset;
    if (accept("delay")) {
      if (token().kind != Token::Kind::number) failExpecting("a number of seconds");
      return advance();
    }
    if (!scope.application) failExpecting("a block that tells the application");
    if (accept("add")) return put(scope, offset, AddFile{file()});
    if (accept("reveal")) return reveal(scope, offset);
    if (accept("delete")) return deletion(scope, offset);
    if (accept("duplicate")) return duplication(scope, offset);
    if (accept("move")) return move(scope, offset);
    if (accept("return")) return answer(scope, offset);
    failExpecting("a command");
  }

  /// Adds a statement, or to the last one when that is the same command to the same target: a list
  /// of tens of thousands of entries is one command.
  void put(const Scope& scope, std::size_t offset, Command command) {
    if (returned_) throw ScriptFault(offset, "nothing is run after 'return'");
    const bool ignored = scope.tryBegin.has_value();
    if (!mayContinue_ || !continues(command)) {
      if (ignored && statements_.size() > *scope.tryBegin)
        throw ScriptFault(offset, "a 'try' block holds one command");
      settle();
      statements_.push_back({std::move(command), ignored});
      mayContinue_ = true;
    }
    UnknownID own = takeUnknownID();
    if (!unknownID_.given) unknownID_ = scope.unknownID.given ? scope.unknownID : std::move(own);
  }

  /// The last statement is complete: with an ID that is none it can only fail.
  void settle() {
    if (UnknownID unknown = std::exchange(unknownID_, {}); unknown.given)
      statements_.back().unknownID = std::move(unknown.start);
  }

  bool continues(const Command& command) {
    Command& last = statements_.back().command;
    if (const auto* more = std::get_if<DeleteEntries>(&command)) {
      auto* entries = std::get_if<DeleteEntries>(&last);
      if (!entries || entries->playlist != more->playlist) return false;
      entries->positions.push_back(more->positions.front());
      return true;
    }
    if (const auto* more = std::get_if<DuplicateTracks>(&command)) {
      auto* tracks = std::get_if<DuplicateTracks>(&last);
      if (!tracks || tracks->playlist != more->playlist) return false;
      tracks->tracks.push_back(more->tracks.front());
      return true;
    }
    if (const auto* more = std::get_if<DeleteTracks>(&command)) {
      auto* tracks = std::get_if<DeleteTracks>(&last);
      if (tracks) tracks->tracks.push_back(more->tracks.front());
      return tracks != nullptr;
    }
    return false;
  }

  // Commands.

  void reveal(const Scope& scope, std::size_t offset) {
    const Reference shown = reference();
    if (shown.kind == Reference::Kind::track)
      put(scope, offset, RevealTrack{shown.id, shown.playlist});
    else
      put(scope, offset, RevealPlaylist{shown.id});
  }

  void deletion(const Scope& scope, std::size_t offset) {
    if (accept("track")) {
      if (!scope.playlist) throw ScriptFault(offset, "no playlist is told to delete this track");
      const std::size_t place = token().offset;
      const std::uint64_t position = expectInteger("a track's position");
      if (position == 0) throw ScriptFault(place, "positions count from 1");
      return put(scope, offset, DeleteEntries{*scope.playlist, {position}});
    }
    if (accept("every")) return at("track") ? deleteAll(scope, offset) : deleteNamed(scope, offset);
    const Reference gone = reference();
    if (gone.kind != Reference::Kind::track) return put(scope, offset, DeletePlaylist{gone.id});
    if (gone.playlist)
      throw ScriptFault(gone.offset, "a playlist's entries are deleted by their position");
    put(scope, offset, DeleteTracks{{gone.id}});
  }

  void deleteAll(const Scope& scope, std::size_t offset) {
    expect("track of");
    put(scope, offset, DeleteAllEntries{playlist().id});
  }

  void deleteNamed(const Scope& scope, std::size_t offset) {
    expect("user playlist whose name is");
    std::string playlistName = name();
    expect("and persistent ID is not");
    const auto except = numberFromHex(text());
    expect("and smart is false");
    put(scope, offset,
        DeleteSameNamedPlaylists{std::move(playlistName), except, scope.considersCase});
  }

  void duplication(const Scope& scope, std::size_t offset) {
    const Reference track = reference();
    if (track.kind != Reference::Kind::track || track.playlist)
      throw ScriptFault(track.offset, "only tracks of the library can be duplicated");
    expect("to");
    put(scope, offset, DuplicateTracks{{track.id}, playlist().id});
  }

  void move(const Scope& scope, std::size_t offset) {
    const Reference moved = playlist();
    expect("to");
    const Reference folder = reference();
    if (folder.kind != Reference::Kind::folderPlaylist)
      throw ScriptFault(folder.offset, "playlists are moved to a folder playlist");
    put(scope, offset, MovePlaylist{moved.id, folder.id});
  }

  void answer(const Scope& scope, std::size_t offset) {
    const std::size_t place = token().offset;
    Answer value = answerValue(scope);
    switch (value.kind) {
      case Answer::Kind::cloudStatus:
        put(scope, offset, TrackCloudStatus{*scope.track});
        break;
      case Answer::Kind::path:
        put(scope, offset, TrackLocation{*scope.track});
        break;
      case Answer::Kind::id:
        put(scope, offset, CreatePlaylist{std::move(value.name)});
        break;
      default:
        throw ScriptFault(place, "this cannot be returned as a text");
    }
    returned_ = true;
  }

  // Expressions.

  Answer answerValue(const Scope& scope) {
    const Nested guard(*this);
    Answer value = plainAnswerValue(scope);
    if (accept("as")) {
      expect("text");
      if (value.kind == Answer::Kind::location) value.kind = Answer::Kind::locationText;
    }
    return value;
  }

  Answer plainAnswerValue(const Scope& scope) {
    if (accept("(")) {
      Answer value = answerValue(scope);
      expect(")");
      return value;
    }
    const std::size_t place = token().offset;
    if (accept("POSIX")) {
      expect("path of");
      if (answerValue(scope).kind != Answer::Kind::locationText)
        throw ScriptFault(place, "a path can be made of a location as text only");
      return {Answer::Kind::path, {}};
    }
    if (accept("make")) {
      expect("new user playlist with properties { name :");
      Answer made{Answer::Kind::playlist, name()};
      expect("}");
      return made;
    }
    accept("get");
    if (accept("persistent")) {
      expect("ID of");
      Answer value = answerValue(scope);
      if (value.kind != Answer::Kind::playlist)
        throw ScriptFault(place, "only a new playlist's persistent ID can be had");
      return {Answer::Kind::id, std::move(value.name)};
    }
    if (!accept("its")) failExpecting("a value");
    if (!scope.track) throw ScriptFault(place, "no track is told to give this");
    if (accept("location")) return {Answer::Kind::location, {}};
    expect("cloud status");
    return {Answer::Kind::cloudStatus, {}};
  }

  std::vector<Statement> statements_;
  UnknownID unknownID_;       ///< in the last statement
  bool mayContinue_ = false;  ///< the last statement stands in this block, just before
  bool returned_ = false;
};

CommandResult resultOf(const Statement& statement, MusicApplication& application) {
  if (!statement.unknownID) return application.run(statement.command);
  return CommandResult::failing(
      Message::tr("There is nothing with the persistent ID %1").arg(*statement.unknownID),
      CommandFailure::noSuchObject);
}

ScriptResult carryOut(const std::vector<Statement>& statements, MusicApplication& application) {
  CommandResult last;
  for (std::size_t i = 0; i < statements.size(); ++i) {
    last = resultOf(statements[i], application);
    if (!last.failed()) continue;
    if (!statements[i].errorsIgnored) return {std::nullopt, ScriptError{*last.failure, {}}};
    last = {};
    while (i + 1 < statements.size() && statements[i + 1].errorsIgnored) ++i;
  }
  const bool isMade = !statements.empty() &&
                      std::holds_alternative<command::CreatePlaylist>(statements.back().command);
  if (isMade && last.playlist) return {TextSorter::decToHex(*last.playlist), {}};
  return {std::move(last.text), {}};
}

}  // namespace

std::variant<std::vector<Statement>, ScriptError> parse(std::string_view text) {
  try {
    return Parser(text).script();
  } catch (const ScriptFault& fault) {
    return ScriptError{{Message::verbatim(fault.what()), 0}, placeOf(text, fault.offset)};
  }
}

ScriptResult interpret(std::string_view script, MusicApplication& application,
                       const Batch::Record& record) {
  const auto parsed = parse(script);
  if (const auto* error = std::get_if<ScriptError>(&parsed)) return {std::nullopt, *error};
  const auto& statements = std::get<std::vector<Statement>>(parsed);
  if (std::none_of(statements.begin(), statements.end(),
                   [](const Statement& statement) { return changesLibrary(statement.command); }))
    return carryOut(statements, application);
  try {
    const auto batch = application.beginBatch();
    ScriptResult result = carryOut(statements, application);
    if (!result.failed()) batch->commit(record);
    return result;
  } catch (const std::exception& error) {
    return {std::nullopt, ScriptError{{messageOf(error), CommandFailure::failed}, {}}};
  }
}

}  // namespace kestrel::script
