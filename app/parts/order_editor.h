/// An order of folders, or of kinds of file, that the user arranges: what stands first is
/// preferred.
#pragma once

#include <QWidget>
#include <functional>
#include <string_view>

class QListWidget;
class QPushButton;

namespace kestrel {

class AppDelegate;

/// Which order, by the setting that holds it.
enum class OrderOf { folders, kinds };

class OrderEditor final : public QWidget {
  Q_OBJECT

 public:
  OrderEditor(AppDelegate& delegate, OrderOf what);

 Q_SIGNALS:
  /// By the user; the setting holds it.
  void changed();

 private:
  void load();
  void store();
  void updateButtons();
  void move(int by);
  void add();
  void addText(const QString& text);
  void remove();
  [[nodiscard]] QStringList known() const;

  AppDelegate& delegate_;
  OrderOf what_;
  QListWidget* list_;
  QPushButton *up_, *down_, *remove_;
};

/// The editors of the orders that rules of the settings ask for, in a dialog; deletes itself.
void editOrders(AppDelegate& delegate, QWidget* window);
/// Whether a rule that is chosen asks for this order.
bool isOrderAsked(const AppDelegate& delegate, OrderOf what);

}  // namespace kestrel
