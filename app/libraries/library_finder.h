/// Looks for the libraries on this machine while the program goes on: where they are at once, and
/// what is in them as it becomes known.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "musicapp/found_libraries.h"
#include "platform/log.h"
#include "platform/queues.h"
#include "platform/random.h"
#include "ui/models/observers.h"

namespace kestrel {

/// For the main thread.
class LibraryFinder {
 public:
  /// All must outlive it.
  LibraryFinder(FileService& files, Clock& clock, TaskQueue& mainQueue);
  /// Stops, and waits for what is being looked at.
  ~LibraryFinder();
  LibraryFinder(const LibraryFinder&) = delete;
  LibraryFinder& operator=(const LibraryFinder&) = delete;

  struct Found {
    FoundLibrary library;
    bool isLookedAt = false;  ///< else only the address is known
  };

  /// Looks again, unless it is at it. What was found stays until it is found or missed again.
  void look();
  /// Leaves the rest out, so that what is opened now has the disk for itself.
  void stop();
  [[nodiscard]] bool isLooking() const noexcept { return isLooking_; }
  [[nodiscard]] const std::vector<Found>& found() const noexcept { return found_; }

  Observers observers;  ///< something was found, or the looking has ended

 private:
  void lookAtAll();
  void tell(std::function<void()> news);

  FileService& files_;
  Clock& clock_;
  TaskQueue& mainQueue_;
  NullLog log_;  ///< what cannot be read is no fault here
  SystemRandom random_;
  std::vector<Found> found_;
  bool isLooking_ = false;
  std::atomic<bool> isStopped_ = false;
  /// Posted news is dropped when this is gone.
  std::shared_ptr<bool> lives_ = std::make_shared<bool>(true);
  WorkerQueue worker_;  // last: it uses the members above
};

}  // namespace kestrel
