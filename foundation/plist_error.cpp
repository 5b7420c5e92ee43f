#include "foundation/plist_error.h"

namespace kestrel {

LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault) {
  const char* remedy = "Export the library again, or repair the document at that place.";
  if (document.starts_with("bplist"))
    remedy =
        "Export the library from the music application as XML, or convert the file to an XML "
        "property list.";
  else if (fault.offset >= document.size())
    remedy = "The file may be incomplete: export or copy it again.";
  return {name, placeOf(document, fault.offset), fault.what(), remedy};
}

}  // namespace kestrel
