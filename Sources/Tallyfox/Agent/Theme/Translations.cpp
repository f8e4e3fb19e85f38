#include "Tallyfox/Agent/Theme/Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>
#include <string>

namespace tallyfox {

namespace {

void install(QCoreApplication& application, const QString& file)
{
    auto translator = std::make_unique<QTranslator>(&application);
    if (translator->load(file))
        QCoreApplication::installTranslator(translator.release()); // the application owns it
}

QString ownFile(const QString& language)
{
    return QStringLiteral(":/translations/tallyfox_%1.qm").arg(language);
}

QString qtFile(const QString& language)
{
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_%1.qm").arg(language);
}

} // namespace

void installTranslations(QCoreApplication& application, const QLocale& locale)
{
    const QString language = translatedLanguage(locale.uiLanguages());
    if (language.isEmpty())
        return;
    install(application, qtFile(language));
    install(application, ownFile(language));
}

/// QTranslator itself would skip English, for which there is no file, and load the next language.
QString translatedLanguage(const QStringList& languages)
{
    for (const QString& name : languages) {
        const QLocale::Language language = QLocale{name}.language();
        if (language == QLocale::English || language == QLocale::C)
            return {};
        QString code = QLocale::languageToCode(language);
        if (QFile::exists(ownFile(code)))
            return code;
    }
    return {};
}

QString translatedText(std::string_view text)
{
    return QCoreApplication::translate("UsageStore", std::string{text}.c_str());
}

} // namespace tallyfox
