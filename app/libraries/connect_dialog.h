/// Asks for the server of a Music Player Daemon.
#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QSpinBox;

namespace kestrel {

class Preferences;

class ConnectDialog final : public QDialog {
  Q_OBJECT

 public:
  /// What the user enters but for the password is kept for the next time.
  using Connect = std::function<void(const QString& address, const QString& password)>;
  ConnectDialog(Preferences& preferences, Connect connect, QWidget* parent);

  /// The address as the fields say it.
  [[nodiscard]] QString address() const;
  /// Shows a server's address, and why it has to be connected to once more: the user has to enter
  /// the password.
  void askAgain(const QString& address, const QString& reason);

 private:
  void store();

  Preferences& preferences_;
  QLineEdit* host_;
  QSpinBox* port_;
  QLineEdit* music_;
  QLineEdit* password_;
  QLabel* reason_;
};

}  // namespace kestrel
