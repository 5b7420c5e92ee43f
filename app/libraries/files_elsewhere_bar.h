/// The bar over the table that says that most files are not where the library says, and offers to
/// find them or to do without.
#pragma once

#include "app/parts/notice_bar.h"

namespace kestrel {

class AppDelegate;
struct FoundElsewhere;

class FilesElsewhereBar final : public NoticeBar {
  Q_OBJECT

 public:
  explicit FilesElsewhereBar(AppDelegate& delegate);
  /// Shows itself as the controller's library asks for it.
  void reload();
  /// What follows the choice of a folder.
  void lookIn(const QString& folder);

 private:
  void chooseFolder();
  void offer(const QString& folder, const FoundElsewhere& found);

  AppDelegate& delegate_;
  QPushButton* where_;
  QPushButton* without_;
  QPushButton* with_;
};

}  // namespace kestrel
