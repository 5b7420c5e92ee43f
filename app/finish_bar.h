/// The steps that lead from a result to a library without duplicates, along the window's bottom:
/// review the groups, repair the playlists, remove the copies.
#pragma once

#include <QPushButton>
#include <QWidget>
#include <array>
#include <functional>

namespace kestrel {

class AppDelegate;

/// A step: its number, what it does, and how much that is.
class FinishStep final : public QPushButton {
  Q_OBJECT

 public:
  FinishStep(int number, std::function<void()> pressed);
  void show(const QString& title, const QString& amount, bool isNext);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int number_;
  QString amount_;
  bool isNext_ = false;
};

class FinishBar final : public QWidget {
  Q_OBJECT

 public:
  struct Commands {
    std::function<void()> review, repair, remove;
  };

  FinishBar(AppDelegate& delegate, Commands commands);

 private:
  void reload();

  AppDelegate& delegate_;
  std::array<FinishStep*, 3> steps_;
};

}  // namespace kestrel
