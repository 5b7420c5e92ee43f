/// The bytes of a library document in UTF-8, whatever encoding the file has.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "musicapp/document/document_index.h"
#include "platform/descriptor.h"
#include "platform/mapped_file.h"

namespace kestrel {

class FileService;

class DocumentText {
 public:
  /// A document that is not UTF-8 is converted into a file without a name. Throws FileError, and
  /// PlistError when the encoding is none that documents have.
  explicit DocumentText(MappedFile file);

  /// Valid as long as this object, and after it is moved.
  [[nodiscard]] std::string_view bytes() const noexcept {
    return {utf8_.bytes().data(), utf8_.bytes().size()};
  }
  /// Of the file when it was mapped.
  [[nodiscard]] const FileStatus& status() const noexcept { return status_; }
  /// Whether the file's bytes are others, in another encoding.
  [[nodiscard]] bool isConverted() const noexcept { return isConverted_; }
  /// The name of the encoding in the declaration when it is another than UTF-8, so that it would
  /// no longer be true, or forbid new texts.
  [[nodiscard]] const std::optional<ByteRange>& foreignEncodingName() const noexcept {
    return foreignEncodingName_;
  }
  /// Throws FileError when the bytes are no longer those of `status`, because another program wrote
  /// to the file.
  void checkUnchanged() const { utf8_.checkUnchanged(); }
  /// Gives back memory of bytes that are not needed soon.
  void release(std::size_t offset, std::size_t length) const noexcept {
    utf8_.release(offset, length);
  }

 private:
  MappedFile utf8_;
  FileStatus status_;
  bool isConverted_ = false;
  std::optional<ByteRange> foreignEncodingName_;
};

/// Whether a file is XML by the look of its first bytes. Throws FileError.
bool looksLikeXml(const FileService& files, const std::string& path);

}  // namespace kestrel
