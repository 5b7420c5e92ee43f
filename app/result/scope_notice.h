/// Says that a search looks into one playlist only, with the way back to the whole library.
#pragma once

#include "app/parts/notice_bar.h"

namespace kestrel {

class AppDelegate;

class ScopeNotice final : public NoticeBar {
  Q_OBJECT

 public:
  ScopeNotice(AppDelegate& delegate, std::function<void()> wholeLibrary);

 private:
  void reload();

  AppDelegate& delegate_;
};

}  // namespace kestrel
