/// Settings that are remembered in an INI file, which users may edit and comment.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/message.h"
#include "platform/preferences.h"

namespace kestrel {

class FileService;
class Log;

/// Reads the file when made, and writes each change to it at once, atomically and touching nothing
/// but the changed setting's line: comments, other programs' settings and those of newer versions
/// stay. Settings about one run of the program (settings.h) are neither read nor written.
///
/// The settings are the lines "key=value" of the section "[settings]". A value that begins with a
/// quotation mark or a bracket is a JSON text or list of texts, any other is a text as it stands.
/// Lines that are none of this are logged and left alone; so are failures.
class FilePreferences final : public InMemoryPreferences {
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
