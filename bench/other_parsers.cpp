#include "bench/other_parsers.h"

#include <algorithm>
#include <chrono>
#include <expat.h>
#include <fstream>
#include <pugixml.hpp>
#include <stdexcept>

namespace kestrel::bench {
namespace {

std::string bytesOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(in.tellg()), '\0');
  in.seekg(0);
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw std::runtime_error("cannot read " + path);
  return bytes;
}

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

double domParseSeconds(const std::string& path) {
  std::string bytes = bytesOf(path);
  pugi::xml_document document;
  const auto start = std::chrono::steady_clock::now();
  if (!document.load_buffer_inplace(bytes.data(), bytes.size()))
    throw std::runtime_error("the tree parser refuses " + path);
  return secondsSince(start);
}

double saxParseSeconds(const std::string& path) {
  const std::string bytes = bytesOf(path);
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(
      parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
  XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
  const auto start = std::chrono::steady_clock::now();
  bool good = true;
  constexpr std::size_t piece = std::size_t{1} << 24;
  for (std::size_t at = 0; good && at < bytes.size(); at += piece) {
    const std::size_t size = std::min(piece, bytes.size() - at);
    good = XML_Parse(parser, bytes.data() + at, static_cast<int>(size),
                     at + size == bytes.size()) == XML_STATUS_OK;
  }
  const double seconds = secondsSince(start);
  XML_ParserFree(parser);
  if (!good) throw std::runtime_error("the event parser refuses " + path);
  return seconds;
}

}  // namespace kestrel::bench
