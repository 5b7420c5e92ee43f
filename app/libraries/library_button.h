/// The button at the left of the toolbar: which library is open, of which kind and how large, and
/// its menu.
#pragma once

#include <QPushButton>

namespace kestrel {

class LibraryButton final : public QPushButton {
  Q_OBJECT

 public:
  explicit LibraryButton(QWidget* parent = nullptr);
  /// `details` stands below the name; `icon` is a drawing of `toolbarIcon`.
  void show(const QString& name, const QString& details, const QString& icon);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString name_, details_, icon_;
};

}  // namespace kestrel
