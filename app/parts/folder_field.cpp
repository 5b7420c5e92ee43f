#include "app/parts/folder_field.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "ui/qt/look.h"
#include "ui/qt/widgets.h"

namespace kestrel {

FolderField::FolderField(const QString& name, const QString& folder)
    : name_(name), field_(new QLineEdit(folder)) {
  field_->setAccessibleName(name);
  QPushButton* choose = newButton(tr("Choose…"), [this] { this->choose(); });
  choose->setAccessibleName(tr("Choose: %1").arg(name));
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(gridStep);
  line->addWidget(field_, 1);
  line->addWidget(choose);
  setFocusProxy(field_);
  connect(field_, &QLineEdit::editingFinished, this, [this] { Q_EMIT changed(field_->text()); });
}

void FolderField::choose() {
  auto* dialog = new QFileDialog(this, name_, field_->text());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    field_->setText(folder);
    Q_EMIT changed(folder);
  });
  dialog->open();
}

}  // namespace kestrel
