/// A property list in memory: playlist documents, preferences and other small files.
///
/// Dictionaries keep the order of their keys, and every sort of value survives being written and
/// read again, so that a document can be changed in one place and stay as it was in all others.
/// Large libraries do not pass through here; they are scanned (plist_scanner.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/value.h"

namespace kestrel {

/// One value with all that it contains; copies deeply. The default one is an empty dictionary.
///
/// What a value is not reads as nothing (an empty text, 0, false, no entries), as with `Value`;
/// ask the `is...` operations where the difference matters.
class PropertyList {
 public:
  struct Entry;
  /// In document order. A document may repeat a key; the last one counts.
  using Dictionary = std::vector<Entry>;
  using Array = std::vector<PropertyList>;
  struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
  };
  /// A moment; `fraction` is what a document gave beyond whole seconds (".250"), or empty.
  struct Moment {
    Date date;
    std::string fraction;
    friend bool operator==(const Moment&, const Moment&) = default;
  };

  PropertyList();
  PropertyList(Dictionary entries);
  PropertyList(Array values);
  PropertyList(std::string text);
  PropertyList(std::string_view text);
  PropertyList(const char* text);
  PropertyList(std::int64_t integer);
  PropertyList(int integer);
  PropertyList(double real);
  PropertyList(bool boolean);
  PropertyList(Date date);
  PropertyList(Moment moment);
  PropertyList(Data data);

  [[nodiscard]] bool isDictionary() const noexcept { return get<Dictionary>(); }
  [[nodiscard]] bool isArray() const noexcept { return get<Array>(); }
  [[nodiscard]] bool isText() const noexcept { return get<std::string>(); }
  [[nodiscard]] bool isInteger() const noexcept { return get<std::int64_t>(); }
  [[nodiscard]] bool isReal() const noexcept { return get<double>(); }
  [[nodiscard]] bool isBoolean() const noexcept { return get<bool>(); }
  [[nodiscard]] bool isDate() const noexcept { return get<Moment>(); }
  [[nodiscard]] bool isData() const noexcept { return get<Data>(); }

  [[nodiscard]] std::string_view text() const noexcept;
  [[nodiscard]] std::int64_t integer() const noexcept;
  /// An integer reads as a real too.
  [[nodiscard]] double real() const noexcept;
  [[nodiscard]] bool boolean() const noexcept;
  [[nodiscard]] Date date() const noexcept;
  [[nodiscard]] std::string_view data() const noexcept;  ///< bytes

  [[nodiscard]] const Dictionary& entries() const noexcept;
  [[nodiscard]] const Array& values() const noexcept;
  /// The value under `key`; nullptr when there is none, or this is no dictionary. Looks at each
  /// entry: for lookups in bulk, walk `entries()` once.
  [[nodiscard]] const PropertyList* find(std::string_view key) const noexcept;
  [[nodiscard]] PropertyList* find(std::string_view key) noexcept;
  /// The text under `key`, or an empty one.
  [[nodiscard]] std::string_view textAt(std::string_view key) const noexcept;

  /// Replaces the value under `key` in place, or appends the key. Turns another value into a
  /// dictionary first.
  PropertyList& set(std::string_view key, PropertyList value);
  /// Removes every entry of that key; false when there was none.
  bool remove(std::string_view key);
  /// Appends to an array. Turns another value into an array first.
  PropertyList& append(PropertyList value);

  /// The value itself for editing: Dictionary, Array, std::string, std::int64_t, double, bool,
  /// Moment or Data; nullptr when it is of another sort.
  template <typename T>
  [[nodiscard]] T* get() noexcept {
    return std::get_if<T>(&data_);
  }
  template <typename T>
  [[nodiscard]] const T* get() const noexcept {
    return std::get_if<T>(&data_);
  }

  /// Same sorts, values, and order of keys.
  friend bool operator==(const PropertyList&, const PropertyList&) = default;

 private:
  std::variant<Dictionary, Array, std::string, std::int64_t, double, bool, Moment, Data> data_;
};

struct PropertyList::Entry {
  std::string key;
  PropertyList value;
  friend bool operator==(const Entry&, const Entry&) = default;
};

inline PropertyList::PropertyList() : data_(Dictionary{}) {}
inline PropertyList::PropertyList(Dictionary entries) : data_(std::move(entries)) {}
inline PropertyList::PropertyList(Array values) : data_(std::move(values)) {}
inline PropertyList::PropertyList(std::string text) : data_(std::move(text)) {}
inline PropertyList::PropertyList(std::string_view text) : data_(std::string(text)) {}
inline PropertyList::PropertyList(const char* text) : data_(std::string(text)) {}
inline PropertyList::PropertyList(std::int64_t integer) : data_(integer) {}
inline PropertyList::PropertyList(int integer) : data_(std::int64_t{integer}) {}
inline PropertyList::PropertyList(double real) : data_(real) {}
inline PropertyList::PropertyList(bool boolean) : data_(boolean) {}
inline PropertyList::PropertyList(Date date) : data_(Moment{date, {}}) {}
inline PropertyList::PropertyList(Moment moment) : data_(std::move(moment)) {}
inline PropertyList::PropertyList(Data data) : data_(std::move(data)) {}

/// Reads an XML property list in any accepted encoding; `name` stands for the file in messages.
/// Throws LibraryError with line, column and what was expected there. Containers may be nested as
/// deep as PlistScanner allows; integers must fit 64 bits, signed.
PropertyList parsePropertyList(std::string_view bytes, const std::string& name);

/// The document in UTF-8, in the usual layout: tabs, a key and its value on
/// one line, containers and data on lines of their own. Bytes of a text that are not UTF-8 become
/// U+FFFD, so that what was written can be read. Throws std::out_of_range for a date outside the
/// years 1 to 9999, which the format cannot hold.
std::string writePropertyList(const PropertyList& value);

}  // namespace kestrel
