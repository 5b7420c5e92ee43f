#include "app/libraries/files_elsewhere_bar.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {

FilesElsewhereBar::FilesElsewhereBar(AppDelegate& delegate)
    : NoticeBar(Weight::warning),
      delegate_(delegate),
      where_(addButton(tr("Where is this folder now?"), [this] { chooseFolder(); })),
      without_(addButton(tr("Compare without files"), [this] { delegate_.compareWithoutFiles(); })),
      with_(addButton(tr("Look for files again"), [this] { delegate_.compareWithFiles(); })) {
  setObjectName(QStringLiteral("filesElsewhere"));
  without_->setToolTip(tr("Copies are compared by what the library says; only the trash is off"));
  observe(this, delegate_.observers, [this] { reload(); });
  reload();
}

void FilesElsewhereBar::reload() {
  const MissingFiles& missing = delegate_.missing();
  const bool without = delegate_.comparesWithoutFiles();
  setText(without ? tr("Copies are compared without their files: nothing can go to the trash.")
                  : toQt(ended(missing.sentence())));
  for (QPushButton* button : {where_, without_, with_}) button->setEnabled(!delegate_.isBusy());
  where_->setVisible(!without);
  without_->setVisible(!without);
  with_->setVisible(without);
  setVisible(delegate_.application() && (without || missing.areMost()));
}

void FilesElsewhereBar::chooseFolder() {
  auto* dialog =
      new QFileDialog(this, tr("Where is %1 now?").arg(pathToQt(delegate_.missing().beginning)),
                      QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this, &FilesElsewhereBar::lookIn);
  dialog->open();
}

void FilesElsewhereBar::lookIn(const QString& folder) {
  delegate_.findFilesIn(pathFromQt(folder),
                        [this, folder](const FoundElsewhere& found) { offer(folder, found); });
}

void FilesElsewhereBar::offer(const QString& folder, const FoundElsewhere& found) {
  auto* box = new QMessageBox(this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setTextFormat(Qt::PlainText);
  if (found.found == 0) {
    box->setText(tr("None of the missing files is in %1.").arg(breakable(folder)));
    box->setInformativeText(tr("Choose the folder that holds them, or one above it."));
    box->open();
    return;
  }
  box->setText(toQt(Message::tr("Found there: %1 of %Ln missing files.",
                                "Found there: %1 of %Ln missing file.",
                                static_cast<std::int64_t>(found.missing))
                        .arg(found.found)));
  QStringList lines;
  for (const auto& [map, finds] : found.suggestions)
    lines << toQt(
        Message::tr("%Ln files: %1 → %2", "%Ln file: %1 → %2", static_cast<std::int64_t>(finds))
            .arg(shownLocation(map.from))
            .arg(map.to));
  box->setInformativeText(breakable(lines.join('\n')));
  box->setStandardButtons(QMessageBox::Cancel);
  auto* take = box->addButton(tr("Use These Files"), QMessageBox::AcceptRole);
  box->setDefaultButton(take);
  connect(take, &QPushButton::clicked, this, [this, suggestions = found.suggestions] {
    delegate_.whenIdle([this, suggestions] { delegate_.keepMaps(suggestions); });
  });
  box->open();
}

}  // namespace kestrel
