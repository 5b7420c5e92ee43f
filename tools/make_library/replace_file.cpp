#include "tools/make_library/replace_file.h"

#include <fstream>
#include <stdexcept>

namespace kestrel::make_library {

void replaceFile(const std::filesystem::path& path,
                 const std::function<void(std::ostream&)>& write) {
  std::filesystem::path partial = path;
  partial += ".partial";
  try {
    std::ofstream out(partial, std::ios::binary);
    if (!out) throw std::runtime_error("Could not create " + partial.string());
    write(out);
    out.close();
    if (!out) throw std::runtime_error("Could not write the whole of " + partial.string());
    std::filesystem::rename(partial, path);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(partial, ignored);
    throw;
  }
}

}  // namespace kestrel::make_library
