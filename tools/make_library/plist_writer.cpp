#include "tools/make_library/plist_writer.h"

#include <array>
#include <charconv>
#include <chrono>
#include <ostream>
#include <stdexcept>

namespace kestrel::make_library {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;
constexpr std::size_t kDataLineBytes = 45;  // 60 characters a line

template <typename Number>
std::string_view decimal(Number number, std::array<char, 24>& space) {
  const auto end = std::to_chars(space.data(), space.data() + space.size(), number).ptr;
  return {space.data(), static_cast<std::size_t>(end - space.data())};
}

void putDigits(char* at, unsigned number, int digits) {
  for (int i = digits - 1; i >= 0; --i, number /= 10) {
    at[i] = static_cast<char>('0' + number % 10);
  }
}

std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += i + k > bytes.size() ? '=' : kDigits[group >> (18 - 6 * k) & 63U];
    }
  }
  return text;
}

}  // namespace

PlistWriter::PlistWriter(std::ostream& out, Layout layout)
    : out_(out),
      lineEnd_(layout == Layout::compact ? ""
               : layout == Layout::crlf  ? "\r\n"
                                         : "\n"),
      indent_(layout == Layout::compact  ? ""
              : layout == Layout::spaces ? "  "
                                         : "\t"),
      valueOnKeyLine_(layout == Layout::tabs || layout == Layout::crlf) {
  buffer_.reserve(kBufferSize + kBufferSize / 4);
  for (
      const std::string_view line :
      {R"(<?xml version="1.0" encoding="UTF-8"?>)",
       R"(<!DOCTYPE plist PUBLIC "-//Apple Computer//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">)",
       R"(<plist version="1.0">)"}) {
    buffer_ += line;
    endLine();
  }
}

void PlistWriter::startLine() {
  for (std::size_t i = 0; i < depth_; ++i) buffer_ += indent_;
}

void PlistWriter::key(std::string_view name) {
  startLine();
  buffer_ += "<key>";
  escaped(name);
  buffer_ += "</key>";
  afterKey_ = true;
}

void PlistWriter::startValue() {
  if (afterKey_ && valueOnKeyLine_) {
    afterKey_ = false;
    return;
  }
  if (afterKey_) endLine();
  afterKey_ = false;
  startLine();
}

void PlistWriter::value(std::string_view tag, std::string_view content) {
  startValue();
  buffer_ += '<';
  buffer_ += tag;
  buffer_ += '>';
  escaped(content);
  buffer_ += "</";
  buffer_ += tag;
  buffer_ += '>';
  endLine();
}

void PlistWriter::text(std::string_view content) { value("string", content); }

void PlistWriter::integer(std::int64_t number) {
  std::array<char, 24> space;
  value("integer", decimal(number, space));
}

void PlistWriter::boolean(bool truth) {
  startValue();
  buffer_ += truth ? "<true/>" : "<false/>";
  endLine();
}

void PlistWriter::date(std::int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds time{std::chrono::seconds{seconds}};
  const auto day = floor<days>(time);
  const year_month_day civil{day};
  const auto ofDay = static_cast<unsigned>((time - day).count());
  std::array<char, 20> text{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                            'T', '0', '0', ':', '0', '0', ':', '0', '0', 'Z'};
  putDigits(&text[0], static_cast<unsigned>(static_cast<int>(civil.year())), 4);
  putDigits(&text[5], static_cast<unsigned>(civil.month()), 2);
  putDigits(&text[8], static_cast<unsigned>(civil.day()), 2);
  putDigits(&text[11], ofDay / 3600, 2);
  putDigits(&text[14], ofDay / 60 % 60, 2);
  putDigits(&text[17], ofDay % 60, 2);
  value("date", {text.data(), text.size()});
}

void PlistWriter::data(std::string_view bytes) {
  if (afterKey_) endLine();  // even where other values stay on the line of their key
  afterKey_ = false;
  startLine();
  buffer_ += "<data>";
  endLine();
  for (std::size_t at = 0; at < bytes.size(); at += kDataLineBytes) {
    startLine();
    buffer_ += base64(bytes.substr(at, kDataLineBytes));
    endLine();
  }
  startLine();
  buffer_ += "</data>";
  endLine();
}

void PlistWriter::open(std::string_view tag) {
  if (afterKey_) endLine();
  afterKey_ = false;
  startLine();
  buffer_ += '<';
  buffer_ += tag;
  buffer_ += '>';
  endLine();
  // The root dictionary's keys are indented once; the elements around them are not.
  ++depth_;
}

void PlistWriter::close(std::string_view tag) {
  --depth_;
  startLine();
  buffer_ += "</";
  buffer_ += tag;
  buffer_ += '>';
  endLine();
  if (buffer_.size() >= kBufferSize) flush();
}

void PlistWriter::escaped(std::string_view content) {
  std::size_t done = 0;
  for (std::size_t i = 0; i < content.size(); ++i) {
    std::string_view written;
    switch (content[i]) {
      case '&':
        written = "&#38;";
        break;
      case '<':
        written = "&#60;";
        break;
      case '>':
        written = "&#62;";
        break;
      case '\r':
        written = "&#13;";
        break;  // bare, a reader would turn it into a line feed
      default:
        continue;
    }
    buffer_ += content.substr(done, i - done);
    buffer_ += written;
    done = i + 1;
  }
  buffer_ += content.substr(done);
}

void PlistWriter::flush() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
  if (!out_) throw std::runtime_error("Could not write the whole document: is the disk full?");
}

void PlistWriter::finish() {
  buffer_ += "</plist>";
  endLine();
  flush();
  out_.flush();
  if (!out_) throw std::runtime_error("Could not write the whole document: is the disk full?");
}

}  // namespace kestrel::make_library
