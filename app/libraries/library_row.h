/// A library to choose, as the welcome page lists it: what it is, where, how large, and the button
/// that opens it.
#pragma once

#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace kestrel {

struct LibraryTitle;

class LibraryRow final : public QWidget {
  Q_OBJECT

 public:
  LibraryRow(const LibraryTitle& title, std::function<void()> open);
  /// What stands below the name.
  void showDetails(const QString& details, const QString& toolTip);
  [[nodiscard]] QPushButton* button() const { return open_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  QString icon_;
  QLabel* name_;
  QLabel* details_;
  QPushButton* open_;
};

}  // namespace kestrel
