#include "foundation/property_list.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>

#include "foundation/bytes.h"
#include "foundation/dates.h"
#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"
#include "foundation/text_helpers.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

using std::string_view;

class Parser {
 public:
  explicit Parser(string_view document) : scanner_(document) {}

  PropertyList document() {
    scanner_.beginDocument();
    PropertyList root = value(scanner_.beginValue());
    scanner_.endDocument();
    return root;
  }

 private:
  /// The value that was just begun.
  PropertyList value(PlistType type) {
    const std::size_t place = scanner_.offset();
    switch (type) {
      case PlistType::dictionary:
        return dictionary();
      case PlistType::array:
        return array();
      case PlistType::string:
        return scanner_.text(type);
      case PlistType::integer:
        return scanner_.integer();
      case PlistType::real:
        return real(place);
      case PlistType::date:
        return moment(place);
      case PlistType::data:
        return data(place);
      case PlistType::boolTrue:
        return true;
      case PlistType::boolFalse:
        return false;
    }
    return {};
  }

  PropertyList dictionary() {
    enter();
    PropertyList::Dictionary entries;
    string_view key;
    while (scanner_.nextKey(key)) {
      std::string ownKey(key);
      entries.push_back({std::move(ownKey), value(scanner_.beginValue())});
    }
    --depth_;
    return entries;
  }

  PropertyList array() {
    enter();
    PropertyList::Array values;
    for (PlistType type; scanner_.nextItem(type);) values.push_back(value(type));
    --depth_;
    return values;
  }

  PropertyList real(std::size_t place) {
    string_view text = trimmed(scanner_.text(PlistType::real));
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
      throw PlistError(place, Message::tr("expected a number"));
    return number;
  }

  PropertyList moment(std::size_t place) {
    const string_view text = trimmed(scanner_.text(PlistType::date));
    const auto seconds = parseIsoDate(text);
    if (!seconds)
      throw PlistError(place, Message::tr("expected a date such as 2019-02-28T23:59:59Z"));
    constexpr std::size_t toSeconds = string_view("2019-02-28T23:59:59").size();
    return PropertyList::Moment{Date{*seconds},
                                std::string(text.substr(toSeconds, text.size() - 1 - toSeconds))};
  }

  PropertyList data(std::size_t place) {
    auto bytes = bytesOfBase64(scanner_.text(PlistType::data));
    if (!bytes) throw PlistError(place, Message::tr("expected bytes in Base64"));
    return PropertyList::Data{std::move(*bytes)};
  }

  void enter() {
    if (++depth_ > PlistScanner::maximumDepth)
      scanner_.fail(
          Message::tr("values are nested more than %1 deep").arg(PlistScanner::maximumDepth));
  }

  PlistScanner scanner_;
  std::size_t depth_ = 0;
};

template <typename T>
const T& orEmpty(const T* held) noexcept {
  static const T empty{};
  return held ? *held : empty;
}

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
      escapeXml(content.substr(0, bad), [&](string_view part) { out_ += part; });
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

string_view PropertyList::text() const noexcept { return orEmpty(get<std::string>()); }
std::int64_t PropertyList::integer() const noexcept { return orEmpty(get<std::int64_t>()); }
double PropertyList::real() const noexcept {
  return isInteger() ? static_cast<double>(integer()) : orEmpty(get<double>());
}
bool PropertyList::boolean() const noexcept { return orEmpty(get<bool>()); }
Date PropertyList::date() const noexcept { return orEmpty(get<Moment>()).date; }
string_view PropertyList::data() const noexcept { return orEmpty(get<Data>()).bytes; }
const PropertyList::Dictionary& PropertyList::entries() const noexcept {
  return orEmpty(get<Dictionary>());
}
const PropertyList::Array& PropertyList::values() const noexcept { return orEmpty(get<Array>()); }

const PropertyList* PropertyList::find(string_view key) const noexcept {
  const Dictionary& all = entries();
  const auto found = std::find_if(all.rbegin(), all.rend(),
                                  [key](const Entry& entry) { return entry.key == key; });
  return found == all.rend() ? nullptr : &found->value;
}

PropertyList* PropertyList::find(string_view key) noexcept {
  return const_cast<PropertyList*>(std::as_const(*this).find(key));
}

string_view PropertyList::textAt(string_view key) const noexcept {
  const PropertyList* held = find(key);
  return held ? held->text() : string_view{};
}

PropertyList& PropertyList::set(string_view key, PropertyList value) {
  if (PropertyList* held = find(key)) return *held = std::move(value);
  if (!isDictionary()) data_ = Dictionary{};
  return get<Dictionary>()->emplace_back(Entry{std::string(key), std::move(value)}).value;
}

bool PropertyList::remove(string_view key) {
  Dictionary* all = get<Dictionary>();
  return all && std::erase_if(*all, [key](const Entry& entry) { return entry.key == key; }) > 0;
}

PropertyList& PropertyList::append(PropertyList value) {
  if (!isArray()) data_ = Array{};
  return get<Array>()->emplace_back(std::move(value));
}

PropertyList parsePropertyList(string_view bytes, const std::string& name) {
  if (bytes.empty())
    throw LibraryError(name, {}, Message::tr("the file is empty"), Message::tr("Copy it again."));
  std::string converted;
  string_view utf8 = bytes;
  try {
    if (const TextEncoding encoding = encodingOf(bytes); encoding != TextEncoding::utf8) {
      convertToUtf8(bytes, encoding, [&](string_view piece) { converted.append(piece); });
      utf8 = converted;
    }
    return Parser(utf8).document();
  } catch (const PlistError& fault) {
    throw libraryError(name, utf8, fault,
                       Message::tr("Repair the file at that place, or copy it again."));
  }
}

std::string writePropertyList(const PropertyList& value) { return Writer().document(value); }

}  // namespace kestrel
