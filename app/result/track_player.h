/// Playing a copy, and going over to another at the same place.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

namespace kestrel {

/// What makes the sound.
class AudioBackend {
 public:
  virtual ~AudioBackend() = default;
  /// Why nothing can be played here, such as for want of a device; empty when it can.
  virtual QString unavailable() = 0;
  /// Begins with a file, from `position` milliseconds on, as soon as it can.
  virtual void play(const QString& path, qint64 position) = 0;
  virtual void pause() = 0;
  virtual void resume() = 0;
  virtual void stop() = 0;
  [[nodiscard]] virtual qint64 position() const = 0;  ///< milliseconds

  std::function<void()> moved;  ///< the position
  std::function<void()> ended;
  std::function<void(const QString& reason)> failed;
};
/// Of the desktop: its default device. Looks for one when it is asked first.
std::unique_ptr<AudioBackend> newAudioBackend();

class TrackPlayer final : public QObject {
  Q_OBJECT

 public:
  explicit TrackPlayer(std::unique_ptr<AudioBackend> backend, QObject* parent = nullptr);
  ~TrackPlayer() override;

  /// Plays a file from its start; the one at hand pauses, or goes on. Without a path, which a track
  /// has whose file is not here, `problem` follows.
  void toggle(const QString& path);
  /// While one plays: goes over to this one, at the same place. Else nothing.
  void switchTo(const QString& path);
  void stop();

  /// Why nothing can be played; empty when it can.
  [[nodiscard]] QString unavailable() const;
  [[nodiscard]] bool isPlaying(const QString& path) const {
    return playing_ && !path.isEmpty() && path == path_;
  }
  /// Whether it was begun, and is not over: it may be paused.
  [[nodiscard]] bool isAtHand(const QString& path) const {
    return !path.isEmpty() && path == path_;
  }
  [[nodiscard]] qint64 position() const;

 Q_SIGNALS:
  /// What is played, or whether it is.
  void changed();
  /// About once a second while something plays.
  void moved();
  /// Why a file could not be played, for people.
  void problem(const QString& text);

 private:
  void begin(const QString& path, qint64 position);

  std::unique_ptr<AudioBackend> backend_;
  QString path_;
  bool playing_ = false;
  qint64 toldSecond_ = -1;
};

}  // namespace kestrel
