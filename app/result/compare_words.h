/// What there is to say about the copies of a group below their comparison: why one is kept, what
/// the others have that it lacks, what all share, and why they match.
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <vector>

class QLabel;
class QToolButton;

namespace kestrel {

class AppDelegate;
struct GroupComparison;

class CompareWords final : public QWidget {
  Q_OBJECT

 public:
  /// Must outlive it.
  explicit CompareWords(AppDelegate& delegate);

  /// No track is selected.
  void showNothing();
  /// Of the group of this row of the table's content, whose copies are numbered in this order. No
  /// task may be running.
  void show(std::uint32_t row, const std::vector<std::uint32_t>& copies,
            const GroupComparison& comparison);
  /// What the music application says beside.
  void tell(const QString& text);

 Q_SIGNALS:
  /// The user has unfolded something.
  void grown();

 private:
  void explainMatching(std::uint32_t row, const std::vector<std::uint32_t>& copies);
  [[nodiscard]] QString lacking(const std::vector<std::uint32_t>& copies) const;

  AppDelegate& delegate_;
  QLabel* title_;
  QLabel* reason_;
  QLabel* agreement_;
  QLabel* lacking_;
  QLabel* sameTitle_;
  QLabel* same_;
  QToolButton* whyMatched_;
  QLabel* matched_;
  QLabel* told_;
};

}  // namespace kestrel
