#include "tests/app/window_tests.h"

#include <QApplication>

int main(int argc, char** argv) {
  const auto& tests = kestrel::testing::windowTests();
  const auto found = tests.find(argc > 1 ? argv[1] : "");
  if (found == tests.end()) {
    for (const auto& [name, make] : tests) std::puts(name.c_str());
    return 2;
  }
  const QApplication application(argc, argv);
  return QTest::qExec(found->second().get(), argc - 1, argv + 1);
}
