/// The tests of windows: classes with a slot a case, in one program, whose first argument names the
/// class to run.
#pragma once

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kestrel::testing {

using WindowTests = std::map<std::string, std::function<std::unique_ptr<QObject>()>>;
inline WindowTests& windowTests() {
  static WindowTests tests;
  return tests;
}

template <typename Test>
struct WindowTest {
  explicit WindowTest(const char* name) { windowTests()[name] = std::make_unique<Test>; }
};

/// What keys reach in a window and a screen reader has no name for.
inline QStringList nameless(QWidget* window) {
  QStringList found;
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(window)) continue;
    if (qobject_cast<QLineEdit*>(widget) && qobject_cast<QAbstractSpinBox*>(widget->parent()))
      continue;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    const auto role = accessible ? accessible->role() : QAccessible::NoRole;
    const bool plain = role == QAccessible::Client || role == QAccessible::ScrollBar ||
                       role == QAccessible::PageTabList || role == QAccessible::Splitter;
    if (!accessible || (!plain && accessible->text(QAccessible::Name).isEmpty()))
      found << widget->metaObject()->className();
  }
  return found;
}

/// Those whose letter another one has.
inline QStringList sameMnemonics(const QStringList& texts) {
  QStringList found;
  QSet<QKeySequence> met;
  for (const QString& text : texts) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (met.contains(key)) found << text;
    if (!key.isEmpty()) met << key;
  }
  return found;
}

inline QStringList sameMnemonicsInMenus(const QMainWindow& window) {
  QList<const QWidget*> lists{window.menuBar()};
  for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>()) lists << menu;
  QStringList found;
  for (const QWidget* list : lists) {
    QStringList texts;
    for (const QAction* action : list->actions()) texts << action->text();
    found << sameMnemonics(texts);
  }
  return found;
}

}  // namespace kestrel::testing
