#include "app/parts/order_editor.h"

#include <QDialog>
#include <QFileDialog>
#include <QGridLayout>
#include <QInputDialog>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

#include "app/controller/app_delegate.h"
#include "app/controller/rule_presets.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

/// Two or three lines high; while it is empty, it says what it is for.
class HintedList final : public QListWidget {
 public:
  explicit HintedList(QString hint) : hint_(std::move(hint)) { setAccessibleDescription(hint_); }
  [[nodiscard]] QSize sizeHint() const override {
    return {QListWidget::sizeHint().width(), minimumSizeHint().height()};
  }
  [[nodiscard]] QSize minimumSizeHint() const override {
    return {24 * gridStep, 3 * fontMetrics().lineSpacing() + 2 * gridStep};
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QListWidget::paintEvent(event);
    if (count() > 0) return;
    QPainter painter(viewport());
    painter.setPen(lookColor("grayText", QGuiApplication::palette()));
    painter.drawText(viewport()->rect().adjusted(gridStep, 4, -gridStep, -4),
                     int{Qt::AlignLeading} | int{Qt::AlignVCenter} | int{Qt::TextWordWrap}, hint_);
  }

 private:
  QString hint_;
};

std::string_view settingOf(OrderOf what) {
  return what == OrderOf::folders ? settings::keeperFolders : settings::keeperKinds;
}

}  // namespace

OrderEditor::OrderEditor(AppDelegate& delegate, OrderOf what)
    : delegate_(delegate),
      what_(what),
      list_(new HintedList(
          what == OrderOf::folders
              ? tr("No folder yet: what lies in the first one is kept before all else.")
              : tr("No kind yet: copies of the first one are kept before all others."))),
      up_(newButton(tr("Up"), [this] { move(-1); })),
      down_(newButton(tr("Down"), [this] { move(1); })),
      remove_(newButton(tr("Remove"), [this] { remove(); })) {
  const bool folders = what == OrderOf::folders;
  list_->setAccessibleName(folders ? tr("Order of folders") : tr("Order of kinds"));
  list_->setDragDropMode(QAbstractItemView::InternalMove);
  list_->setTextElideMode(Qt::ElideMiddle);
  QPushButton* addOne = newButton(folders ? tr("Add Folder…") : tr("Add Kind…"), [this] { add(); });
  // Two editors may stand in one window: their lists are as wide, and their buttons are told apart
  // by what they name.
  for (QPushButton* button : {up_, down_, remove_})
    button->setAccessibleName(list_->accessibleName() + QStringLiteral(": ") + button->text());
  for (const QString& title : {tr("Add Folder…"), tr("Add Kind…")})
    addOne->setMinimumWidth(
        std::max(addOne->minimumWidth(), QPushButton(title).sizeHint().width()));
  auto* line = new QGridLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(gridStep);
  line->addWidget(list_, 0, 0, 3, 1);
  line->addWidget(addOne, 0, 1);
  line->addWidget(remove_, 1, 1);
  line->addWidget(up_, 0, 2);
  line->addWidget(down_, 1, 2);
  line->setColumnStretch(0, 1);
  line->setRowStretch(2, 1);
  connect(list_, &QListWidget::currentRowChanged, this, [this] { updateButtons(); });
  connect(list_->model(), &QAbstractItemModel::rowsMoved, this, [this] { store(); });
  load();
}

void OrderEditor::load() {
  for (const std::string& text : delegate_.process().with.preferences.textArray(settingOf(what_)))
    list_->addItem(pathToQt(text));
  if (list_->count() > 0) list_->setCurrentRow(0);
  updateButtons();
}

void OrderEditor::store() {
  std::vector<std::string> texts;
  for (int row = 0; row < list_->count(); ++row)
    texts.push_back(pathFromQt(list_->item(row)->text()));
  delegate_.process().with.preferences.set(settingOf(what_), std::move(texts));
  updateButtons();
  Q_EMIT changed();
}

void OrderEditor::updateButtons() {
  const int row = list_->currentRow();
  up_->setEnabled(row > 0);
  down_->setEnabled(row >= 0 && row + 1 < list_->count());
  remove_->setEnabled(row >= 0);
}

void OrderEditor::move(int by) {
  const int row = list_->currentRow();
  list_->insertItem(row + by, list_->takeItem(row));
  list_->setCurrentRow(row + by);
  store();
}

void OrderEditor::remove() {
  delete list_->takeItem(list_->currentRow());
  store();
}

QStringList OrderEditor::known() const {
  std::set<std::string_view> kinds;
  for (const ResultTrack& row : delegate_.content()) kinds.insert(row.record->item().kind.view());
  QStringList texts;
  for (const std::string_view kind : kinds)
    if (!kind.empty()) texts << toQt(kind);
  return texts;
}

void OrderEditor::add() {
  if (what_ == OrderOf::folders) {
    auto* dialog = new QFileDialog(this, tr("Folder to Prefer"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setWindowModality(Qt::WindowModal);
    connect(dialog, &QFileDialog::fileSelected, this, &OrderEditor::addText);
    return dialog->open();
  }
  auto* dialog = new QInputDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setWindowTitle(tr("Kind to Prefer"));
  dialog->setLabelText(tr("&What the kind's name contains:"));
  dialog->setComboBoxItems(known());
  dialog->setComboBoxEditable(true);
  dialog->setOkButtonText(tr("&Add"));
  dialog->setCancelButtonText(tr("&Cancel"));
  connect(dialog, &QInputDialog::textValueSelected, this, &OrderEditor::addText);
  dialog->open();
}

void OrderEditor::addText(const QString& given) {
  const QString text = given.trimmed();
  if (text.isEmpty() || !list_->findItems(text, Qt::MatchExactly).isEmpty()) return;
  list_->addItem(text);
  list_->setCurrentRow(list_->count() - 1);
  store();
}

bool isOrderAsked(const AppDelegate& delegate, OrderOf what) {
  const std::string word = keeperRuleWord(what == OrderOf::folders ? KeeperRule::orderOfFolders
                                                                   : KeeperRule::orderOfKinds);
  const Preset chosen = presetOfSettings(delegate.process().with.preferences, {});
  return std::find(chosen.keep.begin(), chosen.keep.end(), word) != chosen.keep.end();
}

void editOrders(AppDelegate& delegate, QWidget* window) {
  auto* dialog = new QDialog(window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setWindowTitle(OrderEditor::tr("What to Prefer"));
  auto* column = new QVBoxLayout(dialog);
  for (const OrderOf what : {OrderOf::folders, OrderOf::kinds}) {
    if (!isOrderAsked(delegate, what)) continue;
    column->addWidget(newPlainLabel(
        {}, what == OrderOf::folders
                ? OrderEditor::tr("Copies in these folders are kept before others, those of the "
                                  "first folder before all.")
                : OrderEditor::tr("Copies of these kinds are kept before others, those of the "
                                  "first kind before all.")));
    auto* editor = new OrderEditor(delegate, what);
    QObject::connect(editor, &OrderEditor::changed, dialog,
                     [&delegate] { delegate.rulesChanged(); });
    column->addWidget(editor, 1);
  }
  column->addWidget(
      newRow({nullptr, newButton(OrderEditor::tr("&Close"), [dialog] { dialog->reject(); })}));
  resizeWithinScreen(dialog, {560, 400});
  dialog->open();
}

}  // namespace kestrel
