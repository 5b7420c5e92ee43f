/// The trash of freedesktop.org's desktops, so that file managers show what is in it and can bring
/// it back: one in the user's data folder, and one at the top of every other volume, because
/// nothing is ever copied.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/trash.h"

namespace kestrel {

class Clock;

/// Nothing in the trash is ever overwritten: names that are taken get a number. Paths must be
/// absolute, so that the folder in which a program happens to run does not matter. From any thread.
class FreedesktopTrash final : public Trash {
 public:
  /// `dataFolder` is the user's folder for data, if there is one; its "Trash" need not exist.
  FreedesktopTrash(const Clock& clock, std::optional<std::string> dataFolder);

  TrashedItem reserve(const std::string& path) override;
  void move(const TrashedItem& item) override;
  bool release(const TrashedItem& item) override;
  void restore(const TrashedItem& item) override;

 private:
  /// A trash folder, and the folder that paths in it are relative to ("/" for the user's own).
  struct Bin {
    std::string folder;
    std::string top;
  };

  [[nodiscard]] Bin binFor(const std::string& path) const;
  TrashedItem reserveIn(const Bin& bin, const std::string& path);

  const Clock& clock_;
  std::optional<std::string> dataFolder_;
  std::mutex mutex_;
  /// The last number given to a name in a bin: a thousand files of one name must not each try all
  /// numbers before theirs.
  std::map<std::string, int> lastNumbers_;
};

}  // namespace kestrel
