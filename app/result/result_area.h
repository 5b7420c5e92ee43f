/// The table of duplicates with the pane that compares the copies of a group: beside it where the
/// window is wide, else below.
#pragma once

#include <QSplitter>

namespace kestrel {

class ResultArea final : public QSplitter {
  Q_OBJECT

 public:
  /// From this width of the window on the pane stands beside the table.
  static constexpr int wide = 1400;

  ResultArea(QWidget* table, QWidget* compare);

  /// How the parts share the room, beside and below each other.
  [[nodiscard]] QByteArray sharing() const;
  void restoreSharing(const QByteArray& state);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void arrange();
  void remember();

  QByteArray beside_, below_;
};

}  // namespace kestrel
