/// File URLs and what they mean on disk.
#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// Replaces `path` by the file-system path of a file URL (`file:///...`, `file://localhost/...`,
/// drive letters as `/C:/...`, another host's as
/// `//host/...`): percent escapes decoded to bytes, "+" kept, a malformed escape
/// and %00 kept as they stand. Returns false, with `path` empty, for any other URL, and for one
/// that holds a NUL: no path does.
bool pathOfFileUrl(std::string_view url, std::string& path);
/// Appends a part of such a URL, decoded in the same way.
void appendDecoded(std::string_view part, std::string& path);

/// The file URL of an absolute path, as `file:///...`.
std::string fileUrlOfPath(std::string_view path);

}  // namespace kestrel
