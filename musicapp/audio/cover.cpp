#include "musicapp/audio/cover.h"

#include <algorithm>
#include <apefile.h>
#include <apetag.h>
#include <asffile.h>
#include <attachedpictureframe.h>
#include <cctype>
#include <flacfile.h>
#include <mp4file.h>
#include <mpcfile.h>
#include <wavpackfile.h>
#include <xiphcomment.h>

#include "musicapp/audio/opened_audio.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::string_view;

string_view mimeOf(string_view bytes) {
  if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
  if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
  if (bytes.starts_with("GIF8")) return "image/gif";
  if (bytes.starts_with("RIFF") &&
      bytes.substr(std::min<std::size_t>(bytes.size(), 8)).starts_with("WEBP"))
    return "image/webp";
  return {};
}

/// Keeps the first picture that it is given, or the first front cover.
class Pictures {
 public:
  void add(const TagLib::ByteVector& data, bool isFront = false) {
    const string_view bytes(data.data(), data.size());
    const string_view mime = mimeOf(bytes);
    if (mime.empty() || (cover && (hasFront_ || !isFront))) return;
    cover = Cover{std::string(bytes), std::string(mime)};
    hasFront_ = isFront;
  }
  void add(const TagLib::List<TagLib::FLAC::Picture*>& pictures) {
    for (const auto* picture : pictures)
      add(picture->data(), picture->type() == TagLib::FLAC::Picture::FrontCover);
  }
  void add(const TagLib::APE::Tag* tag) {
    if (!tag) return;
    for (const auto& [name, item] : tag->itemListMap())
      if (name.startsWith("COVER ART")) {
        const TagLib::ByteVector data = item.binaryData();  // a name, a zero, the picture
        add(data.mid(static_cast<unsigned>(data.find('\0') + 1)), name == "COVER ART (FRONT)");
      }
  }

  std::optional<Cover> cover;

 private:
  bool hasFront_ = false;
};

std::optional<Cover> embeddedCover(TagLib::File& file) {
  Pictures pictures;
  if (const TagLib::ID3v2::Tag* id3 = id3v2Of(file))
    for (const TagLib::ID3v2::Frame* frame : id3->frameList("APIC"))
      if (const auto* picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame*>(frame))
        pictures.add(picture->picture(),
                     picture->type() == TagLib::ID3v2::AttachedPictureFrame::FrontCover);
  if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(&file)) pictures.add(flac->pictureList());
  if (auto* xiph = dynamic_cast<TagLib::Ogg::XiphComment*>(file.tag()))
    pictures.add(xiph->pictureList());
  if (auto* mp4 = dynamic_cast<TagLib::MP4::File*>(&file); mp4 && mp4->tag())
    for (const TagLib::MP4::CoverArt& art : mp4->tag()->item("covr").toCoverArtList())
      pictures.add(art.data());
  if (auto* asf = dynamic_cast<TagLib::ASF::File*>(&file); asf && asf->tag())
    for (const TagLib::ASF::Attribute& value : asf->tag()->attribute("WM/Picture"))
      if (const auto picture = value.toPicture(); picture.isValid())
        pictures.add(picture.picture(), picture.type() == TagLib::ASF::Picture::FrontCover);
  if (auto* ape = dynamic_cast<TagLib::APE::File*>(&file)) pictures.add(ape->APETag());
  if (auto* mpc = dynamic_cast<TagLib::MPC::File*>(&file)) pictures.add(mpc->APETag());
  if (auto* wavPack = dynamic_cast<TagLib::WavPack::File*>(&file)) pictures.add(wavPack->APETag());
  return std::move(pictures.cover);
}

/// The place of a name among those of covers, best first; nothing for other names.
std::optional<std::size_t> coverRank(string_view name) {
  static constexpr string_view stems[] = {"cover", "folder", "front", "album", "albumart"};
  static constexpr string_view endings[] = {"jpg", "jpeg", "png", "webp", "gif"};
  std::string lower(name);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const std::size_t point = lower.rfind('.');
  if (point == std::string::npos) return std::nullopt;
  const auto* stem = std::find(std::begin(stems), std::end(stems), lower.substr(0, point));
  if (stem == std::end(stems) || std::find(std::begin(endings), std::end(endings),
                                           lower.substr(point + 1)) == std::end(endings))
    return std::nullopt;
  return static_cast<std::size_t>(stem - stems);
}

std::optional<Cover> coverInFolder(const std::string& folder, const FileService& files) {
  constexpr std::uint64_t most = 64U << 20U;  // what is larger is no cover
  std::vector<std::pair<std::size_t, std::string>> found;
  for (const std::string& name : files.list(folder.empty() ? "." : folder))
    if (const auto rank = coverRank(name)) found.emplace_back(*rank, folder + name);
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [rank, file] : found) {
    const auto status = files.entryStatus(file);
    if (!status || status->kind != FileStatus::Kind::file || status->size > most) continue;
    std::string bytes = files.readAll(file);
    if (const string_view mime = mimeOf(bytes); !mime.empty())
      return Cover{std::move(bytes), std::string(mime)};
  }
  return std::nullopt;
}

}  // namespace

std::optional<Cover> coverOf(const std::string& path, const FileService& files) {
  try {
    if (const OpenedAudio opened(path, false); opened.file())
      if (auto cover = embeddedCover(*opened.file())) return cover;
    return coverInFolder(path.substr(0, path.rfind('/') + 1), files);
  } catch (const FileError&) {  // a folder that may not be read, or a picture that went away
    return std::nullopt;
  }
}

bool hasCoverIn(const std::string& folder, const FileService& files) {
  try {
    return coverInFolder(folder.empty() || folder.ends_with('/') ? folder : folder + "/", files)
        .has_value();
  } catch (const FileError&) {
    return false;
  }
}

bool hasEmbeddedCover(TagLib::File& file) { return embeddedCover(file).has_value(); }

}  // namespace kestrel
