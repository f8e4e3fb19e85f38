#pragma once

class QCoreApplication;
class QLocale;

namespace tallyfox {

/// Lets `application` speak the language that the user of `locale` likes best among those there are: our own texts, and
/// where the system has them the toolkit's. English is there always. To be called before the first text is shown; the
/// translations live as long as the application.
void installTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace tallyfox
