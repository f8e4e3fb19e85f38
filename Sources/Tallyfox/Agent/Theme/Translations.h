#pragma once

#include <QString>
#include <QStringList>

#include <string_view>

class QCoreApplication;
class QLocale;

namespace tallyfox {

/// Lets `application` speak the language that the user of `locale` likes best among those there are: our own texts, and
/// where the system has them the toolkit's. To be called before the first text is shown; the translations live as long
/// as the application.
void installTranslations(QCoreApplication& application, const QLocale& locale);

/// The code ("de") of the first of `languages` (as QLocale::uiLanguages names them, the best liked one first) that our
/// texts are translated into. Empty where there is none, or where English, which needs no translation, comes before it.
QString translatedLanguage(const QStringList& languages);

/// A text of the store (a label of a health, a state's detail) in the user's language; as it is where there is no
/// translation.
QString translatedText(std::string_view text);

} // namespace tallyfox
