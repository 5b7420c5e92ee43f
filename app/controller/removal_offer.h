/// What can go of a result, copy by copy, before the user has the last word: to the trash, or out
/// of the library.
///
/// Making an offer reads the library and the files, on the worker, and throws what
/// `LibraryChanges` throws; the rest is for any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/library_changes.h"
#include "dupes/losses.h"

namespace kestrel {

/// A copy that is not kept, or a file of several.
struct OfferedCopy {
  enum class State : std::uint8_t {
    safe,
    unsafe,  ///< goes only when the user asks for it
    stays
  };
  std::vector<std::uint64_t> tracks;  ///< one; of one file in the trash there may be more
  std::string name;                   ///< the track's
  std::string path;                   ///< empty without a file
  std::string keeperPath;             ///< of what is kept; empty for a copy in the cloud
  bool hasKeeper = false;
  bool fileStays = false;   ///< the track goes without its file
  bool fileIsGone = false;  ///< because there is none any more
  std::uint64_t size = 0;   ///< bytes that go to the trash
  State state = State::safe;
  Message loss;    ///< what goes with it and its keeper lacks; empty: nothing
  Message reason;  ///< of what is not safe, of what stays, or why the file does
  bool isTaken = true;
};

class RemovalOffer {
 public:
  enum class Kind : std::uint8_t { trash, remove };
  /// Rows of the upper table's content: whole groups. What the others need is held back.
  /// `carry`: what the kept tracks are to be given, of what the application can (carrying.h).
  static RemovalOffer make(Kind kind, MusicApplication& application,
                           const std::vector<std::uint32_t>& rows, TrackValueSet carry = {});

  RemovalOffer() = default;
  [[nodiscard]] const std::vector<OfferedCopy>& copies() const noexcept { return copies_; }
  /// No effect on what stays.
  void take(std::size_t copy, bool taken);

  struct Sums {
    std::size_t copies = 0, files = 0;  ///< that go
    std::uint64_t bytes = 0;
    std::size_t stay = 0;                    ///< copies
    std::size_t entries = 0, playlists = 0;  ///< that list what goes
    bool operator==(const Sums&) const = default;
  };
  [[nodiscard]] Sums sums() const;
  /// What kept tracks are given by all that is taken; empty for nothing.
  [[nodiscard]] Message gain() const;
  /// What goes with all that is taken.
  [[nodiscard]] LossTotal losses() const;
  /// Playlists that the application makes and that list what is taken: their entries go.
  struct Loser {
    std::string name;
    std::size_t entries = 0;
  };
  [[nodiscard]] std::vector<Loser> losers() const;
  /// Playlists that list what is kept already, beside what goes.
  [[nodiscard]] std::size_t repeating() const noexcept { return repeating_; }

  /// What is taken; where `dropsRepeats`, an entry goes in place of listing a kept copy twice.
  [[nodiscard]] Plan plan(bool dropsRepeats) const;
  /// Puts what is kept into the playlists that list what is taken, without anything else.
  [[nodiscard]] Plan repairPlan(MusicApplication& application, bool dropsRepeats) const;
  /// What the run of the plan is to let go.
  [[nodiscard]] GuardOptions guard() const;

 private:
  void addFiles(const Plan& loose, const Plan& strict);
  void addTracks(const Plan& loose, const Plan& strict);
  void addPlaylists(const Playlists& playlists);
  void addLosses(std::span<const ResultTrack* const> rows, bool keeperValue);
  [[nodiscard]] std::unordered_set<std::uint64_t> tracksThat(bool areTaken) const;
  void drop(Plan& plan) const;

  Kind kind_ = Kind::trash;
  TrackValueSet carry_;
  Plan plan_;  ///< with all that may go if the user asks for it
  std::vector<OfferedCopy> copies_;
  SurveyReport survey_;
  Playlists playlists_;
  /// The user's playlists that list a copy's track, by place in `playlists_`, once an entry.
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> listings_;
  std::unordered_map<std::uint64_t, Loss> losses_;  ///< by track
  std::shared_ptr<const KeeperFacts> facts_;        ///< with the texts of these
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> madeListings_;  ///< of the others
  std::size_t repeating_ = 0;
  bool mustDrop_ = false;
};

}  // namespace kestrel
