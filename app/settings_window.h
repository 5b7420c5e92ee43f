/// The settings page: what a tick means, what opens at the start, how it looks, where players and
/// folders are, and what is kept of audio files. What is changed counts at once.
#pragma once

#include <QDialog>
#include <functional>

class QFormLayout;
class QLabel;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;
class Preferences;

class SettingsWindow final : public QDialog {
  Q_OBJECT

 public:
  struct Commands {
    std::function<void(const QString& address)> open;  ///< the library under another address
    std::function<void()> connectToServer;
    std::function<void()> colorsChanged;
    std::function<void()> tickMeaningChanged;
  };

  SettingsWindow(AppDelegate& delegate, Commands commands, QWidget* parent);

 private:
  void addGeneral(QVBoxLayout* column);
  void addOrders(QVBoxLayout* column);
  void addLibrary(QVBoxLayout* column);
  void addPlayers(QVBoxLayout* column);
  void addCache(QVBoxLayout* column);
  void addMaps(QFormLayout* form);
  void showCacheSize();
  void clearCache();
  QWidget* newStartChoice();
  QWidget* newTickChoice();
  QWidget* newAppearanceChoice();

  AppDelegate& delegate_;
  Preferences& preferences_;
  Commands commands_;
  QLabel* cacheSize_ = nullptr;
};

}  // namespace kestrel
