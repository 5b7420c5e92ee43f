/// A track in a search result: the shared record and what the search adds to it.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "foundation/message.h"
#include "library/track_record.h"
#include "library/track_store.h"
#include "sound/likeness.h"

namespace kestrel {

/// The upper table's row. Changing it never changes the record of the snapshot.
struct ResultTrack {
  const TrackRecord* record = nullptr;
  std::shared_ptr<const TrackStore> store;  ///< keeps the record alive
  std::int32_t tGroupID = 0;                ///< number of the dupe group; reads as decimal text
  std::int32_t dupeSort = 0;                ///< run number in display order, 0 until ordered
  bool checkBox = false;                    ///< reads as the text "1" or "0"
  bool tCheckbox = false;                   ///< the keeper flag
  /// How many rules would keep what is kept of the group, of those that choose; 0 of 0: unknown.
  std::uint8_t rulesThatAgree = 0, rulesThatChoose = 0;
  Likeness sound = {};  ///< beside what is kept of the group, once compared

  /// Like TrackRecord::value, with the keys above in front.
  [[nodiscard]] Value value(TrackKey key) const;
  [[nodiscard]] Value value(std::string_view key) const;
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    for (const TrackKeyInfo& info : trackKeys())
      if (const Value held = value(info.key); !held.isAbsent()) visit(info.name, held);
  }
};

/// "13 of 14"; empty where it is unknown.
Message agreementText(const ResultTrack& track);

}  // namespace kestrel
