/// The value of a record under one key.
///
/// Records are addressed by key text; what they hold is one of a few sorts. Absent (the record
/// has no such key), null (it has the key but no value) and the empty text are three things.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace kestrel {

/// A moment, in whole seconds since 1970-01-01 00:00 UTC (negative before).
struct Date {
  std::int64_t seconds = 0;
  friend auto operator<=>(const Date&, const Date&) = default;
};

/// Equality is by content: a borrowed text equals an owned one, a boolean equals the number that
/// it reads as, and nothing else converts.
class Value {
 public:
  struct Null {};

  Value() = default;  ///< absent
  Value(Null) : data_(Null{}) {}
  Value(bool value) : data_(value) {}
  Value(std::int64_t value) : data_(value) {}
  Value(int value) : data_(std::int64_t{value}) {}
  Value(Date value) : data_(value) {}
  /// Borrowed: the caller's text must outlive the value.
  Value(std::string_view text) : data_(text) {}
  Value(const char* text) : data_(std::string_view(text)) {}
  Value(std::string text) : data_(std::move(text)) {}

  [[nodiscard]] bool isAbsent() const noexcept { return holds<std::monostate>(); }
  [[nodiscard]] bool isNull() const noexcept { return holds<Null>(); }
  [[nodiscard]] bool isText() const noexcept {
    return holds<std::string_view>() || holds<std::string>();
  }
  [[nodiscard]] bool isBoolean() const noexcept { return holds<bool>(); }
  /// An integer or a boolean, which reads as 0 or 1.
  [[nodiscard]] bool isNumber() const noexcept { return holds<std::int64_t>() || holds<bool>(); }
  [[nodiscard]] bool isDate() const noexcept { return holds<Date>(); }

  /// The text, or an empty one for every other sort. Valid as long as this value.
  [[nodiscard]] std::string_view text() const noexcept {
    if (const auto* borrowed = std::get_if<std::string_view>(&data_)) return *borrowed;
    if (const auto* owned = std::get_if<std::string>(&data_)) return *owned;
    return {};
  }
  /// The number, or 0 for every other sort.
  [[nodiscard]] std::int64_t number() const noexcept {
    if (const auto* integer = std::get_if<std::int64_t>(&data_)) return *integer;
    if (const auto* flag = std::get_if<bool>(&data_)) return *flag ? 1 : 0;
    return 0;
  }
  [[nodiscard]] Date date() const noexcept {
    const auto* date = std::get_if<Date>(&data_);
    return date ? *date : Date{};
  }

  friend bool operator==(const Value& a, const Value& b) noexcept {
    if (a.isText() || b.isText()) return a.isText() && b.isText() && a.text() == b.text();
    if (a.isNumber() || b.isNumber())
      return a.isNumber() && b.isNumber() && a.number() == b.number();
    if (a.isDate() || b.isDate()) return a.isDate() && b.isDate() && a.date() == b.date();
    return a.isNull() == b.isNull();
  }

 private:
  template <typename T>
  [[nodiscard]] bool holds() const noexcept {
    return std::holds_alternative<T>(data_);
  }
  std::variant<std::monostate, Null, bool, std::int64_t, Date, std::string_view, std::string> data_;
};

}  // namespace kestrel
