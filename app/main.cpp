// kestrel: the desktop program.

#include <QApplication>
#include <QCommandLineParser>
#include <csignal>
#include <exception>
#include <iostream>

#include "app/program.h"
#include "resources/translations/translations.h"

namespace {

/// What the command line asks for.
struct Wishes {
  QStringList libraries;
  bool opensLast = true;
  bool isVerbose = false;
};

/// Ends the program if it is called to tell about itself; without a window also only then, since
/// only a QApplication knows the toolkit's options.
Wishes readCommandLine(const QCoreApplication& application, bool isWindowed) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Finds the duplicate songs of a music library."));
  parser.addPositionalArgument(
      QStringLiteral("LIBRARY"),
      QCoreApplication::translate(
          "main", "The library to open: a document, a folder of audio files, or an address"),
      QStringLiteral("[LIBRARY]"));
  const QCommandLineOption noOpen(
      QStringLiteral("no-open"),
      QCoreApplication::translate("main", "Does not open the last library at the start."));
  const QCommandLineOption verbose(
      QStringLiteral("verbose"),
      QCoreApplication::translate("main", "Writes the log to standard error, too."));
  parser.addOptions({noOpen, verbose});
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  if (isWindowed || (parser.parse(QCoreApplication::arguments()) &&
                     (parser.isSet(help) || parser.isSet(version))))
    parser.process(application);
  return {parser.positionalArguments(), !parser.isSet(noOpen), parser.isSet(verbose)};
}

int run(int argc, char** argv) {
  QCoreApplication::setApplicationName(QStringLiteral("Kestrel"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
  {
    // There need not be a display for these.
    const QCoreApplication application(argc, argv);
    kestrel::installTranslations(QLocale::system());
    readCommandLine(application, false);
  }

  const QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("kestrel"));
  kestrel::installTranslations(QLocale::system());
  const Wishes wishes = readCommandLine(application, true);
  if (wishes.libraries.size() > 1) {
    std::cerr << "kestrel: only one library can be opened\n";
    return 2;
  }

  kestrel::Program program(wishes.isVerbose);
  program.begin(wishes.libraries.value(0), wishes.opensLast);
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  // A file that would grow beyond the user's limit is one that cannot be written.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "kestrel: " << error.what() << '\n';
  }
  return 1;
}
