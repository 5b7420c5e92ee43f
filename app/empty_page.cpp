#include "app/empty_page.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "app/criteria.h"
#include "library/process.h"
#include "resources/artwork.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int iconSize = 96;
constexpr int textWidth = 460;

/// "name, artist and album".
QString enumeration(const std::vector<std::string>& criteria) {
  QStringList names;
  for (const std::string& key : criteria)
    names << QCoreApplication::translate("kestrel::Criteria", criterionName(key).c_str());
  if (names.size() < 2) return names.join(QString());
  const QString last = names.takeLast();
  return EmptyPage::tr("%1 and %2").arg(names.join(QStringLiteral(", ")), last);
}

}  // namespace

EmptyPage::EmptyPage(AppDelegate& delegate)
    : delegate_(delegate),
      icon_(new QLabel),
      title_(new QLabel),
      text_(new QLabel),
      buttons_(nullptr),
      buttonColumn_(new QVBoxLayout) {
  icon_->setAccessibleName(QStringLiteral("Kestrel"));
  icon_->setPixmap(applicationIcon().pixmap(iconSize, iconSize));
  QFont large = title_->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  title_->setFont(large);
  for (QLabel* label : {icon_, title_, text_}) label->setAlignment(Qt::AlignCenter);
  for (QLabel* label : {title_, text_}) {
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(textWidth);
  }
  auto* column = new QVBoxLayout(this);
  column->addStretch(2);
  for (QLabel* label : {icon_, title_, text_}) column->addWidget(label, 0, Qt::AlignHCenter);
  column->addSpacing(12);
  column->addLayout(buttonColumn_);
  column->addStretch(3);
  reload();
}

void EmptyPage::addButton(const QString& title, void (EmptyPage::*signal)(), bool isDefault) {
  auto* button = new QPushButton(title);
  button->setAutoDefault(true);
  button->setMinimumWidth(240);
  connect(button, &QPushButton::clicked, this, signal);
  buttons_->layout()->addWidget(button);
  if (isDefault) button->setFocus();
}

void EmptyPage::showWelcome() {
  title_->setText(tr("Find the duplicates in your music library"));
  text_->setText(
      tr("Open the library document that your music application has exported, or drag "
         "it here. Nothing is changed until you say so."));
  addButton(tr("&Open a Library Document…"), &EmptyPage::openRequested, true);
  addButton(tr("Try the Demo Libr&ary"), &EmptyPage::demoRequested);
  if (delegate_.recentLibraries().empty()) return;
  auto* heading = new QLabel(tr("Recent libraries"));
  heading->setAlignment(Qt::AlignCenter);
  buttons_->layout()->addWidget(heading);
  for (const std::string& path : delegate_.recentLibraries()) {
    const QString shown = pathToQt(path);
    auto* button = new QPushButton(QFileInfo(shown).dir().dirName() + QLatin1Char('/') +
                                   QFileInfo(shown).fileName());
    button->setFlat(true);
    button->setToolTip(shown);
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this, shown] { emit libraryRequested(shown); });
    buttons_->layout()->addWidget(button);
  }
}

void EmptyPage::reload() {
  if (buttons_) {
    // Perhaps one of them is being clicked right now.
    buttons_->hide();
    buttons_->deleteLater();
  }
  buttons_ = new QWidget;
  auto* layout = new QVBoxLayout(buttons_);
  layout->setContentsMargins(0, 0, 0, 0);
  buttonColumn_->addWidget(buttons_, 0, Qt::AlignHCenter);

  const auto& criteria = delegate_.process().textSorter.storedCriteria;
  const QString playlist = toQt(delegate_.chosenPlaylistName());
  switch (delegate_.situation()) {
    case Situation::noLibrary:
      showWelcome();
      break;
    case Situation::notSearched:
      if (delegate_.activity() == Activity::search) {
        title_->setText(tr("Looking for duplicates"));
        text_->setText(tr("Press Esc to stop."));
      } else {
        title_->setText(tr("Ready to search %1").arg(playlist));
        text_->setText(
            tr("Choose on the left what duplicates have in common and which of them "
               "to keep."));
        addButton(tr("&Find Duplicates"), &EmptyPage::findRequested, true);
      }
      break;
    case Situation::noDuplicates:
      if (criteria.empty()) {
        title_->setText(tr("Nothing to match by"));
        text_->setText(tr("Tick on the left at least one field that duplicates share."));
      } else {
        title_->setText(tr("No duplicates by %1 in %2.").arg(enumeration(criteria), playlist));
        text_->setText(tr("Try fewer criteria."));
      }
      break;
    case Situation::filenameOnly:
      title_->setText(tr("“Filename” finds nothing"));
      text_->setText(
          tr("A search with the criterion “Filename” always ends empty: it compares a "
             "field that no track has. “File Name” compares the names of files."));
      addButton(tr("Use File &Name Instead"), &EmptyPage::fileNameRequested, true);
      break;
    case Situation::stopped:
      title_->setText(tr("The search was stopped"));
      text_->setText(tr("Nothing was changed."));
      addButton(tr("&Find Duplicates"), &EmptyPage::findRequested, true);
      break;
    case Situation::result:
      break;
  }
  // A centred label is not asked how high it gets by wrapping.
  for (QLabel* label : {title_, text_}) label->setFixedHeight(label->heightForWidth(textWidth));
}

}  // namespace kestrel
