/// The menu of the rules that the user has saved under names: to choose one, to save, rename and
/// remove them.
#pragma once

#include <QMenu>
#include <functional>

namespace kestrel {

class AppDelegate;

class PresetMenu final : public QMenu {
  Q_OBJECT

 public:
  PresetMenu(AppDelegate& delegate, QWidget* parent);

 private:
  void fill();
  void save();
  void rename(const QString& name);
  void remove(const QString& name);
  /// Asks for a name; an empty text when there is none.
  void askName(const QString& title, const QString& first,
               const std::function<void(const QString&)>& named);

  AppDelegate& delegate_;
};

}  // namespace kestrel
