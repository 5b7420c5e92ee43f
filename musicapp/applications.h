/// The music applications that Kestrel knows, and opening a library by its address.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "musicapp/music_application.h"

namespace kestrel {

/// In the order in which they are asked whose library an address is.
std::span<const Application> applications();

/// The application that recognises an address, which may be a file URL too; nullptr when none does.
const Application* applicationOf(const std::string& address, const FileService& files);

/// Throws LibraryError, with file, place and remedy, when no application recognises the address or
/// the library cannot be read.
std::unique_ptr<MusicApplication> openApplication(const std::string& address,
                                                  const ApplicationServices& services);

/// The same for those who only read the library, which keeps its application.
std::shared_ptr<MediaLibrary> openLibrary(const std::string& address,
                                          const ApplicationServices& services);

}  // namespace kestrel
