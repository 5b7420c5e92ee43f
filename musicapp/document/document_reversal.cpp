#include "musicapp/document/document_reversal.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "musicapp/document/document_edit.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;
using std::size_t;
using std::string_view;

constexpr int version = 1;

Json binary(const std::string& bytes) {
  return Json::binary(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

std::string bytesOf(const Json& json) {
  const Json::binary_t& bytes = json.get_binary();
  return {bytes.begin(), bytes.end()};
}

/// Seven bits a byte, the lowest first; the last byte lacks the top bit.
void appendNumber(size_t number, std::string& out) {
  for (; number >= 0x80U; number >>= 7U) out += static_cast<char>(number | 0x80U);
  out += static_cast<char>(number);
}

std::optional<size_t> takeNumber(string_view& bytes) {
  size_t number = 0;
  for (unsigned shift = 0; shift < 63 && !bytes.empty(); shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    number |= static_cast<size_t>(byte & 0x7FU) << shift;
    if (byte < 0x80U) return number;
  }
  return std::nullopt;
}

/// There may be millions of them, of a few bytes each: for each how many bytes stay before it, its
/// length, and what stood there.
std::string bytesOf(const std::vector<DocumentReversal::Piece>& pieces) {
  std::string bytes;
  size_t at = 0;
  for (const DocumentReversal::Piece& piece : pieces) {
    appendNumber(piece.place.begin - at, bytes);
    appendNumber(piece.place.end - piece.place.begin, bytes);
    appendNumber(piece.before.size(), bytes);
    bytes += piece.before;
    at = piece.place.end;
  }
  return bytes;
}

bool readPieces(string_view bytes, std::vector<DocumentReversal::Piece>& pieces) {
  size_t at = 0;
  while (!bytes.empty()) {
    const auto skipped = takeNumber(bytes), length = takeNumber(bytes), before = takeNumber(bytes);
    if (!skipped || !length || !before || *before > bytes.size()) return false;
    const size_t begin = at + *skipped;
    at = begin + *length;
    pieces.push_back({{begin, at}, std::string(bytes.substr(0, *before))});
    bytes.remove_prefix(*before);
  }
  return true;
}

}  // namespace

std::string DocumentReversal::encoded() const {
  Json trackList = Json::array();
  for (const Track& track : tracks) {
    Json positions = Json::array();
    for (const Position& position : track.positions)
      positions.push_back({position.playlist, position.position});
    trackList.push_back(
        {track.persistentID, track.behind, binary(track.entry), std::move(positions)});
  }
  std::string bytes;
  Json::to_cbor({{"version", version},
                 {"before", binary(before)},
                 {"after", binary(after)},
                 {"size", size},
                 {"pieces", binary(bytesOf(pieces))},
                 {"tracks", std::move(trackList)}},
                bytes);
  return bytes;
}

std::optional<DocumentReversal> DocumentReversal::decoded(string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  try {
    const Json json = Json::from_cbor(bytes);
    if (json.at("version") != version) return std::nullopt;
    DocumentReversal reversal;
    reversal.before = bytesOf(json.at("before"));
    reversal.after = bytesOf(json.at("after"));
    reversal.size = json.at("size").get<size_t>();
    if (!readPieces(bytesOf(json.at("pieces")), reversal.pieces)) return std::nullopt;
    for (const Json& track : json.at("tracks")) {
      Track& made = reversal.tracks.emplace_back();
      made.persistentID = track.at(0).get<std::uint64_t>();
      made.behind = track.at(1).get<std::uint64_t>();
      made.entry = bytesOf(track.at(2));
      for (const Json& position : track.at(3))
        made.positions.push_back(
            {position.at(0).get<std::uint64_t>(), position.at(1).get<std::uint64_t>()});
    }
    return reversal;
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

void ReversalRecorder::kept(string_view bytes) {
  before_.add(bytes);
  written(bytes);
}

void ReversalRecorder::replaces(string_view old) {
  before_.add(old);
  pieces_.push_back({{at_, at_}, std::string(old)});
}

void ReversalRecorder::written(string_view bytes) {
  after_.add(bytes);
  at_ += bytes.size();
}

DocumentReversal ReversalRecorder::finish() {
  DocumentReversal reversal;
  reversal.before = before_.value();
  reversal.after = after_.value();
  reversal.size = at_;
  reversal.pieces = std::move(pieces_);
  return reversal;
}

bool writeReverted(string_view committed, const DocumentReversal& reversal, TextSink& sink) {
  ContentHash hash;
  const auto write = [&](string_view bytes) {
    hash.add(bytes);
    sink.append(bytes);
  };
  size_t at = 0;
  for (const DocumentReversal::Piece& piece : reversal.pieces) {
    if (piece.place.begin < at || piece.place.end < piece.place.begin ||
        piece.place.end > committed.size())
      return false;
    write(committed.substr(at, piece.place.begin - at));
    write(piece.before);
    at = piece.place.end;
  }
  write(committed.substr(at));
  return hash.value() == reversal.before;
}

}  // namespace kestrel
