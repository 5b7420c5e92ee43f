#include "app/desktop_revealer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QUrl>

#include "platform/queues.h"
#include "ui/qt/text.h"

namespace kestrel {

void DesktopRevealer::revealFile(const std::string& path) {
  const QString service = QStringLiteral("org.freedesktop.FileManager1");
  QDBusMessage call =
      QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/FileManager1"),
                                     service, QStringLiteral("ShowItems"));
  const QString url = QUrl::fromLocalFile(pathToQt(path)).toString(QUrl::FullyEncoded);
  call << QStringList{url} << QString();
  constexpr int patience = 3000;  // milliseconds
  const QDBusMessage answer = QDBusConnection::sessionBus().call(call, QDBus::Block, patience);
  if (answer.type() == QDBusMessage::ErrorMessage) folders_.revealFile(path);
}

void DesktopRevealer::revealPlaylist(std::uint64_t playlist) {
  mainQueue_.post([show = showPlaylist_, playlist] { show(playlist); });
}

}  // namespace kestrel
