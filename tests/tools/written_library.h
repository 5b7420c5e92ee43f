/// A written library document, read back.
#pragma once

#include <sstream>
#include <string>

#include "foundation/property_list.h"
#include "tools/make_library/document.h"

namespace kestrel::make_library {

inline std::string documentBytes(const Options& options) {
  std::ostringstream out;
  writeDocument(out, options);
  return out.str();
}

inline PropertyList writtenLibrary(const Options& options) {
  return parsePropertyList(documentBytes(options), "written");
}

inline const PropertyList::Dictionary& tracksOf(const PropertyList& library) {
  return library.find("Tracks")->entries();
}

}  // namespace kestrel::make_library
