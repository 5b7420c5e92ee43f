#include "app/libraries/connect_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QUrl>
#include <QUrlQuery>
#include <QVBoxLayout>

#include "app/parts/folder_field.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int usualPort = 6600;
constexpr int highestPort = 65535;

}  // namespace

ConnectDialog::ConnectDialog(Preferences& preferences, Connect connectTo, QWidget* parent)
    : QDialog(parent),
      preferences_(preferences),
      host_(new QLineEdit(toQt(preferences.text(settings::playerHost)))),
      port_(new QSpinBox),
      music_(nullptr),
      password_(new QLineEdit),
      reason_(newPlainLabel(tr("Why you are asked again"))) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Connect to MPD"));
  host_->setPlaceholderText(QStringLiteral("localhost"));
  host_->setMinimumWidth(40 * gridStep);
  port_->setRange(1, highestPort);
  const auto port = static_cast<int>(preferences.integer(settings::playerPort));
  port_->setValue(port > 0 ? port : usualPort);
  password_->setEchoMode(QLineEdit::Password);
  password_->setPlaceholderText(tr("only if the server asks for one; it is not kept"));
  auto* music = new FolderField(tr("Music folder"), toQt(preferences.text(settings::playerMusic)));
  music_ = music->field();
  music_->setPlaceholderText(tr("where the server does not tell it"));

  auto* form = new QFormLayout;
  form->setVerticalSpacing(gridStep);
  form->setHorizontalSpacing(2 * gridStep);
  form->addRow(tr("&Server or socket:"), host_);
  form->addRow(tr("&Port:"), port_);
  form->addRow(tr("Pass&word:"), password_);
  form->addRow(tr("&Music folder:"), music);
  QLabel* explanation = newPlainLabel(
      tr("Explanation"),
      tr("Kestrel reads songs and playlists from the server and changes its playlists. For "
         "playback, covers and the trash it needs the folder of the files on this computer."));
  explanation->setMinimumWidth(56 * gridStep);
  setTextColor(explanation, "grayText");
  setTextColor(reason_, "warningText");
  reason_->hide();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  auto* primary = new PrimaryButton(tr("Connect"));
  buttons->addButton(primary, QDialogButtonBox::AcceptRole);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3 * gridStep, 3 * gridStep, 3 * gridStep, 2 * gridStep);
  column->setSpacing(2 * gridStep);
  column->addWidget(explanation);
  column->addWidget(reason_);
  column->addLayout(form);
  column->addWidget(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
  primary->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(this, &QDialog::accepted, this, [this, connectTo = std::move(connectTo)] {
    store();
    connectTo(address(), password_->text());
  });
  connect(host_, &QLineEdit::textChanged, port_,
          [this](const QString& host) { port_->setEnabled(!host.startsWith('/')); });
  port_->setEnabled(!host_->text().startsWith('/'));
}

void ConnectDialog::askAgain(const QString& address, const QString& reason) {
  const QUrl url(address);
  const bool isSocket = url.host().isEmpty();
  host_->setText(isSocket ? url.path() : url.host());
  if (!isSocket) port_->setValue(url.port(usualPort));
  const QUrlQuery query(url);
  music_->setText(query.queryItemValue(QStringLiteral("music"), QUrl::FullyDecoded));
  reason_->setText(reason);
  reason_->show();
  password_->setFocus();
}

QString ConnectDialog::address() const {
  const QString host = host_->text().trimmed();
  QString address;
  if (host.startsWith('/') || host.startsWith('@'))
    address = QStringLiteral("mpd:") + host;
  else
    address = QStringLiteral("mpd://%1:%2")
                  .arg(host.isEmpty()                                ? QStringLiteral("localhost")
                       : host.contains(':') && !host.startsWith('[') ? '[' + host + ']'
                                                                     : host)
                  .arg(port_->value());
  if (const QString music = music_->text().trimmed(); !music.isEmpty())
    address += QStringLiteral("?music=") +
               QString::fromLatin1(QUrl::toPercentEncoding(music, QByteArrayLiteral("/")));
  return address;
}

void ConnectDialog::store() {
  preferences_.set(settings::playerHost, fromQt(host_->text().trimmed()));
  preferences_.set(settings::playerPort, std::int64_t{port_->value()});
  preferences_.set(settings::playerMusic, pathFromQt(music_->text().trimmed()));
}

}  // namespace kestrel
