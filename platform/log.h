/// The system log: one place to which operations write their progress markers and failures.
///
/// Lines are written as they stand, without time stamps, so that they can be searched for.
/// Writing never throws and is allowed from any thread.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/descriptor.h"

namespace kestrel {

class Log {
 public:
  virtual ~Log() = default;
  /// Writes one line; `text` has no line end.
  virtual void line(std::string_view text) noexcept = 0;
  /// A line that only those want who ask for everything; logs that are kept leave it out.
  virtual void detail(std::string_view text) noexcept { line(text); }
};

class NullLog final : public Log {
 public:
  void line(std::string_view) noexcept override {}
};

/// To a stream that people read, which must outlive the log: as `printable` shows it, each line
/// flushed.
class StreamLog final : public Log {
 public:
  StreamLog();  ///< standard error
  explicit StreamLog(std::ostream& stream);
  void line(std::string_view text) noexcept override;

 private:
  std::mutex mutex_;
  std::ostream& stream_;
};

/// To a file that is kept from growing: before a line would make it larger than `maxBytes`, it is
/// renamed to "PATH.1" (an older "PATH.1" to "PATH.2", and so on, `kept` of them).
class FileLog final : public Log {
 public:
  /// Appends to what is there; creates missing folders. Throws FileError when the file cannot be
  /// opened. Lines that cannot be written later on are dropped.
  explicit FileLog(std::string path, std::uint64_t maxBytes = 1U << 20U, int kept = 3);
  void line(std::string_view text) noexcept override;
  void detail(std::string_view) noexcept override {}

 private:
  void open();
  void rotate();

  std::mutex mutex_;
  std::string path_;
  std::uint64_t maxBytes_;
  int kept_;
  Descriptor file_;
  std::uint64_t size_ = 0;
};

/// To several logs, which must outlive it, in order.
class TeeLog final : public Log {
 public:
  explicit TeeLog(std::vector<Log*> logs) : logs_(std::move(logs)) {}
  void line(std::string_view text) noexcept override {
    for (Log* log : logs_) log->line(text);
  }
  void detail(std::string_view text) noexcept override {
    for (Log* log : logs_) log->detail(text);
  }

 private:
  std::vector<Log*> logs_;
};

/// Keeps its lines, for tests.
class MemoryLog final : public Log {
 public:
  void line(std::string_view text) noexcept override;
  [[nodiscard]] std::vector<std::string> lines() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace kestrel
