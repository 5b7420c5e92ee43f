#include "musicapp/rhythmbox/playlists_file.h"

#include <map>
#include <utility>

#include "foundation/library_error.h"
#include "musicapp/rhythmbox/xml_events.h"

namespace kestrel::rhythmbox {
namespace {

using std::string;
using std::string_view;

constexpr char emptyFile[] =
    "<?xml version=\"1.0\"?>\n<rhythmdb-playlists>\n</rhythmdb-playlists>\n";

string elementOf(const string& uri) { return "<location>" + xmlEscaped(uri) + "</location>"; }

/// A start tag, which ends the element too if that has no content.
string openedTag(string_view tag) {
  return tag.ends_with("/>") ? string(tag.substr(0, tag.size() - 2)) + ">" : string(tag);
}

}  // namespace

class PlaylistsFile::Reader final : public XmlReader {
 public:
  explicit Reader(PlaylistsFile& file) : file_(file) {}

 private:
  void beginElement(const Tag& tag) override {
    ++depth_;
    if (depth_ == 1) {
      file_.rootContent_ = last_ = tag.end;
    } else if (depth_ == 2 && tag.name == "playlist") {
      list_ = &file_.lists_.emplace_back();
      list_->name = tag.attribute("name");
      list_->type = tag.attribute("type");
      list_->begin = last_;
      list_->content = tag.end;
    } else if (depth_ == 3 && list_ && tag.name == "location") {
      isEntry_ = true;
      list_->uris.emplace_back();
    }
  }
  void text(string_view piece) override {
    if (isEntry_ && depth_ == 3) list_->uris.back().append(piece);
  }
  void endElement(const Tag& tag) override {
    if (depth_ == 1) file_.rootEndTag_ = tag.begin;
    if (depth_ == 2) {
      last_ = tag.end;
      if (list_) list_->end = tag.end;
      list_ = nullptr;
    }
    if (depth_ == 3 && std::exchange(isEntry_, false)) list_->ends.push_back(tag.end);
    --depth_;
  }

  PlaylistsFile& file_;
  StoredList* list_ = nullptr;
  int depth_ = 0;
  std::size_t last_ = 0;  ///< the end of the element before
  bool isEntry_ = false;
};

PlaylistsFile::PlaylistsFile() : PlaylistsFile(emptyFile, {}) {}

PlaylistsFile::PlaylistsFile(string document, const string& file) : document_(std::move(document)) {
  Reader(*this).read(document_, "rhythmdb-playlists", file);
}

std::multimap<string_view, string_view> PlaylistsFile::entriesOf(const StoredList& list) const {
  std::multimap<string_view, string_view> entries;  // equal ones in their order
  std::size_t at = list.content;
  for (std::size_t i = 0; i < list.uris.size(); ++i) {
    const std::size_t begin = std::exchange(at, list.ends[i]);
    entries.emplace(list.uris[i], string_view(document_).substr(begin, at - begin));
  }
  return entries;
}

FormerList PlaylistsFile::former(const ListEdit& edit) const {
  const StoredList& list = lists_[edit.list.value()];
  FormerList former;
  if (list.content == list.end) former.oneTag = document_.substr(list.begin, list.end - list.begin);
  auto gone = entriesOf(list);
  for (const string& uri : edit.uris.value_or(std::vector<string>()))
    if (const auto stays = gone.find(uri); stays != gone.end()) gone.erase(stays);
  for (const auto& [uri, text] : gone) former.entries.emplace(uri, text);
  return former;
}

void PlaylistsFile::write(const StoredList& list, const ListEdit& edit, string& out) const {
  const std::vector<string>& uris = *edit.uris;
  if (uris.empty() && edit.former && !edit.former->oneTag.empty()) {
    out.append(edit.former->oneTag);
    return;
  }
  const string_view all = document_;
  const auto piece = [&](std::size_t from, std::size_t to) { return all.substr(from, to - from); };
  auto old = entriesOf(list);
  auto former = edit.former ? edit.former->entries : std::multimap<string, string>();
  const std::size_t last = list.ends.empty() ? list.content : list.ends.back();
  // As it stands before the first: a line end and blanks, most likely.
  string_view indent = "\n    ";
  if (!list.ends.empty())
    if (const string_view first = piece(list.content, list.ends[0]);
        first.find_first_not_of(" \t\r\n") == first.find("<location"))
      indent = first.substr(0, first.find('<'));

  out.append(openedTag(piece(list.begin, list.content)));
  for (const string& uri : uris) {
    if (const auto found = old.find(uri); found != old.end()) {
      out.append(found->second);
      old.erase(found);
    } else if (const auto before = former.find(uri); before != former.end()) {
      out.append(before->second);
      former.erase(before);
    } else {
      out.append(indent).append(elementOf(uri));
    }
  }
  if (list.end == list.content) out.append("\n  </playlist>");
  out.append(piece(last, list.end));
}

string PlaylistsFile::edited(std::span<const ListEdit> edits) const {
  std::map<std::size_t, const ListEdit*> changed;
  string added;
  for (const ListEdit& edit : edits) {
    if (edit.list) {
      changed.emplace(*edit.list, &edit);
    } else if (edit.uris) {
      added += "\n  <playlist name=\"" + xmlEscaped(edit.name) +
               "\" show-browser=\"false\" browser-position=\"180\" "
               "search-type=\"search-match\" type=\"static\">";
      for (const string& uri : *edit.uris) added += "\n    " + elementOf(uri);
      added += "\n  </playlist>";
    }
  }
  const string_view all = document_;
  string out;
  std::size_t at = 0;
  const auto keepUntil = [&](std::size_t end) {
    out.append(all.substr(at, end - at));
    at = end;
  };
  for (const auto& [place, edit] : changed) {
    const StoredList& list = lists_[place];
    keepUntil(list.begin);
    if (edit->uris) write(list, *edit, out);
    at = list.end;
  }
  if (!added.empty()) {
    const bool isOneTag = rootEndTag_ == document_.size() || all.substr(rootEndTag_, 2) != "</";
    const std::size_t before = isOneTag         ? rootContent_
                               : lists_.empty() ? rootContent_
                                                : std::max(at, lists_.back().end);
    keepUntil(before);
    if (isOneTag) out = openedTag(out);
    out.append(added);
    if (isOneTag) out.append("\n</rhythmdb-playlists>");
  }
  keepUntil(document_.size());
  return out;
}

}  // namespace kestrel::rhythmbox
