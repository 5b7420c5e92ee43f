/// Between the system's texts, which are UTF-8, and the toolkit's.
#pragma once

#include <QFile>
#include <QString>
#include <string>
#include <string_view>

namespace kestrel {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// Paths are bytes that need not be UTF-8.
inline QString pathToQt(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}
inline std::string pathFromQt(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace kestrel
