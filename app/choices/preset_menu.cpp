#include "app/choices/preset_menu.h"

#include <QInputDialog>
#include <algorithm>
#include <functional>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

QString asMenuTitle(QString name) { return name.replace(QLatin1Char('&'), QLatin1String("&&")); }

}  // namespace

PresetMenu::PresetMenu(AppDelegate& delegate, QWidget* parent)
    : QMenu(parent), delegate_(delegate) {
  setAccessibleName(tr("Saved rules"));
  connect(this, &QMenu::aboutToShow, this, &PresetMenu::fill);
  fill();
}

void PresetMenu::fill() {
  clear();
  for (QMenu* submenu : findChildren<QMenu*>()) submenu->deleteLater();
  const std::vector<Preset>& presets = delegate_.presets();
  for (const Preset& preset : presets)
    addAction(asMenuTitle(toQt(preset.name)), this,
              [this, preset] { delegate_.usePreset(preset); });
  if (!presets.empty()) addSeparator();
  addAction(tr("&Save These Rules as Preset…"), this, [this] {
    save();
  })->setEnabled(delegate_.application() != nullptr);
  if (presets.empty()) return;
  QMenu* renaming = addMenu(tr("Re&name"));
  QMenu* removing = addMenu(tr("&Remove"));
  for (const Preset& preset : presets) {
    const QString name = toQt(preset.name);
    renaming->addAction(asMenuTitle(name) + QStringLiteral("…"), this,
                        [this, name] { rename(name); });
    removing->addAction(asMenuTitle(name), this, [this, name] { remove(name); });
  }
}

void PresetMenu::askName(const QString& title, const QString& first,
                         const std::function<void(const QString&)>& named) {
  auto* dialog = new QInputDialog(window());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setWindowTitle(title);
  dialog->setLabelText(tr("&Name:"));
  dialog->setOkButtonText(tr("&Save"));
  dialog->setCancelButtonText(tr("&Cancel"));
  dialog->setTextValue(first);
  connect(dialog, &QInputDialog::textValueSelected, this, [named](const QString& text) {
    if (const QString name = text.simplified(); !name.isEmpty()) named(name);
  });
  dialog->open();
}

void PresetMenu::save() {
  askName(tr("Save Rules as Preset"), {},
          [this](const QString& name) { delegate_.savePreset(fromQt(name)); });
}

void PresetMenu::rename(const QString& name) {
  askName(tr("Rename Preset"), name, [this, name](const QString& newName) {
    delegate_.renamePreset(fromQt(name), fromQt(newName));
  });
}

void PresetMenu::remove(const QString& name) {
  const auto answered = [this, name](int button) {
    if (button == 0) delegate_.removePreset(fromQt(name));
  };
  showAlert(window(), tr("Remove the preset “%1”?").arg(name),
            tr("Its rules stay chosen if they are; only the name goes."),
            {tr("&Remove"), tr("&Cancel")}, answered);
}

}  // namespace kestrel
