/// The user's settings: texts, numbers, switches and lists of texts under names.
///
/// A value is read in the type that is asked for, whatever type it was written in: "1", 1 and true
/// are the same switch. A setting that was never set reads as its registered default. All
/// operations are allowed from any thread, and none throws. These forget everything when they end:
/// for tests, the command line, and as the base of those that remember.
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

class FileService;
class Log;
class Message;

using PreferenceValue = std::variant<bool, std::int64_t, std::string, std::vector<std::string>>;

class Preferences {
 public:
  virtual ~Preferences() = default;

  /// The value as it was set, else the registered default, else nothing.
  [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const;
  void set(std::string_view key, PreferenceValue value);
  /// Forgets what was set; the registered default counts again.
  void remove(std::string_view key);
  /// Never stored; registering again replaces.
  void registerDefault(std::string_view key, PreferenceValue value);
  /// Always holds `integer(key)`, for those who poll once per item. Lives as long as this object.
  [[nodiscard]] const std::atomic<std::int64_t>& liveInteger(std::string_view key);

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

/// Settings that are remembered in an INI file, which users may edit and comment.
///
/// Reads the file when made, and writes each change to it at once, atomically and touching nothing
/// but the changed setting's line: comments, other programs' settings and those of newer versions
/// stay. Settings about one run of the program (settings.h) are neither read nor written.
///
/// The settings are the lines "key=value" of the section "[settings]". A value that begins with a
/// quotation mark or a bracket is a JSON text or list of texts, any other is a text as it stands.
/// Lines that are none of this are logged and left alone; so are failures.
class FilePreferences final : public Preferences {
 public:
  /// All must outlive the preferences. The file and its folder need not exist.
  FilePreferences(std::string path, FileService& files, Log& log);

  /// Calls `tell` with the reason when a change cannot be written for the first time, on the thread
  /// that makes it. To be said before changes are made.
  void whenUnwritable(std::function<void(const Message&)> tell) { tell_ = std::move(tell); }

 protected:
  void changed(std::string_view key, const std::optional<PreferenceValue>& value) override;

 private:
  void read();

  std::string path_;
  FileService& files_;
  Log& log_;
  std::function<void(const Message&)> tell_;
};

}  // namespace kestrel
