#include "app/settings_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "app/appearance.h"
#include "app/controller/app_delegate.h"
#include "app/parts/folder_field.h"
#include "app/parts/library_title.h"
#include "app/parts/order_editor.h"
#include "musicapp/library_identity.h"
#include "musicapp/path_maps.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

QFormLayout* addPart(QVBoxLayout* column, const QString& title) {
  if (column->count() > 0) column->addSpacing(gridStep);
  auto* heading = new QLabel(title);
  heading->setFont(titleFont(heading->font()));
  column->addWidget(heading);
  auto* form = new QFormLayout;
  form->setVerticalSpacing(gridStep);
  form->setHorizontalSpacing(2 * gridStep);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  column->addLayout(form);
  return form;
}

/// The value of a parameter behind an address's question mark, decoded.
QString parameterOf(const QString& address, const QString& name) {
  for (const QString& part : address.section('?', 1).split('&'))
    if (part.section('=', 0, 0) == name)
      return QUrl::fromPercentEncoding(part.section('=', 1).toUtf8());
  return {};
}

QString encoded(const QString& path) {
  return QString::fromLatin1(QUrl::toPercentEncoding(path, QByteArrayLiteral("/")));
}

QStringList cacheFiles(const FileService& files) {
  QStringList paths;
  if (const auto cache = files.cacheDirectory())
    for (const char* part : {"", "-wal", "-shm"})
      paths << pathToQt(*cache + "/Kestrel/audio.sqlite" + part);
  return paths;
}

}  // namespace

SettingsWindow::SettingsWindow(AppDelegate& delegate, Commands commands, QWidget* parent)
    : QDialog(parent),
      delegate_(delegate),
      preferences_(delegate.process().with.preferences),
      commands_(std::move(commands)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Settings"));
  auto* content = new QWidget;
  auto* parts = new QVBoxLayout(content);
  parts->setContentsMargins(3 * gridStep, 3 * gridStep, 3 * gridStep, 2 * gridStep);
  parts->setSpacing(gridStep);
  addGeneral(parts);
  addOrders(parts);
  addLibrary(parts);
  addPlayers(parts);
  addCache(parts);
  parts->addStretch(1);
  for (OrderEditor* editor : content->findChildren<OrderEditor*>())
    editor->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  // One left edge for all that is set.
  std::vector<QWidget*> labels;
  int widest = 0;
  for (const QFormLayout* form : content->findChildren<QFormLayout*>())
    for (int row = 0; row < form->rowCount(); ++row)
      if (QLayoutItem* item = form->itemAt(row, QFormLayout::LabelRole); item && item->widget()) {
        labels.push_back(item->widget());
        widest = std::max(widest, item->widget()->sizeHint().width());
      }
  for (QWidget* label : labels) label->setMinimumWidth(widest);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setWidget(content);
  QWidget* buttons = newRow({nullptr, newButton(tr("Clos&e"), [this] { reject(); })});
  buttons->layout()->setContentsMargins(3 * gridStep, gridStep, 3 * gridStep, 2 * gridStep);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(scroll, 1);
  column->addWidget(buttons);
  resizeWithinScreen(this, {std::max(72 * gridStep, content->sizeHint().width() + 3 * gridStep),
                            content->sizeHint().height() + 8 * gridStep});
}

void SettingsWindow::addGeneral(QVBoxLayout* column) {
  QFormLayout* form = addPart(column, tr("General"));
  form->addRow(tr("A &tick marks:"), newTickChoice());
  form->addRow(tr("At the &start:"), newStartChoice());
  form->addRow(tr("&Appearance:"), newAppearanceChoice());
  auto* colors = new QCheckBox(tr("C&olour tracks in the cloud and missing files"));
  colors->setChecked(preferences_.boolean(settings::colorsByState));
  connect(colors, &QCheckBox::toggled, this, [this](bool on) {
    preferences_.set(settings::colorsByState, on);
    commands_.colorsChanged();
  });
  form->addRow(QString(), colors);
}

QWidget* SettingsWindow::newTickChoice() {
  auto* meaning = new QComboBox;
  meaning->addItem(tr("the track to keep"));
  meaning->addItem(tr("the tracks to remove"));
  meaning->setCurrentIndex(preferences_.boolean(settings::keeperMode) ? 1 : 0);
  connect(meaning, &QComboBox::currentIndexChanged, this, [this](int mode) {
    delegate_.setKeeperMode(mode);
    commands_.tickMeaningChanged();
  });
  return meaning;
}

QWidget* SettingsWindow::newStartChoice() {
  auto* start = new QComboBox;
  start->addItem(tr("choose a library"));
  start->addItem(tr("open the last library"));
  start->addItem(tr("open the last library and find duplicates"));
  start->setCurrentIndex(!preferences_.boolean(settings::openLastLibrary)    ? 0
                         : preferences_.boolean(settings::getDupesAtStartup) ? 2
                                                                             : 1);
  connect(start, &QComboBox::currentIndexChanged, this, [this](int choice) {
    preferences_.set(settings::openLastLibrary, choice > 0);
    preferences_.set(settings::getDupesAtStartup, choice == 2);
  });
  return start;
}

QWidget* SettingsWindow::newAppearanceChoice() {
  auto* appearance = new QComboBox;
  appearance->addItem(tr("like the desktop"));
  appearance->addItem(tr("light"));
  appearance->addItem(tr("dark"));
  appearance->setCurrentIndex(static_cast<int>(chosenAppearance(preferences_)));
  connect(appearance, &QComboBox::currentIndexChanged, this, [this](int choice) {
    chooseAppearance(static_cast<AppearanceChoice>(choice), preferences_);
  });
  return appearance;
}

void SettingsWindow::addOrders(QVBoxLayout* column) {
  QFormLayout* form = addPart(column, tr("What the rules of order prefer"));
  for (const auto& [what, label] :
       {std::pair(OrderOf::folders, tr("Folders:")), std::pair(OrderOf::kinds, tr("Kinds:"))}) {
    auto* editor = new OrderEditor(delegate_, what);
    connect(editor, &OrderEditor::changed, this, [this, what = what] {
      if (isOrderAsked(delegate_, what)) delegate_.rulesChanged();
    });
    form->addRow(label, editor);
  }
}

void SettingsWindow::addLibrary(QVBoxLayout* column) {
  if (!delegate_.application()) return;
  const LibraryTitle title = libraryTitle(delegate_.libraryPath(), delegate_.process().with.files);
  QFormLayout* form = addPart(column, tr("This library: %1").arg(title.name));
  const QString address = pathToQt(addressText(delegate_.application()->library().identity().uri));
  const QString bare = address.section('?', 0, 0);
  const std::string media = delegate_.application()->library().mediaFolder();
  // A field of its own where the address says it, else what the library itself says.
  const auto addFolder = [&](const QString& label, const QString& name, const QString& parameter,
                             const QString& hint, const QString& before) {
    auto* field = new FolderField(name, parameterOf(address, parameter));
    field->field()->setPlaceholderText(hint);
    connect(field, &FolderField::changed, this,
            [this, before, parameter, old = field->field()->text()](const QString& folder) {
              if (folder == old) return;
              commands_.open(folder.isEmpty() ? before
                                              : before + '?' + parameter + '=' + encoded(folder));
              accept();
            });
    form->addRow(label, field);
  };
  if (address.startsWith(QLatin1String("mpd:"))) {
    addFolder(tr("&Music folder:"), tr("Music folder"), QStringLiteral("music"),
              media.empty() ? tr("where the server does not tell it") : pathToQt(media), bare);
  } else if (title.icon == QLatin1String("library-folder")) {
    const QString folder =
        bare.startsWith('/') ? QStringLiteral("folder://") + encoded(bare) : bare;
    addFolder(tr("&Playlists also in:"), tr("Folder of further playlists"),
              QStringLiteral("playlists"), tr("no further folder"), folder);
  } else {
    QLabel* folder =
        newPlainLabel(tr("Media folder"), media.empty() ? tr("The library names none.")
                                                        : shortPath(pathToQt(addressText(media))));
    form->addRow(tr("Media folder:"), folder);
  }
  addMaps(form);
}

void SettingsWindow::addMaps(QFormLayout* form) {
  const std::string& path = delegate_.libraryPath();
  const auto maps = keptMaps(preferences_, path).list();
  if (maps.empty()) return;
  QStringList lines;
  for (const PathMaps::Map& map : maps)
    lines << pathToQt(map.from) + " → " + shortPath(pathToQt(map.to));
  QLabel* list = newPlainLabel(tr("Files elsewhere"), lines.join('\n'));
  form->addRow(tr("Files elsewhere:"), list);
  form->addRow(QString(), newRow({newButton(tr("&Forget These Places"),
                                            [this, path] {
                                              keepMaps(preferences_, path, PathMaps());
                                              commands_.open(pathToQt(path));
                                              accept();
                                            }),
                                  nullptr}));
}

void SettingsWindow::addPlayers(QVBoxLayout* column) {
  QFormLayout* form = addPart(column, tr("Players"));
  const QString host = toQt(preferences_.text(settings::playerHost));
  QLabel* server =
      newPlainLabel(tr("MPD server"), host.isEmpty() ? tr("the one on this computer") : host);
  QPushButton* connectTo = newButton(tr("Co&nnect…"), [this] {
    commands_.connectToServer();
    accept();
  });
  form->addRow(tr("MPD:"), newRow({server, connectTo}, server));
}

void SettingsWindow::addCache(QVBoxLayout* column) {
  QFormLayout* form = addPart(column, tr("What is known of audio files"));
  cacheSize_ = newPlainLabel(tr("Size of the cache"));
  QPushButton* clear = newButton(
      tr("C&lear"), [this] { clearCache(); },
      tr("Files are read again when a library with them is opened"));
  form->addRow(tr("Cache:"), newRow({cacheSize_, clear}, cacheSize_));
  const auto enable = [this, clear] { clear->setEnabled(!delegate_.isBusy()); };
  follow(this, delegate_.observers, enable);
  showCacheSize();
}

void SettingsWindow::showCacheSize() {
  qint64 bytes = 0;
  for (const QString& path : cacheFiles(delegate_.process().with.files))
    bytes += QFileInfo(path).size();
  cacheSize_->setText(bytes > 0 ? sizeText(static_cast<std::uint64_t>(bytes)) : tr("empty"));
}

void SettingsWindow::clearCache() {
  delegate_.run(
      [paths = cacheFiles(delegate_.process().with.files)] {
        for (const QString& path : paths) QFile::remove(path);
      },
      [page = QPointer<SettingsWindow>(this)] {
        if (page) page->showCacheSize();
      });
}

}  // namespace kestrel
