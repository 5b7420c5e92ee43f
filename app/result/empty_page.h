/// What stands in place of the table while there is nothing in it: what has happened, and what to
/// do next.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "app/choices/match_section.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;

class EmptyPage final : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(kestrel::EmptyPage)

 public:
  /// What its buttons do.
  struct Commands {
    std::function<void()> open, find, stop, clearFilter, wholeLibrary;
    std::function<void()> useFileNames;  ///< of the criterion that finds nothing, what was meant
    /// Searches without this one of `previewFields`.
    std::function<void(std::size_t field)> without;
  };

  EmptyPage(AppDelegate& delegate, Commands commands);
  /// Shows the controller's situation as it is now; `filter`: there is a result, and this filter
  /// hides all of it. The keys stay where they are, unless that is the page or nowhere: then they
  /// go to what is to be done next.
  void reload(const QString& filter = {});
  /// What other fields would find.
  void showPreview(const FieldPreview& preview);

 private:
  /// The first one is the default.
  struct Button {
    QString title;
    std::function<void()> Commands::*command = nullptr;
    std::optional<std::size_t> without = {};  ///< the field, in place of a command
    friend bool operator==(const Button&, const Button&) = default;
  };

  [[nodiscard]] std::vector<Button> showSituation();
  [[nodiscard]] std::vector<Button> showNothingFound();
  [[nodiscard]] std::vector<Button> fieldsLess() const;
  void show(const QString& title, const QString& text);
  void makeButtons();

  AppDelegate& delegate_;
  Commands commands_;
  FieldPreview preview_;
  QLabel* icon_;
  QLabel* title_;
  QLabel* text_;
  QProgressBar* progress_;
  std::vector<Button> wanted_;
  QWidget* buttons_;  ///< those of `wanted_`
  QVBoxLayout* buttonColumn_;
};

}  // namespace kestrel
