#include "resources/artwork.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>
#include <utility>

// Q_INIT_RESOURCE does not work inside a namespace.
static void registerResources() { Q_INIT_RESOURCE(kestrel); }

namespace kestrel {
namespace {

QByteArray drawing(const QString& path) {
  // A linker leaves out the registration of resources in a static library that are not asked for.
  static const bool registered = (registerResources(), true);
  Q_UNUSED(registered)
  QFile file(QStringLiteral(":/kestrel/") + path + QStringLiteral(".svg"));
  if (file.open(QIODevice::ReadOnly)) return file.readAll();
  qWarning("There is no drawing %s", qUtf8Printable(file.fileName()));
  return {};
}

/// The drawings say currentColor, which is the `color` of their root element.
QByteArray painted(const QByteArray& svg, const QColor& color) {
  return QByteArray(svg).replace("color=\"#3a4149\"", "color=\"" + color.name().toLatin1() + "\"");
}

/// Paints one drawing in centred squares of any size.
class DrawingEngine : public QIconEngine {
 public:
  explicit DrawingEngine(QByteArray svg) : svg_(std::move(svg)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    QSvgRenderer renderer(colored(mode));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(painter, rect);
  }

  // The inherited one does not begin with a transparent pixmap.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new DrawingEngine(*this); }

 private:
  [[nodiscard]] QByteArray colored(QIcon::Mode mode) const {
    const QPalette palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
    return painted(svg_, palette.color(group, role));
  }

  QByteArray svg_;
};

/// Chooses between two drawings of the same thing.
class ApplicationIconEngine final : public DrawingEngine {
 public:
  ApplicationIconEngine(QByteArray large, QByteArray small)
      : DrawingEngine(std::move(large)), small_(std::move(small)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    if (std::min(rect.width(), rect.height()) <= 24)
      small_.paint(painter, rect, mode, state);
    else
      DrawingEngine::paint(painter, rect, mode, state);
  }

  [[nodiscard]] QIconEngine* clone() const override { return new ApplicationIconEngine(*this); }

 private:
  DrawingEngine small_;
};

}  // namespace

QIcon toolbarIcon(const QString& name) {
  QByteArray svg = drawing(QStringLiteral("icons/") + name);
  return svg.isEmpty() ? QIcon() : QIcon(new DrawingEngine(std::move(svg)));
}

QPixmap iconPixmap(const QString& name, const QColor& color, int size, qreal devicePixelRatio) {
  QPixmap pixmap(QSize(size, size) * devicePixelRatio);
  pixmap.setDevicePixelRatio(devicePixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(painted(drawing(QStringLiteral("icons/") + name), color))
      .render(&painter, QRectF(0, 0, size, size));
  return pixmap;
}

QImage playlistIcon(const QString& code, int size, qreal devicePixelRatio) {
  const QByteArray svg = drawing(QStringLiteral("playlists/") + code);
  const int pixels = qRound(size * devicePixelRatio);
  if (svg.isEmpty() || pixels <= 0) return {};
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  QSvgRenderer(svg).render(&painter, QRectF(0, 0, pixels, pixels));
  painter.end();
  image.setDevicePixelRatio(devicePixelRatio);
  return image;
}

QIcon applicationIcon() {
  return QIcon(new ApplicationIconEngine(drawing(QStringLiteral("icons/kestrel")),
                                         drawing(QStringLiteral("icons/kestrel-small"))));
}

}  // namespace kestrel
