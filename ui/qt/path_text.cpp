#include "ui/qt/path_text.h"

#include <algorithm>

#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Where the part begins that the paths do not share, behind a slash.
std::size_t ownPart(const std::string& path, const std::string& other) {
  const auto end = std::mismatch(path.begin(), path.end(), other.begin(), other.end()).first;
  const auto shared = static_cast<std::size_t>(end - path.begin());
  if (shared == 0) return 0;
  const std::size_t slash = path.rfind('/', shared - (shared == path.size() ? 1 : 0));
  const std::size_t before = slash == shared && shared > 0 ? path.rfind('/', shared - 1) : slash;
  return before == std::string::npos ? 0 : before + 1;
}

/// Where the folder above it begins, at its slash; 0 where there is none to leave out.
std::size_t shownFrom(const std::string& path, std::size_t own) {
  if (own < 2) return 0;
  const std::size_t above = path.rfind('/', own - 2);
  return above == std::string::npos ? 0 : above;
}

}  // namespace

QString pathFrom(const std::string& path, const std::string& other) {
  const std::size_t from = shownFrom(path, ownPart(path, other));
  return from == 0 ? pathToQt(path) : QStringLiteral("…") + pathToQt(path.substr(from));
}

qsizetype differenceIn(const std::string& path, const std::string& other) {
  const std::size_t own = ownPart(path, other);
  const std::size_t from = shownFrom(path, own);
  return pathToQt(path.substr(from, own - from)).size() + (from == 0 ? 0 : 1);
}

}  // namespace kestrel
