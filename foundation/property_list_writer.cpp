#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>

#include "foundation/base64.h"
#include "foundation/dates.h"
#include "foundation/property_list.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::string_view;

constexpr string_view prologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

class Writer {
 public:
  std::string document(const PropertyList& root) {
    out_ = prologue;
    value(root);
    out_ += "</plist>\n";
    return std::move(out_);
  }

 private:
  /// The value, its line ended; the cursor is at the start of a line or behind a key.
  void value(const PropertyList& value) {
    if (value.isDictionary()) {
      dictionary(value.entries());
    } else if (value.isArray()) {
      line("<array>");
      ++depth_;
      for (const PropertyList& item : value.values()) indented(item);
      --depth_;
      indent();
      line("</array>");
    } else if (value.isData()) {
      data(value.data());
    } else if (value.isText()) {
      element("string", [&] { text(value.text()); });
    } else if (value.isInteger()) {
      element("integer", [&] { out_ += std::to_string(value.integer()); });
    } else if (value.isReal()) {
      element("real", [&] { real(value.real()); });
    } else if (value.isBoolean()) {
      line(value.boolean() ? "<true/>" : "<false/>");
    } else {
      element("date", [&] { moment(*value.get<PropertyList::Moment>()); });
    }
  }

  void dictionary(const PropertyList::Dictionary& entries) {
    line("<dict>");
    ++depth_;
    for (const auto& [key, held] : entries) {
      indent();
      out_ += "<key>";
      text(key);
      out_ += "</key>";
      if (held.isDictionary() || held.isArray() || held.isData()) {
        out_ += '\n';
        indented(held);
      } else {
        value(held);
      }
    }
    --depth_;
    indent();
    line("</dict>");
  }

  void indented(const PropertyList& held) {
    indent();
    value(held);
  }

  template <typename Content>
  void element(const char* name, Content&& content) {
    out_.append("<").append(name).append(">");
    content();
    out_.append("</").append(name).append(">\n");
  }

  void data(string_view bytes) {
    constexpr std::size_t bytesPerLine = 54;
    line("<data>");
    for (std::size_t at = 0; at < bytes.size(); at += bytesPerLine) {
      indent();
      appendBase64(bytes.substr(at, bytesPerLine), out_);
      out_ += '\n';
    }
    indent();
    line("</data>");
  }

  void text(string_view content) {
    for (;;) {
      const std::size_t bad = firstInvalidUtf8(content);
      for (const char c : content.substr(0, bad)) {
        switch (c) {
          case '&':
            out_ += "&amp;";
            break;
          case '<':
            out_ += "&lt;";
            break;
          case '>':
            out_ += "&gt;";
            break;
          // As itself it would be read as the end of a line, LF.
          case '\r':
            out_ += "&#13;";
            break;
          default:
            out_ += c;
        }
      }
      if (bad == string_view::npos) return;
      out_ += "\uFFFD";
      content.remove_prefix(bad + 1);
    }
  }

  void real(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out_.append(digits.data(), end);
  }

  void moment(const PropertyList::Moment& moment) {
    constexpr Date first{-62135596800}, last{253402300799};
    if (moment.date < first || moment.date > last)
      throw std::out_of_range("a property list holds dates of the years 1 to 9999 only");
    if (!dates_) dates_.emplace("UTC");
    dates_->append(moment.date.seconds, out_);
    out_.insert(out_.size() - 1, moment.fraction);
  }

  void line(string_view text) { out_.append(text).append(1, '\n'); }
  void indent() { out_.append(depth_, '\t'); }

  std::string out_;
  std::size_t depth_ = 0;
  std::optional<DateFormatter> dates_;  // only when there is a date: making one takes a while
};

}  // namespace

std::string writePropertyList(const PropertyList& value) { return Writer().document(value); }

}  // namespace kestrel
