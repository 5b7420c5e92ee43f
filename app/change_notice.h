/// Says that the library has been changed by another program since it was read, and offers to read
/// it again.
#pragma once

#include <QTimer>

#include "app/notice_bar.h"

namespace kestrel {

class AppDelegate;

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
