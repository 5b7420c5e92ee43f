#include "resources/translations/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace kestrel {

void installTranslations(const QLocale& locale) {
  for (const QString& name : locale.uiLanguages()) {
    const QLocale language(name);
    // QTranslator's own search would pass over English, since it has no file, and take a language
    // that the user likes less.
    if (language.language() == QLocale::English || language.language() == QLocale::C) return;
    auto* own = new QTranslator(QCoreApplication::instance());
    if (!own->load(language, QStringLiteral("kestrel"), QStringLiteral("_"),
                   QStringLiteral(":/kestrel/translations"))) {
      delete own;
      continue;
    }
    auto* qt = new QTranslator(QCoreApplication::instance());
    if (qt->load(language, QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
      QCoreApplication::installTranslator(qt);
    QCoreApplication::installTranslator(own);
    return;
  }
}

}  // namespace kestrel
