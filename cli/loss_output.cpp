#include "cli/loss_output.h"

#include <algorithm>
#include <ostream>

#include "dupes/asked_of_files.h"

namespace kestrel {

Json json(const Loss& loss) {
  Json object = {{"hexpid", TextSorter::decToHex(loss.track->item().persistentID)},
                 {"keeper", TextSorter::decToHex(loss.keeper->item().persistentID)}};
  if (loss.plays) object["plays"] = loss.plays;
  if (loss.rating) object["rating"] = loss.rating;
  if (loss.added) object["added"] = json(Value(*loss.added));
  if (loss.lastPlayed) object["lastPlayed"] = json(Value(*loss.lastPlayed));
  if (loss.skips) object["skips"] = loss.skips;
  if (loss.lastSkipped) object["lastSkipped"] = json(Value(*loss.lastSkipped));
  if (!loss.comments.empty()) object["comments"] = std::string(loss.comments);
  if (!loss.grouping.empty()) object["grouping"] = std::string(loss.grouping);
  if (loss.bpm) object["bpm"] = loss.bpm;
  if (loss.lossless) object["lossless"] = true;
  if (loss.cover) object["cover"] = true;
  if (loss.playlists) object["playlists"] = loss.playlists;
  return object;
}

Json totalOf(const LossLedger& ledger) {
  const LossTotal& total = ledger.total;
  return {{"copies", total.copies},
          {"plays", total.plays},
          {"ratings", total.ratings},
          {"added", total.added},
          {"lastPlayed", total.lastPlayed},
          {"skips", total.skips},
          {"lastSkipped", total.lastSkipped},
          {"comments", total.comments},
          {"groupings", total.groupings},
          {"bpm", total.bpm},
          {"lossless", total.lossless},
          {"covers", ledger.knowsCovers ? Json(total.cover) : Json()},
          {"playlists", total.playlists}};
}

LossLedger ledgerOf(const SearchResult& found, const std::unordered_set<std::uint64_t>* leaving,
                    TrackValueSet carried, Session* session) {
  LossLedger ledger;
  CoverOf cover;
  if (session && found.files) {
    std::vector<const TrackRecord*> asked;
    for (const FoundGroup& group : found.groups)
      if (!leaving || std::any_of(group.tracks.begin(), group.tracks.end(), [&](const auto* track) {
            return leaving->contains(track->record->item().persistentID);
          }))
        for (const ResultTrack* track : group.tracks) asked.push_back(track->record);
    prepare(*found.files, asked, *session);
    ledger.knowsCovers = true;
  }
  ledger.knowsCovers = ledger.knowsCovers || found.knowsCovers;
  if (ledger.knowsCovers) cover = coversBy(found.files);
  LossesBesideCarrying beside(carried);
  for (const FoundGroup& group : found.groups) {
    std::vector<Loss> losses = lossesOf(
        group.tracks, *found.facts, [&](const ResultTrack& track) { return found.isKeeper(track); },
        cover);
    if (leaving)
      std::erase_if(losses, [&](const Loss& loss) {
        return !leaving->contains(loss.track->item().persistentID);
      });
    for (Loss& loss : losses) beside.leaveOut(loss);
    std::erase_if(losses, [](const Loss& loss) { return loss.isNothing(); });
    for (const Loss& loss : losses) ledger.total.add(loss);
    if (!losses.empty()) ledger.groups.emplace_back(&group, std::move(losses));
  }
  return ledger;
}

Json json(const LossLedger& ledger) {
  Json result = {{"total", totalOf(ledger)}, {"groups", Json::array()}};
  for (const auto& [group, losses] : ledger.groups) {
    Json copies = Json::array();
    for (const Loss& loss : losses) copies.push_back(json(loss));
    result["groups"].push_back({{"tGroupID", group->tGroupID}, {"copies", std::move(copies)}});
  }
  return result;
}

LossTexts::LossTexts(const LossLedger& ledger) {
  for (const auto& [group, losses] : ledger.groups)
    for (const Loss& loss : losses) losses_.emplace(loss.track->item().persistentID, &loss);
}

std::string LossTexts::of(std::uint64_t track) const {
  const auto at = losses_.find(track);
  return at == losses_.end() ? std::string() : "has alone: " + explain(*at->second).english();
}

void writeTotal(std::ostream& out, std::string_view introduction, const LossLedger& ledger) {
  if (const Message words = explain(ledger.total); !words.empty())
    out << introduction << ": " << words.english() << ".\n";
}

}  // namespace kestrel
