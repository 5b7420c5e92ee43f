#include "tests/musicapp/audio/sample_audio.h"

#include <cstdint>
#include <fileref.h>
#include <stdexcept>
#include <tpropertymap.h>
#include <vector>

#include "tools/make_library/audio_files.h"

namespace kestrel::testing {
namespace {

using std::string;

string little(std::uint64_t value, int size) {
  string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(i < 8 ? value >> (8 * i) & 0xFFU : 0);
  return bytes;
}
string big(std::uint64_t value, int size) {
  const string bytes = little(value, size);
  return {bytes.rbegin(), bytes.rend()};
}
string hex(std::string_view digits) {
  string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes += static_cast<char>(std::stoi(string(digits.substr(i, 2)), nullptr, 16));
  return bytes;
}

constexpr std::uint32_t rate = 44'100, samples = 22'050;

/// The packets of an Ogg stream, each on a page of its own, and a last page that says the length.
string ogg(const std::vector<string>& packets, std::uint64_t length) {
  string file;
  const auto page = [&](const string& content, int flags, std::uint64_t position,
                        std::size_t number) {
    string laces;
    for (std::size_t left = content.size();; left -= 255) {
      laces += static_cast<char>(left < 255 ? left : 255);
      if (left < 255) break;
    }
    string bytes = "OggS" + little(0, 1) + little(static_cast<unsigned>(flags), 1) +
                   little(position, 8) + little(7, 4) + little(number, 4) + little(0, 4) +
                   little(laces.size(), 1) + laces + content;
    std::uint32_t sum = 0;
    for (const char c : bytes) {
      sum ^= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 24U;
      for (int bit = 0; bit < 8; ++bit) sum = sum << 1U ^ (sum >> 31U ? 0x04C11DB7U : 0U);
    }
    file += bytes.replace(22, 4, little(sum, 4));
  };
  for (std::size_t i = 0; i < packets.size(); ++i) page(packets[i], i == 0 ? 2 : 0, 0, i);
  page(string(8, '\0'), 4, length, packets.size());
  return file;
}

string noComments(const string& vendor) { return little(vendor.size(), 4) + vendor + little(0, 4); }

string asf() {
  const string stream = hex("409E69F84D5BCF11A8FD00805F5C442B") + string(16, '\0') + little(0, 8) +
                        little(18, 4) + little(0, 4) + little(1, 2) + little(0, 4) +
                        little(0x161, 2) + little(2, 2) + little(rate, 4) + little(8000, 4) +
                        little(1, 2) + little(16, 2) + little(0, 2);
  const string file = string(16, '\0') + little(0, 8) + little(0, 8) + little(0, 8) +
                      little(5'000'000, 8) + little(5'000'000, 8) + little(0, 8) + little(2, 4) +
                      little(100, 4) + little(100, 4) + little(64'000, 4);
  const auto object = [](const char* id, const string& content) {
    return hex(id) + little(content.size() + 24, 8) + content;
  };
  const string objects = object("A1DCAB8C47A9CF118EE400C00C205365", file) +
                         object("9107DCB7B7A9CF118EE600C00C205365", stream);
  return object("3026B2758E66CF11A6D900AA0062CE6C", little(2, 4) + little(0x0201, 2) + objects) +
         string(64, '\0');
}

}  // namespace

string sampleAudio(std::string_view ending) {
  if (ending == "mp3" || ending == "m4a" || ending == "wav" || ending == "aif")
    return make_library::makeAudio(ending, 500, 32, 440).bytes;
  if (ending == "m4b" || ending == "mp4") return sampleAudio("m4a");
  if (ending == "flac")
    return "fLaC" + big(0x80000022, 4) + big(4096, 2) + big(4096, 2) + string(6, '\0') +
           big(std::uint64_t{rate} << 44U | std::uint64_t{1} << 41U | std::uint64_t{15} << 36U |
                   samples,
               8) +
           string(16, '\0') + string(100, '\1');
  if (ending == "ogg" || ending == "oga")
    return ogg({"\1vorbis" + little(0, 4) + little(2, 1) + little(rate, 4) + little(0, 4) +
                    little(64'000, 4) + little(0, 4) + little(0xB8, 1) + little(1, 1),
                "\3vorbis" + noComments("sample") + little(1, 1), "\5vorbis" + string(8, '\0')},
               samples);
  if (ending == "opus")
    return ogg({"OpusHead" + little(1, 1) + little(2, 1) + little(312, 2) + little(48'000, 4) +
                    little(0, 3),
                "OpusTags" + noComments("sample")},
               24'312);
  if (ending == "spx")
    return ogg(
        {"Speex   " + string("1.2").append(17, '\0') + little(1, 4) + little(80, 4) +
             little(16'000, 4) + little(1, 4) + little(4, 4) + little(1, 4) + little(27'800, 4) +
             little(320, 4) + little(0, 4) + little(1, 4) + little(0, 12),
         noComments("sample")},
        8'000);
  if (ending == "wv")
    return "wvpk" + little(88, 4) + little(0x410, 2) + little(0, 2) + little(samples, 4) +
           little(0, 4) + little(samples, 4) + little(0x04801821, 4) + little(0, 4) +
           string(64, '\0');
  if (ending == "ape")
    return "MAC " + little(3990, 2) + little(0, 2) + little(52, 4) + little(24, 4) + little(0, 4) +
           little(0, 4) + little(100, 4) + little(0, 8) + string(16, '\0') + little(2000, 2) +
           little(0, 2) + little(73'728, 4) + little(samples, 4) + little(1, 4) + little(16, 2) +
           little(2, 2) + little(rate, 4) + string(100, '\1');
  if (ending == "mpc")  // stream version 7
    return "MP+\x07" + little(20, 4) + little(0, 1) + little(0, 1) + little(0, 1) + little(0, 1) +
           string(16, '\0') + string(100, '\1');
  if (ending == "tta")
    return "TTA1" + little(1, 2) + little(2, 2) + little(16, 2) + little(rate, 4) +
           little(samples, 4) + little(0, 4) + string(100, '\1');
  if (ending == "wma") return asf();
  throw std::invalid_argument("no sample for " + string(ending));
}

void tag(const string& path, std::initializer_list<std::pair<const char*, string>> properties) {
  TagLib::FileRef reference(path.c_str());
  if (reference.isNull()) throw std::invalid_argument(path + " cannot be tagged");
  TagLib::PropertyMap map;
  for (const auto& [name, value] : properties)
    map[name].append(TagLib::String(value, TagLib::String::UTF8));
  reference.file()->setProperties(map);
  if (!reference.save()) throw std::invalid_argument(path + " cannot be written");
}

}  // namespace kestrel::testing
