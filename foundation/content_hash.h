/// A number that tells contents apart: equal for the same bytes, in whatever pieces they come.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kestrel {

/// XXH3 with 128 bits, which its authors keep the same for good: the history holds its results. Not
/// made to withstand an attacker.
class ContentHash {
 public:
  ContentHash();
  ~ContentHash();
  ContentHash(ContentHash&&) noexcept;
  ContentHash& operator=(ContentHash&&) noexcept;

  void add(std::string_view bytes) noexcept;
  /// Of what was added so far, as sixteen bytes.
  [[nodiscard]] std::string value() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kestrel
