/// The parsed form of a predicate. Only predicate.cpp and predicate_tree.cpp use it.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unicode/regex.h>
#include <unordered_set>
#include <vector>

#include "foundation/predicate.h"

namespace kestrel {

/// A list argument, arranged so that IN costs one or two hashes however long the list is.
class ValueSet {
 public:
  explicit ValueSet(std::span<const Value> values);
  [[nodiscard]] bool contains(const Value& value) const;

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_set<std::string, Hash, std::equal_to<>> texts_;
  std::unordered_set<std::int64_t> numbers_;
  std::unordered_set<std::int64_t> numericTexts_;
  std::unordered_set<std::int64_t> dates_;
};

struct PredicateOperand {
  enum class Kind { key, constant, list };
  Kind kind = Kind::constant;
  std::string key;
  Value constant;  ///< owned; absent for a null argument
  std::shared_ptr<const ValueSet> list;
};

enum class PredicateOperator { equal, notEqual, beginsWith, contains, like, matches, in };

/// Equality as predicates have it.
bool equalInPredicate(const Value& a, const Value& b) noexcept;
/// Whether a pattern of characters, `*` and `?` covers the whole text.
bool matchesWildcards(std::string_view text, std::string_view pattern) noexcept;

struct Predicate::Node {
  enum class Kind { comparison, conjunction, disjunction, negation };
  using Lookup = FunctionRef<Value(std::string_view)>;

  [[nodiscard]] bool evaluate(Lookup lookup) const;

  Kind kind = Kind::comparison;
  std::vector<Node> children;  ///< of all kinds but comparison
  PredicateOperand left;
  PredicateOperand right;
  PredicateOperator op = PredicateOperator::equal;
  std::shared_ptr<const icu::RegexPattern> pattern;  ///< of MATCHES

 private:
  [[nodiscard]] bool compare(Lookup lookup) const;
};

}  // namespace kestrel
