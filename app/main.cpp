// kestrel: the desktop program.

#include <QApplication>
#include <QCommandLineParser>
#include <exception>
#include <iostream>

#include "app/program.h"
#include "resources/translations/translations.h"

namespace {

/// The command line, told in the user's language, for which there must be an application.
class CommandLine {
 public:
  CommandLine() {
    parser_.setApplicationDescription(
        QCoreApplication::translate("main", "Finds the duplicate songs of a music library."));
    parser_.addPositionalArgument(
        QStringLiteral("LIBRARY"),
        QCoreApplication::translate("main", "The library to open, by its file or address"),
        QStringLiteral("[LIBRARY]"));
  }

  /// Ends the program if it is called to tell about itself and for nothing else.
  void answerQuestions(const QCoreApplication& application) {
    // Options of the toolkit, which only a QApplication knows, do not parse.
    if (parser_.parse(QCoreApplication::arguments()) &&
        (parser_.isSet(help_) || parser_.isSet(version_)))
      parser_.process(application);
  }
  QStringList libraries(const QCoreApplication& application) {
    parser_.process(application);
    return parser_.positionalArguments();
  }

 private:
  QCommandLineParser parser_;
  QCommandLineOption help_ = parser_.addHelpOption();
  QCommandLineOption version_ = parser_.addVersionOption();
};

int run(int argc, char** argv) {
  QCoreApplication::setApplicationName(QStringLiteral("Kestrel"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
  {
    // There need not be a display for these.
    const QCoreApplication application(argc, argv);
    kestrel::installTranslations(QLocale::system());
    CommandLine().answerQuestions(application);
  }

  const QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("kestrel"));
  kestrel::installTranslations(QLocale::system());
  const QStringList libraries = CommandLine().libraries(application);
  if (libraries.size() > 1) {
    std::cerr << "kestrel: only one library can be opened\n";
    return 2;
  }

  kestrel::Program program;
  program.begin(libraries.value(0));
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
