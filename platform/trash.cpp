#include "platform/trash.h"

#include "platform/file_error.h"

namespace kestrel {

std::vector<TrashResult> Trash::recycle(std::span<const std::string> paths) {
  std::vector<TrashResult> results;
  results.reserve(paths.size());
  for (const std::string& path : paths) {
    TrashResult& result = results.emplace_back();
    result.path = path;
    try {
      TrashedItem item = reserve(path);
      move(item);
      result.item = std::move(item);
    } catch (const FileError& error) {
      result.problem = error.message;
    }
  }
  return results;
}

namespace TextManipulator {

void sendToTrash(const std::string& path, Trash& trash) {
  std::size_t end = path.size();
  while (end > 1 && path[end - 1] == '/') --end;
  const std::size_t slash = end > 1 ? path.rfind('/', end - 1) : std::string::npos;
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  trash.recycle(std::vector{path.substr(begin, end - begin)});
}

}  // namespace TextManipulator
}  // namespace kestrel
