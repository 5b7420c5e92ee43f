#include "app/result/export_dialog.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <map>
#include <sstream>
#include <utility>

#include "app/parts/window_task.h"
#include "foundation/dates.h"
#include "musicapp/audio/cover.h"
#include "platform/files.h"
#include "ui/process.h"
#include "ui/qt/look.h"
#include "ui/qt/segments.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"
#include "ui/result_report.h"

namespace kestrel {
namespace {

/// Of a cover on paper.
constexpr int coverPixels = 128;

/// A small JPEG picture; empty where there is none that can be drawn.
std::string coverAddress(const ResultTrack& track, const FileService& files) {
  if (track.record->availability() != FileAvailability::reachable) return {};
  const auto cover = coverOf(filePath(track.record->item()), files);
  if (!cover) return {};
  QImage image;
  if (!image.loadFromData(QByteArray::fromStdString(cover->bytes))) return {};
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.scaled(coverPixels, coverPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_RGB32)
      .save(&buffer, "JPEG");
  return "data:image/jpeg;base64," + bytes.toBase64().toStdString();
}

class ExportDialog final : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(kestrel::ExportDialog)

 public:
  ExportDialog(AppDelegate& delegate, ActionScope scope, std::vector<const TableColumn*> columns,
               QWidget* parent)
      : QDialog(parent),
        delegate_(delegate),
        columns_(std::move(columns)),
        scope_(new ScopeBox(delegate, std::move(scope))),
        format_(new Segments(tr("Format"))),
        explanation_(newPlainLabel(tr("Explanation"))),
        export_(newPrimaryButton([this] { choosePlace(); })) {
    setWindowTitle(tr("Export Table"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    const auto at = [](ReportFormat format) { return static_cast<int>(format); };
    format_->add(at(ReportFormat::html), tr("&Report to Print"));
    format_->add(at(ReportFormat::csv), tr("&Spreadsheet (CSV)"));
    format_->add(at(ReportFormat::json), tr("&Data (JSON)"));
    format_->choose(at(ReportFormat::html));
    QPushButton* cancel = newButton(tr("Canc&el"), [this] { reject(); });
    auto* column = new QVBoxLayout(this);
    column->setSpacing(gridStep);
    for (QWidget* part : QList<QWidget*>{scope_, newRow({format_, nullptr}), explanation_,
                                         newRow({nullptr, cancel, export_})})
      column->addWidget(part);
    connect(scope_, &ScopeBox::changed, this, [this] { tell(); });
    connect(format_, &Segments::changed, this, [this] { tell(); });
    resize(minimumSizeHint().expandedTo({520, 0}));
    tell();
  }

 private:
  [[nodiscard]] ReportFormat format() const { return static_cast<ReportFormat>(format_->chosen()); }

  void tell() {
    switch (format()) {
      case ReportFormat::html:
        explanation_->setText(
            tr("One file for any browser, with covers and why each copy is kept."));
        break;
      case ReportFormat::csv:
        explanation_->setText(tr("A line for each track, with the columns that the table shows."));
        break;
      case ReportFormat::json:
        explanation_->setText(tr("The groups with their tracks, for other programs."));
        break;
    }
    export_->setText(
        toQt(Message::tr("E&xport %Ln Groups…", "E&xport %Ln Group…", countOf(scope_->groups()))));
    export_->setEnabled(scope_->groups() > 0 && !delegate_.isBusy());
  }

  void choosePlace() {
    static constexpr const char* endings[] = {"csv", "json", "html"};
    const QString ending = QLatin1String(endings[format_->chosen()]);
    auto* dialog =
        new QFileDialog(this, tr("Export Table"),
                        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(ending);
    dialog->setNameFilters({QStringLiteral("*.") + ending});
    dialog->selectFile(tr("Duplicates") + QLatin1Char('.') + ending);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& path) { write(pathFromQt(path)); });
    dialog->open();
  }

  void write(const std::string& path) {
    export_->setEnabled(false);
    export_->setText(tr("Exporting…"));
    ReportOptions options;
    options.format = format();
    options.title =
        fromQt(tr("Duplicates in %1").arg(QFileInfo(pathToQt(delegate_.libraryPath())).fileName()));
    options.columns = columns_;
    options.keeperValue = keeperValueBy(delegate_.process().with.preferences);
    options.inWords = inUsersWords;
    FileService& files = delegate_.process().with.files;
    options.cover = [&files](const ResultTrack& track) { return coverAddress(track, files); };
    runTask<bool>(
        delegate_, this, tr("The table could not be exported."),
        [&delegate = delegate_, &files, path, options = std::move(options), rows = scope_->rows()] {
          std::map<std::int32_t, std::vector<const ResultTrack*>> groups;
          for (const std::uint32_t row : rows)
            groups[delegate.content()[row].tGroupID].push_back(&delegate.content()[row]);
          std::ostringstream out;
          ShortDateTimeFormatter dates;
          ResultReport report(out, options, dates);
          for (const auto& [group, tracks] : groups)
            report.add(tracks, inUsersWords(delegate.reasonOf(group)));
          report.end();
          files.writeAtomically(path, std::move(out).str());
          return true;
        },
        [this](bool) { accept(); }, [this] { tell(); });
  }

  AppDelegate& delegate_;
  const std::vector<const TableColumn*> columns_;
  ScopeBox* scope_;
  Segments* format_;
  QLabel* explanation_;
  QPushButton* export_;
};

}  // namespace

QDialog* newExportDialog(AppDelegate& delegate, ActionScope scope,
                         std::vector<const TableColumn*> columns, QWidget* parent) {
  return new ExportDialog(delegate, std::move(scope), std::move(columns), parent);
}

}  // namespace kestrel
