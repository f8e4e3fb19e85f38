#pragma once

#include <QString>
#include <QStringList>

#include <string_view>

class QCoreApplication;
class QLocale;

namespace tallyfox {

/// Installs the translations of the language that `locale` prefers among the available ones: of our own texts and, if
/// the system has them, of Qt's. Call before the first text is shown. `application` owns the translators.
void installTranslations(QCoreApplication& application, const QLocale& locale);

/// The code ("de") of the first of `languages` (in the form and order of QLocale::uiLanguages) that there is a
/// translation for. Empty if there is none, or if English, which needs none, comes first.
QString translatedLanguage(const QStringList& languages);

/// A text of the store (the label of a health, a state's detail) in the user's language; unchanged if there is no
/// translation.
QString translatedText(std::string_view text);

} // namespace tallyfox
