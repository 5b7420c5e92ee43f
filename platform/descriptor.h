/// An open file of the system, closed when it goes out of scope, and what the system says about
/// files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "platform/clock.h"

struct stat;

namespace kestrel {

/// Equal statuses mean that nothing was written to the file in between, as far as the system can
/// tell.
struct FileStatus {
  enum class Kind { file, folder, other };

  Kind kind = Kind::file;
  std::uint64_t size = 0;  ///< bytes; of folders whatever the system says
  Moment modified;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;  ///< another one after a file was replaced rather than written to

  friend bool operator==(const FileStatus&, const FileStatus&) = default;
};

class Descriptor {
 public:
  explicit Descriptor(int number = -1) noexcept : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  explicit operator bool() const noexcept { return number_ >= 0; }
  [[nodiscard]] int number() const noexcept { return number_; }
  /// Throws FileError, with `path` in its text, when the system does not tell.
  [[nodiscard]] FileStatus status(const std::string& path) const;
  /// What is left to be read, of at most `maximumRead` bytes. Throws FileError, with `path` in its
  /// text.
  [[nodiscard]] std::string readAll(const std::string& path) const;
  static constexpr std::size_t maximumRead = std::size_t{2} << 30;
  /// Writes all of `bytes`. Returns 0, or the system's error number.
  [[nodiscard]] int write(std::string_view bytes) const noexcept;
  /// Returns 0, or the system's error number; closed in either case.
  int close() noexcept;

 private:
  int number_;
};

/// Opens a regular file to be read, and waits for nothing else. Throws FileError when there is none
/// or it cannot be read.
Descriptor openForReading(const std::string& path);

FileStatus fileStatus(const struct stat& info) noexcept;

}  // namespace kestrel
