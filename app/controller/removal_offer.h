/// What can go of a result, copy by copy, before the user has the last word: to the trash, or out
/// of the library.
///
/// Making an offer reads the library and the files, on the worker, and throws what
/// `LibraryChanges` throws; the rest is for any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
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
  /// The playlist that goes on listing it, as the user wants, so that it stays; else empty.
  std::string listedBy;
  [[nodiscard]] bool goes() const noexcept { return isTaken && listedBy.empty(); }
};

/// Why such a copy stays, as a clause.
Message goesOnListing(const OfferedCopy& copy);

/// Entries that list copies and that the user leaves as they are: of whole playlists, and by
/// position. They count while a playlist lists what it did.
class LeftAsTheyAre {
 public:
  void setPlaylist(const PlannedPlaylist& playlist, bool left);
  void setEntry(const PlannedPlaylist& playlist, std::uint64_t position, bool left);
  [[nodiscard]] bool hasPlaylist(const PlannedPlaylist& playlist) const;
  /// By itself, whatever is said of its playlist.
  [[nodiscard]] bool hasEntry(const PlannedPlaylist& playlist, std::uint64_t position) const;

 private:
  struct Left {
    std::uint64_t entries = 0;  ///< the fingerprint of what it lists
    bool isWhole = false;
    std::unordered_set<std::uint64_t> positions;
  };
  Left& of(const PlannedPlaylist& playlist);
  [[nodiscard]] const Left* find(const PlannedPlaylist& playlist) const;

  std::unordered_map<std::uint64_t, Left> left_;  ///< by playlist
};

class TrackSounds;

class RemovalOffer {
 public:
  enum class Kind : std::uint8_t { trash, remove };
  /// Rows of the upper table's content: whole groups. What the others need is held back.
  /// `carry`: what the kept tracks are to be given, of what the application can (carrying.h).
  /// `sounds`: what was listened to, if anything was; where only what sounds the same is to go, a
  /// file that is changed after that stays.
  static RemovalOffer make(Kind kind, MusicApplication& application,
                           const std::vector<std::uint32_t>& rows, TrackValueSet carry = {},
                           const TrackSounds* sounds = nullptr);

  RemovalOffer() = default;
  [[nodiscard]] const std::vector<OfferedCopy>& copies() const noexcept { return copies_; }
  /// No effect on what stays.
  void take(std::size_t copy, bool taken);
  /// Whether playlists get the kept copies, which they always do when copies leave the library.
  void setRepairs(bool repairs);
  /// Those that would, with all entries that list copies which may go.
  [[nodiscard]] const std::vector<PlannedPlaylist>& repairs() const noexcept { return repairs_; }
  [[nodiscard]] const LeftAsTheyAre& left() const noexcept { return left_; }
  /// A copy that is listed by what is left stays, as long as playlists are repaired.
  void leave(LeftAsTheyAre left);
  /// The copy of that track; nullptr for others.
  [[nodiscard]] const OfferedCopy* copyOf(std::uint64_t track) const;

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
  /// The same with what is kept put into the playlists that list what is taken, in the same run.
  /// For the trash; on the worker.
  [[nodiscard]] Plan repairingPlan(MusicApplication& application, bool dropsRepeats) const;
  /// What the run of the plan is to let go.
  [[nodiscard]] GuardOptions guard() const;

 private:
  void addFiles(const Plan& loose, const Plan& strict);
  void addTracks(const Plan& loose, const Plan& strict);
  void addPlaylists(const Playlists& playlists);
  void addLosses(std::span<const ResultTrack* const> rows, bool keeperValue);
  void findListed();
  [[nodiscard]] std::unordered_set<std::uint64_t> tracksThat(bool go) const;
  void drop(Plan& plan) const;

  Kind kind_ = Kind::trash;
  TrackValueSet carry_;
  Plan plan_;  ///< with all that may go if the user asks for it
  std::vector<OfferedCopy> copies_;
  SurveyReport survey_;
  Playlists playlists_;
  /// The user's playlists that list a copy's track, by place in `playlists_`, once an entry.
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> listings_;
  std::unordered_map<std::uint64_t, Loss> losses_;  ///< by track, before anything is carried over
  std::shared_ptr<const KeeperFacts> facts_;        ///< with the texts of these
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> madeListings_;  ///< of the others
  std::vector<PlannedPlaylist> repairs_;
  std::unordered_map<std::uint64_t, std::uint32_t> copyOf_;  ///< of those that may go, by track
  LeftAsTheyAre left_;
  std::size_t repeating_ = 0;
  bool mustDrop_ = false;
  bool isRepairing_ = false;
};

}  // namespace kestrel
