/// The field that filters the table by words, with how many rows it shows.
#pragma once

#include <QLineEdit>

class QAction;
class QLabel;

namespace kestrel {

class FilterField final : public QLineEdit {
  Q_OBJECT

 public:
  FilterField();
  /// Empty without a result. "6 of 133"
  void showCount(const QString& count);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void place();

  QAction* lens_;
  QLabel* count_;
};

}  // namespace kestrel
