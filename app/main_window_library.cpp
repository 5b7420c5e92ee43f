// The main window's commands that open libraries, and tell of the one at hand.

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "app/choices/decision_pane.h"
#include "app/controller/app_delegate.h"
#include "app/libraries/connect_dialog.h"
#include "app/libraries/library_finder.h"
#include "app/libraries/library_menu.h"
#include "app/main_window.h"
#include "app/parts/library_title.h"
#include "app/settings_window.h"
#include "app/top_bar.h"
#include "musicapp/applications.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "platform/programs.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

/// The program that writes invented libraries: beside this one, or where packages put helpers.
std::string libraryMaker() {
  const QString folder = QCoreApplication::applicationDirPath();
  for (const QString& place : {folder, folder + QStringLiteral("/../libexec/kestrel")})
    if (const QFileInfo file(place + QStringLiteral("/kestrel-make-library")); file.isExecutable())
      return pathFromQt(file.absoluteFilePath());
  return "kestrel-make-library";
}

/// The path of the demo library, a small invented one with real media files, which is written to
/// the user's data folder when it is not there yet. Throws FileError. From any thread.
std::string writeDemoLibrary(FileService& files) {
  const auto data = files.applicationSupportDirectory();
  if (!data)
    throw FileError("the demo library", Message::tr("has no place: there is no home folder"),
                    Message::tr("Set HOME."));
  const std::string folder = *data + "/Kestrel/Demo";
  const std::string path = folder + "/Library.xml";
  if (files.exists(path)) return path;
  files.createDirectories(folder);
  SystemPrograms programs;
  ProgramCall call;
  call.program = libraryMaker();
  call.arguments = {"--demo", path};
  call.oneOutput = true;
  const ProgramResult result = programs.run(call);
  if (result.status != 0)
    throw FileError(path, Message::tr("could not be written: %1").arg(result.output),
                    Message::tr("See whether there is room on the disk."));
  return path;
}

/// Where people look for music first; their home when they have no such folder.
QString musicFolder() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
  return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

}  // namespace

QFileDialog* MainWindow::newFileDialog(const QString& title, const QStringList& filters) {
  auto* dialog = new QFileDialog(this, title, musicFolder());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilters(filters + QStringList(tr("All files (*)")));
  return dialog;
}

void MainWindow::openDocument() {
  QStringList filters, patterns;
  for (const Application& application : applications()) {
    if (application.pattern.empty()) continue;
    filters << toQt(application.name) + " (" + toQt(application.pattern) + ")";
    patterns << toQt(application.pattern);
  }
  filters.prepend(tr("All that can be opened (%1)").arg(patterns.join(QLatin1Char(' '))));
  QFileDialog* dialog = newFileDialog(tr("Open Library Document"), filters);
  if (const QString path = pathToQt(delegate_.libraryPath()); path.startsWith('/'))
    dialog->setDirectory(QFileInfo(path).path());
  connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openPath);
  dialog->open();
}

void MainWindow::openFolder() {
  auto* dialog = new QFileDialog(this, tr("Open Folder of Music"), musicFolder());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openPath);
  dialog->open();
}

void MainWindow::connectToServer() { newConnectDialog()->open(); }

void MainWindow::askForPassword(const QString& address, const QString& reason) {
  ConnectDialog* dialog = newConnectDialog();
  dialog->askAgain(address, reason);
  dialog->open();
}

ConnectDialog* MainWindow::newConnectDialog() {
  const auto connectTo = [this](const QString& address, const QString& password) {
    delegate_.whenIdle([this, address, password] {
      if (!password.isEmpty()) delegate_.setPassword(fromQt(address), fromQt(password));
      openPath(address);
    });
  };
  return new ConnectDialog(preferences_, connectTo, this);
}

void MainWindow::openPath(const QString& path) {
  if (path.isEmpty()) return;
  // Not all addresses are paths.
  const QFileInfo file(path);
  const bool isAddress = path.contains(':') && !file.exists();
  finder_->stop();
  delegate_.whenIdle([this, library = pathFromQt(isAddress ? path : file.absoluteFilePath())] {
    delegate_.openLibrary(library);
  });
}

void MainWindow::openDemo() {
  const auto path = std::make_shared<std::string>();
  finder_->stop();
  delegate_.run([this, path] { *path = writeDemoLibrary(delegate_.process().with.files); },
                [this, path] { delegate_.openLibrary(*path); });
}

void MainWindow::showNotes() {
  auto* dialog = new QDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Notes on This Library"));
  QLabel* heading = newPlainLabel(
      tr("Explanation"), tr("What was left out when the library was read, and what is special "
                            "about it:"));
  auto* text = new QPlainTextEdit;
  text->setReadOnly(true);
  text->setAccessibleName(tr("Notes"));
  QStringList lines;
  for (const Message& note : delegate_.notes()) lines << toQt(ended(note));
  text->setPlainText(lines.join(QStringLiteral("\n\n")));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  auto* column = new QVBoxLayout(dialog);
  column->setContentsMargins(3 * gridStep, 3 * gridStep, 3 * gridStep, 2 * gridStep);
  column->setSpacing(2 * gridStep);
  column->addWidget(heading);
  column->addWidget(text, 1);
  column->addWidget(buttons);
  resizeWithinScreen(dialog, {80 * gridStep, 45 * gridStep});
  dialog->open();
}

void MainWindow::showSettings() {
  SettingsWindow::Commands commands;
  commands.open = [this](const QString& address) { openPath(address); };
  commands.connectToServer = [this] { connectToServer(); };
  commands.colorsChanged = [this] {
    table_->reloadPalette();
    lower_->reloadPalette();
  };
  commands.tickMeaningChanged = [this] { decisions_->load(); };
  auto* settings = new SettingsWindow(delegate_, std::move(commands), this);
  settings->open();
}

}  // namespace kestrel
