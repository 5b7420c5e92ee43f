#include "app/result/track_player.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QFileInfo>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QUrl>
#include <utility>

namespace kestrel {
namespace {

/// Without a sound server the toolkit complains on the terminal, where nobody looks for it.
bool isWithoutDevice() {
  const QtMessageHandler before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const bool isWithout = QMediaDevices::defaultAudioOutput().isNull();
  qInstallMessageHandler(before);
  return isWithout;
}

class QtAudioBackend final : public AudioBackend {
 public:
  QString unavailable() override {
    if (isWithoutDevice()) return TrackPlayer::tr("There is no sound device.");
    make();
    if (!player_->isAvailable())
      return TrackPlayer::tr("What plays music on this desktop is not installed.");
    return {};
  }
  void play(const QString& path, qint64 position) override {
    make();
    start_ = position;
    player_->stop();
    player_->setSource(QUrl::fromLocalFile(path));
    player_->play();
  }
  void pause() override {
    if (player_) player_->pause();
  }
  void resume() override {
    if (player_) player_->play();
  }
  void stop() override {
    start_ = 0;
    if (player_) player_->stop();
  }
  [[nodiscard]] qint64 position() const override { return player_ ? player_->position() : 0; }

 private:
  void make() {
    if (player_) return;
    output_ = std::make_unique<QAudioOutput>();
    player_ = std::make_unique<QMediaPlayer>();
    player_->setAudioOutput(output_.get());
    QMediaPlayer* player = player_.get();
    QObject::connect(player, &QMediaPlayer::positionChanged, player, [this] {
      if (moved) moved();
    });
    QObject::connect(player, &QMediaPlayer::mediaStatusChanged, player,
                     [this](QMediaPlayer::MediaStatus status) {
                       using enum QMediaPlayer::MediaStatus;
                       // It takes no position before it has read the file's beginning.
                       if ((status == LoadedMedia || status == BufferedMedia) && start_ > 0)
                         player_->setPosition(std::exchange(start_, 0));
                       if (status == EndOfMedia && ended) ended();
                       if (status == InvalidMedia) fail();
                     });
    QObject::connect(player, &QMediaPlayer::errorOccurred, player, [this] { fail(); });
  }
  void fail() {
    if (failed) failed(player_->errorString());
  }

  std::unique_ptr<QAudioOutput> output_;
  std::unique_ptr<QMediaPlayer> player_;
  qint64 start_ = 0;  ///< to go to once the file is read
};

}  // namespace

std::unique_ptr<AudioBackend> newAudioBackend() { return std::make_unique<QtAudioBackend>(); }

TrackPlayer::TrackPlayer(std::unique_ptr<AudioBackend> backend, QObject* parent)
    : QObject(parent), backend_(std::move(backend)) {
  backend_->moved = [this] {
    if (std::exchange(toldSecond_, position() / 1000) != position() / 1000) Q_EMIT moved();
  };
  backend_->ended = [this] {
    playing_ = false;
    path_.clear();
    Q_EMIT changed();
  };
  backend_->failed = [this](const QString& reason) {
    // A player may say so more than once.
    if (path_.isEmpty()) return;
    const QString name = QFileInfo(std::exchange(path_, {})).fileName();
    playing_ = false;
    Q_EMIT changed();
    Q_EMIT problem(reason.isEmpty()
                       ? tr("“%1” cannot be played: its format is not known here.").arg(name)
                       : tr("“%1” cannot be played: %2").arg(name, reason));
  };
}

TrackPlayer::~TrackPlayer() {
  backend_->moved = nullptr;
  backend_->ended = nullptr;
  backend_->failed = nullptr;
}

QString TrackPlayer::unavailable() const { return backend_->unavailable(); }

qint64 TrackPlayer::position() const { return path_.isEmpty() ? 0 : backend_->position(); }

void TrackPlayer::begin(const QString& path, qint64 position) {
  path_ = path;
  playing_ = true;
  backend_->play(path, position);
  Q_EMIT changed();
}

void TrackPlayer::toggle(const QString& path) {
  if (path.isEmpty()) {
    Q_EMIT problem(tr("There is no file to play."));
    return;
  }
  if (const QString why = unavailable(); !why.isEmpty()) {
    Q_EMIT problem(why);
    return;
  }
  if (path != path_) return begin(path, 0);
  playing_ = !playing_;
  if (playing_)
    backend_->resume();
  else
    backend_->pause();
  Q_EMIT changed();
}

void TrackPlayer::switchTo(const QString& path) {
  if (!playing_ || path.isEmpty() || path == path_) return;
  begin(path, backend_->position());
}

void TrackPlayer::stop() {
  if (path_.isEmpty()) return;
  playing_ = false;
  path_.clear();
  backend_->stop();
  Q_EMIT changed();
}

}  // namespace kestrel
