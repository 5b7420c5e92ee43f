#include "dupes/sort_descriptors.h"

#include "foundation/collation.h"

namespace kestrel {
namespace {

template <typename T>
int threeWay(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

int sortOf(const Value& value) noexcept {
  return value.isText() ? 3 : value.isDate() ? 2 : value.isNumber() ? 1 : 0;
}

}  // namespace

int standardComparison(const Value& a, const Value& b, ComparisonSelector selector) {
  if (const int sorts = threeWay(sortOf(a), sortOf(b))) return sorts;
  if (a.isNumber()) return threeWay(a.number(), b.number());
  if (a.isDate()) return threeWay(a.date(), b.date());
  switch (selector) {
    case ComparisonSelector::localizedCaseInsensitiveCompare:
      return localizedCaseInsensitiveCompare(a.text(), b.text());
    case ComparisonSelector::localizedStandardCompare:
      return localizedStandardCompare(a.text(), b.text());
    case ComparisonSelector::compare:
      break;
  }
  return threeWay(a.text(), b.text());
}

int SortDescriptor::compareValues(const Value& first, const Value& second) const {
  const int direction = ascending_ ? 1 : -1;
  if (isEmpty(first)) return direction;
  if (isEmpty(second)) return -direction;
  return direction * standardComparison(first, second, selector_);
}

std::unique_ptr<SortDescriptor> PlainSortDescriptor::make(bool ascending) const {
  return std::make_unique<PlainSortDescriptor>(key(), ascending, selector());
}

bool MySortDescriptor::isEmpty(const Value& value) const noexcept {
  return value.isAbsent() || value.isNull() || (value.isText() && value.text().empty());
}

std::unique_ptr<SortDescriptor> MySortDescriptor::make(bool ascending) const {
  return std::make_unique<MySortDescriptor>(key(), ascending, selector());
}

bool MyNumSortDescriptor::isEmpty(const Value& value) const noexcept {
  return value.isAbsent() || value.isNull() || (value.isNumber() && value.number() == 0);
}

std::unique_ptr<SortDescriptor> MyNumSortDescriptor::make(bool ascending) const {
  return std::make_unique<MyNumSortDescriptor>(key(), ascending, selector());
}

}  // namespace kestrel
