#pragma once

#include "Tallyfox/Agent/Theme/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>
#include <gtest/gtest.h>

#include <functional>

namespace tallyfox::test {

/// Installs the translations and the formats of `locale` while it exists.
class TranslatedApplication {
public:
    explicit TranslatedApplication(const QLocale& locale)
    {
        QLocale::setDefault(locale);
        installTranslations(*QCoreApplication::instance(), locale);
    }

    ~TranslatedApplication()
    {
        qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());
        QLocale::setDefault(m_before);
    }

    TranslatedApplication(const TranslatedApplication&) = delete;
    TranslatedApplication& operator=(const TranslatedApplication&) = delete;

private:
    QLocale m_before;
};

inline QLocale german()
{
    return {QLocale::German, QLocale::Germany};
}

/// Calls `look` in each language that there is a translation for.
inline void forEachLanguage(const std::function<void()>& look)
{
    const QStringList files = QDir{QStringLiteral(":/translations")}.entryList();
    EXPECT_EQ(files.size(), 3);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const TranslatedApplication application{
            QLocale{file.section(QLatin1Char{'_'}, 1).section(QLatin1Char{'.'}, 0, 0)}};
        look();
    }
}

} // namespace tallyfox::test
