/// A bar over the table that says what the user should know of the library or the result, with what
/// can be done about it.
#pragma once

#include <QFrame>
#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace kestrel {

class NoticeBar : public QFrame {
  Q_OBJECT

 public:
  enum class Weight { warning, remark };
  explicit NoticeBar(Weight weight);

  void setText(const QString& text);
  QPushButton* addButton(const QString& title, std::function<void()> pressed);
  [[nodiscard]] QLabel* label() const { return text_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Weight weight_;
  QHBoxLayout* line_;
  QLabel* text_;
};

}  // namespace kestrel
