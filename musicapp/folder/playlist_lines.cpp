#include "musicapp/folder/playlist_lines.h"

#include <algorithm>

#include "foundation/collation.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

constexpr string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr string_view endings[] = {".m3u8", ".m3u", ".pls", ".xspf"};

string_view endingOf(string_view name) {
  const auto* ending = std::find_if(std::begin(endings), std::end(endings), [&](string_view known) {
    return name.size() > known.size() &&
           sameIgnoringCase(name.substr(name.size() - known.size()), known);
  });
  return ending == std::end(endings) ? string_view() : *ending;
}

/// Whether a text is UTF-8, and not ASCII alone.
bool isUtf8Beyond(string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; }) &&
         firstInvalidUtf8(text) == string_view::npos;
}

}  // namespace

bool PlaylistFile::isName(string_view name) noexcept { return !endingOf(name).empty(); }

std::unique_ptr<PlaylistFile> PlaylistFile::read(const std::string& path, std::string bytes) {
  const string_view ending = endingOf(path);
  if (ending == ".xspf") return readXspf(path, std::move(bytes));
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    throw LibraryError(path, {},
                       Message::tr("is a playlist in UTF-16, which Kestrel does not read"),
                       Message::tr("Save it in UTF-8."));
  return ending == ".pls" ? readPls(std::move(bytes))
                          : readM3u(std::move(bytes), ending == ".m3u8");
}

std::string PlaylistFile::empty(string_view path) {
  const string_view ending = endingOf(path);
  if (ending == ".pls") return "[playlist]\nNumberOfEntries=0\nVersion=2\n";
  if (ending == ".xspf")
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\">\n  <trackList>\n"
           "  </trackList>\n</playlist>\n";
  return "#EXTM3U\n";
}

std::string PlaylistFile::decoded(string_view text) const { return std::string(text); }
ListedPaths PlaylistFile::listed() const {
  ListedPaths listed;
  listed.areUrls = hasUrls();
  listed.entries.reserve(entries_.size());
  for (const std::string& entry : entries_) {
    std::string text = decoded(entry);
    if (text == entry) text.clear();
    listed.entries.push_back({entry, std::move(text)});
  }
  return listed;
}
bool PlaylistFile::canHold(const std::string&, std::size_t) const { return true; }

std::string describedTrack(string_view earlier, const PlaylistSlot& slot) {
  const ListedTrack& now = *slot.now;
  const bool isTitleOnly = slot.then && !slot.then->title.empty() && earlier == slot.then->title;
  std::string title = now.title;
  if (title.empty()) {
    const size_t slash = now.location.find_last_of("/\\");
    title = now.location.substr(slash == std::string::npos ? 0 : slash + 1);
  }
  return now.artist.empty() || isTitleOnly ? title : now.artist + " - " + title;
}

std::string describedLength(string_view earlier, const ListedTrack& track) {
  if (earlier == "-1" || earlier == "0" || track.milliseconds <= 0)
    return earlier.empty() || track.milliseconds <= 0 ? "-1" : std::string(earlier);
  return std::to_string(std::max<std::int64_t>((track.milliseconds + 500) / 1000, 1));
}

PlaylistLines::PlaylistLines(std::string bytes, bool isUtf8)
    : PlaylistFile(std::move(bytes)),
      encoding_(isUtf8 || firstInvalidUtf8(bytes_) == string_view::npos ? ListEncoding::utf8
                                                                        : ListEncoding::windows) {
  const char end = bytes_.find('\n') == std::string::npos ? '\r' : '\n';
  const size_t firstEnd = bytes_.find(end);
  lineEnd_ = end == '\r' && firstEnd != std::string::npos ? "\r"
             : firstEnd != std::string::npos && firstEnd > 0 && bytes_[firstEnd - 1] == '\r'
                 ? "\r\n"
                 : "\n";
  const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  for (size_t at = bytes_.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
       at < bytes_.size();) {
    Line line{at, at, std::min(bytes_.find(end, at), bytes_.size()), 0};
    line.next = std::min(line.end + 1, bytes_.size());
    while (line.end > line.begin && isSpace(bytes_[line.end - 1])) --line.end;
    while (line.begin < line.end && isSpace(bytes_[line.begin])) ++line.begin;
    lines_.push_back(line);
    at = line.next;
    isMixed_ =
        isMixed_ || (encoding_ == ListEncoding::windows && isUtf8Beyond(text(lines_.size() - 1)));
  }
}

ListEncoding PlaylistLines::encodingOf(string_view like) const {
  if (!isMixed_) return encoding_;
  // Which is meant by a text that every encoding has, the other lines say.
  return firstInvalidUtf8(like) == string_view::npos ? ListEncoding::utf8 : encoding_;
}

bool PlaylistLines::canHold(const std::string& location, std::size_t entry) const {
  bool isWhole = true;
  const string_view like = entry < entries_.size() ? string_view(entries_[entry]) : string_view();
  if (encodingOf(like) == ListEncoding::windows) {
    // Bytes of a name that is no UTF-8 cannot be told from others.
    isWhole = firstInvalidUtf8(location) == string_view::npos;
    if (isWhole) fromUtf8(location, ListEncoding::windows, &isWhole);
  }
  return isWhole;
}

std::string PlaylistLines::encoded(string_view text, string_view like) const {
  return fromUtf8(text, encodingOf(like));
}

std::string PlaylistLines::edited(const Edits& edits) const {
  const size_t start = bytes_.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
  std::string out = bytes_.substr(0, start) + edits.first;
  const auto end = [&] {
    if (!out.empty() && out.size() > start && !out.ends_with('\n') && !out.ends_with('\r'))
      out += lineEnd_;
  };
  size_t at = start;
  for (size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (const auto edit = edits.lines.find(i); edit == edits.lines.end())
      out.append(bytes_, at, line.next - at);
    else if (edit->second)
      out.append(bytes_, at, line.begin - at)
          .append(*edit->second)
          .append(bytes_, line.end, line.next - line.end);
    at = line.next;
    if (const auto added = edits.behind.find(i); added != edits.behind.end()) {
      const bool wasEnded = out.empty() || out.ends_with('\n') || out.ends_with('\r');
      end();
      out += added->second;
      if (!wasEnded) out.resize(out.size() - lineEnd_.size());  // as it ended before
    }
  }
  return out;
}

}  // namespace kestrel
