#include "musicapp/document/document_edit.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/identifiers.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

constexpr string_view whiteSpace = " \t\r\n";

/// The white space that stands at `offset`.
string_view spaceAt(string_view document, size_t offset) {
  const string_view rest = document.substr(std::min(offset, document.size()));
  return rest.substr(0, std::min(rest.find_first_not_of(whiteSpace), rest.size()));
}

/// What follows the last line end; the whole text when there is none.
string_view lastLine(string_view text) { return text.substr(text.find_last_of("\r\n") + 1); }

void appendEscaped(string_view text, TextSink& sink) {
  escapeXml(text, [&](string_view part) { sink.append(part); });
}

/// Whether the first key of a scalar value has it on another line.
bool hasValuesOnOwnLines(string_view document, size_t from) {
  constexpr string_view closing = "</key>";
  for (int tries = 0; tries < 32; ++tries) {
    const size_t key = document.find(closing, from);
    if (key == string_view::npos) return false;
    const string_view between = spaceAt(document, key + closing.size());
    from = key + closing.size() + between.size();
    const string_view value = document.substr(from, 5);
    if (value.starts_with("<inte") || value.starts_with("<stri") || value.starts_with("<date") ||
        value.starts_with("<true") || value.starts_with("<fals"))
      return between.find('\n') != string_view::npos;
  }
  return false;
}

using Json = nlohmann::json;
constexpr int version = 1;

Json binary(const std::string& bytes) {
  return Json::binary(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

std::string bytesOf(const Json& json) {
  const Json::binary_t& bytes = json.get_binary();
  return {bytes.begin(), bytes.end()};
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

/// Follows the writing of a document that is made of another one, and notes what differs.
class ReversalRecorder {
 public:
  void kept(string_view bytes) {
    before_.add(bytes);
    written(bytes);
  }
  /// What is `written` until `replaced` stands in the place of these bytes.
  void replaces(string_view old) {
    before_.add(old);
    pieces_.push_back({{at_, at_}, std::string(old)});
  }
  void written(string_view bytes) {
    after_.add(bytes);
    at_ += bytes.size();
  }
  void replaced() { pieces_.back().place.end = at_; }
  /// To be called once, at the end.
  [[nodiscard]] DocumentReversal finish() {
    return {before_.value(), after_.value(), at_, std::move(pieces_), {}};
  }

 private:
  std::vector<DocumentReversal::Piece> pieces_;
  ContentHash before_, after_;
  size_t at_ = 0;  ///< bytes written
};

}  // namespace

DocumentReversal writeSpliced(string_view document, std::vector<Splice> splices, TextSink& sink,
                              const std::function<void(size_t, size_t)>& passed) {
  std::stable_sort(splices.begin(), splices.end(), [](const Splice& a, const Splice& b) {
    return std::pair(a.old.begin, a.old.end) < std::pair(b.old.begin, b.old.end);
  });
  ReversalRecorder recorder;
  size_t at = 0;
  const auto copyUntil = [&](size_t end) {
    for (; at < end; at += std::min(TextSink::pieceSize, end - at)) {
      const string_view piece = document.substr(at, std::min(TextSink::pieceSize, end - at));
      recorder.kept(piece);
      sink.append(piece);
      if (passed && piece.size() == TextSink::pieceSize) passed(at, piece.size());
    }
  };
  TextSink fresh([&](string_view bytes) {
    recorder.written(bytes);
    sink.append(bytes);
  });
  for (const Splice& splice : splices) {
    copyUntil(splice.old.begin);
    recorder.replaces(document.substr(splice.old.begin, splice.old.end - splice.old.begin));
    if (splice.text) splice.text(fresh);
    fresh.flush();
    recorder.replaced();
    at = splice.old.end;
  }
  copyUntil(document.size());
  sink.flush();
  return recorder.finish();
}

std::string DocumentLayout::lineStart(size_t depth) const {
  if (lineEnd.empty()) return {};
  std::string start = lineEnd + rootIndent;
  for (size_t i = 0; i < depth; ++i) start += indentUnit;
  return start;
}

DocumentLayout layoutOf(string_view document, const DocumentIndex& index) {
  DocumentLayout layout;
  const string_view start = spaceAt(document, index.root.content);
  if (start.find('\n') == string_view::npos) {
    layout.lineEnd.clear();
    return layout;
  }
  if (start.find("\r\n") != string_view::npos) layout.lineEnd = "\r\n";
  layout.rootIndent = lastLine(start);
  for (const ContainerPlace* section : {&index.tracks, &index.playlists}) {
    const string_view deeper = lastLine(spaceAt(document, section->content));
    if (section->last == section->content || deeper.size() <= layout.rootIndent.size() ||
        !deeper.starts_with(layout.rootIndent))
      continue;
    layout.indentUnit = deeper.substr(layout.rootIndent.size());
    break;
  }
  layout.valuesOnOwnLines = hasValuesOnOwnLines(document, index.root.content);
  return layout;
}

void LayoutWriter::key(size_t depth, string_view name) {
  sink_.append(layout_.lineStart(depth));
  sink_.append("<key>");
  appendEscaped(name, sink_);
  sink_.append("</key>");
}

void LayoutWriter::tag(size_t depth, string_view tag) {
  sink_.append(layout_.lineStart(depth));
  sink_.append(tag);
}

void LayoutWriter::value(size_t depth, string_view name, string_view element, string_view text) {
  key(depth, name);
  if (layout_.valuesOnOwnLines) sink_.append(layout_.lineStart(depth));
  for (const string_view part : {string_view("<"), element, string_view(">")}) sink_.append(part);
  appendEscaped(text, sink_);
  for (const string_view part : {string_view("</"), element, string_view(">")}) sink_.append(part);
}

void LayoutWriter::number(size_t depth, string_view name, std::int64_t number) {
  if (number != 0) value(depth, name, "integer", std::to_string(number));
}

void LayoutWriter::flag(size_t depth, string_view name) {
  key(depth, name);
  if (layout_.valuesOnOwnLines) sink_.append(layout_.lineStart(depth));
  sink_.append("<true/>");
}

void LayoutWriter::entries(size_t depth, std::span<const std::int64_t> trackIDs) {
  // Millions of them: the texts around the number are made once.
  const std::string inner = layout_.lineStart(depth + 1);
  const std::string before = layout_.lineStart(depth) + "<dict>" + inner + "<key>Track ID</key>" +
                             (layout_.valuesOnOwnLines ? inner : "") + "<integer>";
  const std::string behind = "</integer>" + layout_.lineStart(depth) + "</dict>";
  for (const std::int64_t trackID : trackIDs) {
    sink_.append(before);
    sink_.append(std::to_string(trackID));
    sink_.append(behind);
  }
}

void appendInto(string_view document, const ContainerPlace& place, const std::string& element,
                size_t depth, const DocumentLayout& layout, std::function<void(TextSink&)> content,
                std::vector<Splice>& splices) {
  if (!place.selfClosed) {
    // An empty container on one line needs its closing tag put on a line of its own.
    const bool breaks = place.content == place.last && document[place.last] == '<';
    splices.push_back({{place.last, place.last},
                       [content = std::move(content), breaks, depth, &layout](TextSink& sink) {
                         content(sink);
                         if (breaks) sink.append(layout.lineStart(depth));
                       }});
    return;
  }
  splices.push_back({{place.tag, place.end},
                     [content = std::move(content), element, depth, &layout](TextSink& sink) {
                       sink.append("<" + element + ">");
                       content(sink);
                       LayoutWriter(sink, layout).tag(depth, "</" + element + ">");
                     }});
}

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
