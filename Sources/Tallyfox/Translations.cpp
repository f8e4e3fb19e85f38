#include "Tallyfox/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace tallyfox {

namespace {

QString ownFolder()
{
    return QStringLiteral(":/translations");
}

bool install(QCoreApplication& application, const QString& name, const QString& folder)
{
    auto translator = std::make_unique<QTranslator>(&application);
    if (!translator->load(name, folder))
        return false;
    QCoreApplication::installTranslator(translator.release()); // the application owns it
    return true;
}

} // namespace

/// Goes through the user's languages itself: the toolkit would pass over English, for which there is no file, and take
/// the next best one.
void installTranslations(QCoreApplication& application, const QLocale& locale)
{
    for (const QString& language : locale.uiLanguages()) {
        const QLocale candidate{language};
        if (candidate.language() == QLocale::English || candidate.language() == QLocale::C)
            return;
        // Loading shortens "de_AT" until there is a file of the name.
        if (install(application, QStringLiteral("tallyfox_") + candidate.name(), ownFolder())) {
            install(application, QStringLiteral("qtbase_") + candidate.name(),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            return;
        }
    }
}

} // namespace tallyfox
