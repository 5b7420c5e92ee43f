/// Paths as lists show them: from where they begin to differ.
#pragma once

#include <QString>
#include <string>

namespace kestrel {

/// `path` without the folders that it shares with `other`, for which "…" stands, but for the last
/// one of them; the whole of a path that shares none.
QString pathFrom(const std::string& path, const std::string& other);
/// Where in such a text what differs begins: behind the last slash that the paths share.
qsizetype differenceIn(const std::string& path, const std::string& other);

}  // namespace kestrel
