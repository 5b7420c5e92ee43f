#include "musicapp/scripted/stored_document.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_reader.h"
#include "musicapp/document/document_tracks.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/mapped_file.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// The number that a key stands for, if the key is that number's usual spelling.
std::optional<std::uint64_t> plainNumber(string_view key) {
  if (key.empty() || (key.front() == '0' && key.size() > 1)) return std::nullopt;
  return numberFromDecimal(key);
}

/// Whether the reader takes a key for a Track ID, such as "012" or "-5".
bool isNumber(string_view key) {
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(key.data(), key.data() + key.size(), number);
  return error == std::errc() && stop == key.data() + key.size();
}

}  // namespace

/// One pass over the document with its place in it.
class StoredDocument::Scan {
 public:
  Scan(StoredDocument& target, string_view text)
      : target_(target), text_(text), scanner_(text), released_(0) {}

  void run() {
    scanner_.beginDocument();
    const size_t root = scanner_.offset();
    if (scanner_.beginValue() != PlistType::dictionary)
      throw PlistError(root, Message::tr("expected the library's <dict>"));
    string_view key;
    while (scanner_.nextKey(key)) {
      if (key == "Tracks") {
        tracks();
      } else if (key == "Playlists") {
        scanner_.skip(scanner_.beginValue());
      } else {
        headerValue(std::string(key));
      }
    }
    scanner_.endDocument();
  }

 private:
  static constexpr size_t releaseStep = size_t{64} << 20U;

  /// The bytes of the value that comes next, which is passed.
  string_view valueBytes(PlistType& type) {
    size_t from = scanner_.offset();
    type = scanner_.beginValue();
    scanner_.skip(type);
    from = std::min(text_.find_first_not_of(" \t\r\n", from), scanner_.offset());
    return text_.substr(from, scanner_.offset() - from);
  }

  void headerValue(const std::string& key) {
    const size_t from = scanner_.offset();
    PlistType type{};
    const string_view bytes = valueBytes(type);
    try {
      target_.header.set(
          key, parsePropertyList(
                   std::string("<plist version=\"1.0\">").append(bytes).append("</plist>"), key));
    } catch (const LibraryError& error) {
      throw PlistError(from, error.problem);
    }
  }

  void tracks() {
    // A repeated "Tracks" replaces the one before, as any key does.
    target_.places_.clear();
    target_.others_.clear();
    const PlistType type = scanner_.beginValue();
    if (type != PlistType::dictionary) return scanner_.skip(type);
    string_view key;
    for (size_t from = scanner_.offset(); scanner_.nextKey(key); from = scanner_.offset())
      track(key, from);
  }

  /// The entry whose key has been read and which began at `from`, white space before it included.
  void track(string_view keyView, size_t from) {
    key_.assign(keyView);
    const PlistType type = scanner_.beginValue();
    Place place{};
    location_.clear();
    if (type == PlistType::dictionary) {
      string_view key;
      while (scanner_.nextKey(key)) {
        const bool isID = key == "Persistent ID", isLocation = key == "Location";
        const PlistType held = scanner_.beginValue();
        if (held != PlistType::string || !(isID || isLocation)) {
          scanner_.skip(held);
        } else if (isID) {
          place.persistentID = numberFromHex(scanner_.text(held)).value_or(0);
        } else {
          location_.assign(scanner_.text(held));
        }
      }
    } else {
      scanner_.skip(type);
    }
    if (place.persistentID == 0) place.persistentID = derivedPersistentID(key_, location_);
    from = text_.find_first_not_of(" \t\r\n", from);
    place.offset = from;
    place.length = scanner_.offset() - from;
    if (const auto number = plainNumber(key_)) {
      place.key = *number;
      target_.places_.push_back(place);
    } else {
      target_.others_.insert_or_assign(key_, place);
    }
    if (scanner_.offset() - released_ > releaseStep) {
      target_.text_->release(released_, releaseStep);
      released_ += releaseStep;
    }
  }

  StoredDocument& target_;
  string_view text_;
  PlistScanner scanner_;
  size_t released_;
  std::string key_, location_;
};

StoredDocument StoredDocument::ofFile(const std::string& path, FileService& files) {
  StoredDocument document;
  document.path_ = path;
  MappedFile file = files.map(path);
  document.status_ = file.status();
  document.scan(path, std::move(file));
  return document;
}

StoredDocument StoredDocument::ofBytes(std::string bytes, const std::string& name) {
  StoredDocument document;
  document.scan(name, MappedFile(bytes, {}));
  return document;
}

void StoredDocument::scan(const std::string& name, MappedFile file) {
  try {
    text_.emplace(std::move(file));
    Scan(*this, text_->bytes()).run();
    text_->checkUnchanged();
  } catch (const PlistError& fault) {
    if (text_) text_->checkUnchanged();
    throw documentError(name, text_ ? text_->bytes() : string_view(), fault);
  }
  std::stable_sort(places_.begin(), places_.end(),
                   [](const Place& a, const Place& b) { return a.key < b.key; });
  // Of equal keys the last one stays.
  const auto first = std::unique(places_.rbegin(), places_.rend(),
                                 [](const Place& a, const Place& b) { return a.key == b.key; });
  places_.erase(places_.begin(), first.base());
  places_.shrink_to_fit();
  byPersistentID_.resize(places_.size());
  std::iota(byPersistentID_.begin(), byPersistentID_.end(), 0U);
  std::stable_sort(byPersistentID_.begin(), byPersistentID_.end(),
                   [&](std::uint32_t a, std::uint32_t b) {
                     return places_[a].persistentID < places_[b].persistentID;
                   });
  for (const auto& [key, place] : others_)
    if (isNumber(key)) otherKeys_.try_emplace(place.persistentID, key);
}

std::optional<string_view> StoredDocument::entry(string_view key) const {
  const Place* place = nullptr;
  if (const auto number = plainNumber(key)) {
    const auto found = std::lower_bound(places_.begin(), places_.end(), *number,
                                        [](const Place& p, std::uint64_t k) { return p.key < k; });
    if (found != places_.end() && found->key == *number) place = &*found;
  } else if (const auto found = others_.find(key); found != others_.end()) {
    place = &found->second;
  }
  if (!place) return std::nullopt;
  return text_->bytes().substr(place->offset, place->length);
}

std::optional<std::string> StoredDocument::keyOf(std::uint64_t persistentID) const {
  const auto found = std::lower_bound(
      byPersistentID_.begin(), byPersistentID_.end(), persistentID,
      [&](std::uint32_t number, std::uint64_t id) { return places_[number].persistentID < id; });
  if (found != byPersistentID_.end() && places_[*found].persistentID == persistentID)
    return decimalText(places_[*found].key);
  if (const auto other = otherKeys_.find(persistentID); other != otherKeys_.end())
    return std::string(other->second);
  return std::nullopt;
}

}  // namespace kestrel
