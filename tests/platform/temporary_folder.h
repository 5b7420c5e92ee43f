/// A folder of a test's own, removed with all that is in it, and a process of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrel {

class TemporaryFolder {
 public:
  explicit TemporaryFolder(
      const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string name = (parent / "kestrel-XXXXXX").string();
    path_ = std::filesystem::canonical(::mkdtemp(name.data())).string();
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// A parent where nothing waits for a disk, if this machine has one.
  [[nodiscard]] static std::filesystem::path inMemory() {
    return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
  }
  /// The full path of a name in it.
  [[nodiscard]] std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  [[nodiscard]] const std::string& path() const { return path_; }
  /// Writes a file and returns its full path; makes folders.
  std::string write(const std::string& name, const std::string& bytes) const {
    const std::string path = *this / name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  [[nodiscard]] static std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::size_t count() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

 private:
  std::string path_;
};

/// Runs `act` in a process of its own and returns how that ended (wait(2)): by default, with 0.
template <typename Act>
int inChild(Act&& act) {
  const pid_t child = ::fork();
  if (child == 0) {
    act();
    ::_exit(0);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child ? status : -1;
}

}  // namespace kestrel
