#include "musicapp/library_identity.h"

#include "musicapp/file_url.h"

namespace kestrel {

std::string addressText(const std::string& uri) {
  std::string path;
  return pathOfFileUrl(uri, path) ? path : uri;
}

}  // namespace kestrel
