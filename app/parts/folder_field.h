/// A field for the path of a folder, with the button that chooses one.
#pragma once

#include <QWidget>

class QLineEdit;

namespace kestrel {

class FolderField final : public QWidget {
  Q_OBJECT

 public:
  /// `name` is what screen readers say, and the dialog's title.
  FolderField(const QString& name, const QString& folder);
  [[nodiscard]] QLineEdit* field() const { return field_; }

 Q_SIGNALS:
  /// The user has entered or chosen another one.
  void changed(const QString& folder);

 private:
  void choose();

  QString name_;
  QLineEdit* field_;
};

}  // namespace kestrel
