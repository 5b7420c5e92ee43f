// kestrel: the desktop program.

#include <QApplication>
#include <QCommandLineParser>
#include <exception>
#include <iostream>

#include "app/main_window.h"
#include "app/program.h"

namespace {

int run(int argc, char** argv) {
  const QApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("Kestrel"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("kestrel"));

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Finds the duplicate songs of a music library."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(
      QStringLiteral("LIBRARY"),
      QCoreApplication::translate("main", "The library document to open, as XML"),
      QStringLiteral("[LIBRARY]"));
  parser.process(application);
  if (parser.positionalArguments().size() > 1) {
    std::cerr << "kestrel: only one library can be opened\n";
    return 2;
  }

  kestrel::Program program;
  program.window().show();
  if (!parser.positionalArguments().isEmpty())
    program.window().openPath(parser.positionalArguments().first());
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "kestrel: " << error.what() << '\n';
  }
  return 1;
}
