/// The languages of the desktop program other than English, in which its texts are written.
///
/// A language is one file kestrel_<language>.ts in this folder, which the target
/// `update_translations` brings up to date with the texts.
#pragma once

#include <QLocale>

namespace kestrel {

/// Makes the application speak the first of the locale's languages that there is a translation
/// into, and Qt's own texts with it where Qt's translations are installed. Changes nothing when
/// English comes first. For the main thread, before any text is shown, once per QCoreApplication.
void installTranslations(const QLocale& locale);

}  // namespace kestrel
