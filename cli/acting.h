/// What the subcommands that change a library share: the library opened as a music application, the
/// way from a search to a plan, and how they show what they would do, do it and say what came of
/// it.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "changes/library_changes.h"
#include "changes/listed_elsewhere.h"
#include "cli/record_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "musicapp/revealer.h"
#include "platform/programs.h"

namespace kestrel {

/// A library opened with its music application.
class OpenedApplication {
 public:
  /// Throws LibraryError.
  OpenedApplication(Session& session, const std::string& path);
  OpenedApplication(const OpenedApplication&) = delete;
  OpenedApplication& operator=(const OpenedApplication&) = delete;

  /// The playlists as they are now.
  [[nodiscard]] std::shared_ptr<const std::vector<Playlist>> playlists();
  /// For applying: progress on the terminal, and Ctrl-C between two playlists or files.
  [[nodiscard]] ApplyOptions applyOptions(const GuardOptions& guard = {});

 private:
  Session& session_;
  SystemPrograms programs_;
  FileManagerRevealer revealer_{programs_};
  std::unique_ptr<MusicApplication> opened_;

 public:
  MusicApplication& application;
  LibraryChanges changes;
};

/// Adds --only, which takes one name and, behind LIBRARY, as many as follow: it must not take
/// LIBRARY itself.
void addOnlyOption(CLI::App& command, std::vector<std::string>& only);
/// --other-files and --outside-media-folder.
void addGuardOptions(CLI::App& command, GuardOptions& options);
/// --cloud-replaces, of removals.
void addCloudOption(CLI::App& command, GuardOptions& options);

/// --only-same-sound, of removals.
CLI::Option* addSoundOption(CLI::App& command, GuardOptions& options);

/// The rows of a search, group by group.
std::vector<const ResultTrack*> rowsOf(const SearchResult& found);

/// From a search to a replaylist plan.
struct ReplaylistSurvey {
  SurveyReport report;
  std::vector<PlaylistReplacements> chosen;  ///< in the order of the outline
  KeeperReasons reasons;
  Plan plan;  ///< of the chosen playlists
};
/// Surveys what was found. `only` chooses playlists by hexadecimal ID or name; all that the outline
/// shows when empty. Throws UsageError for one that is not among the affected.
ReplaylistSurvey surveyFor(OpenedApplication& opened, const SearchResult& found,
                           const std::vector<std::string>& only);

/// Refuses what moves files where it is not known whether they are there. Throws UsageError.
void needFiles(const Session& session, const std::string& command);

struct ActingOptions {
  bool json = false;   ///< --json
  bool apply = false;  ///< --apply
};
void addActingOptions(CLI::App& command, ActingOptions& options, const std::string& applyHelp);

/// How a command ends that shows what it would do and does it when asked: with a report of what was
/// done, or a word on how to have it done. Returns the exit status.
struct Ending {
  const ActingOptions& options;
  const Plan& plan;
  const SearchResult* found;  ///< whose scope is told; nullptr where nothing was searched
  bool hasWork;               ///< the plan can be applied
  std::string_view hint;      ///< told when it could be and was not asked for
  std::function<Json()> json;
  std::function<void(std::ostream&)> text;
  GuardOptions guard = {};

  int finish(OpenedApplication& opened) const;
};

/// The playlists of the library that list files which the plan moves; removals change them.
std::vector<ListedElsewhere> listedHere(OpenedApplication& opened, const Plan& plan);
/// The playlists of other libraries here that list files which the plan moves.
std::vector<ListedElsewhere> listedElsewhere(Session& session, OpenedApplication& opened,
                                             const Plan& plan);
Json json(const std::vector<ListedElsewhere>& listed);
void writeText(std::ostream& out, const std::vector<ListedElsewhere>& listed);

/// The word for it in JSON.
std::string_view wordFor(RunState state) noexcept;
/// The outcomes as [{"what","id","newID","name","result":"done|skipped|failed|notReached",
/// "changes":N,"reason":".."}].
Json json(const std::vector<Outcome>& outcomes);
void writeLines(std::ostream& out, const std::vector<std::string>& lines);
/// What is to be known before a plan is carried out, and what it leaves out; of the tracks of a
/// removal their own table tells.
void writeWarnings(std::ostream& out, const Plan& plan);
/// Puts the report into `result` under "report", as {"run":N,"state","problem":"..","outcomes"}, or
/// writes it as lines when that is nullptr. What ended the run goes to standard error too. Returns
/// the exit status: 0 when everything was done or skipped with a reason, else 1.
int tell(std::ostream& out, const ApplyReport& report, Json* result);

}  // namespace kestrel
