/// The tests of windows: classes with a slot a case, in one program, whose first argument names the
/// class to run.
#pragma once

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

}  // namespace kestrel::testing
