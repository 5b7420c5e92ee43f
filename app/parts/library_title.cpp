#include "app/parts/library_title.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include "musicapp/applications.h"
#include "musicapp/found_libraries.h"
#include "musicapp/library_identity.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// What stands behind an address's scheme, without what is asked for behind a question mark.
QString behindScheme(const QString& address) {
  QString rest = address.section(QLatin1Char(':'), 1).section(QLatin1Char('?'), 0, 0);
  if (rest.startsWith(QLatin1String("//"))) rest.remove(0, 2);
  return QUrl::fromPercentEncoding(rest.toUtf8());
}

}  // namespace

QString shortPath(const QString& path) {
  const QString home = QDir::homePath();
  if (path == home) return QStringLiteral("~");
  return path.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + path.mid(home.size()) : path;
}

QString menuText(const QString& text) { return QString(text).replace('&', "&&"); }

QStringList libraryDetails(const LibraryTitle& title, const FoundLibrary& found) {
  QStringList details;
  if (!title.place.isEmpty()) details << title.place;
  const auto add = [&](const std::optional<std::size_t>& count, auto text) {
    if (count) details << toQt(text(static_cast<std::int64_t>(*count)));
  };
  add(found.tracks, [](std::int64_t n) { return Message::tr("%Ln songs", "%Ln song", n); });
  if (found.playlists > std::size_t{0})
    add(found.playlists,
        [](std::int64_t n) { return Message::tr("%Ln playlists", "%Ln playlist", n); });
  if (!found.obstacle.empty() && found.tracks)
    details << toQt(Message::tr("cannot be changed now"));
  return details;
}

bool isSameLibrary(const std::string& one, const std::string& other) {
  const auto path = [](const std::string& address) {
    const std::string text = addressText(address);
    // A player's file may be named by itself, or behind the player's name.
    const auto behind = text.find(":/");
    return text.starts_with('/') || behind == std::string::npos ||
                   text.compare(behind, 3, "://") == 0
               ? text
               : text.substr(behind + 1);
  };
  return one == other || path(one) == path(other);
}

LibraryTitle libraryTitle(const std::string& address, const FileService& files) {
  const std::string text = addressText(address);
  const Application* application = applicationOf(text, files);
  LibraryTitle title;
  title.kind = application ? toQt(application->kind) : QString();
  title.icon = toQt(application ? application->icon : std::string("library-none"));
  const QString shown = pathToQt(text);
  const bool isPath = shown.startsWith(QLatin1Char('/'));
  const QString place = isPath ? shown : behindScheme(shown);
  if (!isPath && !shown.startsWith(QLatin1String("folder:"))) {
    // A player has a name of its own; where it runs or keeps its files tells two of them apart.
    title.name = title.kind;
    title.place = shortPath(place);
    return title;
  }
  const QFileInfo file(place);
  title.name = file.fileName().isEmpty() ? place : file.fileName();
  title.place = shortPath(file.isDir() ? place : file.path());
  return title;
}

}  // namespace kestrel
