/// Library documents in the places where people put them.
#pragma once

#include <string>
#include <vector>

namespace kestrel {

class FileService;

/// The paths of those in the folders for music, documents and downloads, and in the folders right
/// inside the one for music. A file is taken for one by its first lines. A few at most.
std::vector<std::string> foundDocuments(const FileService& files);

}  // namespace kestrel
