#include "tools/make_library/media_path.h"

#include <algorithm>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

namespace kestrel::make_library {
namespace {

constexpr std::size_t kLongestName = 120;  // bytes; file systems allow 255

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Fit to be a file's name: no slashes and colons, no leading dot, whole characters, not empty.
std::string fileName(std::string_view name, std::string_view unknown) {
  std::string fit = decomposed(name.empty() ? unknown : name);
  if (fit.size() > kLongestName) {
    std::size_t end = kLongestName;
    while ((static_cast<unsigned char>(fit[end]) & 0xC0U) == 0x80U) --end;
    fit.resize(end);
  }
  for (char& c : fit) {
    if (std::string_view{"/:?\"<>|\\*"}.find(c) != std::string_view::npos) c = '_';
  }
  if (fit.front() == '.') fit.front() = '_';
  return fit;
}

}  // namespace

std::string decomposed(std::string_view text) {
  if (isAscii(text)) return std::string{text};
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFDInstance(error);
  const auto size = static_cast<std::int32_t>(text.size());
  const icu::UnicodeString result =
      normalizer->normalize(icu::UnicodeString::fromUTF8({text.data(), size}), error);
  std::string bytes;
  return result.toUTF8String(bytes);
}

std::string mediaPath(std::string_view mediaFolder, const Track& track, const Entry& entry) {
  const std::string copy = std::to_string(entry.copyNumber);
  std::string path{mediaFolder};
  if (entry.variant == Variant::otherFolder) path += "/Backup " + copy;
  switch (track.media) {
    case Media::podcast:
      path += "/Podcasts/";
      break;
    case Media::movie:
      path += "/Movies/";
      break;
    case Media::tvShow:
      path += "/TV Shows/";
      break;
    default:
      path += "/Music/";
  }
  const std::string& artist = track.albumArtist.empty() ? track.artist : track.albumArtist;
  path += track.compilation ? "Compilations" : fileName(artist, "Unknown Artist");
  path += '/' + fileName(track.album, "Unknown Album") + '/';
  if (track.trackNumber != 0) {
    if (track.discCount > 1) path += std::to_string(track.discNumber) + '-';
    path += (track.trackNumber < 10 ? "0" : "") + std::to_string(track.trackNumber) + ' ';
  }
  path += fileName(track.name, "Track");
  if (entry.variant == Variant::numberedFile) {
    path += " (" + copy + ')';
  } else if (entry.copyNumber != 0 && entry.variant != Variant::otherFolder) {
    path += ' ' + copy;
  }
  path += '.';
  path += track.format->extension;
  return path;
}

std::string fileUrl(std::string_view path) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  constexpr std::string_view kBare =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,=:@/";
  std::string url = "file://";
  for (const char c : path) {
    if (kBare.find(c) != std::string_view::npos) {
      url += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15U]};
    }
  }
  return url;
}

}  // namespace kestrel::make_library
