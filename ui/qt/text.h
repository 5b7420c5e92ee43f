/// Between the system's texts, which are UTF-8, and the toolkit's.
#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/message.h"

namespace kestrel {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
/// In the user's language, with numbers as the user writes them; English where there is no
/// translation.
QString toQt(const Message& message);
QStringList toQt(std::span<const Message> messages);
/// The same as bytes, for what makes texts of several.
std::string inUsersWords(const Message& message);
/// A fixed text of the core, or a sentence that was stored in English: translated if nothing fills
/// it, else as it stands.
QString translated(std::string_view english);
/// As messages that depend on a number take it.
inline std::int64_t countOf(std::size_t number) { return static_cast<std::int64_t>(number); }
/// A whole number as the user writes it.
QString numberText(std::size_t number);
/// A moment in local time, as `Message::moment` has it, in the user's short style; another text as
/// it stands. From any thread.
QString usersDate(std::string_view local);
/// A text whose paths may be broken between folders, where it is shown in several lines.
QString breakable(QString text);
/// A byte count as people read it.
QString sizeText(std::uint64_t bytes);
inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// Paths are bytes that need not be UTF-8.
inline QString pathToQt(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}
inline std::string pathFromQt(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace kestrel
