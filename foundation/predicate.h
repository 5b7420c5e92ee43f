/// Filters over records, written as query texts such as "(%K == %@ AND %K != %@)".
///
/// A text is parsed once and then evaluated for many records. It knows the operators ==, =, !=,
/// BEGINSWITH, CONTAINS, LIKE, MATCHES and IN, joined by AND, OR, NOT and parentheses (AND binds
/// closer than OR, words in any letter case). Operands are keys (a path such as a.b is one key),
/// quoted texts, whole numbers, and placeholders filled from the arguments in order: %K a key,
/// %@ a value or a list, %i a whole number.
///
///  - Texts compare by content, letter case included. A number equals a text that is the same whole
///    number; booleans are the numbers 0 and 1. Nothing else of different sorts is equal.
///  - Comparing with an absent or null argument asks only for the key: "==" that the record has no
///    such key, "!=" that it has it, whatever it holds.
///  - BEGINSWITH, CONTAINS, LIKE (* any run of characters, ? one character) and MATCHES (a regular
///    expression for the whole text) are false for what is not a text.
///  - IN looks for an equal value in a list, or for a text within a text.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/value.h"

namespace kestrel {

/// What a placeholder stands for. Borrowed texts are needed only while the predicate is parsed.
class PredicateArgument {
 public:
  template <typename T>
  requires std::is_convertible_v<T, Value> PredicateArgument(T&& value)
      : data_(Value(std::forward<T>(value))) {}
  PredicateArgument(std::vector<Value> list) : data_(std::move(list)) {}

  /// nullptr for a list.
  [[nodiscard]] const Value* value() const noexcept { return std::get_if<Value>(&data_); }
  /// nullptr for a single value.
  [[nodiscard]] const std::vector<Value>* list() const noexcept {
    return std::get_if<std::vector<Value>>(&data_);
  }

 private:
  std::variant<Value, std::vector<Value>> data_;
};

/// A query text that cannot be parsed, or does not fit its arguments: a fault of the program.
class PredicateError : public std::invalid_argument {
 public:
  PredicateError(std::string_view text, std::size_t offset, const std::string& problem);
  std::size_t position;  ///< byte offset into the text
};

/// Immutable; copies share the parsed form, and one serves all threads. Without side effects.
class Predicate {
 public:
  /// Throws PredicateError.
  static Predicate parse(std::string_view text,
                         const std::vector<PredicateArgument>& arguments = {});

  /// `lookup` gives the record's value under a key, absent when it has none.
  [[nodiscard]] bool evaluate(FunctionRef<Value(std::string_view)> lookup) const;

  struct Node;

 private:
  explicit Predicate(std::shared_ptr<const Node> root) : root_(std::move(root)) {}
  std::shared_ptr<const Node> root_;
};

}  // namespace kestrel
