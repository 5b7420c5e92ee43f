/// The tests of windows: classes with a slot a case, in one program, whose first argument names the
/// class to run.
#pragma once

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QLineEdit>
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

}  // namespace kestrel::testing
