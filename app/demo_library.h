/// A small invented library to try things out on, with real media files.
#pragma once

#include <string>

namespace kestrel {

class FileService;

/// The path of the demo library, which is written to the user's data folder when it is not there
/// yet. Throws FileError when that fails. Takes a moment; from any thread.
std::string writeDemoLibrary(FileService& files);

}  // namespace kestrel
