#include "platform/trash.h"

namespace kestrel::TextManipulator {

void sendToTrash(const std::string& path, Trash& trash) {
  std::size_t end = path.size();
  while (end > 1 && path[end - 1] == '/') --end;
  const std::size_t slash = end > 1 ? path.rfind('/', end - 1) : std::string::npos;
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  trash.recycle(std::vector{path.substr(begin, end - begin)});
}

}  // namespace kestrel::TextManipulator
