/// Says that the library has been changed by another program since it was read, and offers to read
/// it again.
#pragma once

#include <QTimer>

#include "app/parts/notice_bar.h"

namespace kestrel {

class AppDelegate;

/// Looks whether another program has changed the library, and lets the user choose then: reading it
/// again, or leaving all as it is. Without a change, `act` follows at once when it is known.
void onceAsRead(AppDelegate& delegate, QWidget* window, std::function<void()> act);

class ChangeNotice final : public NoticeBar {
  Q_OBJECT

 public:
  explicit ChangeNotice(AppDelegate& delegate);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void look();
  void reload();

  AppDelegate& delegate_;
  QTimer pauses_;
};

}  // namespace kestrel
