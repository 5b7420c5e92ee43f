/// The user's settings: texts, numbers, switches and lists of texts under names.
///
/// A value is read in the type that is asked for, whatever type it was written in: "1", 1 and true
/// are the same switch. A setting that was never set reads as its registered default. All
/// operations are allowed from any thread, and none throws.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestrel {

using PreferenceValue = std::variant<bool, std::int64_t, std::string, std::vector<std::string>>;

class Preferences {
 public:
  virtual ~Preferences() = default;

  /// The value as it was set, else the registered default, else nothing.
  [[nodiscard]] virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;
  virtual void set(std::string_view key, PreferenceValue value) = 0;
  /// Forgets what was set; the registered default counts again.
  virtual void remove(std::string_view key) = 0;
  /// Never stored; registering again replaces.
  virtual void registerDefault(std::string_view key, PreferenceValue value) = 0;
  /// Always holds `integer(key)`, for those who poll once per item. Lives as long as this object.
  [[nodiscard]] virtual const std::atomic<std::int64_t>& liveInteger(std::string_view key) = 0;

  [[nodiscard]] bool contains(std::string_view key) const { return value(key).has_value(); }
  /// A text is true when it begins with a digit from 1 to 9 (zeros and a sign may go before it) or
  /// with the letter y or t, in either case. False for lists and when absent.
  [[nodiscard]] bool boolean(std::string_view key) const;
  /// The whole number that a text begins with; 0 for lists and when absent.
  [[nodiscard]] std::int64_t integer(std::string_view key) const;
  /// Numbers in decimal, switches as "1" and "0". Empty for lists and when absent.
  [[nodiscard]] std::string text(std::string_view key) const;
  /// Empty for anything but a list.
  [[nodiscard]] std::vector<std::string> textArray(std::string_view key) const;
};

/// Forgets everything when it ends: for tests, the command line, and as the base of those that
/// remember.
class InMemoryPreferences : public Preferences {
 public:
  [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const override;
  void set(std::string_view key, PreferenceValue value) override;
  void remove(std::string_view key) override;
  void registerDefault(std::string_view key, PreferenceValue value) override;
  [[nodiscard]] const std::atomic<std::int64_t>& liveInteger(std::string_view key) override;

 protected:
  /// Sets without telling `changed`, for what was stored.
  void setStored(std::string_view key, PreferenceValue value);
  /// Called when a set value has changed, one call at a time; nothing means removed.
  virtual void changed(std::string_view key, const std::optional<PreferenceValue>& value);

 private:
  using Values = std::map<std::string, PreferenceValue, std::less<>>;

  [[nodiscard]] const PreferenceValue* find(std::string_view key) const;
  void updateLive(std::string_view key);

  mutable std::mutex mutex_;
  std::mutex changing_;  ///< taken before mutex_, by those who set and remove
  Values values_;
  Values defaults_;
  std::map<std::string, std::atomic<std::int64_t>, std::less<>> live_;
};

}  // namespace kestrel
