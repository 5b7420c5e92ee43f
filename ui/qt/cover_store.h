/// Covers of tracks for the windows: read and scaled in the background, kept in memory.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QString>
#include <QThreadPool>
#include <string>
#include <vector>

#include "ui/qt/result_row_painter.h"

namespace kestrel {

class FileService;

/// On the main thread. Asks for no file that is not there as far as the track's record knows.
class CoverStore final : public QObject, public CoverSource {
  Q_OBJECT

 public:
  /// `files` must outlive it, and may be asked from another thread.
  explicit CoverStore(const FileService& files, QObject* parent = nullptr);
  ~CoverStore() override;

  /// Never waits: what is not there yet is read, the latest wish first, and `loaded` follows.
  QPixmap cover(const ResultTrack& track, int side) override;
  /// Files may have changed.
  void forget();

 Q_SIGNALS:
  /// Told a moment after covers have come, of several together.
  void loaded();

 private:
  struct Wish {
    QString key;
    std::string path;
    int side;
  };
  void readNext();
  void keep(const QString& key, const QImage& image);

  const FileService& files_;
  QCache<QString, QPixmap> covers_;  ///< a null one where a file has none
  std::vector<Wish> wishes_;         ///< the latest last
  bool reading_ = false;
  bool telling_ = false;
  QThreadPool pool_;
};

}  // namespace kestrel
