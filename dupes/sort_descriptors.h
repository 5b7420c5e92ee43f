/// Sort descriptors: one column of a sort, which a table can copy, turn round and apply.
///
/// The two kinds of this system put empty values behind all others, whichever way their column
/// is turned at first: a name that is missing must not stand in front of those that are there.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/value.h"

namespace kestrel {

/// How two values that are there compare. Texts under `compare` go by their code points.
enum class ComparisonSelector : std::uint8_t {
  compare,
  localizedCaseInsensitiveCompare,
  localizedStandardCompare,
};

/// -1, 0 or 1. Values of different sorts order as: absent and null, numbers, dates, texts.
int standardComparison(const Value& a, const Value& b, ComparisonSelector selector);

/// Immutable.
class SortDescriptor {
 public:
  SortDescriptor(std::string key, bool ascending, ComparisonSelector selector)
      : key_(std::move(key)), ascending_(ascending), selector_(selector) {}
  virtual ~SortDescriptor() = default;

  [[nodiscard]] const std::string& key() const noexcept { return key_; }
  [[nodiscard]] bool ascending() const noexcept { return ascending_; }
  [[nodiscard]] ComparisonSelector selector() const noexcept { return selector_; }

  /// A new one of the same class.
  [[nodiscard]] std::unique_ptr<SortDescriptor> copyWithZone() const { return make(ascending_); }
  [[nodiscard]] std::unique_ptr<SortDescriptor> reversedSortDescriptor() const {
    return make(!ascending_);
  }

  /// -1, 0 or 1, the direction already taken into account, for records with `value(key text)`.
  /// Not symmetric between two empty values, deliberately: the first one always counts as the
  /// larger. A sort must therefore not take it for an order; `sortByDescriptors` does not.
  template <typename Record>
  [[nodiscard]] int compareObject(const Record& first, const Record& second) const {
    return compareValues(first.value(std::string_view(key_)), second.value(std::string_view(key_)));
  }
  [[nodiscard]] int compareValues(const Value& first, const Value& second) const;

  /// Whether the class gives this value the special place.
  [[nodiscard]] virtual bool isEmpty(const Value& value) const noexcept = 0;

 protected:
  SortDescriptor(const SortDescriptor&) = default;
  SortDescriptor& operator=(const SortDescriptor&) = delete;
  [[nodiscard]] virtual std::unique_ptr<SortDescriptor> make(bool ascending) const = 0;

 private:
  std::string key_;
  bool ascending_;
  ComparisonSelector selector_;
};

/// No value is special.
class PlainSortDescriptor final : public SortDescriptor {
 public:
  explicit PlainSortDescriptor(std::string key, bool ascending = true,
                               ComparisonSelector selector = ComparisonSelector::compare)
      : SortDescriptor(std::move(key), ascending, selector) {}
  [[nodiscard]] bool isEmpty(const Value&) const noexcept override { return false; }

 private:
  [[nodiscard]] std::unique_ptr<SortDescriptor> make(bool ascending) const override;
};

/// For text columns: missing values, null and the empty text are empty.
class MySortDescriptor final : public SortDescriptor {
 public:
  using SortDescriptor::SortDescriptor;
  [[nodiscard]] bool isEmpty(const Value& value) const noexcept override;

 private:
  [[nodiscard]] std::unique_ptr<SortDescriptor> make(bool ascending) const override;
};

/// For number columns: missing values and 0 are empty.
class MyNumSortDescriptor final : public SortDescriptor {
 public:
  using SortDescriptor::SortDescriptor;
  [[nodiscard]] bool isEmpty(const Value& value) const noexcept override;

 private:
  [[nodiscard]] std::unique_ptr<SortDescriptor> make(bool ascending) const override;
};

}  // namespace kestrel
