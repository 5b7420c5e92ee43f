#include "ui/qt/cover_store.h"

#include <QBuffer>
#include <QImageReader>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "library/result_track.h"
#include "musicapp/audio/cover.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int kilobytes = 64 * 1024;  // of covers in memory
constexpr std::size_t mostWishes = 200;
constexpr int tellDelay = 40;  // milliseconds

/// The middle of the picture as a square.
QImage squareOf(const Cover& cover, int side) {
  QByteArray bytes =
      QByteArray::fromRawData(cover.bytes.data(), static_cast<qsizetype>(cover.bytes.size()));
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  if (const QSize size = reader.size(); size.isValid())
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
  const QImage image = reader.read();
  if (image.isNull()) return image;
  const QImage scaled =
      image.scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  return scaled.copy((scaled.width() - side) / 2, (scaled.height() - side) / 2, side, side);
}

}  // namespace

CoverStore::CoverStore(const FileService& files, QObject* parent)
    : QObject(parent), files_(files), covers_(kilobytes) {
  pool_.setMaxThreadCount(1);
}

CoverStore::~CoverStore() { pool_.waitForDone(); }

void CoverStore::forget() { covers_.clear(); }

QPixmap CoverStore::cover(const ResultTrack& track, int side) {
  if (track.record->availability() != FileAvailability::reachable) return {};
  const std::string path = filePath(track.record->item());
  if (path.empty()) return {};
  const QString key = QString::number(side) + QLatin1Char(':') + pathToQt(path);
  if (const QPixmap* kept = covers_.object(key)) return *kept;
  const auto known = std::find_if(wishes_.begin(), wishes_.end(),
                                  [&](const Wish& wish) { return wish.key == key; });
  if (known != wishes_.end())
    std::rotate(known, known + 1, wishes_.end());
  else
    wishes_.push_back({key, path, side});
  // Those that have been scrolled past.
  if (wishes_.size() > mostWishes) wishes_.erase(wishes_.begin());
  if (!reading_) readNext();
  return {};
}

void CoverStore::readNext() {
  reading_ = !wishes_.empty();
  if (!reading_) return;
  const Wish wish = std::move(wishes_.back());
  wishes_.pop_back();
  pool_.start([this, wish] {
    QImage image;
    if (const auto cover = coverOf(wish.path, files_)) image = squareOf(*cover, wish.side);
    QMetaObject::invokeMethod(
        this, [this, wish, image] { keep(wish.key, image); }, Qt::QueuedConnection);
  });
}

void CoverStore::keep(const QString& key, const QImage& image) {
  const int cost = 1 + static_cast<int>(image.sizeInBytes() / 1024);
  covers_.insert(key, new QPixmap(QPixmap::fromImage(image)), cost);
  if (!image.isNull() && !std::exchange(telling_, true))
    QTimer::singleShot(tellDelay, this, [this] {
      telling_ = false;
      Q_EMIT loaded();
    });
  readNext();
}

}  // namespace kestrel
