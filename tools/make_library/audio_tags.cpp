#include "tools/make_library/audio_tags.h"

#include <aifffile.h>
#include <id3v2framefactory.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <stdexcept>
#include <tbytevectorstream.h>
#include <tpropertymap.h>
#include <wavfile.h>

namespace kestrel::make_library {
namespace {

TagLib::PropertyMap properties(const Track& track) {
  TagLib::PropertyMap map;
  const auto add = [&](const char* name, const std::string& text) {
    if (!text.empty()) map.insert(name, TagLib::String(text, TagLib::String::UTF8));
  };
  const auto addNumber = [&](const char* name, std::uint32_t number, std::uint32_t of = 0) {
    if (number == 0) return;
    add(name, std::to_string(number) + (of == 0 ? "" : "/" + std::to_string(of)));
  };
  for (const NameField& field : nameFields)
    if (field.tag) add(field.tag, track.*field.name);
  add("COMMENT", track.comments);
  addNumber("DATE", track.year);
  addNumber("TRACKNUMBER", track.trackNumber, track.trackCount);
  addNumber("DISCNUMBER", track.discNumber, track.discCount);
  addNumber("BPM", track.bpm);
  addNumber("COMPILATION", track.compilation ? 1 : 0);
  return map;
}

void check(bool saved, const Track& track) {
  if (!saved) throw std::runtime_error("Could not write the tags of " + track.path);
}

}  // namespace

std::string withTags(const std::string& bytes, const Track& track) {
  TagLib::ByteVectorStream stream(
      TagLib::ByteVector(bytes.data(), static_cast<unsigned int>(bytes.size())));
  const TagLib::PropertyMap map = properties(track);
  if (track.format->extension == "mp3") {
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    file.setProperties(map);
    // The version that every player reads.
    check(file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, TagLib::ID3v2::v3),
          track);
  } else if (track.format->extension == "wav") {
    TagLib::RIFF::WAV::File file(&stream, false);
    file.setProperties(map);
    check(file.save(), track);
  } else if (track.format->extension == "aif") {
    TagLib::RIFF::AIFF::File file(&stream, false);
    file.setProperties(map);
    check(file.save(), track);
  } else {
    TagLib::MP4::File file(&stream, false);
    file.setProperties(map);
    check(file.save(), track);
  }
  const TagLib::ByteVector* const tagged = stream.data();
  return {tagged->data(), tagged->size()};
}

}  // namespace kestrel::make_library
