/// Reads a whole library document: the XML property list that music applications export.
///
/// The Tracks section is split between threads at places that look like the end of an entry. Each
/// part is parsed on a guess; a part counts only when the one before it ended exactly where it
/// began, so the result, errors included, is that of reading from start to end.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/library_error.h"
#include "musicapp/document/document_index.h"
#include "musicapp/media_library.h"

namespace kestrel {

class MappedFile;

struct LibraryDocument {
  std::shared_ptr<MediaItems> items;
  std::shared_ptr<std::vector<Playlist>> playlists;
  std::shared_ptr<DocumentIndex> index;  ///< of the text, which is UTF-8 whatever the file is
  std::string musicFolder;         ///< file-system path of "Music Folder"; empty when not given
  std::string applicationVersion;  ///< of the application that wrote the document
  std::string persistentID;        ///< "Library Persistent ID"; empty in very old documents
  std::size_t droppedItems = 0;    ///< playlist entries whose Track ID the document does not define
};

struct DocumentReadOptions {
  unsigned threads = 0;                         ///< 0: as many as the machine has cores
  std::size_t partSize = std::size_t{8} << 20;  ///< bytes of the Tracks section parsed at a time
  /// Called with ranges that will not be read again, from any reading thread, so that a caller
  /// who mapped the file can give the pages back.
  std::function<void(std::size_t offset, std::size_t size)> finished;
};

/// A fault in such a document, with line, column and what to do about it; see libraryError.
LibraryError documentError(const std::string& name, std::string_view document,
                           const PlistError& fault);

/// Reads a mapped document and gives its pages back as it goes. `name` stands for the file in
/// messages. Throws LibraryError: a message with line, column, what was expected there, and what
/// to do. FileError when another program changed the file meanwhile. A document in an encoding
/// other than UTF-8 is converted in a file without a name first.
LibraryDocument readLibraryDocument(const MappedFile& file, const std::string& name,
                                    const DocumentReadOptions& = {});

/// Reads a document in memory, of any accepted encoding.
LibraryDocument readLibraryDocument(std::string_view bytes, const std::string& name,
                                    const DocumentReadOptions& = {});

}  // namespace kestrel
